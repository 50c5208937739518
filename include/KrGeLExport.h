// The one export macro of the library. Everything is hidden by default; a public class or
// function is marked KRGEL_API and nothing else leaves the shared object.
#pragma once

#if defined(_WIN32)
#  if defined(KRGEL_BUILDING)
#    define KRGEL_API __declspec(dllexport)
#  else
#    define KRGEL_API __declspec(dllimport)
#  endif
#else
#  define KRGEL_API __attribute__((visibility("default")))
#endif

// Accessors that deliberately hand out the recognisable bad address 0xFDFD2006 must not trip
// the alignment check of the undefined-behaviour sanitizer.
#if defined(__clang__) || defined(__GNUC__)
#  define KRS_NO_SANITIZE_ALIGNMENT __attribute__((no_sanitize("alignment", "null")))
#else
#  define KRS_NO_SANITIZE_ALIGNMENT
#endif
