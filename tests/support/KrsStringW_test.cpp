// The wide string of the diagnostics: conversions that mean the same on every platform, the cut
// at 2047 characters, deep copies and the shared empty string; and the block pool.
#include "KrsPlex.h"
#include "KrsStringW.h"
#include "testkit/TestKit.h"

namespace {

template <class... Args>
std::wstring format(const wchar_t* pattern, Args... args) {
  KrsStringW s;
  s.Format(pattern, args...);
  EXPECT_EQ(static_cast<std::size_t>(s.GetLength()), std::wcslen(s.GetString()));
  return s.GetString();
}

}  // namespace

// "%s" and "%c" take wide arguments whatever the platform's wide printf does.
TEST(KrsStringW, FormatConvertsAlikeEverywhereAndCutsAt2047Characters) {
  EXPECT_EQ(format(L"[%s|%ls]", L"r\u00E9sum\u00E9", L"abc"), L"[r\u00E9sum\u00E9|abc]");
  EXPECT_EQ(format(L"<%hs> <%S> %c%hc", "src", "exe", L'x', 'y'), L"<src> <exe> xy");
  EXPECT_EQ(format(L"[%4.2s|%-3s] %X %d %#x 100%%", L"abcdef", L"a", 0x8000FFFFu, -12, 31), L"[  ab|a  ] 8000FFFF -12 0x1f 100%");
  for (const std::size_t length : {2046u, 2047u, 2048u, 10000u}) {
    std::wstring input(length, L'a');
    for (std::size_t i = 0; i < input.size(); i += 7) input[i] = static_cast<wchar_t>(L'0' + i % 10);
    EXPECT_EQ(format(L"%s", input.c_str()), input.substr(0, 2047)) << length;
  }
  KrsStringW original(L"normal", nullptr), copy(original);
  original.Format(L"changed %d", 1);
  EXPECT_STREQ(copy.GetString(), L"normal");
  copy = original;
  const KrsStringW& alias = copy;
  copy = alias;
  EXPECT_STREQ(copy.GetString(), L"changed 1");
  EXPECT_EQ(&KrsGetEmptyStringW(), &KrsGetEmptyStringW());
  EXPECT_TRUE(KrsGetEmptyStringW().IsEmpty());
  copy.Format(nullptr);
  EXPECT_STREQ(copy.GetString(), L"");
}

// Blocks chain in front; nodes are usable; empty and overflowing sizes are refused and the chain
// kept (the sanitizer build checks that FreeDataChain frees everything).
TEST(KrsPlex, CreateChainsBlocksInFrontAndRefusesBadSizes) {
  KrsPlex* head = nullptr;
  KrsPlex* first = KrsPlex::Create(head, 4, sizeof(double) * 3);
  KrsPlex* second = KrsPlex::Create(head, 16, 8);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(head, second);
  EXPECT_EQ(second->pNext, first);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first->data()) % alignof(double), 0u);
  std::memset(first->data(), 0xAB, 4 * sizeof(double) * 3);
  const struct { std::size_t count, size; } rows[] = {{0, 8}, {8, 0}, {SIZE_MAX / 2, 4}, {SIZE_MAX, SIZE_MAX}};
  for (const auto& row : rows) {
    EXPECT_EQ(KrsPlex::Create(head, row.count, row.size), nullptr) << row.count;
    EXPECT_EQ(head, second);
  }
  head->FreeDataChain();
}
