list(APPEND KRGEL_TEST_SOURCES
  algebra/KrGeMatrix2d_test.cpp
  algebra/KrGeMatrix3d_test.cpp
  algebra/KrGeTol_test.cpp
  algebra/KrGeVector2d_test.cpp
  algebra/KrGeVector3d_test.cpp
)
