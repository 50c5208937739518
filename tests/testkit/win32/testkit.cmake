# The Windows test kit: the monitor window comes from krgemon's window library.
add_library(krgel_testkit STATIC
  testkit/RecordTexts.cpp
  testkit/main.cpp
  testkit/win32/MonitorCaptureWin32.cpp
  testkit/win32/ProcessWin32.cpp)
target_include_directories(krgel_testkit PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${PROJECT_SOURCE_DIR})
target_link_libraries(krgel_testkit PUBLIC KrGeL GTest::gtest krgemon_window shell32)

# Each test program is one test. Every one owns a window of class "_indebmon" while it runs, and
# the library of any process reports to the first window of that class it finds, so no two of
# them may run at the same time. Under Wine, one process per test program also keeps the run
# short (each Windows process start costs a few hundred milliseconds there).
function(krgel_windows_test name)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES RESOURCE_LOCK indebmon TIMEOUT 900)
endfunction()
