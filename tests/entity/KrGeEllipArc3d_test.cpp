// Elliptical arcs: the generic curve contract, the fallbacks of the setters with their exact
// warnings, length and its inverse against adaptive quadrature, nearest points against dense
// sampling (centre, axes, evolute), affine images, areas, blocks and degenerate forms.
#include "testkit/CurveConformance.h"
#include "tests/entity/EllipseTestKit.h"

#include <functional>

using ellipse_test::place;

namespace testkit {

// Full and tilted, an arc, a flat one, one far out.
template <>
struct CurveSamples<KrGeEllipArc3d> {
  static std::vector<KrGeEllipArc3d> make() {
    return {KrGeEllipArc3d(KrGePoint3d(1, 2, 3), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 1), 3, 1),
            KrGeEllipArc3d(KrGePoint3d(-2, 0, 1), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 2, 1.5, -0.5, 2.5),
            KrGeEllipArc3d(KrGePoint3d(0, 1, 0), KrGeVector3d(0.3, 0.4, 0.5), KrGeVector3d(0, 1, 0), 5, 0.2, 1, 7),
            KrGeEllipArc3d(KrGePoint3d(1e4, -1e4, 5e3), KrGeVector3d(1, 2, 3), KrGeVector3d(3, 2, 1), 40, 25)};
  }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Ellipse, CurveConformance, ::testing::Types<KrGeEllipArc3d>);

}  // namespace testkit

namespace {

const char* const kSource = "KrEllipArc3dImpl";

std::vector<std::string> warningsOf(const std::function<void()>& action) {
  return warningsIn(recordsOf(action));
}

}  // namespace

TEST(KrGeEllipArc3d, Construct_DefaultCircleFromArcAndKinship) {
  const KrGeEllipArc3d unit;
  EXPECT_TRUE(unit.center() == KrGePoint3d::kOrigin && unit.majorAxis() == KrGeVector3d::kXAxis &&
              unit.minorAxis() == KrGeVector3d::kYAxis && unit.normal() == KrGeVector3d::kZAxis);
  EXPECT_EQ(unit.majorRadius(), 1.0);
  EXPECT_EQ(unit.endAng() - unit.startAng(), 2 * kPi);
  EXPECT_EQ(unit.type(), KrGe::kEllipArc3d);
  for (int id : {1, 3, 5, 7, 11, 15, 17, 19, 21, 23, 24, 25, 28, 47, 60, 62})
    EXPECT_EQ(unit.isKindOf(KrGe::EntityId(id)), id == 17 || id == 15 || id == 1) << id;
  const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 1, 1), KrGeVector3d(1, 0, 0), 2.5, 0.5, 2.0);
  const KrGeEllipArc3d same(arc);
  EXPECT_TRUE(same.isCircular());
  for (double t = 0.5; t <= 2.0; t += 0.25) EXPECT_TRUE(within(same.evalPoint(t), arc.evalPoint(t), 1e-15)) << t;
}

