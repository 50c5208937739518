# Helpers of the support tests that run real processes: a small host program that links the
# library as any host does, and the monitor tool. The tests find both through their paths.
add_executable(krgel_probe_host support/probe_host.cpp)
target_link_libraries(krgel_probe_host PRIVATE KrGeL)
add_dependencies(krgel_support_tests krgel_probe_host krgemon)
target_compile_definitions(krgel_support_tests PRIVATE
  KRGEL_PROBE_HOST="$<TARGET_FILE:krgel_probe_host>"
  KRGEL_KRGEMON="$<TARGET_FILE:krgemon>")

# The shared object exports the library's own public names and nothing else.
if(WIN32)
  include(support/win32/extra.cmake)
else()
add_test(NAME KrGeL.ExportedSymbolsArePublicNamesOnly
  COMMAND ${CMAKE_COMMAND} -DLIBRARY=$<TARGET_FILE:KrGeL> -P ${PROJECT_SOURCE_DIR}/cmake/CheckExports.cmake)
endif()
