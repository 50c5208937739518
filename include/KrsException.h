// The one exception the library throws: a result code, raised when a container cannot get
// memory for a new block (code 0x8007000E, out of memory).
#pragma once

#include "KrGeLExport.h"

class KRGEL_API KrsException {
public:
  explicit KrsException(unsigned code) : m_code(code) {}
  unsigned code() const { return m_code; }

  static constexpr unsigned kOutOfMemory = 0x8007000Eu;

private:
  unsigned m_code;
};

// Reports "E_CHECK_OUT_OF_MEMORY" and throws KrsException(kOutOfMemory).
[[noreturn]] KRGEL_API void KrsThrowOutOfMemory(const char* source, int line);