// Each row: an input, the warnings it must send (exact texts, source KrEllipArc3dImpl) and the
// fallback state; the point at every parameter stays what the input meant where it means one.
TEST(KrGeEllipArc3d, Set_DegenerateInputFallsBackWithItsWarning) {
  ASSERT_TRUE(testkit::MonitorCapture::active());
  const KrGeVector3d x(1, 0, 0), y(0, 1, 0), z(0, 0, 1), zero;
  const std::string axes = "KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - ";
  struct Row {
    const char* name;
    KrGeVector3d major, minor;
    double ra, rb;
    std::vector<std::string> warnings;
    KrGeVector3d wantMajor, wantMinor;
    double wantRa, wantRb, wantStart;
  } rows[] = {
      {"zero axes", zero, zero, 2, 1, {axes + "0-length vectors, X,Y used"}, x, y, 2, 1, 0},
      {"NaN major", {kNaN, 0, 0}, z, 2, 1, {axes + "0-length majorAxis, pMinor, Minor used"}, z.perpVector(), z, 2, 1, 0},
      {"parallel minor", {2, 0, 0}, {-3, 0, 0}, 2, 1, {axes + "0-length or parallel minorAxis, Major, pMajor used"}, x,
       x.perpVector(), 2, 1, 0},
      {"tilted minor", {2, 0, 0}, {1, 1, 0}, 2, 1, {}, x, y, 2, 1, 0},
      {"negative", x, y, -2, -1, {"KrEllipArc3dImpl::set - negative radius, absolute value used",
                                  "KrEllipArc3dImpl::set - negative radius, absolute value used"}, x, y, 2, 1, 0},
      {"swapped", x, y, 1, 2, {"KrEllipArc3dImpl::set - minor radius above major, axes exchanged"}, y, -x, 2, 1, -kPi / 2},
      {"zero minor", x, y, 2, 0, {"KrEllipArc3dImpl::set - zero radius, degenerate ellipse kept"}, x, y, 2, 0, 0},
      {"NaN radius", x, y, kNaN, 1, {"KrEllipArc3dImpl::set - radius not finite, 0 used",
                                     "KrEllipArc3dImpl::set - minor radius above major, axes exchanged"}, y, -x, 1, 0,
       -kPi / 2},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeEllipArc3d ellipse;
    const auto sent = warningsOf([&] { ellipse.set(KrGePoint3d(1, 1, 1), row.major, row.minor, row.ra, row.rb); });
    std::vector<std::string> want;
    for (const auto& w : row.warnings) want.push_back(warningText(w));
    EXPECT_EQ(sent, want);
    EXPECT_TRUE(within(ellipse.majorAxis(), row.wantMajor / row.wantMajor.length(), 1e-15));
    EXPECT_TRUE(within(ellipse.minorAxis(), row.wantMinor / row.wantMinor.length(), 1e-15));
    EXPECT_EQ(ellipse.majorRadius(), row.wantRa);
    EXPECT_EQ(ellipse.minorRadius(), row.wantRb);
    EXPECT_EQ(ellipse.startAng(), row.wantStart);
    EXPECT_NEAR(ellipse.majorAxis().dotProduct(ellipse.minorAxis()), 0.0, 1e-16);
  }
  // The exchange keeps every point: point'(t - pi/2) = point(t) of the ellipse as given.
  const KrGeEllipArc3d given(KrGePoint3d(1, 2, 3), x, y, 1, 3, 0.25, 1.5);
  EXPECT_TRUE(within(given.startPoint(), KrGePoint3d(1 + std::cos(0.25), 2 + 3 * std::sin(0.25), 3), 1e-15));
  EXPECT_TRUE(within(given.endPoint(), KrGePoint3d(1 + std::cos(1.5), 2 + 3 * std::sin(1.5), 3), 1e-15));
  KrGeEllipArc3d other;
  const auto sent = warningsOf([&] {
    other.setCenter(KrGePoint3d(kNaN, 0, 0));
    other.setAngles(0.5, kNaN);
    other.setMinorRadius(4);
  });
  EXPECT_EQ(sent, (std::vector<std::string>{
                      warningText("KrEllipArc3dImpl::setCenter - center not finite, origin used"),
                      warningText("KrEllipArc3dImpl::setAngles - angle not finite, full ellipse used"),
                      warningText("KrEllipArc3dImpl::set - minor radius above major, axes exchanged")}));
  EXPECT_TRUE(other.center() == KrGePoint3d::kOrigin && other.majorRadius() == 4 && other.minorRadius() == 1);
  const auto records = recordsOf([&] { KrGeEllipArc3d().setMajorRadius(-1); });
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].source, kSource);
}

