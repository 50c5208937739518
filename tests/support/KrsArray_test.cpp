#include "KrsArray.h"

#include "testkit/MonitorCapture.h"
#if defined(_WIN32)
#include "testkit/win32/WindowsKit.h"
#else
#include "testkit/Process.h"
#endif

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

using testkit::MonitorCapture;
using testkit::Record;

namespace {

// Every instantiation has its own check sites, and each site reports once per process: a test
// that watches an assertion uses an element type of its own.
template <int N>
struct Item {
  double value = 0.0;
  double pad[2] = {0.0, 0.0};  // 24 bytes, the size of a 3D point
};
static_assert(sizeof(Item<0>) == 24, "items stand in for 3D points");

struct Huge {
  unsigned char bytes[65536];  // INT_MAX of these is more than any address space
};

constexpr std::uintptr_t kInvalid = 0xFDFD2006u;
constexpr unsigned kCheckKind = 0x08040100u;
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

template <class Action>
void expectReports(Action action, const char* text, std::size_t count, unsigned code = 25790u) {
  MonitorCapture::clear();
  action();
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), count) << text;
  for (const Record& record : records) {
    EXPECT_EQ(record.message, text);
    EXPECT_EQ(record.source, "KrsTempl");
    EXPECT_EQ(record.kind, kCheckKind);
    EXPECT_EQ(record.code, code);
  }
}

}  // namespace

TEST(KrsArray, SetSize_GrowthFigures) {
  const struct {
    const char* name;
    std::vector<int> sizes;  // successive SetSize calls on one fresh array of doubles
    int growBy;
    int capacity;
  } rows[] = {
      {"5 fresh, then one more", {5, 6}, 0, 15},
      {"1000 plus one", {1000, 1001}, 0, 1500},
      {"400000 plus one: step capped at 1 MiB", {400000, 400001}, 0, 400000 + 131072},
      {"far beyond the step: exactly the request", {100, 1000}, 0, 1000},
      {"fixed step", {8, 9}, 7, 15},
      {"fresh block takes the larger of size and step", {3}, 8, 8},
      {"step follows the size, not the capacity", {100, 3, 101}, 0, 110},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrsArray<double> values;
    values.SetSize(row.sizes[0], row.growBy);
    for (std::size_t i = 1; i < row.sizes.size(); ++i) values.SetSize(row.sizes[i]);
    EXPECT_EQ(values.GetSize(), row.sizes.back());
    EXPECT_EQ(values.GetMaxSize(), row.capacity);
  }
  KrsArray<Item<0>> points;
  points.SetSize(200000);
  points.SetSize(200001);
  EXPECT_EQ(points.GetMaxSize(), 200000 + 43690);
}

TEST(KrsArray, SetSize_ZeroFillsNewElementsAndZeroFreesTheBlock) {
  KrsArray<Item<0>> points;
  points.SetSize(4);
  points[2].value = 9.0;
  points.SetSize(1);
  points.SetSize(3);  // re-constructed elements are zero again
  EXPECT_EQ(valuesOf(points), (Values{0, 0, 0}));
  points.RemoveAll();
  EXPECT_EQ(points.GetData(), nullptr);
  EXPECT_EQ(points.GetMaxSize(), 0);
}

// Each row violates its checks twice on an array of {1, 2, 3}: one report per check site, the
// exact text from source "KrsTempl", and the array as it was.
TEST(KrsArray, Violations_ReportOncePerSiteAndChangeNothing) {
  ASSERT_TRUE(MonitorCapture::active());
  struct Row {
    const char* text;
    std::size_t sites;
    std::function<Values()> run;
  };
  const auto twice = [](auto array, auto action) {
    return [array, action]() mutable {
      action(array);
      action(array);
      return valuesOf(array);
    };
  };
  const Row rows[] = {
      {"(nNewSize >= 0)", 1, twice(itemsOf<1>({1, 2, 3}), [](auto& a) { a.SetSize(-1); a.SetSize(-1000); })},
      {"(nIndex >= 0 && nIndex < m_nSize)", 3, twice(itemsOf<2>({1, 2, 3}), [](auto& a) {
         const auto& view = a;
         for (const int index : {-1, INT_MIN, 3, INT_MAX}) {
           EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&view.GetAt(index)), kInvalid);
           EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&a[index]), kInvalid);
         }
         EXPECT_EQ(&a[2], a.GetData() + 2);
         a.SetAt(-1, a[0]);
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
      {"(nIndex + nCount <= m_nSize)", 1, twice(itemsOf<6>({1, 2, 3}), [](auto& a) {
         a.RemoveAt(2, 2);
         a.RemoveAt(INT_MAX, 1);
         a.RemoveAt(1, INT_MAX);
       })},
      {"(nCount<0)", 1, twice(itemsOf<7>({1, 2, 3}), [](auto& a) { EXPECT_EQ(a.Append(a.GetData(), -4), 0); })},
      {"((IsBadReadPtr((const void*)(pArr), sizeof(*pArr)*nCount)))", 1,
       twice(itemsOf<8>({1, 2, 3}), [](auto& a) { EXPECT_EQ(a.Append(nullptr, 3), 0); })},
      {"(nNewMax >= 0)", 1, twice(itemsOf<9>({1, 2, 3}), [](auto& a) { a.SetCapacity(-1); })},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    MonitorCapture::clear();
    EXPECT_EQ(row.run(), (Values{1, 2, 3}));
    const auto records = MonitorCapture::drain();
    ASSERT_EQ(records.size(), row.sites);
    for (const Record& record : records) {
      EXPECT_EQ(record.source, "KrsTempl");
      EXPECT_EQ(record.message, testkit::assertionText(row.text, "KrsTempl", static_cast<int>(record.line)));
      EXPECT_EQ(record.kind, kCheckKind);
      EXPECT_EQ(record.code, 190u);
    }
  }
}

