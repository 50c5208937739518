list(APPEND KRGEL_SOURCES
  support/KrsException.cpp
  support/KrsLibraryLoad.cpp
  support/KrsMonitor.cpp
  support/KrsPlex.cpp
  support/KrsReport.cpp
  support/KrsSettings.cpp
  support/KrsStringW.cpp
)
# One platform layer per system; only the POSIX one exists so far.
if(WIN32)
  message(FATAL_ERROR "KrGeL has no Windows platform layer (support/platform/) yet")
endif()
list(APPEND KRGEL_SOURCES support/platform/KrsPlatformPosix.cpp)
