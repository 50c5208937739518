// Circular arcs: the setter rules and their reports through the real monitor, the stub rule,
// and the closed forms against independent computations (brute-force minimisation, dense
// sampling, quadrature) on fixed-seed inputs of log-uniform size.
#include "testkit/CurveConformance.h"
#include "tests/entity/LinearTestKit.h"

using linear_test::kInf;
using linear_test::kNaN;
using linear_test::recordsOf;
using linear_test::within;

namespace {

constexpr double kPi = 3.141592653589793;

// The arc's point at angle t from its accessors, in long double: independent of the library's
// evaluation.
struct Naive {
  long double c[3], x[3], y[3], r, start, end;
  explicit Naive(const KrGeCircArc3d& arc) : r(arc.radius()), start(arc.startAng()), end(arc.endAng()) {
    const KrGeVector3d n = arc.normal(), u = arc.refVec(), v = n.crossProduct(u);
    for (unsigned k = 0; k < 3; ++k) c[k] = arc.center()[k], x[k] = u[k], y[k] = v[k];
  }
  KrGePoint3d at(long double t) const {
    double p[3];
    for (int k = 0; k < 3; ++k) p[k] = (double)(c[k] + r * (std::cos(t) * x[k] + std::sin(t) * y[k]));
    return KrGePoint3d(p[0], p[1], p[2]);
  }
  long double distance(long double t, const KrGePoint3d& q) const {
    long double sum = 0;
    for (int k = 0; k < 3; ++k) {
      const long double d = c[k] + r * (std::cos(t) * x[k] + std::sin(t) * y[k]) - q[k];
      sum += d * d;
    }
    return std::sqrt(sum);
  }
  // Minimum distance to q: a scan of 2048 angles, refined by golden-section search around the best.
  double bruteDistance(const KrGePoint3d& q) const {
    const int n = 2048;
    const long double h = (end - start) / n;
    int best = 0;
    long double least = distance(start, q);
    for (int i = 1; i <= n; ++i) {
      const long double d = distance(start + h * i, q);
      if (d < least) least = d, best = i;
    }
    long double lo = std::max(start, start + h * (best - 1)), hi = std::min(end, start + h * (best + 1));
    for (int i = 0; i < 80; ++i) {
      const long double m1 = lo + (hi - lo) * 0.381966L, m2 = hi - (hi - lo) * 0.381966L;
      if (distance(m1, q) <= distance(m2, q))
        hi = m2;
      else
        lo = m1;
    }
    return (double)std::min({distance(lo, q), least, distance(end, q)});
  }
};

// A random arc of size `scale` (radius within a decade below it) about a centre within `scale`.
KrGeCircArc3d randomArc(linear_test::Random& random, double scale) {
  const KrGeVector3d n = random.unitVector();
  const double start = random.uniform(-10, 10);
  return KrGeCircArc3d(random.point(scale), n, n.crossProduct(random.unitVector()), scale * random.magnitude(-1, 0),
                       start, start + random.uniform(0.01, 2 * kPi));
}

// The single warning `action` sends: its text, source and (when not 0) line.
template <class Action>
void expectWarning(const std::string& text, int line, Action action) {
  std::vector<testkit::Record> warnings;
  for (const auto& record : recordsOf(action))
    if (record.message.rfind("WARNING", 0) == 0) warnings.push_back(record);
  ASSERT_EQ(warnings.size(), 1u) << text;
  EXPECT_EQ(warnings[0].message, linear_test::warningText(text));
  EXPECT_EQ(warnings[0].source, "KrCircArc3dImpl") << text;
  if (line) {
    EXPECT_EQ(warnings[0].line, (unsigned)line) << text;
  }
}

std::vector<testkit::Record> gFirstCallRecords;
KrGePoint3d gStubPoints[4];

// The first calls of the announced operations happen before any test, so that the once-per-process
// notices are seen whatever order the tests run in; each is made twice.
struct FirstCallsEnvironment : ::testing::Environment {
  void SetUp() override {
    const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1), 2.0);
    const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(5, 0, 0));
    gFirstCallRecords = recordsOf([&] {
      for (int round = 0; round < 2; ++round) {
        KrGePointOnCurve3d onArc, onOther;
        KrsArray<int> flags;
        int count = 7;
        double p1 = 0, p2 = 0, p3 = 0;
        bool success = true;
        gStubPoints[0] = arc.projClosestPointTo(KrGePoint3d(9, 9, 9), KrGeVector3d(0, 0, 1));
        gStubPoints[1] = arc.projClosestPointTo(segment, KrGeVector3d(0, 0, 1), gStubPoints[2]);
        arc.getLocalClosestPoints(KrGePoint3d(9, 9, 9), onArc);
        arc.getLocalClosestPoints(segment, onArc, onOther);
        EXPECT_FALSE(arc.projIntersectWith(segment, KrGeVector3d(0, 0, 1), count, gStubPoints[3], gStubPoints[3],
                                           gStubPoints[3], gStubPoints[3]));
        EXPECT_EQ(count, 0);
        EXPECT_FALSE(arc.explode(curves, flags));
        KrGeCircArc3d(arc).set(segment, segment, 1.0, p1, p2, success);
        KrGeCircArc3d(arc).set(segment, segment, segment, p1, p2, p3, success);
        EXPECT_FALSE(success);
        delete arc.project(KrGePlane(), KrGeVector3d(0, 0, 1));
        arc.getTrimmedOffset(1.0, KrGeVector3d(0, 0, 1), curves, KrGe::kChamfer);
      }
      for (int i = 0; i < curves.GetSize(); ++i) delete static_cast<KrGeCurve3d*>(curves[i]);
    });
  }
  KrsArray<void*> curves;
};