// A value taken from the array itself must survive the growth that moves the block and the shift
// that overwrites its old place; every such call is reported.
TEST(KrsArray, SelfInsert_StoresTheRightValueAndReportsEveryTime) {
  auto grown = fullArray<10>(5);
  expectReports([&] {
    grown.SetAtGrow(grown.GetSize(), grown[0]);
    EXPECT_EQ(grown.Add(grown[4]), 6);
    grown.SetAtGrow(0, grown[2]);  // inside the array: a plain assignment, not reported
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

TEST(KrsArray, InsertRemoveAppend_EditInPlace) {
  MonitorCapture::clear();
  auto items = itemsOf<11>({1, 2, 3});
  const Item<11> seven{7.0, {0.0, 0.0}};
  items.InsertAt(1, seven, 2);
  items.InsertAt(7, seven);  // past the end: zero padding, then the value
  EXPECT_EQ(valuesOf(items), (Values{1, 7, 7, 2, 3, 0, 0, 7}));
  const int capacity = items.GetMaxSize();
  items.RemoveAt(2, 3);
  items.RemoveAt(4);  // the last one
  items.RemoveAt(0, 0);
  EXPECT_EQ(valuesOf(items), (Values{1, 7, 0, 0}));
  EXPECT_EQ(items.GetMaxSize(), capacity);
  const auto tail = itemsOf<11>({3, 4});
  EXPECT_EQ(items.Append(tail), 4);
  EXPECT_EQ(items.Append(KrsArray<Item<11>>()), 0);
  EXPECT_EQ(valuesOf(items), (Values{1, 7, 0, 0, 3, 4}));
  items.RemoveAt(0, 6);
  EXPECT_EQ(items.GetSize(), 0);
  EXPECT_TRUE(MonitorCapture::drain().empty());
}

TEST(KrsArray, Copy_IsDeepAndSelfAssignmentKeepsTheContents) {
  auto original = itemsOf<12>({1, 2, 3});
  KrsArray<Item<12>> copy(original);
  copy[0].value = 9.0;
  EXPECT_EQ(valuesOf(original), (Values{1, 2, 3}));
  KrsArray<Item<12>> assigned;
  assigned = copy;
  auto& alias = assigned;
  assigned = alias;
  EXPECT_EQ(valuesOf(assigned), (Values{9, 2, 3}));
  assigned = KrsArray<Item<12>>();
  EXPECT_EQ(assigned.GetSize(), 0);
}

TEST(KrsArray, SetSize_OutOfMemory) {
  KrsArray<Huge> fresh;
  expectReports([&] {
    try {
      fresh.SetSize(INT_MAX);
      ADD_FAILURE() << "an allocation of 128 TiB succeeded";
    } catch (const KrsException& error) {
      EXPECT_EQ(error.code(), 0x8007000Eu);
    }
  }, "E_CHECK_OUT_OF_MEMORY", 1, 190u);
  EXPECT_EQ(fresh.GetData(), nullptr);

  KrsArray<Huge> blocks;
  blocks.SetSize(2);
  blocks[1].bytes[100] = 42;
  const Huge* data = blocks.GetData();
  EXPECT_THROW(blocks.SetSize(INT_MAX), KrsException);
  EXPECT_EQ(blocks.GetSize(), 2);
  EXPECT_EQ(blocks.GetMaxSize(), 2);
  EXPECT_EQ(blocks.GetData(), data);
  EXPECT_EQ(blocks[1].bytes[100], 42);
  EXPECT_TRUE(MonitorCapture::drain().empty());
}

// The switches, in a host process whose lw.ini turns them on (or leaves them off).
TEST(KrsArraySwitches, MoveOrFillTheBlockAsTheSettingsSay) {
  const struct {
    const char* settings;
    const char* command;
    const char* expected;
  } rows[] = {
      {"[lw]\nJumpArrOnAdd=1\n", "append 5000", "growths=16 moves=16 intact=1"},
      {"[lw]\nJumpArrOnRemove=1\n", "remove 40", "removals=39 moves=39 last=39"},
      {"[lw]\n", "remove 40", "removals=39 moves=0 last=39"},
      {"[lw]\nDefecateMem=1\n", "defecate", "shrink=1 remove=1 fresh=1 grown=1"},
      {"[lw]\nDefecateMem=0\n", "defecate", "shrink=0 remove=0 fresh=0 grown=0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.settings);
    testkit::ScratchDir dir;
    ASSERT_TRUE(dir.ok() && dir.copyLibrary() && dir.write("lw.ini", row.settings));
#if defined(_WIN32)  // the loader takes the library beside the program
    testkit::ChildProcess probe({dir.copyProgram("krgel_probe_host.exe")});
#else
    testkit::ChildProcess probe({{KRGEL_PROBE_HOST}, testkit::libraryEnvironment(dir, dir.file("no-monitor")), {}, -1});
#endif
    EXPECT_EQ(probe.call(row.command), row.expected);
    probe.closeInput();
    EXPECT_EQ(probe.wait(10000), 0);
  }
}
