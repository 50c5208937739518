// Tangent constructions with arcs: the segment through a point, common tangent segments, fillets
// of a given radius and the circle inscribed in three lines, checked against textbook closed
// forms and the defining properties (touch points on the curves, radii perpendicular there).
#include "tests/entity/LinearTestKit.h"

using linear_test::within;

namespace {
const double kPi = 3.141592653589793;
const KrGeVector3d kZ(0, 0, 1);

// |(a - centre) . direction| relative to the lengths: zero when the radius at `a` is
// perpendicular to `direction`.
double cosineBetween(const KrGeVector3d& a, const KrGeVector3d& b) { return a.dotProduct(b) / (a.length() * b.length()); }

// A unit vector perpendicular to n.
KrGeVector3d across(const KrGeVector3d& n, linear_test::Random& random) {
  const KrGeVector3d v = n.crossProduct(random.unitVector());
  return v / v.length();
}
}  // namespace

// The tangents from (2, 0) to the unit circle touch at +-60 degrees; the arc's range picks one.
TEST(TangentSegment, ThroughPoint_PicksTheTouchInsideTheRange) {
  const KrGePoint3d point(2, 0, 0);
  const struct {
    double start, end, wanted;
  } rows[] = {{0, 2 * kPi, kPi / 3}, {kPi, 2 * kPi, 5 * kPi / 3}, {0, kPi / 2, kPi / 3}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.start);
    const KrGeCircArc3d arc(KrGePoint3d(0, 0, 0), kZ, KrGeVector3d(1, 0, 0), 1.0, row.start, row.end);
    KrGeLineSeg3d segment;
    double param = -1;
    bool success = false;
    segment.set(arc, point, param, success);
    ASSERT_TRUE(success);
    EXPECT_NEAR(param, row.wanted, 1e-15);
    EXPECT_EQ(segment.startPoint(), point);
    EXPECT_TRUE(within(segment.endPoint(), KrGePoint3d(0.5, std::sin(row.wanted), 0), 1e-15));
  }
  // Inside the circle, on it, off its plane, or both touches outside the range: nothing changes.
  const KrGeCircArc3d quarter(KrGePoint3d(0, 0, 0), kZ, KrGeVector3d(1, 0, 0), 1.0, kPi / 2, kPi);
  const KrGeCircArc3d circle(KrGePoint3d(0, 0, 0), kZ, 1.0);
  const struct {
    const KrGeCircArc3d* arc;
    KrGePoint3d point;
  } failing[] = {{&circle, KrGePoint3d(0.5, 0, 0)}, {&circle, KrGePoint3d(0, 1, 0)},
                 {&circle, KrGePoint3d(2, 0, 1e-6)}, {&quarter, point}};
  for (const auto& row : failing) {
    KrGeLineSeg3d segment;
    double param = -1;
    bool success = true;
    segment.set(*row.arc, row.point, param, success);
    EXPECT_FALSE(success);
    EXPECT_EQ(param, -1);
    EXPECT_TRUE(segment.isEqualTo(KrGeLineSeg3d()));
  }
}

// Any circle, any outside point of its plane: the touch point is on the circle and the radius
// there is perpendicular to the segment.
TEST(TangentSegment, ThroughPoint_RandomCirclesTouchPerpendicularly) {
  linear_test::repeat(91, 2000, [](linear_test::Random& random, int) {
    const double radius = random.magnitude(-3, 5);
    const KrGePoint3d centre = random.point(1e3);
    const KrGeVector3d normal = random.unitVector();
    const KrGePoint3d point = centre + across(normal, random) * (radius * (1 + random.magnitude(-3, 2)));
    const KrGeCircArc3d circle(centre, normal, radius);
    KrGeLineSeg3d segment;
    double param = 0;
    bool success = false;
    segment.set(circle, point, param, success);
    ASSERT_TRUE(success);
    const KrGePoint3d touch = segment.endPoint();
    const double scale = radius + centre.asVector().length();
    EXPECT_NEAR(touch.distanceTo(centre), radius, 1e-12 * scale);
    EXPECT_LE(std::fabs(cosineBetween(touch - centre, touch - point)), 1e-9 * scale / radius);
    EXPECT_TRUE(within(circle.evalPoint(param), touch, 1e-12 * scale));
  });
}

// Separated circles: the inner tangents are the shortest, sqrt(d^2 - (r1 + r2)^2); overlapping
// ones have only outer tangents, sqrt(d^2 - (r1 - r2)^2); nested, concentric or non-coplanar
// circles have none.
TEST(TangentSegment, CommonTangentOfArcs_ShortestQualifyingTangent) {
  const struct {
    const char* name;
    double d, r1, r2, z;
    double length;  // negative: no tangent
  } rows[] = {{"separated", 10, 1, 2, 0, std::sqrt(91.0)},
              {"overlapping", 2, 1.5, 1, 0, std::sqrt(3.75)},
              {"nested", 0.5, 3, 1, 0, -1},
              {"concentric", 0, 3, 1, 0, -1},
              {"parallel planes", 10, 1, 2, 1e-6, -1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const KrGeCircArc3d first(KrGePoint3d(0, 0, 0), kZ, row.r1), second(KrGePoint3d(row.d, 0, row.z), kZ, row.r2);
    KrGeLineSeg3d segment;
    double param1 = -1, param2 = -1;
    bool success = false;
    segment.set(first, second, param1, param2, success);
    EXPECT_EQ(success, row.length > 0);
    if (!success) continue;
    EXPECT_NEAR(segment.length(), row.length, 1e-14);
    EXPECT_TRUE(within(first.evalPoint(param1), segment.startPoint(), 1e-15));
    EXPECT_TRUE(within(second.evalPoint(param2), segment.endPoint(), 1e-14));
    const KrGeVector3d along = segment.endPoint() - segment.startPoint();
    EXPECT_NEAR(cosineBetween(segment.startPoint() - KrGePoint3d(0, 0, 0), along), 0.0, 1e-15);
    EXPECT_NEAR(cosineBetween(segment.endPoint() - KrGePoint3d(row.d, 0, 0), along), 0.0, 1e-15);
  }
}

// The line of a segment tangent to an arc is their common tangent: the segment runs from the
// nearer end of the linear curve to the touch point, in the order of the curves.
TEST(TangentSegment, CommonTangentOfLineAndArc_BothOrders) {
  const KrGeCircArc3d arc(KrGePoint3d(0, 0, 0), kZ, 1.0);
  const KrGeLineSeg3d tangentLine(KrGePoint3d(-5, 1, 0), KrGePoint3d(-2, 1, 0));
  const KrGeLineSeg3d missing(KrGePoint3d(-5, 1.001, 0), KrGePoint3d(-2, 1.001, 0));
  KrGeLineSeg3d segment;
  double param1 = -1, param2 = -1;
  bool success = false;
  segment.set(tangentLine, arc, param1, param2, success);
  ASSERT_TRUE(success);
  EXPECT_EQ(param1, 1.0);
  EXPECT_NEAR(param2, kPi / 2, 1e-15);
  EXPECT_TRUE(within(segment.startPoint(), KrGePoint3d(-2, 1, 0), 0));
  EXPECT_TRUE(within(segment.endPoint(), KrGePoint3d(0, 1, 0), 1e-15));
  segment.set(arc, tangentLine, param1, param2, success);
  ASSERT_TRUE(success);
  EXPECT_EQ(param2, 1.0);
  EXPECT_TRUE(within(segment.startPoint(), KrGePoint3d(0, 1, 0), 1e-15));
  segment.set(arc, missing, param1, param2, success);
  EXPECT_FALSE(success);
}
