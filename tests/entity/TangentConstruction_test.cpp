// Tangent constructions with arcs, checked against textbook closed forms and the defining
// properties (touch points on the curves, radii perpendicular there).
#include "tests/entity/EntityKit.h"


namespace {
const KrGeVector3d kZ(0, 0, 1);

double cosineBetween(const KrGeVector3d& a, const KrGeVector3d& b) { return a.dotProduct(b) / (a.length() * b.length()); }

KrGeVector3d across(const KrGeVector3d& n, Random& random) {
  const KrGeVector3d v = n.crossProduct(random.unitVector());
  return v / v.length();
}

struct Tangent {
  KrGeLineSeg3d segment;
  double param1 = -1, param2 = -1;
  bool success = false;
};
Tangent through(const KrGeCurve3d& curve, const KrGePoint3d& point) {
  Tangent tangent;
  tangent.segment.set(curve, point, tangent.param1, tangent.success);
  return tangent;
}
Tangent common(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2) {
  Tangent tangent;
  tangent.segment.set(curve1, curve2, tangent.param1, tangent.param2, tangent.success);
  return tangent;
}
}  // namespace

// The tangents from (2, 0) to the unit circle touch at +-60 degrees; the arc's range picks one.
// Inside the circle, on it, off its plane, or with both touches outside the range: nothing.
TEST(TangentSegment, ThroughPoint_PicksTheTouchInsideTheRange) {
  const KrGePoint3d point(2, 0, 0);
  const struct {
    double start, end, wanted;  // wanted < 0: no tangent
    KrGePoint3d from;
  } rows[] = {{0, 2 * kPi, kPi / 3, point},    {kPi, 2 * kPi, 5 * kPi / 3, point}, {0, kPi / 2, kPi / 3, point},
              {kPi / 2, kPi, -1, point},       {0, 2 * kPi, -1, KrGePoint3d(0.5, 0, 0)},
              {0, 2 * kPi, -1, KrGePoint3d(0, 1, 0)}, {0, 2 * kPi, -1, KrGePoint3d(2, 0, 1e-6)}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.wanted);
    const Tangent tangent = through(KrGeCircArc3d(KrGePoint3d(), kZ, KrGeVector3d(1, 0, 0), 1, row.start, row.end), row.from);
    EXPECT_EQ(tangent.success, row.wanted > 0);
    EXPECT_NEAR(tangent.param1, row.wanted, 1e-15);
    const KrGePoint3d end = row.wanted > 0 ? KrGePoint3d(0.5, std::sin(row.wanted), 0) : KrGeLineSeg3d().endPoint();
    EXPECT_TRUE(within(tangent.segment.endPoint(), end, 1e-15));
  }
}

// Any circle, any outside point of its plane: the touch point is on the circle and the radius
// there is perpendicular to the segment.
TEST(TangentSegment, ThroughPoint_RandomCirclesTouchPerpendicularly) {
  repeat(91, 2000, [](Random& random, int) {
    const double radius = random.magnitude(-3, 5);
    const KrGePoint3d centre = random.point(1e3);
    const KrGeVector3d normal = random.unitVector();
    const KrGePoint3d point = centre + across(normal, random) * (radius * (1 + random.magnitude(-3, 2)));
    const KrGeCircArc3d circle(centre, normal, radius);
    const Tangent tangent = through(circle, point);
    ASSERT_TRUE(tangent.success);
    const KrGePoint3d touch = tangent.segment.endPoint();
    const double scale = radius + centre.asVector().length();
    EXPECT_EQ(tangent.segment.startPoint(), point);
    EXPECT_NEAR(touch.distanceTo(centre), radius, 1e-12 * scale);
    EXPECT_LE(std::fabs(cosineBetween(touch - centre, touch - point)), 1e-9 * scale / radius);
    EXPECT_TRUE(within(circle.evalPoint(tangent.param1), touch, 1e-12 * scale));
  });
}

