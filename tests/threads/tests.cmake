list(APPEND KRGEL_TEST_SOURCES
  threads/KrGeLThreads_test.cpp
)
