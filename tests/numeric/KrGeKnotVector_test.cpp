#include "KrGeKnotVector.h"

#include "KrGeInterval.h"
#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

using testkit::MonitorCapture;
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

template <class Action>
void expectNotImplemented(Action action, int line) {
  MonitorCapture::clear();
  action();
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u) << line;
  EXPECT_EQ(records[0].message, testkit::assertionText("(((HRESULT)0x80004001L))", "KnotVector", line));
}

}  // namespace

TEST(KrGeKnotVector, Multiplicity_OwnValueVersusLastKept) {
  const KrGeKnotVector clamped = knots({0, 0, 0, 1, 2, 2, 2});
  EXPECT_EQ(clamped.multiplicityAt(1), 3);
  EXPECT_EQ(clamped.multiplicityAt(3), 1);
  EXPECT_EQ(clamped.multiplicityAt(7), 0);
  EXPECT_EQ(clamped.numIntervals(), 2);
  EXPECT_EQ(distinct(clamped), (Knots{0, 1, 2}));
  // A chain of knots each within the tolerance of its neighbour.
  const KrGeKnotVector chain = knots({0, 0.6e-9, 1.2e-9});
  EXPECT_EQ(chain.multiplicityAt(0), 2);
  EXPECT_EQ(chain.multiplicityAt(1), 3);
  EXPECT_EQ(distinct(chain), (Knots{0, 1.2e-9}));
  // Both sides of the tolerance, with exact binary distances.
  const KrGeKnotVector edge = knots({1, 1.25, 1.75}, 0.25);
  EXPECT_EQ(edge.multiplicityAt(0), 2);
  EXPECT_EQ(edge.multiplicityAt(2), 1);
  EXPECT_EQ(edge.numIntervals(), 1);
}

TEST(KrGeKnotVector, Construct_RaisedMultiplicitySnapsGroups) {
  EXPECT_EQ(values(KrGeKnotVector(1, knots({0, 0, 1, 1}))), (Knots{0, 0, 0, 1, 1, 1}));
  EXPECT_EQ(values(KrGeKnotVector(0, knots({0, 0.5e-9, 1, 1 + 0.9e-9}))), (Knots{0, 0, 1, 1}));
  EXPECT_EQ(values(KrGeKnotVector(-3, knots({0, 2}))), (Knots{0, 2}));
  EXPECT_EQ(KrGeKnotVector(1, knots({0, 1}, 0.5)).tolerance(), 0.5);
  EXPECT_EQ(KrGeKnotVector(1, knots({0, NAN, 1})).length(), 6);  // a NaN knot still ends its group
}

TEST(KrGeKnotVector, Edit_InsertSetAndAssign) {
  KrGeKnotVector v = knots({0, 1, 2});
  EXPECT_EQ(v.insert(1), 1);  // before the existing equal knot
  EXPECT_EQ(v.insert(5), 4);
  v.insertAt(1, 0.5, 2).removeAt(0).removeSubVector(3, 4);
  EXPECT_EQ(values(v), (Knots{0.5, 0.5, 1, 5}));
  const double raw[] = {7, 8, 9};
  v.set(3, raw, 0.5);
  EXPECT_EQ(values(v), (Knots{7, 8, 9}));
  EXPECT_EQ(v.tolerance(), 1e-9);  // the tolerance argument is ignored
  v.setPhysicalLength(1);
  EXPECT_EQ(values(v), (Knots{7}));
}

TEST(KrGeKnotVector, IsOn_AgreesWithLinearScan) {
  std::mt19937_64 engine(20240611);
  for (int trial = 0; trial < 200; ++trial) {
    Knots sorted;
    double knot = 0;
    for (int i = 0; i < 1 + trial % 12; ++i) sorted.push_back(knot += static_cast<double>(engine() % 3) * 0.25);
    KrGeKnotVector v;
    for (double k : sorted) v.append(k);
    for (double x = -0.5; x <= knot + 0.5; x += 0.0625) {
      for (double probe : {x, x + 1e-9, x - 1e-9, x + 3e-9}) {
        bool expected = false;
        for (double k : sorted) expected = expected || std::fabs(k - probe) <= 1e-9;
        ASSERT_EQ(v.isOn(probe), expected) << "seed 20240611 trial " << trial << " x " << probe;
      }
    }
  }
}

TEST(KrGeKnotVector, Query_ContainsAndExactEquality) {
  EXPECT_TRUE(knots({0, 1}).contains(-100));  // not a range test
  EXPECT_FALSE(knots({}).contains(0));
  EXPECT_FALSE(knots({1, 0}).contains(0.5));  // only a decreasing vector can answer false
  EXPECT_TRUE(knots({1, 0}, 0.25).contains(0.75));
  EXPECT_FALSE(knots({0, 1}).isEqualTo(knots({0, 1}, 1e-8)));
  EXPECT_FALSE(knots({0, 1}).isEqualTo(knots({0, 1 + 1e-15})));
}

TEST(KrGeKnotVector, Transform_ReverseAndSetRange) {
  KrGeKnotVector v = knots({0, 1, 3});
  const int capacity = v.physicalLength();
  v.reverse();
  EXPECT_EQ(values(v), (Knots{-3, -1, 0}));  // t -> -t
  EXPECT_EQ(v.physicalLength(), capacity);
  v.reverse().setRange(10, 20);
  EXPECT_EQ(v[0], 10.0);
  EXPECT_NEAR(v[1], 10 + 10.0 / 3, 1e-12);
  EXPECT_DOUBLE_EQ(v[2], 20.0);
  for (double bad : {5.0, 20.0, static_cast<double>(NAN)}) {
    v.setRange(20, bad);
    EXPECT_EQ(v[0], 10.0);
  }
  KrGeKnotVector empty;
  empty.reverse().setRange(0, 1);  // only the array's own "(m_nSize<=0)" check may report
  EXPECT_EQ(empty.length(), 0);
}