// Separated circles: the inner tangents are the shortest, sqrt(d^2 - (r1 + r2)^2); overlapping
// ones have only outer tangents, sqrt(d^2 - (r1 - r2)^2); nested, concentric or non-coplanar
// circles have none.
TEST(TangentSegment, CommonTangentOfArcs_ShortestQualifyingTangent) {
  const struct {
    double d, r1, r2, z;
    double length;  // negative: no tangent
  } rows[] = {{10, 1, 2, 0, std::sqrt(91.0)}, {2, 1.5, 1, 0, std::sqrt(3.75)}, {0.5, 3, 1, 0, -1},
              {0, 3, 1, 0, -1},               {10, 1, 2, 1e-6, -1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.d);
    const KrGeCircArc3d first(KrGePoint3d(0, 0, 0), kZ, row.r1), second(KrGePoint3d(row.d, 0, row.z), kZ, row.r2);
    const Tangent tangent = common(first, second);
    ASSERT_EQ(tangent.success, row.length > 0);
    if (!tangent.success) continue;
    const KrGeLineSeg3d& segment = tangent.segment;
    EXPECT_NEAR(segment.length(), row.length, 1e-14);
    EXPECT_TRUE(within(first.evalPoint(tangent.param1), segment.startPoint(), 1e-15));
    EXPECT_TRUE(within(second.evalPoint(tangent.param2), segment.endPoint(), 1e-14));
    const KrGeVector3d along = segment.endPoint() - segment.startPoint();
    EXPECT_NEAR(cosineBetween(segment.startPoint() - KrGePoint3d(0, 0, 0), along), 0.0, 1e-15);
    EXPECT_NEAR(cosineBetween(segment.endPoint() - KrGePoint3d(row.d, 0, 0), along), 0.0, 1e-15);
  }
}

// The line of a segment tangent to an arc is their common tangent: the segment runs between the
// nearer end of the segment and the touch point, in the order of the curves.
TEST(TangentSegment, CommonTangentOfLineAndArc_BothOrders) {
  const KrGeCircArc3d arc(KrGePoint3d(0, 0, 0), kZ, 1.0);
  const KrGeLineSeg3d tangentLine(KrGePoint3d(-5, 1, 0), KrGePoint3d(-2, 1, 0));
  const Tangent lineFirst = common(tangentLine, arc), arcFirst = common(arc, tangentLine);
  EXPECT_EQ(lineFirst.param1, 1.0);
  EXPECT_NEAR(lineFirst.param2, kPi / 2, 1e-15);
  EXPECT_TRUE(within(lineFirst.segment.endPoint(), KrGePoint3d(0, 1, 0), 1e-15));
  EXPECT_EQ(arcFirst.param2, 1.0);
  EXPECT_TRUE(within(arcFirst.segment.endPoint(), KrGePoint3d(-2, 1, 0), 0));
  EXPECT_FALSE(common(arc, KrGeLineSeg3d(KrGePoint3d(-5, 1.001, 0), KrGePoint3d(-2, 1.001, 0))).success);
}

namespace {
struct Fillet {
  KrGeCircArc3d arc;
  double param1 = -1, param2 = -1;
  bool success = false;
};
Fillet filletOf(const KrGeCurve3d& a, const KrGeCurve3d& b, double radius) {
  Fillet fillet;
  fillet.arc.set(a, b, radius, fillet.param1, fillet.param2, fillet.success);
  return fillet;
}
}  // namespace

