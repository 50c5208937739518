#include "KrsStringW.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>

namespace {

wchar_t g_emptyText[1] = {L'\0'};

// The C library's wide printf reads "%s" and "%c" as narrow arguments on POSIX systems and in
// MinGW's runtime, as wide ones in Microsoft's; the library's formats mean wide ones (and "%hs" /
// "%hc" narrow ones). Every conversion is rewritten with an explicit width ("%ls", "%hs"), which
// all of them read alike.
void portableFormat(const wchar_t* format, wchar_t* out, std::size_t capacity) {
  std::size_t n = 0;
  auto put = [&](wchar_t c) {
    if (n + 1 < capacity) out[n++] = c;
  };
  for (const wchar_t* p = format; *p;) {
    if (*p != L'%') {
      put(*p++);
      continue;
    }
    put(*p++);
    if (*p == L'%') {
      put(*p++);
      continue;
    }
    while (*p && std::wcschr(L"-+ #0123456789.*", *p)) put(*p++);
    bool narrow = false, wide = false;
    if (*p == L'h' && (p[1] == L's' || p[1] == L'c')) {
      narrow = true;
      ++p;
    } else if (*p == L'l' && (p[1] == L's' || p[1] == L'c')) {
      wide = true;
      ++p;
    }
    if (*p == L's' || *p == L'c') {
      put(narrow && !wide ? L'h' : L'l');
    } else if (*p == L'S' || *p == L'C') {  // the opposite width, narrow here
      put(L'h');
      put(*p == L'S' ? L's' : L'c');
      ++p;
      continue;
    }
    if (*p) put(*p++);
  }
  out[n] = L'\0';
}

}  // namespace

KrsStringW::KrsStringW() : m_text(g_emptyText), m_length(0) {}

KrsStringW::KrsStringW(const KrsStringW& other) : KrsStringW() { assign(other.m_text, other.m_length); }

KrsStringW::KrsStringW(const wchar_t* text, void* /*instance*/) : KrsStringW() {
  if (text) assign(text, static_cast<int>(std::wcslen(text)));
}

KrsStringW::~KrsStringW() {
  if (m_text != g_emptyText) std::free(m_text);
}

KrsStringW& KrsStringW::operator=(const KrsStringW& other) {
  if (this != &other) assign(other.m_text, other.m_length);
  return *this;
}

void KrsStringW::assign(const wchar_t* text, int length) {
  if (length <= 0) {
    if (m_text != g_emptyText) std::free(m_text);
    m_text = g_emptyText;
    m_length = 0;
    return;
  }
  auto* copy = static_cast<wchar_t*>(std::malloc((static_cast<std::size_t>(length) + 1) * sizeof(wchar_t)));
  if (!copy) return;  // keep the present text
  std::memcpy(copy, text, static_cast<std::size_t>(length) * sizeof(wchar_t));
  copy[length] = L'\0';
  if (m_text != g_emptyText) std::free(m_text);
  m_text = copy;
  m_length = length;
}

void KrsStringW::Format(const wchar_t* format, ...) {
  if (!format) {
    assign(nullptr, 0);
    return;
  }
  // Formats are short texts; one longer than the output limit could only produce truncated
  // output anyway. Both buffers are bounded: a report may run on a thread with a small stack.
  wchar_t portable[kMaxFormatted];
  portableFormat(format, portable, sizeof portable / sizeof portable[0]);
  wchar_t buffer[kMaxFormatted];
  buffer[0] = L'\0';
  std::va_list args;
  va_start(args, format);
  std::vswprintf(buffer, kMaxFormatted, portable, args);
  va_end(args);
  // On overflow the C library may leave the buffer unterminated: keep the first 2047 characters,
  // and with 16-bit characters never the first half of a surrogate pair alone.
  buffer[kMaxFormatted - 1] = L'\0';
  std::size_t length = std::wcslen(buffer);
  if (sizeof(wchar_t) == 2 && length == kMaxFormatted - 1 && buffer[length - 1] >= 0xD800 && buffer[length - 1] < 0xDC00)
    --length;
  assign(buffer, static_cast<int>(length));
}

const KrsStringW& KrsGetEmptyStringW() {
  static const KrsStringW empty;
  return empty;
}
