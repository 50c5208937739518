// Intervals: open sides, the warning for inverted bounds, containment and equality on both sides
// of their tolerances, subtraction, symmetric intersection, periodic lookup and virtual dispatch.
#include "testkit/TestKit.h"

using testkit::recordsOf;

namespace {

KrGeInterval below(double bound, double tol = 1e-12) { return KrGeInterval(false, bound, tol); }  // (-inf, bound]
KrGeInterval above(double bound, double tol = 1e-12) { return KrGeInterval(true, bound, tol); }   // [bound, +inf)

std::string describe(const KrGeInterval& i) {
  return "[" + (i.isBoundedBelow() ? std::to_string(i.lowerBound()) : "-inf") + ", " +
         (i.isBoundedAbove() ? std::to_string(i.upperBound()) : "+inf") + "]";
}

}  // namespace

TEST(KrGeInterval, OpenSidesElementAndTheWarningForInvertedBounds) {
  const KrGeInterval open;
  EXPECT_TRUE(open.isUnBounded());
  EXPECT_TRUE(open.contains(-1e300));
  EXPECT_EQ(open.length(), DBL_MAX);
  EXPECT_EQ(above(5).element(), 5.0);
  EXPECT_EQ(above(5).upperBound(), DBL_MAX);
  EXPECT_EQ(below(5).lowerBound(), -DBL_MAX);
  const KrGeInterval inverted(3, -1, 10);  // the upper end is preferred; the length is positive
  EXPECT_EQ(inverted.element(), -1.0);
  EXPECT_EQ(inverted.length(), 4.0);
  const struct { double upper; bool warns; } rows[] = {{0, true}, {1 - 1e-13, false}, {1 - 1e-12, false}, {1 - 2e-12, true}, {NAN, false}};
  for (const auto& row : rows) {
    const auto records = recordsOf([&] { EXPECT_EQ(KrGeInterval(1, row.upper, 1e-12).lowerBound(), 1.0); });  // never swapped
    ASSERT_EQ(records.size(), row.warns ? 1u : 0u) << row.upper;
    if (row.warns) {
      EXPECT_EQ(records[0].message, "WARNING 'KrGeInterval: lower-tol>upper - some functions may fail'");
      EXPECT_EQ(records[0].line, 28u);
    }
  }
}

// Binary fractions keep the tolerance bounds exact: each row is at its bound or just beyond.
TEST(KrGeInterval, ContainmentAndEqualityOnBothSidesOfTheTolerance) {
  const struct { const char* name; bool answer, expected; } rows[] = {
      {"point at the bound", KrGeInterval(0, 1, 0.25).contains(1.25), true},
      {"point beyond", KrGeInterval(0, 1, 0.25).contains(-0.5), false},
      {"bounded rejects half-open", KrGeInterval(0, 10).contains(above(2)), false},
      {"bounded uses its own tolerance", KrGeInterval(0, 10, 0.25).contains(KrGeInterval(0, 10.5, 1)), false},
      {"half-open uses the larger tolerance", above(0).contains(KrGeInterval(-0.5, 5, 0.5)), true},
      {"half-open bound counts", below(10, 0.25).contains(KrGeInterval(0, 10.25, 0.25)), true},
      {"half-open needs its side bounded", above(0).contains(below(5)), false},
      {"continuous within own tolerance", KrGeInterval(0, 1, 0.25).isContinuousAtUpper(KrGeInterval(1.25, 2, 0)), true},
      {"continuous ignores the other's", KrGeInterval(0, 1, 0.25).isContinuousAtUpper(KrGeInterval(1.5, 2, 1)), false},
      {"continuous needs a lower side", KrGeInterval(-1, 0).isContinuousAtUpper(below(2)), false},
      {"singleton at the bound", KrGeInterval(1, 1.125, 0.25).isSingleton(), true},
      {"singleton is strict", KrGeInterval(1, 1.25, 0.25).isSingleton(), false},
      {"equal within the fixed 1e-10", KrGeInterval(0, 1, 1e-15) == KrGeInterval(5e-11, 1 - 5e-11, 1), true},
      {"equal beyond it", KrGeInterval(0, 1, 1e-3) == KrGeInterval(2e-10, 1, 1e-3), false},
      {"equal needs the same sides", KrGeInterval(0, 1) == above(0), false},
      {"equal at lower, value", KrGeInterval(0, 1, 0.25).isEqualAtLower(0.25), true},
      {"equal at lower, beyond", KrGeInterval(0, 1, 0.25).isEqualAtLower(0.5), false},
      {"equal at lower, larger tolerance", KrGeInterval(0, 1, 1e-12).isEqualAtLower(KrGeInterval(1e-6, 2, 1e-6)), true},
      {"equal at upper, open sides", above(1).isEqualAtUpper(above(2)), true},
      {"equal at upper, one open", above(1).isEqualAtUpper(KrGeInterval(1, 2)), false},
  };
  for (const auto& row : rows) EXPECT_EQ(row.answer, row.expected) << row.name;
}