// Two segments leaving a corner at the angle 2 phi: the fillet touches each at R / tan phi from
// the corner, its centre lies on the bisector at R / sin phi, and it sweeps pi - 2 phi. Any
// plane, any scale.
TEST(TangentCircle, FilletOfTwoSegments_TextbookCorner) {
  repeat(17, 2000, [](Random& random, int) {
    const double scale = random.magnitude(-3, 5);
    const KrGePoint3d corner = random.point(10 * scale);
    const KrGeVector3d normal = random.unitVector(), d1 = across(normal, random);
    const double phi = random.uniform(0.05, 1.5);
    const KrGeVector3d d2 = d1 * std::cos(2 * phi) + normal.crossProduct(d1) * std::sin(2 * phi);
    const double radius = scale * random.uniform(0.1, 1.0);
    const double reach = radius / std::tan(phi);
    const KrGeLineSeg3d first(corner, corner + d1 * (reach * random.uniform(1.01, 5))),
        second(corner + d2 * (reach * random.uniform(1.01, 5)), corner);
    const Fillet fillet = filletOf(first, second, radius);
    ASSERT_TRUE(fillet.success);
    const double size = scale + corner.asVector().length();
    EXPECT_TRUE(within(fillet.arc.center(), corner + (d1 + d2) / (d1 + d2).length() * (radius / std::sin(phi)),
                       1e-11 * size));
    EXPECT_TRUE(within(fillet.arc.startPoint(), corner + d1 * reach, 1e-11 * size));
    EXPECT_TRUE(within(fillet.arc.endPoint(), corner + d2 * reach, 1e-11 * size));
    EXPECT_NEAR(fillet.arc.endAng() - fillet.arc.startAng(), kPi - 2 * phi, 1e-9);
    EXPECT_TRUE(within(first.evalPoint(fillet.param1), fillet.arc.startPoint(), 1e-11 * size));
    EXPECT_TRUE(within(second.evalPoint(fillet.param2), fillet.arc.endPoint(), 1e-11 * size));
  });
}

// Line and circle, two circles: every centre of radius R tangent to both is a candidate and the
// shortest chord wins. The values are worked out by hand.
TEST(TangentCircle, FilletWithArcs_ShortestChordAmongAllTangentCircles) {
  const KrGeLineSeg3d ground(KrGePoint3d(-10, 0, 0), KrGePoint3d(10, 0, 0));
  const KrGeCircArc3d above(KrGePoint3d(0, 2.5, 0), kZ, 1.0);
  const KrGeCircArc3d left(KrGePoint3d(-3, 0, 0), kZ, 1.0), right(KrGePoint3d(3, 0, 0), kZ, 1.0);
  // Radius 1 above the ground, 2 from the circle's centre: x = +-sqrt(1.75), equal chords.
  const Fillet lineArc = filletOf(ground, above, 1.0);
  ASSERT_TRUE(lineArc.success);
  EXPECT_NEAR(std::fabs(lineArc.arc.center().x), std::sqrt(1.75), 1e-15);
  EXPECT_NEAR(lineArc.arc.center().y, 1.0, 1e-15);
  EXPECT_NEAR(lineArc.arc.startPoint().y, 0.0, 1e-15);
  EXPECT_NEAR(lineArc.arc.endPoint().distanceTo(KrGePoint3d(0, 2.5, 0)), 1.0, 1e-15);
  // Radius 3 outside both circles: centres (0, +-sqrt 7), chord 4.5; the circle around one and
  // outside the other has chord 6.
  const Fillet arcArc = filletOf(left, right, 3.0);
  ASSERT_TRUE(arcArc.success);
  EXPECT_NEAR(std::fabs(arcArc.arc.center().y), std::sqrt(7.0), 1e-14);
  EXPECT_NEAR(arcArc.arc.startPoint().distanceTo(arcArc.arc.endPoint()), 4.5, 1e-14);
  EXPECT_TRUE(within(left.evalPoint(arcArc.param1), arcArc.arc.startPoint(), 1e-15));
  // A radius too large for the segments' reach, different planes, parallel lines: nothing.
  const KrGeLineSeg3d leg(KrGePoint3d(0, 0, 0), KrGePoint3d(0, 1, 0)), foot(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0));
  EXPECT_FALSE(filletOf(foot, leg, 2.0).success);
  EXPECT_TRUE(filletOf(foot, leg, 0.5).success);
  EXPECT_FALSE(filletOf(ground, KrGeLineSeg3d(KrGePoint3d(0, 0, 1), KrGePoint3d(1, 1, 1)), 0.5).success);
  EXPECT_FALSE(filletOf(foot, KrGeLineSeg3d(KrGePoint3d(0, 1, 0), KrGePoint3d(1, 1, 0)), 0.5).success);
}

