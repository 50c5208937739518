// Wide-character string used to build diagnostic texts.
#pragma once

#include "KrGeLExport.h"

#include <cstddef>

class KRGEL_API KrsStringW {
public:
  KrsStringW();
  KrsStringW(const KrsStringW& other);
  // `instance` names a resource module on platforms that have them; null takes the text as it is.
  KrsStringW(const wchar_t* text, void* instance);
  ~KrsStringW();
  KrsStringW& operator=(const KrsStringW& other);

  // printf-style formatting into at most 2047 characters (longer output is truncated). As in the
  // rest of the library, "%s" takes a wide string; "%hs" takes a narrow one.
  void Format(const wchar_t* format, ...);

  const wchar_t* GetString() const { return m_text; }
  int GetLength() const { return m_length; }
  bool IsEmpty() const { return m_length == 0; }

  static constexpr int kMaxFormatted = 2048;

private:
  void assign(const wchar_t* text, int length);

  wchar_t* m_text;  // never null; points at the shared empty text when empty
  int m_length;
};

// The shared empty string.
KRGEL_API const KrsStringW& KrsGetEmptyStringW();
