list(APPEND KRGEL_TEST_SOURCES
  support/KrsArray_test.cpp
)
