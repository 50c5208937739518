// The data conventions of the POSIX platform layer: narrow texts are UTF-8, where a byte that
// does not decode stands for itself (Latin-1), and memory cannot be probed for readability.
#include "support/KrsPlatform.h"

namespace KrsPlatform {

void widenNarrowText(const char* text, wchar_t* out, std::size_t capacity) {
  if (capacity == 0) return;
  std::size_t n = 0;
  const auto* s = reinterpret_cast<const unsigned char*>(text ? text : "");
  while (*s && n + 1 < capacity) {
    unsigned long cp = *s;
    int extra = cp >= 0xF0 && cp < 0xF8 ? 3 : cp >= 0xE0 ? 2 : cp >= 0xC0 ? 1 : 0;
    if (cp >= 0xF8) extra = 0;
    bool valid = extra > 0;
    for (int k = 1; valid && k <= extra; ++k) valid = (s[k] & 0xC0) == 0x80;
    if (valid) {
      cp &= 0x3Fu >> extra;
      for (int k = 1; k <= extra; ++k) cp = (cp << 6) | (s[k] & 0x3F);
      s += extra + 1;
    } else {
      ++s;
    }
    if (sizeof(wchar_t) == 2 && cp >= 0x10000) {
      if (n + 2 >= capacity) break;
      cp -= 0x10000;
      out[n++] = static_cast<wchar_t>(0xD800 + (cp >> 10));
      cp = 0xDC00 + (cp & 0x3FF);
    }
    out[n++] = static_cast<wchar_t>(cp);
  }
  out[n] = L'\0';
}

bool isReadable(const void* block, std::size_t bytes) { return bytes == 0 || block != nullptr; }

}  // namespace KrsPlatform
