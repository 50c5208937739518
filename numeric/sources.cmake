list(APPEND KRGEL_SOURCES
  numeric/KrGeInterval.cpp
  numeric/KrGeKnotVector.cpp
  numeric/PolynomRoot.cpp
  numeric/Polynom.cpp
  numeric/closed_form.cpp
  numeric/muller.cpp
)
