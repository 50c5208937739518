#include "KrsArray.h"

#include "testkit/MonitorCapture.h"
#include "testkit/Process.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
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

template <class Array>
std::vector<double> valuesOf(const Array& array) {
  std::vector<double> values;
  for (int i = 0; i < array.GetSize(); ++i) values.push_back(array.GetData()[i].value);
  return values;
}

template <int N>
KrsArray<Item<N>> itemsOf(std::initializer_list<double> values) {
  KrsArray<Item<N>> array;
  for (const double v : values) {
    Item<N> item;
    item.value = v;
    array.Add(item);
  }
  return array;
}

// The one assertion record expected after an action, with its exact text from source "KrsTempl".
void expectSingleAssertion(const std::vector<Record>& records, const std::string& expression) {
  ASSERT_EQ(records.size(), 1u) << "expected one report of " << expression;
  EXPECT_EQ(records[0].source, "KrsTempl");
  EXPECT_EQ(records[0].message, testkit::assertionText(expression, "KrsTempl", static_cast<int>(records[0].line)));
  EXPECT_EQ(records[0].kind, kCheckKind);
  EXPECT_EQ(records[0].code, 190u);
}

void expectSelfInsertRecord(const Record& record, const std::string& text) {
  EXPECT_EQ(record.message, text);
  EXPECT_EQ(record.source, "KrsTempl");
  EXPECT_EQ(record.kind, kCheckKind);
  EXPECT_EQ(record.code, 25790u);
}

class KrsArrayTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(MonitorCapture::active());
    MonitorCapture::clear();
  }
};

}  // namespace

// ---- growth ------------------------------------------------------------------------------

struct GrowthRow {
  const char* name;
  int initialSize;
  int growBy;
  int newSize;
  int expectedCapacity;
};

TEST_F(KrsArrayTest, SetSize_GrowthFiguresForDoubles) {
  const GrowthRow rows[] = {
      {"5 fresh, then one more", 5, 0, 6, 15},
      {"1000 plus one", 1000, 0, 1001, 1500},
      {"400000 plus one: step capped at 1 MiB", 400000, 0, 400001, 400000 + 131072},
      {"small: step at least 10", 11, 0, 12, 21},
      {"far beyond the step: exactly the request", 100, 0, 1000, 1000},
      {"fixed step", 8, 7, 9, 15},
  };
  for (const GrowthRow& row : rows) {
    SCOPED_TRACE(row.name);
    KrsArray<double> values;
    values.SetSize(row.initialSize, row.growBy);
    EXPECT_EQ(values.GetMaxSize(), row.growBy > row.initialSize ? row.growBy : row.initialSize);
    values.SetSize(row.newSize);
    EXPECT_EQ(values.GetSize(), row.newSize);
    EXPECT_EQ(values.GetMaxSize(), row.expectedCapacity);
  }
}

TEST_F(KrsArrayTest, SetSize_StepFollowsSizeNotCapacityAndPointsCapAt43690) {
  KrsArray<double> values;
  values.SetSize(100);
  values.SetSize(3);  // capacity stays 100
  EXPECT_EQ(values.GetMaxSize(), 100);
  values.SetSize(101);  // step from size 3 is the minimum 10
  EXPECT_EQ(values.GetMaxSize(), 110);

  KrsArray<Item<0>> points;
  points.SetSize(200000);
  points.SetSize(200001);
  EXPECT_EQ(points.GetMaxSize(), 200000 + 43690);
}

TEST_F(KrsArrayTest, Add_KeepsEveryValueAcrossGrowthsAndAnswersTheIndex) {
  KrsArray<double> values;
  std::vector<double> expected;
  for (int i = 0; i < 20000; ++i) {
    const double v = i * 0.5 - 7.0;
    ASSERT_EQ(values.Add(v), i);
    expected.push_back(v);
  }
  ASSERT_EQ(values.GetSize(), 20000);
  EXPECT_EQ(std::memcmp(values.GetData(), expected.data(), expected.size() * sizeof(double)), 0);
  EXPECT_GE(values.GetMaxSize(), values.GetSize());
}

