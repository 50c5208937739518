# The names a KrGeL binary may export (demangled), for the export checks of both platforms.
set(kr "Kr[A-Za-z0-9_]*")
set(allowed
  "^${kr}"                                                   # Kr names, KrGe:: and their members
  "^[A-Za-z_:*& ]+ ${kr}"                                   # template functions with a return type
  "^(vtable|typeinfo|typeinfo name|VTT|construction vtable) for ${kr}"
  "^(non-virtual |virtual )?thunk to ${kr}"
  "^guard variable for ${kr}"
  "^(method(Decart|FindAllRoot))(\\(|$)"
  "^[A-Za-z_:<>,*& ]*operator.*\\(.*Kr"                      # operators on Kr types
  "^(_init|_fini|__bss_start|_edata|_end)$"
  "^(__asan|__odr_asan|__ubsan|__sanitizer|__lsan)")
