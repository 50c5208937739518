// Knot vectors: multiplicity against each knot's own value versus the last kept one, both sides
// of the tolerance, editing, the reparametrisations, the split, and bad indices, ranges and
// multiplicities reported and ignored.
#include "testkit/TestKit.h"

using testkit::recordsOf;
using Knots = std::vector<double>;

namespace {

KrGeKnotVector knots(std::initializer_list<double> values, double tol = 1e-9) {
  KrGeKnotVector v(tol);
  for (double value : values) v.append(value);
  return v;
}

Knots values(const KrGeKnotVector& v) {
  Knots out;
  for (int i = 0; i < v.length(); ++i) out.push_back(v[i]);
  return out;
}

Knots distinct(const KrGeKnotVector& v) {
  KrsArray<double> out;
  v.getDistinctKnots(out);
  return Knots(out.GetData(), out.GetData() + out.GetSize());
}

}  // namespace

TEST(KrGeKnotVector, MultiplicityAgainstOwnValueDistinctAgainstLastKept) {
  const KrGeKnotVector clamped = knots({0, 0, 0, 1, 2, 2, 2}), chain = knots({0, 0.6e-9, 1.2e-9});
  const KrGeKnotVector edge = knots({1, 1.25, 1.75}, 0.25);  // exact binary distances at the tolerance
  const struct { const KrGeKnotVector& v; int index, multiplicity; } rows[] = {
      {clamped, 1, 3}, {clamped, 3, 1}, {clamped, 7, 0}, {clamped, -1, 0}, {chain, 0, 2}, {chain, 1, 3}, {edge, 0, 2}, {edge, 2, 1}};
  for (const auto& row : rows) EXPECT_EQ(row.v.multiplicityAt(row.index), row.multiplicity) << row.index;
  EXPECT_EQ(clamped.numIntervals(), 2);
  EXPECT_EQ(edge.numIntervals(), 1);
  EXPECT_EQ(distinct(clamped), (Knots{0, 1, 2}));
  EXPECT_EQ(distinct(chain), (Knots{0, 1.2e-9}));
  EXPECT_EQ(values(KrGeKnotVector(1, knots({0, 0, 1, 1}))), (Knots{0, 0, 0, 1, 1, 1}));
  EXPECT_EQ(values(KrGeKnotVector(0, knots({0, 0.5e-9, 1, 1 + 0.9e-9}))), (Knots{0, 0, 1, 1}));  // snapped
  EXPECT_EQ(KrGeKnotVector(1, knots({0, NAN, 1})).length(), 6);  // a NaN knot still ends its group
  testkit::repeat(20240611, 200, [](testkit::Random& random, int trial) {
    KrGeKnotVector v;
    double knot = 0;
    for (int i = 0; i < 1 + trial % 12; ++i) v.append(knot += std::floor(random.uniform(0, 3)) * 0.25);
    for (double x = -0.5; x <= knot + 0.5; x += 0.0625) {
      for (double probe : {x, x + 1e-9, x - 1e-9, x + 3e-9}) {
        bool expected = false;  // isOn by binary search against a linear scan
        for (int i = 0; i < v.length(); ++i) expected = expected || std::fabs(v[i] - probe) <= 1e-9;
        ASSERT_EQ(v.isOn(probe), expected) << probe;
      }
    }
  });
}

TEST(KrGeKnotVector, EditQueryAndReparametrise) {
  KrGeKnotVector v = knots({0, 1, 2});
  EXPECT_EQ(v.insert(1), 1);  // before the existing equal knot
  v.insertAt(1, 0.5, 2).removeAt(0).removeSubVector(3, 3);
  EXPECT_EQ(values(v), (Knots{0.5, 0.5, 1, 2}));
  const double raw[] = {0, 1, 3};
  v.set(3, raw, 0.5);
  EXPECT_EQ(v.tolerance(), 1e-9);  // the tolerance argument is ignored
  const int capacity = v.physicalLength();
  EXPECT_EQ(values(v.reverse()), (Knots{-3, -1, 0}));  // t -> -t
  EXPECT_EQ(v.physicalLength(), capacity);
  v.reverse().setRange(10, 20);
  EXPECT_EQ(v[0], 10.0);
  EXPECT_NEAR(v[1], 10 + 10.0 / 3, 1e-12);
  for (double bad : {5.0, 20.0, static_cast<double>(NAN)}) EXPECT_EQ(v.setRange(20, bad)[0], 10.0);
  EXPECT_TRUE(knots({0, 1}).contains(-100));  // not a range test
  EXPECT_FALSE(knots({1, 0}).contains(0.5));  // only a decreasing vector can answer false
  EXPECT_FALSE(knots({}).contains(0));
  EXPECT_FALSE(knots({0, 1}).isEqualTo(knots({0, 1}, 1e-8)));
  EXPECT_FALSE(knots({0, 1}).isEqualTo(knots({0, 1 + 1e-15})));
}