TEST(KrGeInterval, SubtractIntersectAndMerge) {
  const struct { const char* name; KrGeInterval self, other; int count; const char *left, *right; } rows[] = {
      {"inner", KrGeInterval(0, 10), KrGeInterval(2, 3), 2, "[0.000000, 2.000000]", "[3.000000, 10.000000]"},
      {"left overlap", KrGeInterval(0, 10), KrGeInterval(-5, 3), 1, "[3.000000, 10.000000]", "[-inf, +inf]"},
      {"covering", KrGeInterval(0, 10), KrGeInterval(-5, 20), 0, "[-inf, +inf]", "[-inf, +inf]"},
      {"beyond, not clipped", KrGeInterval(0, 10), KrGeInterval(20, 30), 1, "[0.000000, 20.000000]", "[-inf, +inf]"},
      {"open below", below(10), KrGeInterval(2, 3), 2, "[-inf, 2.000000]", "[3.000000, +inf]"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeInterval left(0, 1, 0.5), right(0, 1, 0.5);
    EXPECT_EQ(row.self.subtract(row.other, left, right), row.count);
    EXPECT_EQ(describe(left), row.left);
    EXPECT_EQ(describe(right), row.right);
    EXPECT_EQ(left.tolerance(), row.count > 0 ? 1e-12 : 0.5);
  }
  KrGeInterval result(0.25);
  EXPECT_TRUE(KrGeInterval(0, 1).intersectWith(KrGeInterval(1 + 1e-13, 2), result));
  EXPECT_EQ(result.lowerBound(), 1 + 1e-13);
  EXPECT_EQ(result.tolerance(), 0.25);
  EXPECT_FALSE(KrGeInterval(0, 1).intersectWith(KrGeInterval(1 + 1e-11, 2), result));
  EXPECT_EQ(result.lowerBound(), 1 + 1e-11);  // written, inverted, also when false
  const KrGeInterval samples[] = {KrGeInterval(0, 1), KrGeInterval(0.5, 3), above(0.7), below(0.2), KrGeInterval(), KrGeInterval(5, 6)};
  for (const KrGeInterval& a : samples) {
    for (const KrGeInterval& b : samples) {
      KrGeInterval ab, ba;
      EXPECT_EQ(a.intersectWith(b, ab), b.intersectWith(a, ba)) << describe(a) << describe(b);
      EXPECT_EQ(describe(ab), describe(ba));
      EXPECT_EQ(a.intersectWith(b, ab), !a.isDisjoint(b)) << describe(a) << describe(b);
    }
  }
  KrGeInterval alias(0, 5);  // the result may be an operand
  alias.intersectWith(KrGeInterval(2, 9), alias);
  EXPECT_EQ(describe(alias), describe(KrGeInterval(2, 5)));
  KrGeInterval merged(0.5), overlap(0.5);
  KrGeInterval(0, 1).getMerge(above(5), merged);  // a side open in either stays open
  EXPECT_EQ(describe(merged), describe(above(0)));
  EXPECT_TRUE(KrGeInterval(0, 2).isOverlapAtUpper(KrGeInterval(1, 3), overlap));
  EXPECT_EQ(describe(overlap), describe(KrGeInterval(1, 2)));
  EXPECT_FALSE(KrGeInterval(0, 2).isOverlapAtUpper(KrGeInterval(-1, 3), overlap));  // swallows the start
  EXPECT_FALSE(KrGeInterval(0, 2).isOverlapAtUpper(KrGeInterval(1, 1), overlap));   // a singleton
}

TEST(KrGeInterval, IsPeriodicallyOn_LargestAdmissibleShift) {
  const double twoPi = 6.283185307179586;
  const struct { KrGeInterval interval; double period, param; bool on; double moved; } rows[] = {
      {KrGeInterval(0, twoPi), twoPi, 7, true, 7 - twoPi},
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

TEST(KrGeInterval, OperationsCallOverrides) {
  WideInterval wide(0, 1);
  EXPECT_TRUE(wide.contains(KrGeInterval(-50, 50)));
  EXPECT_EQ(wide.length(), DBL_MAX);
  wide.set(2.0, 3.0);
  wide.set(true, 4.0);
  KrGeInterval(0, 1).intersectWith(KrGeInterval(0.5, 2), wide);
  KrGeInterval(0, 1).getMerge(KrGeInterval(0.5, 2), wide);
  EXPECT_EQ(wide.calls, "LULULUL");
  EXPECT_TRUE(WideInterval(true, 0.0).contains(KrGeInterval(-0.9, 1)));  // maxTol from tolerance()
}