const auto* const kFirstCalls = ::testing::AddGlobalTestEnvironment(new FirstCallsEnvironment);

}  // namespace

TEST(KrGeCircArc3dNotices, EachOperationTellsOnceAndStubsReportNotImplementedOnce) {
  ASSERT_NE(kFirstCalls, nullptr);
  for (const char* signature :
       {"KrGePoint3d KrCircArc3dImpl::projClosestPointTo(pnt, projDir, tol)",
        "KrGePoint3d KrCircArc3dImpl::projClosestPointTo(curve, projDir, pntOnOtherCrv, tol)",
        "void KrCircArc3dImpl::getLocalClosestPoints(pt, approxpt, pNbhd, tol)",
        "void KrCircArc3dImpl::getLocalClosestPoints(otherCurve, approxPtT, approxPtO, p1, p2, tol)",
        "bool KrCircArc3dImpl::projIntersectWith(line, dir, ni, pa1, pa2, pl1, pl2, tol)",
        "bool KrCircArc3dImpl::explode(curves, flags, pInterval)",
        "KrCircArc3dImpl& KrCircArc3dImpl::set(curve1, curve2, r, p1, p2, flag)",
        "KrCircArc3dImpl& KrCircArc3dImpl::set(curve1, curve2, curve3, p1, p2, p3, flag)",
        "KrGeEntity3d* KrCircArc3dImpl::project(projPlane, projDir, tol)",
        "KrCircArc3dImpl::getTrimmedOffset - fillet/chamfer"})
    EXPECT_EQ(testkit::countMessage(gFirstCallRecords, linear_test::noticeText(signature)), 1) << signature;
  EXPECT_EQ(linear_test::countAssertions(gFirstCallRecords, "(((HRESULT)0x80004001L))"), 6);
  for (const KrGePoint3d& point : gStubPoints) EXPECT_EQ(point, KrGePoint3d::kOrigin);
}