TEST(KrGeKnotVector, SplitSendsEveryFarKnotToTheHead) {
  const KrGeKnotVector v = knots({0, 0, 1, 2, 2.5, 3, 3});
  KrGeKnotVector head = knots({9, 9}), tail = knots({9});
  const auto records = recordsOf([&] { EXPECT_EQ(v.split(2, &head, 2, &tail, 3), 0); });
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004001L))", "KnotVector", 272));
  EXPECT_EQ(values(head), (Knots{0, 0, 1, 2, 2, 2.5, 3, 3}));
  EXPECT_EQ(values(tail), (Knots{2, 2, 2}));
  v.split(2.5 + 0.5e-9, &head, 0, nullptr, 1);  // a knot within the tolerance of param goes
  EXPECT_EQ(values(head), (Knots{0, 0, 1, 2, 3, 3}));
  // The head is what inserting its knots one by one with insert() gives, bit for bit, also with
  // NaNs, signed zeros, repeats and unsorted input (the naive insertions are the reference).
  std::mt19937 engine(977);
  const double pool[] = {NAN, -0.0, 0.0, 1, 1, 2, -3, 5, INFINITY, 0.5};
  for (int trial = 0; trial < 300; ++trial) {
    KrGeKnotVector source, split, expected;
    for (int n = engine() % 12; n > 0; --n) source.append(pool[engine() % 10]);
    const double param = pool[engine() % 10];
    const int multLast = engine() % 3, multFirst = engine() % 3;
    source.split(param, &split, multLast, trial % 2 ? nullptr : &split, multFirst);
    int i = 0;
    for (; i < source.length() && source[i] < param && std::fabs(param - source[i]) > 1e-9; ++i) expected.insert(source[i]);
    for (int k = multLast + (trial % 2 ? 0 : multFirst); k > 0; --k) expected.insert(param);
    for (; i < source.length(); ++i)
      if (source[i] > param && std::fabs(param - source[i]) > 1e-9) expected.insert(source[i]);
    ASSERT_EQ(split.length(), expected.length()) << "seed 977, trial " << trial;
    for (int k = 0; k < split.length(); ++k)
      ASSERT_EQ(std::memcmp(&split[k], &expected[k], sizeof(double)), 0) << "seed 977, trial " << trial << ", knot " << k;
  }
}

// Bad indices, ranges whose count does not fit an int, and multiplicities above 1024 are
// reported and change nothing; the operations that are not implemented report once.
TEST(KrGeKnotVector, BadArgumentsAreReportedAndIgnored) {
  const struct { const char* name; void (*run)(KrGeKnotVector&); const char* check; } rows[] = {
      {"range to INT_MAX", [](KrGeKnotVector& v) { v.removeSubVector(0, INT_MAX); }, "(nIndex + nCount <= m_nSize)"},
      {"range from INT_MIN", [](KrGeKnotVector& v) { v.removeSubVector(INT_MIN, 0); }, "(nIndex >= 0)"},
      {"range INT_MAX..INT_MIN", [](KrGeKnotVector& v) { v.removeSubVector(INT_MAX, INT_MIN); }, "(nCount >= 0)"},
      {"empty range", [](KrGeKnotVector& v) { v.removeSubVector(1, 0); }, nullptr},
      {"bad index", [](KrGeKnotVector& v) { v[-1] = 42.0; }, "(!isValid(i))"},
      {"insertion of 1025", [](KrGeKnotVector& v) { v.insertAt(0, 5.0, 1025); }, "(multiplicity>kMaxMultiplicity)"},
      {"raise by INT_MAX", [](KrGeKnotVector& v) { v = KrGeKnotVector(INT_MAX, v); }, "(plusMult>kMaxMultiplicity)"},
      {"growLength", [](KrGeKnotVector& v) { EXPECT_EQ(v.growLength(), 0); }, "(((HRESULT)0x80004001L))"},
      {"append", [](KrGeKnotVector& v) { KrGeKnotVector tail = knots({5}); v.append(tail, 0.5); }, "(((HRESULT)0x80004001L))"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeKnotVector v = knots({0, 1});
    const auto records = recordsOf([&] { row.run(v); });
    EXPECT_EQ(values(v), (Knots{0, 1}));
    if (!row.check) {
      EXPECT_TRUE(records.empty());
    } else {
      EXPECT_EQ(testkit::countAssertions(records, row.check), 1);
    }
  }
  KrGeInterval interval(2, 3);
  EXPECT_EQ(knots({0, 1}).getInterval(3, 0.5, interval), 0);
  EXPECT_EQ(interval.lowerBound(), 2.0);  // untouched
  EXPECT_EQ(knots({0, 1})[2], 0.0);  // a neutral value, not the array's bad address
}
