list(APPEND KRGEL_SOURCES
  support/KrsException.cpp
  support/KrsLibraryLoad.cpp
  support/KrsMonitor.cpp
  support/KrsPlex.cpp
  support/KrsReport.cpp
  support/KrsSettings.cpp
  support/KrsStringW.cpp
)
if(WIN32)
  list(APPEND KRGEL_SOURCES support/platform/KrsPlatformWin32.cpp)
else()
  list(APPEND KRGEL_SOURCES support/platform/KrsPlatformPosix.cpp)
endif()