// Each fallback with its text, source and line, and the repaired state.
TEST(KrGeCircArc3dDegenerateInput, EachFallbackWarnsAndRepairs) {
  KrGeCircArc3d arc;
  expectWarning("KrCircArc3dImpl::setAxes(normal, refVec) - 0-length vectors, Z,X used", 2596,
                [&] { arc.setAxes(KrGeVector3d(), KrGeVector3d(0, 0, 1e-11)); });
  EXPECT_TRUE(arc.normal() == KrGeVector3d::kZAxis && arc.refVec() == KrGeVector3d::kXAxis);
  expectWarning("KrCircArc3dImpl::setAxes(normal, refVec) - 0-length refVec, pN, N used", 2600,
                [&] { arc.setAxes(KrGeVector3d(0, 3, 0), KrGeVector3d(kNaN, 0, 0)); });
  EXPECT_TRUE(arc.normal() == KrGeVector3d::kYAxis && arc.refVec().isPerpendicularTo(KrGeVector3d::kYAxis));
  expectWarning("KrCircArc3dImpl::setAxes(normal, refVec) - 0-length normal, RV, pRV used", 2608,
                [&] { arc.setAxes(KrGeVector3d(0, 0, 2), KrGeVector3d(0, 0, 5)); });
  EXPECT_TRUE(arc.refVec() == KrGeVector3d::kZAxis && arc.normal().isPerpendicularTo(KrGeVector3d::kZAxis));
  expectWarning("KrCircArc3dImpl::set(cent, nrm, rad) fail - 0-length normal, OZ used", 2640,
                [&] { arc.set(KrGePoint3d(1, 1, 1), KrGeVector3d(), -2.0); });
  EXPECT_TRUE(arc.normal() == KrGeVector3d::kZAxis && arc.radius() == 2.0 && arc.endAng() == 2 * kPi);
  KrGe::ErrorCondition status = KrGe::kOk;
  const KrGeCircArc3d before(arc);
  expectWarning("KrCircArc3dImpl::set, by 3pt - kLinearlyDependentArg1Arg2Arg3", 2720, [&] {
    arc.set(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1), KrGePoint3d(3, 3, 3), status);
  });
  EXPECT_TRUE(status == KrGe::kLinearlyDependentArg1Arg2Arg3 && arc.isEqualTo(before, KrGeTol()));
  KrGeMatrix3d flat = KrGeMatrix3d::scaling(0.0);
  const auto sent = linear_test::warningsIn(recordsOf([&] { arc.transformBy(flat); }));
  EXPECT_EQ(sent, (std::vector<std::string>{
                      linear_test::warningText("KrCircArc3dImpl::transformBy - refVec become degenerated, use X"),
                      linear_test::warningText("KrCircArc3dImpl::transformBy - normal become degenerated, use pR")}));
  EXPECT_TRUE(arc.refVec() == KrGeVector3d::kXAxis && arc.normal().isPerpendicularTo(KrGeVector3d::kXAxis));
  expectWarning("KrCircArc3dImpl - non-finite center, origin used", 0, [&] { arc.setCenter(KrGePoint3d(0, kInf, 0)); });
  expectWarning("KrCircArc3dImpl - non-finite radius, 0 used", 0, [&] { arc.setRadius(kNaN); });
  EXPECT_TRUE(arc.center() == KrGePoint3d::kOrigin && arc.radius() == 0.0);
  expectWarning("KrCircArc3dImpl::setAngles - non-finite start angle, 0 used", 0, [&] { arc.setAngles(kNaN, 1.0); });
  expectWarning("KrCircArc3dImpl::setAngles - non-finite end angle, full circle used", 0,
                [&] { arc.setAngles(0.5, -kInf); });
  EXPECT_TRUE(arc.startAng() == 0.5 && arc.endAng() == 0.5 + 2 * kPi);
}

TEST(KrGeCircArc3dConstruct, AngleAxisAndThreePointRules) {
  KrGeCircArc3d arc;
  const struct {
    double start, end, sweep;
  } rows[] = {{0, 2 * kPi + 1e-12, 2 * kPi}, {1, 1, 0}, {1, 0.5, 2 * kPi - 0.5}, {0, 4 * kPi, 2 * kPi},
              {0, 1e-11, 0}, {0, 2e-10, 2e-10}, {-1, -1 - 1e-11, 0}, {3, 3 - 2e-10, 2 * kPi - 2e-10}};
  for (const auto& row : rows) {
    arc.setAngles(row.start, row.end);
    EXPECT_NEAR(arc.endAng() - arc.startAng(), row.sweep, 1e-15) << row.start << " " << row.end;
  }
  arc.setAxes(KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 1));
  EXPECT_TRUE(within(arc.refVec(), KrGeVector3d(1, 0, 1) / std::sqrt(2.0), 1e-15));
  EXPECT_TRUE(within(arc.normal(), KrGeVector3d(-1, 0, 1) / std::sqrt(2.0), 1e-15));
  arc.set(KrGePoint3d(1, 0, 0), KrGePoint3d(0, 1, 0), KrGePoint3d(-1, 0, 0));
  EXPECT_TRUE(within(arc.center(), KrGePoint3d::kOrigin, 1e-15) && arc.normal() == KrGeVector3d::kZAxis);
  EXPECT_TRUE(arc.radius() == 1.0 && arc.startAng() == 0.0 && std::fabs(arc.endAng() - kPi) < 1e-15);
  // Far from the origin and nearly collinear the circumcentre still holds all three points.
  const KrGePoint3d p(1e6, 1e6, 1e6), q = p + KrGeVector3d(1, 1e-6, 0), s = p + KrGeVector3d(2, 0, 0);
  arc.set(p, q, s);
  for (const KrGePoint3d& point : {p, q, s}) EXPECT_NEAR(arc.center().distanceTo(point), arc.radius(), 1e-6);
}

