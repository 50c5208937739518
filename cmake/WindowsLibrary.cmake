# KrGeL.dll: the DLL and its import library (KrGeL.dll.a for MinGW, KrGeL.lib for MSVC) keep the
# library's own name. Programs are built beside the DLL, where the loader looks first.
set_target_properties(KrGeL PROPERTIES
  PREFIX ""
  IMPORT_PREFIX ""
  RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}
  ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
# Window lookup and messages (user32); the private-profile reader and the rest are kernel32's.
target_link_libraries(KrGeL PRIVATE user32)
if(MINGW)
  target_link_options(KrGeL PRIVATE -Wl,--no-undefined)
endif()
# windows.h must not define min and max: the library and the tools use the standard ones.
add_compile_definitions(NOMINMAX)
