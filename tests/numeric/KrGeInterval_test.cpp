#include "KrGeInterval.h"

#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>

using testkit::MonitorCapture;

namespace {

const KrGeInterval kOpen;  // unbounded on both sides
KrGeInterval below(double bound) { return KrGeInterval(false, bound); }  // (-inf, bound]
KrGeInterval above(double bound) { return KrGeInterval(true, bound); }   // [bound, +inf)

std::string describe(const KrGeInterval& i) {
  return "[" + (i.isBoundedBelow() ? std::to_string(i.lowerBound()) : "-inf") + ", " +
         (i.isBoundedAbove() ? std::to_string(i.upperBound()) : "+inf") + "]";
}

}  // namespace

TEST(KrGeInterval, Construct_OpenSidesAndPreferredElement) {
  EXPECT_TRUE(kOpen.isUnBounded() && !kOpen.isSingleton() && kOpen.contains(-1e300));
  EXPECT_EQ(kOpen.length(), DBL_MAX);
  EXPECT_EQ(kOpen.element(), 0.0);
  EXPECT_TRUE(above(5).isUnBounded());
  EXPECT_EQ(above(5).element(), 5.0);
  EXPECT_EQ(above(5).upperBound(), 1.7976931348623157e308);
  EXPECT_EQ(below(5).lowerBound(), -1.7976931348623157e308);
  const KrGeInterval inverted(3, -1, 10);  // the upper end is preferred; the length is positive
  EXPECT_EQ(inverted.element(), -1.0);
  EXPECT_EQ(inverted.length(), 4.0);
}

TEST(KrGeInterval, Construct_InvertedBoundsWarnBeyondTolerance) {
  const struct {
    double lower, upper;
    bool warns;
  } rows[] = {{1, 0, true}, {1, 1 - 1e-13, false}, {1, 1 - 1e-12, false}, {1, 1 - 2e-12, true}, {0, NAN, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.upper));
    MonitorCapture::clear();
    const KrGeInterval interval(row.lower, row.upper, 1e-12);
    const auto records = MonitorCapture::drain();
    EXPECT_EQ(interval.lowerBound(), row.lower);  // stored unchanged, never swapped
    ASSERT_EQ(records.size(), row.warns ? 1u : 0u);
    if (row.warns) {
      EXPECT_EQ(records[0].message, "WARNING 'KrGeInterval: lower-tol>upper - some functions may fail'");
      EXPECT_EQ(records[0].source, "Interval");
      EXPECT_EQ(records[0].line, 28u);
    }
  }
}

TEST(KrGeInterval, Contains_ToleranceAndExistingSidesOnly) {
  const KrGeInterval unit(0, 1, 1e-12);
  EXPECT_TRUE(unit.contains(1 + 1e-12) && unit.contains(-1e-12));
  EXPECT_FALSE(unit.contains(1 + 1e-11) || unit.contains(-1e-11));
  const struct {
    const char* name;
    KrGeInterval self, other;
    bool expected;
  } rows[] = {
      {"bounded rejects half-open", KrGeInterval(0, 10), above(2), false},
      {"bounded uses own tolerance", KrGeInterval(0, 10, 1e-12), KrGeInterval(0, 10 + 1e-9, 1e-6), false},
      {"half-open uses larger tolerance", above(0), KrGeInterval(-1e-9, 5, 1e-6), true},
      {"half-open ignores the far side", below(10), KrGeInterval(-1e300, 10 + 1e-13), true},
      {"half-open needs its side bounded", above(0), below(5), false},
  };
  for (const auto& row : rows) EXPECT_EQ(row.self.contains(row.other), row.expected) << row.name;
}