TEST(KrGeKnotVector, Split_FarKnotsGoToHead) {
  const KrGeKnotVector v = knots({0, 0, 1, 2, 2.5, 3, 3});
  KrGeKnotVector head = knots({9, 9});
  KrGeKnotVector tail = knots({9});
  int answer = -1;
  expectNotImplemented([&] { answer = v.split(2, &head, 2, &tail, 3); }, 272);
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(values(head), (Knots{0, 0, 1, 2, 2, 2.5, 3, 3}));
  EXPECT_EQ(values(tail), (Knots{2, 2, 2}));
  v.split(2.5 + 0.5e-9, &head, 0, nullptr, 1);  // a knot within the tolerance of param goes
  EXPECT_EQ(values(head), (Knots{0, 0, 1, 2, 3, 3}));
  KrGeKnotVector self = v;
  self.split(1, &self, 1, nullptr, 0);
  EXPECT_EQ(values(self), values(v));
}

// The head is what inserting its knots one by one with insert() gives, bit for bit, also with
// NaNs, signed zeros, repeats and unsorted input (the naive insertions here are the reference).
TEST(KrGeKnotVector, Split_HeadIsTheOrderOfRepeatedInsertion) {
  std::mt19937 engine(977);
  const double pool[] = {NAN, -0.0, 0.0, 1, 1, 2, -3, 5, INFINITY, 0.5};
  for (int trial = 0; trial < 300; ++trial) {
    KrGeKnotVector source;
    for (int n = engine() % 12; n > 0; --n) source.append(pool[engine() % 10]);
    const double param = pool[engine() % 10];
    const int multLast = engine() % 3, multFirst = engine() % 3;
    KrGeKnotVector head, tail, expected;
    source.split(param, &head, multLast, trial % 2 ? &tail : &head, multFirst);
    int i = 0;
    for (; i < source.length() && source[i] < param && std::fabs(param - source[i]) > 1e-9; ++i) expected.insert(source[i]);
    for (int k = multLast + (trial % 2 ? 0 : multFirst); k > 0; --k) expected.insert(param);
    for (; i < source.length(); ++i)
      if (source[i] > param && std::fabs(param - source[i]) > 1e-9) expected.insert(source[i]);
    ASSERT_EQ(head.length(), expected.length()) << "seed 977, trial " << trial;
    for (int k = 0; k < head.length(); ++k)
      ASSERT_EQ(std::memcmp(&head[k], &expected[k], sizeof(double)), 0) << "seed 977, trial " << trial << ", knot " << k;
  }
}

// Ranges whose count does not fit an int are bad ranges like any other: reported by the array's
// own removal checks and ignored.
TEST(KrGeKnotVector, RemoveSubVector_RangesNearTheIntLimitsAreReportedAndIgnored) {
  const struct {
    int start, end;
    const char* check;
  } rows[] = {{0, INT_MAX, "(nIndex + nCount <= m_nSize)"}, {INT_MIN, 0, "(nIndex >= 0)"},
              {INT_MAX, INT_MIN, "(nCount >= 0)"}, {1, 0, nullptr}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.start) + ".." + std::to_string(row.end));
    KrGeKnotVector v = knots({0, 1});
    MonitorCapture::clear();
    v.removeSubVector(row.start, row.end);
    const auto records = MonitorCapture::drain();
    EXPECT_EQ(values(v), (Knots{0, 1}));
    ASSERT_EQ(records.size(), row.check ? 1u : 0u);
    if (row.check) {
      EXPECT_NE(records[0].message.find(row.check), std::string::npos) << records[0].message;
    }
  }
}

TEST(KrGeKnotVector, Diagnostics_NotImplementedOnceAndBadIndex) {
  KrGeKnotVector v = knots({0, 1});
  KrGeInterval interval(2, 3);
  int answer = -1;
  expectNotImplemented([&] { answer = v.getInterval(3, 0.5, interval); }, 168);
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(interval.lowerBound(), 2.0);  // untouched
  KrGeKnotVector tail = knots({5});
  expectNotImplemented([&] { v.append(tail, 0.5); }, 260);
  expectNotImplemented([&] { answer = v.growLength(); }, 352);
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(values(v), (Knots{0, 1}));
  MonitorCapture::clear();
  EXPECT_EQ(v.getInterval(3, 0.5, interval), 0);
  EXPECT_TRUE(MonitorCapture::drain().empty());  // once per process

  MonitorCapture::clear();
  const KrGeKnotVector& view = v;
  EXPECT_EQ(view[2], 0.0);  // a neutral value, not the array's bad address
  v[-1] = 42.0;             // discarded
  EXPECT_EQ(values(v), (Knots{0, 1}));
  const auto records = MonitorCapture::drain();
  EXPECT_EQ(testkit::countMessage(records, testkit::assertionText("(!isValid(i))", "krkvec", 113)), 1);
  EXPECT_GE(records.size(), 2u);  // the array's own index check as well
  EXPECT_FALSE(KrGeKnotVector().isOn(0.0));
}