TEST(KrGeCircArc3dTransform, MirrorKeepsAnglesAndMovesTheEnds) {
  const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(1, 1, 1), KrGeVector3d(1, -1, 0), 2.5, 0.3, 2.0);
  const KrGePlane mirror(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 2, -1));
  KrGeCircArc3d image(arc);
  image.mirror(mirror);
  const KrGeMatrix3d m = KrGeMatrix3d().setToMirroring(mirror);
  EXPECT_TRUE(image.startAng() == arc.startAng() && image.endAng() == arc.endAng());
  for (double t : {0.3, 1.1, 2.0}) EXPECT_TRUE(within(image.evalPoint(t), m * arc.evalPoint(t), 1e-14));
  KrGeCircArc3d tiny(arc);
  tiny.scaleBy(1e-12, KrGePoint3d(1, 2, 3)).scaleBy(1e12, KrGePoint3d(1, 2, 3));
  EXPECT_TRUE(tiny.isEqualTo(arc, KrGeTol()));
}

TEST(KrGeCircArc3dSampling, CountsBoundsAndPointsOnTheCircle) {
  const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 1, 1), KrGeVector3d(1, 0, 0), 4.0, -1.0, 2.0);
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  arc.getSamplePoints(0.0, kPi, 0.0, points, params);
  EXPECT_EQ(points.GetSize(), 1501);
  arc.getSamplePoints(0.0, kPi, 5.0, points, params);
  EXPECT_EQ(points.GetSize(), 34);
  arc.getSamplePoints(-1.0, 2.0, 1e-3, points, params);
  ASSERT_EQ(params.GetSize(), points.GetSize());
  for (int i = 0; i < points.GetSize(); ++i) EXPECT_TRUE(within(points[i], Naive(arc).at(params[i]), 1e-13));
  for (int i = 1; i < points.GetSize(); ++i)  // chord height within approxEps
    EXPECT_LE(4.0 - arc.center().distanceTo(points[i] + (points[i - 1] - points[i]) * 0.5), 1e-3);
  const auto records = recordsOf([&] {
    arc.getSamplePoints(1, points);
    EXPECT_EQ(points.GetSize(), 1);
    arc.getSamplePoints(0.0, 1.0, -1.0, points, params);
    arc.getSamplePoints(2147483647, points);
  });
  EXPECT_EQ(linear_test::countAssertions(records, "(numSamples<2)"), 1);
  EXPECT_EQ(linear_test::countAssertions(records, "(approxEps<0)"), 1);
  ASSERT_EQ(points.GetSize(), 1 << 20);
  EXPECT_TRUE(within(points[(1 << 20) - 1], arc.endPoint(), 1e-9));
  EXPECT_EQ(testkit::countMessage(records, linear_test::warningText(
                                               "KrCircArc3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used")),
            1);
}

// Point to arc: the closest point is no farther than the brute-force minimum, lies on the arc,
// and its parameter gives it back.
TEST(KrGeCircArc3dClosest, RandomPointsAgreeWithBruteForce) {
  linear_test::repeat(20240917, 2000, [](linear_test::Random& random, int trial) {
    const double scale = random.magnitude(-3, 5);
    const KrGeCircArc3d arc = randomArc(random, scale);
    const Naive naive(arc);
    const KrGePoint3d q = trial % 5 ? arc.center() + (random.point(2 * scale) - KrGePoint3d::kOrigin)
                                    : arc.center() + arc.normal() * random.uniform(-scale, scale);
    const KrGePoint3d closest = arc.closestPointTo(q);
    EXPECT_LE(closest.distanceTo(q), naive.bruteDistance(q) + 1e-9 * scale);
    EXPECT_NEAR(arc.distanceTo(closest), 0.0, 1e-9 * scale);
    const double t = arc.paramOf(closest);
    EXPECT_TRUE(t >= arc.startAng() - 1e-12 && t <= arc.endAng() + 1e-12) << t;
    EXPECT_TRUE(within(arc.evalPoint(t), closest, 1e-9 * scale));
  });
}