TEST_F(KrsArrayTest, SetSize_ZeroFillsNewElementsAndZeroFreesTheBlock) {
  KrsArray<Item<0>> points;
  points.SetSize(4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(points[i].value, 0.0);
  points[2].value = 9.0;
  points.SetSize(1);
  points.SetSize(3);  // re-constructed elements are zero again
  EXPECT_EQ(points[2].value, 0.0);
  points.RemoveAll();
  EXPECT_EQ(points.GetData(), nullptr);
  EXPECT_EQ(points.GetSize(), 0);
  EXPECT_EQ(points.GetMaxSize(), 0);
}

// ---- contract violations ----------------------------------------------------------------

TEST_F(KrsArrayTest, SetSize_NegativeLeavesArrayAsItWasAndAssertsOnce) {
  auto points = itemsOf<1>({1.0, 2.0, 3.0});
  const Item<1>* data = points.GetData();
  const int capacity = points.GetMaxSize();
  points.SetSize(-1);
  points.SetSize(-1000);
  EXPECT_EQ(points.GetData(), data);
  EXPECT_EQ(points.GetMaxSize(), capacity);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1.0, 2.0, 3.0}));
  expectSingleAssertion(MonitorCapture::drain(), "(nNewSize >= 0)");
}

TEST_F(KrsArrayTest, GetAt_OutsideYieldsTheInvalidAddressAndAssertsOnce) {
  KrsArray<double> values;
  values.SetSize(3);
  for (int pass = 0; pass < 2; ++pass) EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&values.GetAt(3)), kInvalid);
  expectSingleAssertion(MonitorCapture::drain(), "(nIndex >= 0 && nIndex < m_nSize)");

  // Every accessor, both sides of the range; the element inside stays addressable.
  const int indices[] = {-1, INT_MIN, 3, INT_MAX};
  for (const int index : indices) {
    SCOPED_TRACE(index);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&values.ElementAt(index)), kInvalid);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&values[index]), kInvalid);
  }
  EXPECT_EQ(&values[2], values.GetData() + 2);
  EXPECT_EQ(&values[0], values.GetData());

  KrsArray<double> empty;
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&empty.GetFirst()), kInvalid);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&empty.GetLast()), kInvalid);
}

TEST_F(KrsArrayTest, NegativeArguments_ChangeNothing) {
  auto points = itemsOf<2>({1.0, 2.0});
  Item<2> item;
  item.value = 5.0;
  points.SetAtGrow(-1, item);
  points.InsertAt(-1, item);
  points.InsertAt(0, item, -3);
  points.InsertAt(0, item, 0);
  points.RemoveAt(-1);
  points.RemoveAt(0, -1);
  points.RemoveAt(INT_MAX, 1);
  points.RemoveAt(1, INT_MAX);
  points.SetCapacity(-1);
  points.SetAt(-1, item);
  points.SetAt(2, item);
  EXPECT_EQ(points.Append(points.GetData(), -1), 0);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1.0, 2.0}));
}

// ---- self-insert -----------------------------------------------------------------------

TEST_F(KrsArrayTest, SetAtGrow_SelfInsertOnAFullArrayStoresTheValueAndReportsEveryTime) {
  auto points = itemsOf<3>({});
  points.SetSize(5, 0);  // full: size == capacity
  for (int i = 0; i < 5; ++i) points[i].value = 10.0 + i;
  ASSERT_EQ(points.GetSize(), points.GetMaxSize());
  MonitorCapture::clear();

  points.SetAtGrow(points.GetSize(), points[0]);  // the source block is moved by the growth
  EXPECT_EQ(points.Add(points[4]), 6);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{10, 11, 12, 13, 14, 10, 14}));

  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 2u);
  for (const Record& record : records)
    expectSelfInsertRecord(record, "KrsArray::SetAtGrow --- Self-insert, can cause problems !");
}

TEST_F(KrsArrayTest, SetAtGrow_OwnElementInsideTheArrayIsAPlainAssignment) {
  auto points = itemsOf<4>({1.0, 2.0, 3.0});
  points.SetAtGrow(0, points[2]);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{3.0, 2.0, 3.0}));
  points.SetAtGrow(5, points.GetData()[1]);  // past the end: pads with zeros
  EXPECT_EQ(valuesOf(points), (std::vector<double>{3.0, 2.0, 3.0, 0.0, 0.0, 2.0}));
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  expectSelfInsertRecord(records[0], "KrsArray::SetAtGrow --- Self-insert, can cause problems !");
}