// Lengths over eccentricities 0 to 1 - 1e-9, sweeps from 1e-9 to three turns and sizes 1e-3 to
// 1e3, against adaptive quadrature; paramAtLength must give the length back both ways.
TEST(KrGeEllipArc3d, Length_MatchesQuadratureAndParamAtLengthRoundTrips) {
  repeat(2024, 1500, [](Random& random, int i) {
    const double oneMinusE = i % 10 == 0 ? 1.0 : random.magnitude(-9, 0);
    const double e = 1 - oneMinusE;
    const double a = random.magnitude(-3, 3);
    const double ratio = std::sqrt(oneMinusE * (1 + e));
    const double from = random.uniform(-10, 10);
    const double width = i % 3 == 0 ? random.uniform(0, 20) : random.magnitude(-9, 0.5);
    const KrGeEllipArc3d ellipse = place(random, a, ratio, 10, 0, 2 * kPi).curve;
    const double length = ellipse.length(from, from + width);
    const double expected = ellipse_test::referenceLength(a, a * ratio, from, from + width);
    ASSERT_LE(std::fabs(length - expected), 1e-12 * expected) << "e " << e << " from " << from << " width " << width;
    const double forward = ellipse.paramAtLength(from, length);
    EXPECT_LE(std::fabs(ellipse.length(from, forward) - length), 1e-12 * length);
    const double backward = ellipse.paramAtLength(from + width, length, false);
    EXPECT_LE(std::fabs(ellipse.length(backward, from + width) - length), 1e-12 * length);
  });
  const KrGeEllipArc3d flat(KrGePoint3d(), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), 2, 0);
  EXPECT_DOUBLE_EQ(flat.length(0, 2 * kPi), 8.0);
}

// Points at the centre, on both axes, on the evolute (within 1e-9 of it, both sides), near the
// curve and anywhere in space, for full ellipses and arcs; the distance must equal the sampled
// reference within 1e-9 of itself (or of 1e-5 a for points that near the curve), beyond the
// rounding of the target's coordinates.
TEST(KrGeEllipArc3d, ClosestPoint_MatchesDenseSamplingAtCentreAxesAndEvolute) {
  repeat(77, 2400, [](Random& random, int i) {
    const double a = random.magnitude(-2, 2);
    const double ratio = i % 7 == 0 ? 1.0 : random.magnitude(-4, 0);
    const double b = a * ratio;
    const bool full = i % 2 == 0;
    const double start = random.uniform(-kPi, kPi);
    const double sweep = full ? 2 * kPi : random.uniform(0.1, 6.2);
    const ellipse_test::Placed p = place(random, a, ratio, 5, start, start + sweep);
    const double c2 = (a - b) * (a + b), t = random.uniform(-kPi, kPi);
    double x = 0, y = 0;
    switch (i % 6) {
      case 0: break;  // the centre
      case 1: x = random.uniform(-2, 2) * a; break;
      case 2: y = random.uniform(-2, 2) * a; break;
      case 3: {  // the evolute, or within 1e-9 of it
        const double scale = 1 + (i % 4 - 1.5) * 1e-9 * (i % 8 < 4);
        x = scale * c2 / a * std::pow(std::cos(t), 3);
        y = -scale * c2 / b * std::pow(std::sin(t), 3);
        break;
      }
      case 4: x = a * std::cos(t) * (1 + random.uniform(-1e-3, 1e-3)), y = b * std::sin(t); break;
      default: x = random.uniform(-3, 3) * a, y = random.uniform(-3, 3) * a;
    }
    const double h = i % 5 == 0 ? random.uniform(-a, a) : 0.0;
    const KrGePoint3d target = p.at(x, y, h);
    const KrGePoint3d closest = p.curve.closestPointTo(target);
    const double expected = ellipse_test::referenceDistance(a, b, start, p.curve.endAng() - start, x, y, h);
    // The target's own rounding in space (its coordinates reach 5 + 3a) is beyond any method.
    const double allowed = 1e-9 * std::fmax(expected, 1e-5 * a) + 1e-15 * target.asVector().length();
    ASSERT_LE(std::fabs(target.distanceTo(closest) - expected), allowed) << "kind " << i % 6 << " x " << x << " y " << y;
    const double param = p.curve.paramOf(closest);
    EXPECT_TRUE(within(p.curve.evalPoint(param), closest, 1e-12 * a + 2e-15 * p.curve.center().asVector().length()));
    EXPECT_TRUE(full || (param >= p.curve.startAng() - 1e-12 && param <= p.curve.endAng() + 1e-12)) << param;
  });
}