// The centre and the axis get the start; wrap at 0 and 2 pi; points in the gap get the
// parameter on their nearer side.
TEST(KrGeCircArc3dClosest, AxisWrapAndGap) {
  const KrGeCircArc3d circle(KrGePoint3d(5, 0, 0), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 1.0, 0.0, 2 * kPi);
  const KrGeCircArc3d arc(KrGePoint3d(5, 0, 0), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 1.0, 0.0, kPi / 2);
  EXPECT_EQ(circle.closestPointTo(KrGePoint3d(5, 0, 7)), circle.startPoint());
  EXPECT_EQ(arc.paramOf(KrGePoint3d(5, 0.5e-10, -3)), 0.0);
  const struct {
    const KrGeCircArc3d& curve;
    double angle, param;
  } rows[] = {{circle, -1e-6, 2 * kPi - 1e-6}, {circle, -1e-11, 0.0}, {circle, 2 * kPi, 0.0},
              {arc, kPi / 2 + 1e-11, kPi / 2}, {arc, -0.5, -0.5}, {arc, kPi, kPi}, {arc, -2.0, -2.0}};
  for (const auto& row : rows) {
    const KrGePoint3d p = Naive(circle).at(row.angle);
    EXPECT_NEAR(row.curve.paramOf(p), row.param, 1e-12) << row.angle;
  }
  EXPECT_TRUE(within(arc.closestPointTo(Naive(circle).at(kPi - 0.2)), arc.endPoint(), 0.0));
  EXPECT_TRUE(within(arc.closestPointTo(Naive(circle).at(-0.3)), arc.startPoint(), 0.0));
}

TEST(KrGeCircArc3dBlocks, ExactAgainstDenseSampling) {
  linear_test::repeat(31337, 300, [](linear_test::Random& random, int) {
    const double scale = random.magnitude(-3, 5);
    const KrGeCircArc3d arc = randomArc(random, scale);
    const Naive naive(arc);
    KrGePoint3d low, high, base;
    arc.orthoBoundBlock().getMinMaxPoints(low, high);
    KrGeVector3d dirs[3];
    const KrGeBoundBlock3d block = arc.boundBlock();
    block.get(base, dirs[0], dirs[1], dirs[2]);
    double sampleLow[3] = {1e300, 1e300, 1e300}, sampleHigh[3] = {-1e300, -1e300, -1e300}, span[2][2] = {{1e300, -1e300}, {1e300, -1e300}};
    for (int i = 0; i <= 4000; ++i) {
      const KrGePoint3d p = naive.at(naive.start + (naive.end - naive.start) * i / 4000);
      ASSERT_TRUE(block.contains(p)) << i;
      for (int k = 0; k < 3; ++k) sampleLow[k] = std::min(sampleLow[k], p[k]), sampleHigh[k] = std::max(sampleHigh[k], p[k]);
      for (int k = 0; k < 2; ++k) {
        const double along = (p - base).dotProduct(dirs[k]) / dirs[k].length();
        span[k][0] = std::min(span[k][0], along), span[k][1] = std::max(span[k][1], along);
      }
    }
    const double slack = 1e-12 * scale, gap = 2e-6 * scale;  // sampling misses at most r (1 - cos(step / 2))
    for (int k = 0; k < 3; ++k) {
      EXPECT_TRUE(low[k] <= sampleLow[k] + slack && sampleLow[k] - low[k] <= gap) << k;
      EXPECT_TRUE(high[k] >= sampleHigh[k] - slack && high[k] - sampleHigh[k] <= gap) << k;
    }
    for (int k = 0; k < 2; ++k) EXPECT_LE(dirs[k].length() - (span[k][1] - span[k][0]), gap) << k;
  });
}

// Area between arc and chord: the polygon of the arc closed by its chord, in long double in the
// arc's plane, with Richardson extrapolation over the number of sides.
TEST(KrGeCircArc3dArea, AgreesWithQuadrature) {
  const auto polygon = [](long double r, long double phi, int n) {
    long double sum = 0;  // fan from the first vertex; x - r = -2 r sin^2(a / 2) keeps its digits
    for (int i = 1; i < n; ++i) {
      const long double a = phi * i / n, b = phi * (i + 1) / n, sa = std::sin(a / 2), sb = std::sin(b / 2);
      sum += 2 * r * r * (sb * sb * std::sin(a) - sa * sa * std::sin(b));
    }
    return sum / 2;
  };
  for (double phi : {1e-4, 0.01, 1.0, 3.0, 6.0, 2 * kPi}) {
    const double r = 3e2;
    const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0.6, 0.8), KrGeVector3d(1, 0, 0), r, 0.5, 0.5 + phi);
    double value = -1;
    EXPECT_TRUE(arc.area(arc.startAng(), arc.endAng(), value));
    const long double reference = (16 * polygon(r, phi, 4000) - polygon(r, phi, 1000)) / 15;
    EXPECT_NEAR(value, (double)reference, 1e-10 * (double)reference) << phi;
  }
  double value = 1;
  const KrGeCircArc3d circle;
  EXPECT_FALSE(circle.area(0, kNaN, value));
  EXPECT_TRUE(circle.area(0, 20, value) && value == kPi);  // more than a turn is the disc
}

