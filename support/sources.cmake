list(APPEND KRGEL_SOURCES
  support/KrsException.cpp
  support/KrsLibraryLoad.cpp
  support/KrsMemoryProbe.cpp
  support/KrsPlex.cpp
  support/KrsReport.cpp
  support/KrsStringW.cpp
)
# One platform layer per system. Windows has its own monitor channel (window messages) and
# settings reader (the private-profile functions); POSIX sends datagrams and parses the file.
if(WIN32)
  list(APPEND KRGEL_SOURCES
    support/platform/KrsMonitorWin32.cpp
    support/platform/KrsPlatformWin32.cpp
    support/platform/KrsSettingsWin32.cpp)
else()
  list(APPEND KRGEL_SOURCES
    support/KrsMonitor.cpp
    support/KrsSettings.cpp
    support/platform/KrsPlatformPosix.cpp
    support/platform/KrsPlatformPosixData.cpp)
endif()