// A zero radius puts the three points of the internal construction together.
TEST(TangentCircle, FilletOfZeroRadius_ReportsTheThreePointFailure) {
  ASSERT_TRUE(testkit::MonitorCapture::active());
  const KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0)), b(KrGePoint3d(0, 0, 0), KrGePoint3d(0, 1, 0));
  Fillet fillet;
  const auto warnings = warningsIn(recordsOf([&] { fillet = filletOf(a, b, 0.0); }));
  EXPECT_FALSE(fillet.success);
  EXPECT_EQ(fillet.param1, -1);
  const std::vector<std::string> wanted = {
      warningText("KrCircArc3dImpl::set, by 3pt - kLinearlyDependentArg1Arg2Arg3"),
      warningText("set() fail")};
  EXPECT_EQ(warnings, wanted);
}

namespace {
struct InCircle {
  KrGeCircArc3d arc;
  double params[3] = {-1, -1, -1};
  bool success = false;
};
InCircle inCircleOf(const KrGeCurve3d& a, const KrGeCurve3d& b, const KrGeCurve3d& c) {
  InCircle result;
  result.arc.set(a, b, c, result.params[0], result.params[1], result.params[2], result.success);
  return result;
}
}  // namespace

// The in-circle of a triangle is at (a A + b B + c C) / (a + b + c) (a, b, c the side lengths
// opposite the corners), with radius = area / half perimeter; it runs from its touch on the first
// line through the second to the third.
TEST(TangentCircle, InCircleOfThreeLines_TextbookInCentre) {
  repeat(29, 2000, [](Random& random, int) {
    const double scale = random.magnitude(-3, 5);
    const KrGePoint3d a = random.point(scale), b = random.point(scale), c = random.point(scale);
    const double la = b.distanceTo(c), lb = c.distanceTo(a), lc = a.distanceTo(b);
    const double area = (b - a).crossProduct(c - a).length() / 2;
    if (area < 1e-3 * scale * scale) return;
    const KrGeLine3d ab(a, b), bc(b, c);
    const KrGeLineSeg3d ca(c, a);
    const InCircle circle = inCircleOf(ab, bc, ca);
    ASSERT_TRUE(circle.success);
    const KrGePoint3d centre = KrGePoint3d::kOrigin + (a.asVector() * la + b.asVector() * lb + c.asVector() * lc) / (la + lb + lc);
    EXPECT_TRUE(within(circle.arc.center(), centre, 1e-11 * scale));
    EXPECT_NEAR(circle.arc.radius(), area / ((la + lb + lc) / 2), 1e-11 * scale);
    EXPECT_TRUE(within(circle.arc.startPoint(), ab.evalPoint(circle.params[0]), 1e-11 * scale));
    EXPECT_TRUE(within(circle.arc.endPoint(), ca.evalPoint(circle.params[2]), 1e-11 * scale));
    EXPECT_NEAR(bc.evalPoint(circle.params[1]).distanceTo(centre), circle.arc.radius(), 1e-11 * scale);
  });
}

// The 3-4-5 triangle has its in-centre at (1, 1); lines through one point or parallel ones make
// no triangle; an arc among them is not handled.
TEST(TangentCircle, InCircleOfThreeLines_NoTriangleOrOtherKinds) {
  ASSERT_TRUE(testkit::MonitorCapture::active());
  const KrGeLine3d x(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 0, 0)), y(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 1, 0));
  const InCircle rightAngled = inCircleOf(x, y, KrGeLine3d(KrGePoint3d(4, 0, 0), KrGePoint3d(0, 3, 0)));
  ASSERT_TRUE(rightAngled.success);
  EXPECT_TRUE(within(rightAngled.arc.center(), KrGePoint3d(1, 1, 0), 1e-15));
  EXPECT_FALSE(inCircleOf(x, y, KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 1, 0))).success);
  EXPECT_FALSE(inCircleOf(x, y, KrGeLine3d(KrGePoint3d(0, 5, 0), KrGeVector3d(1, 0, 0))).success);
  InCircle withArc;
  const auto records = recordsOf([&] { withArc = inCircleOf(x, KrGeCircArc3d(), y); });
  EXPECT_FALSE(withArc.success);
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80004001L))"), 1);
  EXPECT_TRUE(withArc.arc.isEqualTo(KrGeCircArc3d()));
}