TEST_F(KrsArrayTest, InsertAt_ShiftsTheTailAndCopiesASelfValueFirst) {
  auto points = itemsOf<5>({1.0, 2.0, 3.0});
  Item<5> item;
  item.value = 7.0;
  points.InsertAt(1, item, 2);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1, 7, 7, 2, 3}));
  points.InsertAt(7, item);  // past the end: zero padding, then the value
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1, 7, 7, 2, 3, 0, 0, 7}));
  EXPECT_TRUE(MonitorCapture::drain().empty());

  // The last element is inserted at the front: the shift overwrites its old place.
  points.InsertAt(0, points[7 - 1 + 1], 1);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{7, 1, 7, 7, 2, 3, 0, 0, 7}));
  points.InsertAt(2, points[4], 3);  // value 2.0 inserted three times before itself
  EXPECT_EQ(valuesOf(points), (std::vector<double>{7, 1, 2, 2, 2, 7, 7, 2, 3, 0, 0, 7}));
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 2u);
  for (const Record& record : records)
    expectSelfInsertRecord(record, "KrsArray::InsertAt --- Self-insert, can cause problems !");
}

TEST_F(KrsArrayTest, InsertAt_NegativeIndexAndCountAssertWithTheirTexts) {
  auto points = itemsOf<6>({1.0});
  Item<6> item;
  points.InsertAt(-2, item);
  expectSingleAssertion(MonitorCapture::drain(), "(nIndex >= 0)");
  points.InsertAt(0, item, 0);
  expectSingleAssertion(MonitorCapture::drain(), "(nCount > 0)");
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1.0}));
}

// ---- removal ---------------------------------------------------------------------------

TEST_F(KrsArrayTest, RemoveAt_ClosesTheGapAndKeepsCapacity) {
  KrsArray<int> values;
  for (int i = 0; i < 10; ++i) values.Add(i);
  const int capacity = values.GetMaxSize();
  values.RemoveAt(2, 3);
  values.RemoveAt(6);  // the last one
  values.RemoveAt(0, 0);
  const int expected[] = {0, 1, 5, 6, 7, 8};
  ASSERT_EQ(values.GetSize(), 6);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(values[i], expected[i]) << i;
  EXPECT_EQ(values.GetMaxSize(), capacity);
  values.RemoveAt(0, 6);
  EXPECT_EQ(values.GetSize(), 0);
  EXPECT_TRUE(MonitorCapture::drain().empty());
}

TEST_F(KrsArrayTest, RemoveAt_EachCheckHasItsOwnTextAndTheArrayStays) {
  auto a = itemsOf<7>({1, 2, 3});
  auto b = itemsOf<8>({1, 2, 3});
  auto c = itemsOf<9>({1, 2, 3});
  a.RemoveAt(-1, 1);
  expectSingleAssertion(MonitorCapture::drain(), "(nIndex >= 0)");
  b.RemoveAt(0, -1);
  expectSingleAssertion(MonitorCapture::drain(), "(nCount >= 0)");
  c.RemoveAt(2, 2);
  expectSingleAssertion(MonitorCapture::drain(), "(nIndex + nCount <= m_nSize)");
  c.RemoveAt(3, 1);  // the same site again: silent
  EXPECT_TRUE(MonitorCapture::drain().empty());
  EXPECT_EQ(valuesOf(a), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(valuesOf(b), (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(valuesOf(c), (std::vector<double>{1, 2, 3}));
}

// ---- append and copy -------------------------------------------------------------------

TEST_F(KrsArrayTest, Append_AnswersTheOldSizeAndCopiesInOrder) {
  auto target = itemsOf<10>({1, 2});
  const auto source = itemsOf<10>({3, 4, 5});
  EXPECT_EQ(target.Append(source), 2);
  EXPECT_EQ(valuesOf(target), (std::vector<double>{1, 2, 3, 4, 5}));
  EXPECT_EQ(target.Append(source.GetData(), 0), 0);
  KrsArray<Item<10>> empty;
  EXPECT_EQ(target.Append(empty), 0);
  EXPECT_EQ(target.GetSize(), 5);
  EXPECT_TRUE(MonitorCapture::drain().empty());
}

TEST_F(KrsArrayTest, Append_SelfAppendSurvivesTheMoveAndIsReported) {
  auto points = itemsOf<11>({});
  points.SetSize(4, 0);  // full, so appending reallocates the source block
  for (int i = 0; i < 4; ++i) points[i].value = i + 1.0;
  MonitorCapture::clear();
  EXPECT_EQ(points.Append(points), 4);
  EXPECT_EQ(points.Append(points.GetData() + 1, 2), 8);
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1, 2, 3, 4, 1, 2, 3, 4, 2, 3}));
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 2u);
  for (const Record& record : records)
    expectSelfInsertRecord(record, "KrsArray::Append --- Self-append, can cause problems !");
}

