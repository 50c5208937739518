// The growable array: its specified growth, the checks that report once per site and change
// nothing, self-insertion, editing in place, out of memory, and the switches of lw.ini.
#include "support/ProbeSession.h"
#include "testkit/TestKit.h"

using namespace testkit;

namespace {

// Every instantiation has its own check sites, and each site reports once per process: a test
// that watches an assertion uses an element type of its own.
template <int N>
struct Item {
  double value = 0.0;
  double pad[2] = {0.0, 0.0};  // 24 bytes, the size of a 3D point
};

struct Huge {
  unsigned char bytes[65536];  // INT_MAX of these is more than any address space
};

constexpr std::uintptr_t kInvalid = 0xFDFD2006u;
using Values = std::vector<double>;

template <class Array>
Values valuesOf(const Array& array) {
  Values values;
  for (int i = 0; i < array.GetSize(); ++i) values.push_back(array.GetData()[i].value);
  return values;
}

template <int N>
KrsArray<Item<N>> itemsOf(std::initializer_list<double> values) {
  KrsArray<Item<N>> array;
  for (const double v : values) array.Add(Item<N>{v, {0.0, 0.0}});
  return array;
}

// A full array (size == capacity) holding 10, 11, ...: the next growth moves the block.
template <int N>
KrsArray<Item<N>> fullArray(int size) {
  KrsArray<Item<N>> array;
  array.SetSize(size, 0);
  for (int i = 0; i < size; ++i) array[i].value = 10.0 + i;
  return array;
}

}  // namespace

// Half the size, at least 10 and at most one megabyte of elements; new elements are zero.
TEST(KrsArray, SetSize_SpecifiedGrowthAndZeroedElements) {
  const struct { int first, second, capacity; } rows[] = {{5, 6, 15}, {1000, 1001, 1500}, {400000, 400001, 400000 + 131072}};
  for (const auto& row : rows) {
    KrsArray<double> values;
    values.SetSize(row.first, 0);
    values.SetSize(row.second);
    EXPECT_EQ(values.GetMaxSize(), row.capacity) << row.first;
  }
  KrsArray<Item<0>> points;
  points.SetSize(4);
  points[2].value = 9.0;
  points.SetSize(1);
  points.SetSize(3);  // re-constructed elements are zero again
  EXPECT_EQ(valuesOf(points), (Values{0, 0, 0}));
  points.RemoveAll();
  EXPECT_EQ(points.GetData(), nullptr);
}

// Each row violates its checks twice on an array of {1, 2, 3}: one report per check site, the
// exact text from source "KrsTempl", and the array as it was.
TEST(KrsArray, Violations_ReportOncePerSiteAndChangeNothing) {
  const auto twice = [](auto array, auto action) {
    return std::function<Values()>([array, action]() mutable {
      action(array);
      action(array);
      return valuesOf(array);
    });
  };
  const struct { const char* text; std::size_t sites; std::function<Values()> run; } rows[] = {
      {"(nNewSize >= 0)", 1, twice(itemsOf<1>({1, 2, 3}), [](auto& a) { a.SetSize(-1); a.SetSize(-1000); })},
      {"(nIndex >= 0 && nIndex < m_nSize)", 3, twice(itemsOf<2>({1, 2, 3}), [](auto& a) {
         const auto& view = a;
         for (const int index : {-1, INT_MIN, 3, INT_MAX}) EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&view.GetAt(index)), kInvalid);
         EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&a[INT_MAX]), kInvalid);
         a.SetAt(3, a[0]);
       })},
      {"(m_nSize<=0)", 2, twice(itemsOf<13>({1, 2, 3}), [](auto& a) {
         const std::decay_t<decltype(a)> empty;
         EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&empty.GetFirst()), kInvalid);
         EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&empty.GetLast()), kInvalid);
         EXPECT_EQ(&a.GetLast(), a.GetData() + 2);
       })},
      {"(nIndex >= 0)", 3, twice(itemsOf<3>({1, 2, 3}), [](auto& a) {
         a.SetAtGrow(-1, a[0]);
         a.InsertAt(-2, a[0]);
         a.RemoveAt(-1, 1);
       })},
      {"(nCount > 0)", 1, twice(itemsOf<4>({1, 2, 3}), [](auto& a) { a.InsertAt(0, a[0], 0); a.InsertAt(0, a[0], -3); })},
      {"(nCount >= 0)", 1, twice(itemsOf<5>({1, 2, 3}), [](auto& a) { a.RemoveAt(0, -1); })},
      {"(nIndex + nCount <= m_nSize)", 1, twice(itemsOf<6>({1, 2, 3}), [](auto& a) { a.RemoveAt(2, 2); a.RemoveAt(1, INT_MAX); })},
      {"(nCount<0)", 1, twice(itemsOf<7>({1, 2, 3}), [](auto& a) { EXPECT_EQ(a.Append(a.GetData(), -4), 0); })},
      {"((IsBadReadPtr((const void*)(pArr), sizeof(*pArr)*nCount)))", 1,
       twice(itemsOf<8>({1, 2, 3}), [](auto& a) { EXPECT_EQ(a.Append(nullptr, 3), 0); })},
      {"(nNewMax >= 0)", 1, twice(itemsOf<9>({1, 2, 3}), [](auto& a) { a.SetCapacity(-1); })},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    Values values;
    const auto records = recordsOf([&] { values = row.run(); });
    EXPECT_EQ(values, (Values{1, 2, 3}));
    ASSERT_EQ(records.size(), row.sites);
    for (const Record& record : records) {
      EXPECT_EQ(record.message, assertionText(row.text, "KrsTempl", static_cast<int>(record.line)));
      EXPECT_EQ(record.code, 190u);
    }
  }
}