// Any affine map, mirrors and shears included: the image holds every mapped point at one shifted
// parameter, keeps its axes orthonormal and its radii ordered, and maps the ends to the ends.
TEST(KrGeEllipArc3d, TransformBy_AffineImageHoldsTheMappedSamples) {
  repeat(31, 400, [](Random& random, int i) {
    const double start = random.uniform(-3, 3);
    const ellipse_test::Placed p = place(random, random.magnitude(-2, 2), random.magnitude(-3, 0), 10, start,
                                         start + random.uniform(0.2, 2 * kPi));
    KrGeMatrix3d m;
    for (unsigned r = 0; r < 3; ++r)
      for (unsigned c = 0; c < 4; ++c) m(r, c) = random.uniform(-2, 2) * (c == 3 ? 10 : 1);
    if (i % 4 == 0) m = KrGeMatrix3d::mirroring(KrGePlane(random.point(3), random.unitVector()));
    if (std::fabs(m.det()) < 1e-2) return;
    KrGeEllipArc3d image(p.curve);
    image.transformBy(m);
    EXPECT_GE(image.majorRadius(), image.minorRadius());
    EXPECT_NEAR(image.majorAxis().dotProduct(image.minorAxis()), 0.0, 1e-14);
    const double size = image.majorRadius() + image.center().asVector().length();
    EXPECT_TRUE(within(image.startPoint(), m * p.curve.startPoint(), 1e-12 * size));
    EXPECT_TRUE(within(image.endPoint(), m * p.curve.endPoint(), 1e-12 * size));
    const double shift = image.startAng() - p.curve.startAng();
    for (double t = p.curve.startAng(); t <= p.curve.endAng(); t += 0.3)
      ASSERT_TRUE(within(image.evalPoint(t + shift), m * p.curve.evalPoint(t), 1e-9 * size)) << t;
  });
  KrGeEllipArc3d flattened(KrGePoint3d(1, 1, 0), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 0), 2, 1);
  const auto sent = warningsOf([&] { flattened.transformBy(KrGeMatrix3d::projection(KrGePlane::kYZPlane, KrGeVector3d(1, 0, 0))); });
  EXPECT_EQ(sent, std::vector<std::string>{
                      warningText("KrEllipArc3dImpl::transformBy - ellipse became degenerated, minor radius 0 used")});
  EXPECT_EQ(flattened.minorRadius(), 0.0);
  KrGe::EntityId kind;
  EXPECT_TRUE(flattened.isDegenerate(kind) && kind == KrGe::kLineSeg3d);
}

// Area against the shoelace sum of a dense polygon; the blocks against dense samples: every
// sample inside, and each face touched.
TEST(KrGeEllipArc3d, AreaAndBlocks_AgreeWithDenseSamples) {
  repeat(5, 100, [](Random& random, int) {
    const double start = random.uniform(-4, 4), sweep = random.uniform(1e-3, 2 * kPi);
    const ellipse_test::Placed p = place(random, random.magnitude(-1, 1), random.magnitude(-2, 0), 3, start, start + sweep);
    double area = 0;
    ASSERT_TRUE(p.curve.area(start, start + sweep, area));
    const int n = 20000;
    long double shoelace = 0;
    KrGePoint3d low, high, blockLow, blockHigh;
    p.curve.orthoBoundBlock().getMinMaxPoints(blockLow, blockHigh);
    for (int k = 0; k <= n; ++k) {
      const double t0 = start + sweep * k / n, t1 = start + sweep * (k + 1) / n;
      const KrGePoint3d q = p.curve.evalPoint(t0);
      for (unsigned c = 0; c < 3; ++c) {
        low[c] = k == 0 ? q[c] : std::fmin(low[c], q[c]);
        high[c] = k == 0 ? q[c] : std::fmax(high[c], q[c]);
      }
      const long double x0 = p.curve.majorRadius() * std::cos(t0), y0 = p.curve.minorRadius() * std::sin(t0);
      const long double x1 = p.curve.majorRadius() * std::cos(t1), y1 = p.curve.minorRadius() * std::sin(t1);
      if (k < n) shoelace += (x0 * y1 - x1 * y0) / 2;
    }
    const long double xs = p.curve.majorRadius() * std::cos(start), ys = p.curve.minorRadius() * std::sin(start);
    const long double xe = p.curve.majorRadius() * std::cos(start + sweep), ye = p.curve.minorRadius() * std::sin(start + sweep);
    shoelace += (xe * ys - xs * ye) / 2;  // the chord back to the start
    EXPECT_NEAR(area, (double)shoelace, 1e-6 * p.curve.majorRadius() * p.curve.minorRadius());
    const double slack = 1e-7 * p.curve.majorRadius();
    for (unsigned c = 0; c < 3; ++c) {
      EXPECT_NEAR(blockLow[c], low[c], slack) << c;
      EXPECT_NEAR(blockHigh[c], high[c], slack) << c;
    }
  });
}