TEST_F(KrsArrayTest, Append_NegativeCountOrNullSourceAssertsAndChangesNothing) {
  auto points = itemsOf<12>({1});
  EXPECT_EQ(points.Append(points.GetData(), -4), 0);
  expectSingleAssertion(MonitorCapture::drain(), "(nCount<0)");
  EXPECT_EQ(points.Append(nullptr, 3), 0);
  expectSingleAssertion(MonitorCapture::drain(), "((IsBadReadPtr((const void*)(pArr), sizeof(*pArr)*nCount)))");
  EXPECT_EQ(valuesOf(points), (std::vector<double>{1}));
}

TEST_F(KrsArrayTest, Copy_IsDeepAndSelfAssignmentKeepsTheContents) {
  auto original = itemsOf<13>({1, 2, 3});
  KrsArray<Item<13>> copy(original);
  copy[0].value = 9.0;
  EXPECT_EQ(valuesOf(original), (std::vector<double>{1, 2, 3}));
  EXPECT_NE(copy.GetData(), original.GetData());
  KrsArray<Item<13>> assigned;
  assigned = copy;
  auto& alias = assigned;
  assigned = alias;
  EXPECT_EQ(valuesOf(assigned), (std::vector<double>{9, 2, 3}));
  assigned = KrsArray<Item<13>>();
  EXPECT_EQ(assigned.GetSize(), 0);
}

// ---- memory exhaustion -----------------------------------------------------------------

TEST_F(KrsArrayTest, SetSize_NewBlockThatCannotBeAllocatedReportsAndThrows) {
  KrsArray<Huge> blocks;
  try {
    blocks.SetSize(INT_MAX);
    FAIL() << "an allocation of 128 TiB succeeded";
  } catch (const KrsException& error) {
    EXPECT_EQ(error.code(), 0x8007000Eu);
  }
  EXPECT_EQ(blocks.GetSize(), 0);
  EXPECT_EQ(blocks.GetData(), nullptr);
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, "E_CHECK_OUT_OF_MEMORY");
  EXPECT_EQ(records[0].kind, kCheckKind);
  EXPECT_EQ(records[0].code, 190u);
}

TEST_F(KrsArrayTest, SetSize_FailedGrowthThrowsWithoutReportAndKeepsTheBlock) {
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

// ---- switches, in a host process whose lw.ini turns them on ---------------------------------

namespace {

// Runs the probe host beside a copy of the library whose lw.ini holds `settings`; answers the
// probe's reply to `command`.
std::string probeWithSettings(const std::string& settings, const std::string& command) {
  testkit::ScratchDir dir;
  if (!dir.ok() || !dir.copyLibrary() || !dir.write("lw.ini", settings)) return "<no scratch directory>";
  testkit::ChildProcess probe({{KRGEL_PROBE_HOST}, testkit::libraryEnvironment(dir, dir.file("no-monitor")), {}, -1});
  const std::string answer = probe.call(command);
  probe.closeInput();
  EXPECT_EQ(probe.wait(10000), 0);
  return answer;
}

}  // namespace

TEST(KrsArraySwitches, JumpArrOnAddMovesTheBlockOnEveryGrowth) {
  EXPECT_EQ(probeWithSettings("[lw]\nJumpArrOnAdd=1\n", "append 5000"), "growths=16 moves=16 intact=1");
}

TEST(KrsArraySwitches, JumpArrOnRemoveMovesTheBlockOnEveryRemoval) {
  EXPECT_EQ(probeWithSettings("[lw]\nJumpArrOnRemove=1\n", "remove 40"), "removals=39 moves=39 last=39");
  // Off: removal works in place.
  EXPECT_EQ(probeWithSettings("[lw]\n", "remove 40"), "removals=39 moves=0 last=39");
}

TEST(KrsArraySwitches, DefecateMemFillsReleasedAndUnconstructedMemoryWith0xFC) {
  EXPECT_EQ(probeWithSettings("[lw]\nDefecateMem=1\n", "defecate"), "shrink=1 remove=1 fresh=1 grown=1");
  EXPECT_EQ(probeWithSettings("[lw]\nDefecateMem=0\n", "defecate"), "shrink=0 remove=0 fresh=0 grown=0");
}
