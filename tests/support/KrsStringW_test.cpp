#include "KrsStringW.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

std::wstring textOf(const KrsStringW& s) { return std::wstring(s.GetString(), static_cast<std::size_t>(s.GetLength())); }

}  // namespace

TEST(KrsStringW, Format_ConversionsMeanTheSameOnEveryPlatform) {
  struct Row {
    const char* name;
    std::wstring expected;
    KrsStringW (*make)();
  };
  const Row rows[] = {
      {"%s is wide", L"WARNING 'r\u00E9sum\u00E9'",
       [] { KrsStringW s; s.Format(L"WARNING '%s'", L"r\u00E9sum\u00E9"); return s; }},
      {"%ls is wide too", L"[abc]", [] { KrsStringW s; s.Format(L"[%ls]", L"abc"); return s; }},
      {"%hs and %S are narrow", L"<src> <exe>",
       [] { KrsStringW s; s.Format(L"<%hs> <%S>", "src", "exe"); return s; }},
      {"%c wide, %hc narrow", L"xy", [] { KrsStringW s; s.Format(L"%c%hc", L'x', 'y'); return s; }},
      {"width and precision on strings", L"[  ab|abc]",
       [] { KrsStringW s; s.Format(L"[%4.2s|%-3s]", L"abcdef", L"abc"); return s; }},
      {"integers and hex", L"ERROR(8000FFFF) -12 0x1f",
       [] { KrsStringW s; s.Format(L"ERROR(%X) %d %#x", 0x8000FFFFu, -12, 31); return s; }},
      {"percent", L"100%", [] { KrsStringW s; s.Format(L"100%%"); return s; }},
      {"line and file", L"File: 'KrsTempl; Line: 42;\nDebug?",
       [] { KrsStringW s; s.Format(L"File: '%s; Line: %d;\nDebug?", L"KrsTempl", 42); return s; }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const KrsStringW s = row.make();
    EXPECT_EQ(textOf(s), row.expected);
    EXPECT_EQ(static_cast<std::size_t>(s.GetLength()), std::wcslen(s.GetString()));
  }
}

TEST(KrsStringW, Format_TruncatesAt2047Characters) {
  struct Row {
    std::size_t inputLength;
    std::size_t expectedLength;
  };
  const Row rows[] = {{2046, 2046}, {2047, 2047}, {2048, 2047}, {2049, 2047}, {10000, 2047}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.inputLength);
    std::wstring input(row.inputLength, L'a');
    for (std::size_t i = 0; i < input.size(); i += 7) input[i] = static_cast<wchar_t>(L'0' + i % 10);
    KrsStringW s;
    s.Format(L"%s", input.c_str());
    EXPECT_EQ(static_cast<std::size_t>(s.GetLength()), row.expectedLength);
    EXPECT_EQ(textOf(s), input.substr(0, row.expectedLength));
  }
  // The prefix of a longer format is kept as well.
  KrsStringW s;
  s.Format(L"WARNING '%s'", std::wstring(3000, L'z').c_str());
  EXPECT_EQ(textOf(s), (L"WARNING '" + std::wstring(3000, L'z')).substr(0, 2047));
}

TEST(KrsStringW, CopiesAreDeepAndEmptyIsShared) {
  KrsStringW original(L"normal", nullptr);
  KrsStringW copy(original);
  original.Format(L"changed %d", 1);
  EXPECT_EQ(textOf(copy), L"normal");
  EXPECT_EQ(textOf(original), L"changed 1");
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
  cleared.Format(L"");
  EXPECT_TRUE(cleared.IsEmpty());
  EXPECT_STREQ(cleared.GetString(), L"");
}