// Every reported crossing lies on the arc and on the plane; every sign change of the height over a
// dense sampling has a reported point near it.
TEST(KrGeCircArc3dPlane, RandomCrossingsAgreeWithSampling) {
  linear_test::repeat(4242, 1500, [](linear_test::Random& random, int trial) {
    const double scale = random.magnitude(-3, 5);
    const KrGeCircArc3d arc = randomArc(random, scale);
    const Naive naive(arc);
    const KrGePoint3d through = naive.at(naive.start + (naive.end - naive.start) * random.uniform(-0.2, 1.2));
    const KrGePlane plane(through + random.unitVector() * (trial % 3 ? 0.0 : scale * random.magnitude(-3, 0)),
                          random.unitVector());
    const KrGeTol tol = linear_test::tolerance(1e-9 * scale);
    int count = -1;
    KrGePoint3d points[2];
    arc.intersectWith(plane, count, points[0], points[1], tol);
    for (int i = 0; i < count; ++i) {
      EXPECT_LE(std::fabs(plane.signedDistanceTo(points[i])), tol.equalPoint());
      EXPECT_TRUE(arc.isOn(points[i], tol));
    }
    const int n = 2000;
    const double step = arc.radius() * (arc.endAng() - arc.startAng()) / n;
    std::vector<KrGePoint3d> samples;
    for (int i = 0; i <= n; ++i) samples.push_back(naive.at(naive.start + (naive.end - naive.start) * i / n));
    double least = 1e300;
    for (int i = 0; i < n; ++i) {
      const double ha = plane.signedDistanceTo(samples[i]), hb = plane.signedDistanceTo(samples[i + 1]);
      least = std::min({least, std::fabs(ha), std::fabs(hb)});
      if (!(ha * hb < 0 && std::fabs(ha) > tol.equalPoint() && std::fabs(hb) > tol.equalPoint())) continue;
      const KrGePoint3d& a = samples[i];
      EXPECT_TRUE((count > 0 && points[0].distanceTo(a) <= 2 * step) || (count > 1 && points[1].distanceTo(a) <= 2 * step))
          << "crossing near sample " << i << " missed";
    }
    KrGePoint3d onPlane;
    const KrGePoint3d nearest = arc.closestPointToPlane(plane, onPlane, tol);
    EXPECT_LE(nearest.distanceTo(onPlane), least + tol.equalPoint());
    EXPECT_LE(std::fabs(plane.signedDistanceTo(onPlane)), tol.equalPoint());
  });
}

TEST(KrGeCircArc3dPlane, TouchingInPlaneAndEndCases) {
  const KrGeCircArc3d circle(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 1, 0), 2.0);
  const struct {
    const char* name;
    KrGePlane plane;
    int count;
  } rows[] = {{"touching", KrGePlane(KrGePoint3d(2, 0, 0), KrGeVector3d(1, 0, 0)), 1},
              {"passing 0.5 tol outside", KrGePlane(KrGePoint3d(2 + 0.5e-10, 0, 0), KrGeVector3d(1, 0, 0)), 1},
              {"passing 2 tol outside", KrGePlane(KrGePoint3d(2 + 2e-10, 0, 0), KrGeVector3d(1, 0, 0)), 0},
              {"crossing", KrGePlane(KrGePoint3d(1, 0, 0), KrGeVector3d(1, 0, 0)), 2},
              {"the arc's plane", KrGePlane(KrGePoint3d(0, 0.5e-10, 0), KrGeVector3d(0, 1, 0)), 0}};
  for (const auto& row : rows) {
    int count = -1;
    KrGePoint3d p1, p2;
    EXPECT_EQ(circle.intersectWith(row.plane, count, p1, p2), row.count > 0) << row.name;
    EXPECT_EQ(count, row.count) << row.name;
  }
  const KrGeCircArc3d half(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 1.0, 0.0, kPi);
  int count = 0;
  KrGePoint3d p1, p2;
  half.intersectWith(KrGePlane(KrGePoint3d(0, 0, 0), KrGeVector3d(0.0, 1.0, 1e-3)), count, p1, p2);
  EXPECT_EQ(count, 2);  // both ends: crossings at the very ends of the range
  half.intersectWith(KrGePlane(KrGePoint3d(0, -0.3, 0), KrGeVector3d(0, 1, 0)), count, p1, p2);
  EXPECT_EQ(count, 0);
}