TEST(KrGeInterval, Subtract_PiecesAndStaleUpperReading) {
  const struct {
    const char* name;
    KrGeInterval self, other;
    int count;
    const char *left, *right;
  } rows[] = {
      {"inner", KrGeInterval(0, 10), KrGeInterval(2, 3), 2, "[0.000000, 2.000000]", "[3.000000, 10.000000]"},
      {"left overlap", KrGeInterval(0, 10), KrGeInterval(-5, 3), 1, "[3.000000, 10.000000]", "[-inf, +inf]"},
      {"covering", KrGeInterval(0, 10), KrGeInterval(-5, 20), 0, "[-inf, +inf]", "[-inf, +inf]"},
      {"beyond, not clipped", KrGeInterval(0, 10), KrGeInterval(20, 30), 1, "[0.000000, 20.000000]", "[-inf, +inf]"},
      {"open above", above(0), KrGeInterval(2, 3), 1, "[0.000000, 2.000000]", "[-inf, +inf]"},
      {"open below", below(10), KrGeInterval(2, 3), 2, "[-inf, 2.000000]", "[3.000000, +inf]"},
      // Open above, the stored upper value 0.0 decides the right piece.
      {"stale upper rejects", above(5), KrGeInterval(-10, 3), 0, "[-inf, +inf]", "[-inf, +inf]"},
      {"stale upper accepts", above(5), KrGeInterval(-10, -3), 1, "[-3.000000, 0.000000]", "[-inf, +inf]"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeInterval left(0, 1, 0.5);
    KrGeInterval right(0, 1, 0.5);
    EXPECT_EQ(row.self.subtract(row.other, left, right), row.count);
    EXPECT_EQ(describe(left), row.left);
    EXPECT_EQ(describe(right), row.right);
    EXPECT_EQ(left.tolerance(), row.count > 0 ? 1e-12 : 0.5);
  }
}

TEST(KrGeInterval, IntersectWith_ToleranceGapSymmetryAndAliasing) {
  KrGeInterval result(0.25);
  EXPECT_TRUE(KrGeInterval(0, 1).intersectWith(KrGeInterval(1 + 1e-13, 2), result));
  EXPECT_EQ(result.lowerBound(), 1 + 1e-13);
  EXPECT_EQ(result.upperBound(), 1.0);
  EXPECT_EQ(result.tolerance(), 0.25);
  EXPECT_FALSE(KrGeInterval(0, 1).intersectWith(KrGeInterval(1 + 1e-11, 2), result));
  EXPECT_EQ(result.lowerBound(), 1 + 1e-11);  // written, inverted, also when false

  const KrGeInterval samples[] = {KrGeInterval(0, 1), KrGeInterval(0.5, 3), above(0.7), below(0.2), kOpen,
                                  KrGeInterval(5, 6)};
  for (const KrGeInterval& a : samples) {
    for (const KrGeInterval& b : samples) {
      SCOPED_TRACE(describe(a) + " with " + describe(b));
      KrGeInterval ab;
      KrGeInterval ba;
      EXPECT_EQ(a.intersectWith(b, ab), b.intersectWith(a, ba));
      EXPECT_EQ(describe(ab), describe(ba));
      EXPECT_EQ(a.intersectWith(b, ab), !a.isDisjoint(b));
    }
  }
  KrGeInterval alias(0, 5);  // the result may be an operand
  alias.intersectWith(KrGeInterval(2, 9), alias);
  EXPECT_EQ(describe(alias), describe(KrGeInterval(2, 5)));
}

TEST(KrGeInterval, Relations_MergeOverlapAndEquality) {
  KrGeInterval merged(0.5);
  KrGeInterval(0, 1).getMerge(above(5), merged);  // a side open in either stays open
  EXPECT_EQ(describe(merged), describe(above(0)));
  EXPECT_EQ(merged.tolerance(), 0.5);

  // Binary fractions keep the tolerance boundaries exact.
  EXPECT_TRUE(KrGeInterval(0, 1, 0.25).isContinuousAtUpper(KrGeInterval(1.25, 2, 0)));
  EXPECT_FALSE(KrGeInterval(0, 1, 0.25).isContinuousAtUpper(KrGeInterval(1.5, 2, 1)));  // own tolerance only
  EXPECT_TRUE(KrGeInterval(1, 1.125, 0.25).isSingleton());
  EXPECT_FALSE(KrGeInterval(1, 1.25, 0.25).isSingleton());  // strict

  KrGeInterval overlap(0.5);
  EXPECT_TRUE(KrGeInterval(0, 2).isOverlapAtUpper(KrGeInterval(1, 3), overlap));
  EXPECT_EQ(describe(overlap), describe(KrGeInterval(1, 2)));
  EXPECT_FALSE(KrGeInterval(0, 2).isOverlapAtUpper(KrGeInterval(-1, 3), overlap));  // swallows the start
  EXPECT_FALSE(KrGeInterval(0, 2).isOverlapAtUpper(KrGeInterval(1, 1), overlap));   // singleton

  EXPECT_TRUE(KrGeInterval(0, 1, 1e-15) == KrGeInterval(5e-11, 1 - 5e-11, 1));  // fixed 1e-10
  EXPECT_TRUE(KrGeInterval(0, 1, 1e-3) != KrGeInterval(2e-10, 1, 1e-3));
  EXPECT_FALSE(KrGeInterval(0, 1) == above(0));
  EXPECT_TRUE(above(1).isEqualAtUpper(above(2)) && !above(1).isEqualAtUpper(KrGeInterval(1, 2)));
  EXPECT_TRUE(KrGeInterval(0, 1, 1e-12).isEqualAtLower(KrGeInterval(1e-6, 2, 1e-6)));  // larger tolerance
  EXPECT_FALSE(KrGeInterval(0, 1, 1e-12).isEqualAtLower(KrGeInterval(2e-6, 2, 1e-6)));
}

TEST(KrGeInterval, IsPeriodicallyOn_LargestAdmissibleShift) {
  const double twoPi = 6.283185307179586;
  const struct {
    KrGeInterval interval;
    double period, param;
    bool on;
    double moved;
  } rows[] = {
      {KrGeInterval(0, twoPi), twoPi, 7, true, 7 - twoPi},
      {KrGeInterval(0, twoPi), twoPi, 1, true, 1},
      {KrGeInterval(0, twoPi), twoPi, 0, true, twoPi},  // the lower end moves to the upper one
      {KrGeInterval(0, twoPi), twoPi, -3 * twoPi - 1, true, twoPi - 1},
      {KrGeInterval(0, 1), 10, 5, false, -5},  // written although false
      {above(0), 10, 5, true, 5},
  };
  for (const auto& row : rows) {
    double param = row.param;
    EXPECT_EQ(row.interval.isPeriodicallyOn(row.period, param), row.on) << row.param;
    EXPECT_NEAR(param, row.moved, 1e-12) << row.param;
  }
  double param = 0.5;
  KrGeInterval(0, 1).isPeriodicallyOn(0.0, param);  // unguarded: no trap, just not a number
  EXPECT_TRUE(std::isnan(param));
}

// Overrides that the operations built on them must reach through the virtual table.
class WideInterval : public KrGeInterval {
public:
  using KrGeInterval::contains;
  using KrGeInterval::KrGeInterval;
  double tolerance() const override { return 1.0; }
  bool contains(double x) const override { return x > -100 && x < 100; }
  bool isBounded() const override { return false; }
  KrGeInterval& setLower(double v) override { return calls += "L", KrGeInterval::setLower(v); }
  KrGeInterval& setUpper(double v) override { return calls += "U", KrGeInterval::setUpper(v); }
  std::string calls;
};

TEST(KrGeInterval, Dispatch_OperationsCallOverrides) {
  WideInterval wide(0, 1);
  EXPECT_TRUE(wide.contains(KrGeInterval(-50, 50)));
  EXPECT_EQ(wide.length(), DBL_MAX);
  double param = 0.5;
  EXPECT_TRUE(wide.isPeriodicallyOn(1.0, param));
  wide.set(2.0, 3.0);
  wide.set(true, 4.0);
  KrGeInterval(0, 1).intersectWith(KrGeInterval(0.5, 2), wide);
  KrGeInterval(0, 1).getMerge(KrGeInterval(0.5, 2), wide);
  EXPECT_EQ(wide.calls, "LULULUL");
  EXPECT_TRUE(WideInterval(true, 0.0).contains(KrGeInterval(-0.9, 1)));  // maxTol from tolerance()
}
