#include "KrsStringW.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

std::wstring textOf(const KrsStringW& s) { return std::wstring(s.GetString(), static_cast<std::size_t>(s.GetLength())); }

template <class... Args>
std::wstring format(const wchar_t* pattern, Args... args) {
  KrsStringW s;
  s.Format(pattern, args...);
  EXPECT_EQ(static_cast<std::size_t>(s.GetLength()), std::wcslen(s.GetString()));
  return textOf(s);
}

}  // namespace

// "%s" and "%c" take wide arguments whatever the platform's wide printf does; the diagnostics
// tests cover the formats the library itself sends.
TEST(KrsStringW, Format_ConversionsMeanTheSameOnEveryPlatform) {
  EXPECT_EQ(format(L"[%s|%ls]", L"r\u00E9sum\u00E9", L"abc"), L"[r\u00E9sum\u00E9|abc]");
  EXPECT_EQ(format(L"<%hs> <%S>", "src", "exe"), L"<src> <exe>");
  EXPECT_EQ(format(L"%c%hc", L'x', 'y'), L"xy");
  EXPECT_EQ(format(L"[%4.2s|%-3s]", L"abcdef", L"a"), L"[  ab|a  ]");
  EXPECT_EQ(format(L"%X %d %#x 100%%", 0x8000FFFFu, -12, 31), L"8000FFFF -12 0x1f 100%");
}

TEST(KrsStringW, Format_TruncatesAt2047Characters) {
  for (const std::size_t length : {2046u, 2047u, 2048u, 2049u, 10000u}) {
    SCOPED_TRACE(length);
    std::wstring input(length, L'a');
    for (std::size_t i = 0; i < input.size(); i += 7) input[i] = static_cast<wchar_t>(L'0' + i % 10);
    EXPECT_EQ(format(L"%s", input.c_str()), input.substr(0, 2047));
  }
  // A character outside the 16-bit range is kept whole or dropped, never cut in half.
  const std::wstring clef = std::wstring(2046, L'a') + L"\U0001D11E";
  EXPECT_EQ(format(L"%s", clef.c_str()), sizeof(wchar_t) == 2 ? clef.substr(0, 2046) : clef);
}

TEST(KrsStringW, CopiesAreDeepAndEmptyIsShared) {
  KrsStringW original(L"normal", nullptr);
  KrsStringW copy(original);
  original.Format(L"changed %d", 1);
  EXPECT_EQ(textOf(copy), L"normal");
  copy = original;
  auto& alias = copy;
  copy = alias;
  EXPECT_EQ(textOf(copy), L"changed 1");

  const KrsStringW& empty = KrsGetEmptyStringW();
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(&KrsGetEmptyStringW(), &empty);
  EXPECT_STREQ(KrsStringW(nullptr, nullptr).GetString(), L"");
  KrsStringW cleared(L"x", nullptr);
  cleared.Format(nullptr);
  EXPECT_TRUE(cleared.IsEmpty());
  EXPECT_STREQ(cleared.GetString(), L"");
}