// Degenerate ellipses answer every query without fault: a flat one is the segment it covers, a
// point-sized one its centre.
TEST(KrGeEllipArc3d, Degenerate_FlatAndPointSizedEllipsesAnswerEveryQuery) {
  KrsSetWarningsEnabled(false);
  const KrGeEllipArc3d flat(KrGePoint3d(1, 0, 0), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), 2, 0, 0.5, 2.0);
  const KrGeEllipArc3d dot(KrGePoint3d(1, 2, 3), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), 0, 0);
  KrsSetWarningsEnabled(true);
  KrGeEntity3d* segment = nullptr;
  ASSERT_TRUE(flat.isDegenerate(segment));
  ASSERT_TRUE(segment && segment->type() == KrGe::kLineSeg3d);
  const KrGeLineSeg3d& seg = static_cast<const KrGeLineSeg3d&>(*segment);
  EXPECT_TRUE(within(seg.startPoint(), KrGePoint3d(1 + 2 * std::cos(2.0), 0, 0), 1e-15));
  EXPECT_TRUE(within(seg.endPoint(), KrGePoint3d(1 + 2 * std::cos(0.5), 0, 0), 1e-15));
  delete segment;
  EXPECT_TRUE(within(flat.closestPointTo(KrGePoint3d(1.5, 7, 0)), KrGePoint3d(1.5, 0, 0), 1e-15));
  EXPECT_NEAR(flat.length(0.5, 2.0), 2 * (std::cos(0.5) - std::cos(2.0)), 1e-15);
  EXPECT_NEAR(flat.paramAtLength(0.5, flat.length(0.5, 1.2)), 1.2, 1e-12);
  int count = 0;
  KrGePoint3d p1, p2;
  EXPECT_TRUE(flat.intersectWith(KrGeLine3d(KrGePoint3d(1, 0, 0), KrGeVector3d(1, 1, 1)), count, p1, p2));
  EXPECT_TRUE(count == 1 && within(p1, KrGePoint3d(1, 0, 0), 1e-15));
  KrGe::EntityId kind;
  EXPECT_TRUE(dot.isDegenerate(kind) && kind == KrGe::kPosition3d);
  EXPECT_TRUE(dot.closestPointTo(KrGePoint3d(5, 5, 5)) == KrGePoint3d(1, 2, 3));
  EXPECT_EQ(dot.length(0, 7), 0.0);
  const KrGePoint3d nan = dot.closestPointTo(KrGePoint3d(kNaN, 0, 0));
  EXPECT_TRUE(nan.x != nan.x || nan == KrGePoint3d(1, 2, 3));
  EXPECT_TRUE(std::isnan(KrGeEllipArc3d().length(0, kNaN)));
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  const auto sent = warningsOf([&] {
    KrGeEllipArc3d().getSamplePoints(1 << 21, points);
    KrGeEllipArc3d().getSamplePoints(0, kNaN, 0.1, points, params);
  });
  EXPECT_EQ(sent, (std::vector<std::string>{
                      warningText("KrEllipArc3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used"),
                      warningText("KrEllipArc3dImpl::getSamplePoints - non-finite parameter range, no points")}));
  EXPECT_EQ(points.GetSize() + params.GetSize(), 0);
}
