list(APPEND KRGEL_TEST_SOURCES
  support/KrsArray_test.cpp
  support/KrsDiagnostics_test.cpp
  support/KrsStringW_test.cpp
)
# The monitor transport, the settings reader and the monitor tool differ between the platforms.
if(WIN32)
  list(APPEND KRGEL_TEST_SOURCES support/win32/KrsMonitorWin32_test.cpp support/win32/krgemonWin32_test.cpp)
else()
  list(APPEND KRGEL_TEST_SOURCES support/KrsMonitor_test.cpp support/KrsSettings_test.cpp support/krgemon_test.cpp)
endif()
