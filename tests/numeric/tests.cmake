list(APPEND KRGEL_TEST_SOURCES
  numeric/KrGeInterval_test.cpp
  numeric/KrGeKnotVector_test.cpp
  numeric/Polynom_test.cpp
  numeric/PolynomRoot_test.cpp
  # The polynomial algebra and solvers are hidden inside the library (only methodDecart and
  # methodFindAllRoot are exported), so the test program compiles their sources itself to test
  # them directly. The exported entry points live in numeric/PolynomRoot.cpp, which is not
  # listed here: the tests reach those through the library, as a host does.
  ${PROJECT_SOURCE_DIR}/numeric/Polynom.cpp
  ${PROJECT_SOURCE_DIR}/numeric/closed_form.cpp
  ${PROJECT_SOURCE_DIR}/numeric/muller.cpp
)