// A value taken from the array itself must survive the growth that moves the block and the shift
// that overwrites its old place; every such call is reported, with the container's own text.
TEST(KrsArray, SelfInsert_StoresTheRightValueAndReportsEveryTime) {
  const auto expectReports = [](auto action, const char* text, std::size_t count) {
    const auto records = recordsOf(action);
    EXPECT_EQ(countMessage(records, text), static_cast<int>(count)) << text;
    EXPECT_EQ(records.size(), count);
  };
  auto grown = fullArray<10>(5);
  expectReports([&] {
    grown.SetAtGrow(grown.GetSize(), grown[0]);
    EXPECT_EQ(grown.Add(grown[4]), 6);
    grown.SetAtGrow(0, grown[2]);            // inside the array: a plain assignment, not reported
    grown.SetAtGrow(9, grown.GetData()[1]);  // past the end: pads with zeros
  }, "KrsArray::SetAtGrow --- Self-insert, can cause problems !", 3);
  EXPECT_EQ(valuesOf(grown), (Values{12, 11, 12, 13, 14, 10, 14, 0, 0, 11}));
  auto shifted = fullArray<10>(3);
  expectReports([&] {
    shifted.InsertAt(0, shifted[2], 1);  // the shift overwrites the value's old place
    shifted.InsertAt(1, shifted[2], 3);  // 11 inserted three times before itself
  }, "KrsArray::InsertAt --- Self-insert, can cause problems !", 2);
  EXPECT_EQ(valuesOf(shifted), (Values{12, 11, 11, 11, 10, 11, 12}));
  auto appended = fullArray<10>(4);
  expectReports([&] {
    EXPECT_EQ(appended.Append(appended), 4);
    EXPECT_EQ(appended.Append(appended.GetData() + 1, 2), 8);
  }, "KrsArray::Append --- Self-append, can cause problems !", 2);
  EXPECT_EQ(valuesOf(appended), (Values{10, 11, 12, 13, 10, 11, 12, 13, 11, 12}));
}

TEST(KrsArray, EditInPlaceCopyDeepAndRunOutOfMemory) {
  auto items = itemsOf<11>({1, 2, 3});
  const auto quiet = recordsOf([&] {
    items.InsertAt(1, Item<11>{7.0, {0.0, 0.0}}, 2);
    items.InsertAt(7, Item<11>{7.0, {0.0, 0.0}});  // past the end: zero padding, then the value
    EXPECT_EQ(valuesOf(items), (Values{1, 7, 7, 2, 3, 0, 0, 7}));
    const int capacity = items.GetMaxSize();
    items.RemoveAt(2, 3);
    items.RemoveAt(4);  // the last one
    items.RemoveAt(0, 0);
    EXPECT_EQ(items.GetMaxSize(), capacity);
    EXPECT_EQ(items.Append(itemsOf<11>({3, 4})), 4);
    items.SetAtGrow(INT_MAX, Item<11>{5.0, {0.0, 0.0}});  // its size would pass INT_MAX: ignored
    EXPECT_EQ(valuesOf(items), (Values{1, 7, 0, 0, 3, 4}));
  });
  EXPECT_TRUE(quiet.empty());
  KrsArray<Item<11>> copy(items), assigned;
  copy[0].value = 9.0;
  assigned = copy;
  const auto& alias = assigned;
  assigned = alias;
  EXPECT_EQ(valuesOf(items).front(), 1.0);
  EXPECT_EQ(valuesOf(assigned).front(), 9.0);
  KrsArray<Huge> fresh, blocks;
  const auto records = recordsOf([&] {
    EXPECT_THROW(fresh.SetSize(INT_MAX), KrsException);
    blocks.SetSize(2);
    blocks[1].bytes[100] = 42;
    try {
      blocks.SetSize(INT_MAX);  // a failed growth keeps the block and says nothing
      ADD_FAILURE() << "an allocation of 128 TiB succeeded";
    } catch (const KrsException& error) {
      EXPECT_EQ(error.code(), 0x8007000Eu);
    }
  });
  EXPECT_EQ(fresh.GetData(), nullptr);
  EXPECT_EQ(blocks.GetMaxSize(), 2);
  EXPECT_EQ(blocks[1].bytes[100], 42);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, "E_CHECK_OUT_OF_MEMORY");
}

// The switches, in a host process whose lw.ini turns them on (or leaves them off).
TEST(KrsArray, SwitchesMoveOrFillTheBlockAsTheSettingsSay) {
  const struct { const char* settings; const char* command; const char* expected; } rows[] = {
      {"[lw]\nJumpArrOnAdd=1\n", "append 5000", "growths=16 moves=16 intact=1"},
      {"[lw]\nJumpArrOnRemove=1\n", "remove 40", "removals=39 moves=39 last=39"},
      {"[lw]\n", "remove 40", "removals=39 moves=0 last=39"},
      {"[lw]\nDefecateMem=1\n", "defecate", "shrink=1 remove=1 fresh=1 grown=1"},
  };
  for (const auto& row : rows) {
    probe::Session session({row.settings, true, false});
    EXPECT_EQ(session.call(row.command), row.expected) << row.settings;
    EXPECT_EQ(session.quit(), 0);
  }
}