TEST(KrGeCircArc3dMake, ProjectOffsetAndSplit) {
  const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 2.0, 0.5, 2.0);
  const KrGePlane floor(KrGePoint3d(0, 0, -1), KrGeVector3d(0, 0, 1)), wall(KrGePoint3d(0, 9, 0), KrGeVector3d(0, 1, 0));
  std::unique_ptr<KrGeEntity3d> faceOn(arc.project(floor, KrGeVector3d(1, 1, -2)));
  ASSERT_TRUE(faceOn && faceOn->type() == KrGe::kCircArc3d);
  const auto& shadow = static_cast<const KrGeCircArc3d&>(*faceOn);
  EXPECT_TRUE(within(shadow.startPoint(), arc.startPoint() + KrGeVector3d(2, 2, -4), 1e-14));
  std::unique_ptr<KrGeEntity3d> edgeOn(arc.project(wall, KrGeVector3d(0, 1, 0)));
  ASSERT_TRUE(edgeOn && edgeOn->type() == KrGe::kLineSeg3d);
  const auto& segment = static_cast<const KrGeLineSeg3d&>(*edgeOn);  // across the view: -x, from low to high
  EXPECT_TRUE(within(segment.startPoint(), KrGePoint3d(1 + 2 * std::cos(0.5), 9, 3), 1e-14));
  EXPECT_TRUE(within(segment.endPoint(), KrGePoint3d(1 + 2 * std::cos(2.0), 9, 3), 1e-14));
  EXPECT_EQ(arc.project(wall, KrGeVector3d(0, 1, 1)), nullptr);  // an ellipse

  KrsArray<void*> offsets;
  arc.getTrimmedOffset(0.5, KrGeVector3d(0, 0, 3), offsets, KrGe::kExtend);
  arc.getTrimmedOffset(0.5, KrGeVector3d(0, 0, -1), offsets, KrGe::kExtend);
  const auto records = recordsOf([&] { arc.getTrimmedOffset(2.0, KrGeVector3d(0, 0, -1), offsets, KrGe::kExtend); });
  EXPECT_EQ(linear_test::countAssertions(records, "(((HRESULT)0x80070057L))"), 1);
  ASSERT_EQ(offsets.GetSize(), 2);
  EXPECT_EQ(static_cast<KrGeCircArc3d*>(offsets[0])->radius(), 2.5);
  EXPECT_EQ(static_cast<KrGeCircArc3d*>(offsets[1])->radius(), 1.5);
  for (int i = 0; i < offsets.GetSize(); ++i) delete static_cast<KrGeCurve3d*>(offsets[i]);

  const KrGeCircArc3d circle(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1), 2.0);
  const struct {
    const KrGeCircArc3d& curve;
    double param;
    bool first, second;
  } rows[] = {{arc, 1.0, true, true}, {arc, 0.5, false, true}, {arc, 2.0, true, false}, {arc, 2.5, false, false},
              {circle, 1.0 - 2 * kPi, true, true}, {circle, 4 * kPi, false, true}};
  for (const auto& row : rows) {
    KrGeCurve3d *piece1 = nullptr, *piece2 = nullptr;
    row.curve.getSplitCurves(row.param, piece1, piece2);
    std::unique_ptr<KrGeCurve3d> own1(piece1), own2(piece2);
    ASSERT_EQ(piece1 != nullptr, row.first) << row.param;
    ASSERT_EQ(piece2 != nullptr, row.second) << row.param;
    if (piece1 && piece2) {
      EXPECT_TRUE(within(piece1->evalPoint(0.9), row.curve.evalPoint(0.9), 0.0));
      EXPECT_TRUE(within(static_cast<KrGeCircArc3d*>(piece2)->startPoint(), row.curve.evalPoint(row.param), 1e-14));
    }
  }
}

