# The compile options of the library for Microsoft's compiler, meaning what the GCC/Clang set
# means: IEEE evaluation without contraction (/fp:precise; never /fp:fast or /fp:contract), the
# standard's rules (/permissive-), UTF-8 sources, a high warning level.
add_compile_options(/fp:precise /permissive- /utf-8 /Zc:__cplusplus /EHsc /W4)
add_compile_definitions(_CRT_SECURE_NO_WARNINGS)
if(KRGEL_WERROR)
  add_compile_options(/WX)
endif()
if(KRGEL_SANITIZE)
  add_compile_options(/fsanitize=address)
endif()
