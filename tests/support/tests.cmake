list(APPEND KRGEL_TEST_SOURCES
  support/KrsArray_test.cpp
  support/KrsDiagnostics_test.cpp
  support/KrsMonitor_test.cpp
  support/KrsSettings_test.cpp
  support/KrsStringW_test.cpp
  support/krgemon_test.cpp
)
