#include "KrsPlex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

TEST(KrsPlex, Create_ChainsBlocksInFrontAndNodesAreUsable) {
  KrsPlex* head = nullptr;
  KrsPlex* first = KrsPlex::Create(head, 4, sizeof(double) * 3);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(head, first);
  EXPECT_EQ(first->pNext, nullptr);
  KrsPlex* second = KrsPlex::Create(head, 16, 8);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(head, second);
  EXPECT_EQ(second->pNext, first);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first->data()) % alignof(double), 0u);
  std::memset(first->data(), 0xAB, 4 * sizeof(double) * 3);
  std::memset(second->data(), 0xCD, 16 * 8);
  head->FreeDataChain();  // frees both (the sanitizer build checks for leaks)
}

TEST(KrsPlex, Create_RefusesEmptyAndOverflowingSizesAndKeepsTheChain) {
  KrsPlex* head = nullptr;
  KrsPlex* block = KrsPlex::Create(head, 2, 8);
  ASSERT_NE(block, nullptr);
  const struct {
    std::size_t count, size;
  } rows[] = {{0, 8}, {8, 0}, {SIZE_MAX / 2, 4}, {SIZE_MAX, SIZE_MAX}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.count);
    EXPECT_EQ(KrsPlex::Create(head, row.count, row.size), nullptr);
    EXPECT_EQ(head, block);
  }
  head->FreeDataChain();
}
