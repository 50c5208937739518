# KrGeL.dll imports system DLLs only and exports the library's own public names only.
add_test(NAME KrGeL.DllImportsSystemOnlyAndExportsPublicNames
  COMMAND ${CMAKE_COMMAND} -DLIBRARY=$<TARGET_FILE:KrGeL> -DOBJDUMP=${CMAKE_OBJDUMP}
          -P ${PROJECT_SOURCE_DIR}/cmake/CheckDllExports.cmake)