TEST(KrGeCircArc3dQuery, RangeShapeAndTangentRules) {
  KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 2.0, 0.5, 2.0);
  const KrGeCircArc3d original(arc);
  arc.reverseParam();
  EXPECT_TRUE(within(arc.startPoint(), original.endPoint(), 1e-15) && arc.startAng() == -2.0);
  arc.reverseParam();
  EXPECT_TRUE(arc.isEqualTo(original));
  EXPECT_FALSE(arc.setInterval(KrGeInterval(1.0, 1.0 + 2 * kPi + 1e-6)));
  EXPECT_TRUE(arc.setInterval(KrGeInterval(-1.0, 1.0)) && arc.endAng() == 1.0);
  double period = 0;
  EXPECT_FALSE(arc.isPeriodic(period) || arc.isClosed());
  arc.setInterval();
  EXPECT_TRUE(arc.isPeriodic(period) && period == 2 * kPi && arc.isClosed());

  KrGeLine3d line;
  KrGe::ErrorCondition status = KrGe::kOk;
  const struct {
    KrGePoint3d point;
    KrGe::ErrorCondition status;
  } rows[] = {{KrGePoint3d(1, 4, 3), KrGe::kOk},          {KrGePoint3d(1, 4, 3.1), KrGe::kNonCoplanarGeometry},
              {KrGePoint3d(1, 3, 3), KrGe::kArg1InsideThis}, {KrGePoint3d(1, 5, 3), KrGe::kSingularPoint},
              {KrGePoint3d(1, 0, 3), KrGe::kSingularPoint}};
  for (const auto& row : rows) {
    EXPECT_EQ(original.tangent(row.point, line, KrGeContext::gTol, status), row.status == KrGe::kOk);
    EXPECT_EQ(status, row.status);
  }
  EXPECT_TRUE(within(line.direction(), KrGeVector3d(-1, 0, 0), 1e-15));  // the first row's, at the top
  const KrGeTol tol = linear_test::tolerance(1e-3);
  EXPECT_TRUE(original.isInside(KrGePoint3d(3.0009, 2, 3), tol) && original.isInside(KrGePoint3d(1, 0, 3.0009), tol));
  EXPECT_FALSE(original.isInside(KrGePoint3d(3.002, 2, 3), tol) || original.isInside(KrGePoint3d(1, 2, 3.002), tol));

  KrGe::EntityId kind = KrGe::kEntity3d;
  std::unique_ptr<KrGeEntity3d> point;
  KrGeEntity3d* made = nullptr;
  EXPECT_TRUE(KrGeCircArc3d(KrGePoint3d(4, 5, 6), KrGeVector3d(0, 0, 1), 1e-10).isDegenerate(made));
  point.reset(made);
  EXPECT_TRUE(point && point->type() == KrGe::kPosition3d &&
              static_cast<KrGePointEnt3d&>(*point).point3d() == KrGePoint3d(4, 5, 6));
  EXPECT_FALSE(KrGeCircArc3d(KrGePoint3d(4, 5, 6), KrGeVector3d(0, 0, 1), 2e-10).isDegenerate(kind));
  // A flat arc lies on its chord's line while its sagitta 2 r sin^2(sweep / 4) is within tol.
  const double sweep = 4 * std::asin(std::sqrt(0.5e-3 / 2 / 1e3));  // sagitta 0.5e-3 on radius 1e3
  EXPECT_TRUE(KrGeCircArc3d(KrGePoint3d(), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 1e3, 0, sweep).isLinear(line, tol));
  EXPECT_FALSE(
      KrGeCircArc3d(KrGePoint3d(), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), 1e3, 0, 2 * sweep).isLinear(line, tol));
}

namespace testkit {

// Face-on and edge-on to the suite's oblique plane (normal (1, -1, 2)), so that their orthogonal
// projections are curves; partial and full, near and far.
template <>
struct CurveSamples<KrGeCircArc3d> {
  static std::vector<KrGeCircArc3d> make() {
    const KrGeVector3d facing(1, -1, 2), edge(1, 1, 0);
    return {KrGeCircArc3d(KrGePoint3d(1, 2, 3), facing, 2.0),
            KrGeCircArc3d(KrGePoint3d(-1, 0, 2), facing, edge, 0.75, 0.5, 2.5),
            KrGeCircArc3d(KrGePoint3d(0, 1, -2), edge, facing, 3.0, -1.0, 4.0),
            KrGeCircArc3d(KrGePoint3d(1e3, -2e3, 5e2), -facing, edge, 50.0, 2.0, 3.0)};
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Arc, CurveConformance, ::testing::Types<KrGeCircArc3d>);

}  // namespace testkit
