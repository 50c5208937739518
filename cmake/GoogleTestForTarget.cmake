# GoogleTest for the tests. A native build uses the system's package; a cross build (and an MSVC
# build) compiles it for the target from the sources Debian's googletest package installs, or
# from KRGEL_GOOGLETEST_SOURCE_DIR. GoogleTest keeps its own compile options, not the library's.
set(KRGEL_GOOGLETEST_SOURCE_DIR "/usr/src/googletest" CACHE PATH "GoogleTest sources to build for the target")
if(NOT CMAKE_CROSSCOMPILING AND NOT MSVC)
  find_package(GTest REQUIRED)
elseif(NOT TARGET GTest::gtest)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  add_subdirectory(${KRGEL_GOOGLETEST_SOURCE_DIR} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  set_property(TARGET gtest PROPERTY COMPILE_OPTIONS "")
  if(NOT TARGET GTest::gtest)
    add_library(GTest::gtest ALIAS gtest)
  endif()
endif()
include(GoogleTest)
