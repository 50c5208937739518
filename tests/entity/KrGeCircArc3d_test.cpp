// Circular arcs: setter rules and reports through the real monitor, the stub rule, and closed forms
// against brute force, dense sampling and quadrature on fixed-seed inputs of log-uniform size.
#include "tests/entity/EntityKit.h"

#include <functional>


namespace {

const KrGeVector3d kX = KrGeVector3d::kXAxis, kY = KrGeVector3d::kYAxis, kZ = KrGeVector3d::kZAxis;

// The arc from its accessors, in long double: independent of the library's evaluation.
struct Naive {
  long double c[3], x[3], y[3], r, start, end;
  explicit Naive(const KrGeCircArc3d& arc) : r(arc.radius()), start(arc.startAng()), end(arc.endAng()) {
    const KrGeVector3d n = arc.normal(), u = arc.refVec(), v = n.crossProduct(u);
    for (unsigned k = 0; k < 3; ++k) c[k] = arc.center()[k], x[k] = u[k], y[k] = v[k];
  }
  long double coordinate(long double t, int k) const { return c[k] + r * (std::cos(t) * x[k] + std::sin(t) * y[k]); }
  KrGePoint3d at(long double t) const {
    return KrGePoint3d((double)coordinate(t, 0), (double)coordinate(t, 1), (double)coordinate(t, 2));
  }
  // n + 1 points evenly over the range.
  std::vector<KrGePoint3d> samples(int n) const {
    std::vector<KrGePoint3d> points;
    for (int i = 0; i <= n; ++i) points.push_back(at(start + (end - start) * i / n));
    return points;
  }
  long double distance(long double t, const KrGePoint3d& q) const {
    const long double dx = coordinate(t, 0) - q.x, dy = coordinate(t, 1) - q.y, dz = coordinate(t, 2) - q.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
  }
  // Minimum distance to q: a scan of 512 angles, refined by ternary search around the best.
  double bruteDistance(const KrGePoint3d& q) const {
    const long double h = (end - start) / 512;
    long double best = start;
    for (int i = 1; i <= 512; ++i) best = distance(start + h * i, q) < distance(best, q) ? start + h * i : best;
    long double lo = std::max(start, best - h), hi = std::min(end, best + h);
    for (int i = 0; i < 100; ++i) {
      const long double m1 = (2 * lo + hi) / 3, m2 = (lo + 2 * hi) / 3;
      (distance(m1, q) <= distance(m2, q) ? hi : lo) = distance(m1, q) <= distance(m2, q) ? m2 : m1;
    }
    return (double)std::min(distance(lo, q), distance(best, q));
  }
};

// A random arc of size `scale` (radius within a decade below it) about a centre within `scale`.
KrGeCircArc3d randomArc(Random& random, double scale) {
  const KrGeVector3d n = random.unitVector();
  const double start = random.uniform(-10, 10);
  return KrGeCircArc3d(random.point(scale), n, n.crossProduct(random.unitVector()), scale * random.magnitude(-1, 0),
                       start, start + random.uniform(0.01, 2 * kPi));
}

// The single warning `action` sends: its text, source and (when not 0) line.
void expectWarning(const std::string& text, int line, const std::function<void()>& action) {
  std::vector<testkit::Record> warnings;
  for (const auto& record : recordsOf(action))
    if (record.message.rfind("WARNING", 0) == 0) warnings.push_back(record);
  ASSERT_EQ(warnings.size(), 1u) << text;
  EXPECT_EQ(warnings[0].message, warningText(text));
  EXPECT_EQ(warnings[0].source, "KrCircArc3dImpl") << text;
  EXPECT_EQ(warnings[0].line, line ? (unsigned)line : warnings[0].line) << text;
}

std::vector<testkit::Record> gFirstCallRecords;

// The first calls of the announced operations happen before any test, so that the once-per-process
// notices are seen whatever order the tests run in; each is made twice.
struct FirstCallsEnvironment : ::testing::Environment {
  void SetUp() override {
    const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), kZ, 2.0);
    const KrGeLineSeg3d segment(KrGePoint3d(0, 0, 0), KrGePoint3d(5, 0, 0));
    KrsArray<void*> curves;
    gFirstCallRecords = recordsOf([&] {
      for (int round = 0; round < 2; ++round) {
        KrGePointOnCurve3d onArc, onOther;
        KrsArray<int> flags;
        int count = 7;
        double p[3] = {0, 0, 0};
        bool success = true;
        KrGePoint3d s;
        arc.projClosestPointTo(arc.projClosestPointTo(segment, kZ, s), kZ);
        arc.getLocalClosestPoints(s, onArc);
        arc.getLocalClosestPoints(segment, onArc, onOther);
        arc.projIntersectWith(segment, kZ, count, s, s, s, s);
        arc.explode(curves, flags);
        KrGeCircArc3d(arc).set(segment, segment, 1.0, p[0], p[1], success);
        KrGeCircArc3d(arc).set(segment, segment, segment, p[0], p[1], p[2], success);
        delete arc.project(KrGePlane(), kZ);
        arc.getTrimmedOffset(1.0, kZ, curves, KrGe::kChamfer);
      }
    });
    for (int i = 0; i < curves.GetSize(); ++i) delete static_cast<KrGeCurve3d*>(curves[i]);
  }
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
    EXPECT_EQ(testkit::countMessage(gFirstCallRecords, noticeText(signature)), 1) << signature;
  EXPECT_EQ(countAssertions(gFirstCallRecords, "(((HRESULT)0x80004001L))"), 6);
}

// Each fallback with its text, source and line (0: not fixed), then the repaired state.
TEST(KrGeCircArc3dDegenerateInput, EachFallbackWarnsAndRepairs) {
  KrGeCircArc3d arc;
  KrGe::ErrorCondition status = KrGe::kOk;
  KrsArray<KrGeVector3d> derivs;
  const auto frame = [&] { return std::make_tuple(arc.normal(), arc.refVec()); };
  const auto perpendicular = [&] { return arc.normal().isPerpendicularTo(arc.refVec()); };
  const struct {
    const char* text;
    int line;
    std::function<void()> action;
    std::function<bool()> repaired;
  } rows[] = {
      {"KrCircArc3dImpl::setAxes(normal, refVec) - 0-length vectors, Z,X used", 2596,
       [&] { arc.setAxes(KrGeVector3d(), kZ * 1e-11); }, [&] { return frame() == std::make_tuple(kZ, kX); }},
      {"KrCircArc3dImpl::setAxes(normal, refVec) - 0-length refVec, pN, N used", 2600,
       [&] { arc.setAxes(kY * 3, KrGeVector3d(kNaN, 0, 0)); }, [&] { return arc.normal() == kY && perpendicular(); }},
      {"KrCircArc3dImpl::setAxes(normal, refVec) - 0-length normal, RV, pRV used", 2608,
       [&] { arc.setAxes(kZ * 2, kZ * 5); }, [&] { return arc.refVec() == kZ && perpendicular(); }},
      {"KrCircArc3dImpl::set(cent, nrm, rad) fail - 0-length normal, OZ used", 2640,
       [&] { arc.set(KrGePoint3d(1, 1, 1), KrGeVector3d(), -2.0); },
       [&] { return std::make_tuple(arc.normal(), arc.radius(), arc.endAng()) == std::make_tuple(kZ, 2.0, 2 * kPi); }},
      {"KrCircArc3dImpl::set, by 3pt - kLinearlyDependentArg1Arg2Arg3", 2720,
       [&] { arc.set(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1), KrGePoint3d(3, 3, 3), status); },
       [&] { return status == KrGe::kLinearlyDependentArg1Arg2Arg3 && arc.radius() == 2.0; }},
      {"KrCircArc3dImpl::transformBy - refVec become degenerated, use X", 276,
       [&] { arc.transformBy(KrGeMatrix3d::projection(KrGePlane(KrGePoint3d(), kX), kX)); },
       [&] { return frame() == std::make_tuple(kZ, kX); }},
      {"KrCircArc3dImpl::transformBy - normal become degenerated, use pR", 286,
       [&] { arc.transformBy(KrGeMatrix3d::projection(KrGePlane(), KrGeVector3d(1, 0, 1))); }, perpendicular},
      {"KrCircArc3dImpl - non-finite center, origin used", 0, [&] { arc.setCenter(KrGePoint3d(0, kInf, 0)); }, {}},
      {"KrCircArc3dImpl - non-finite radius, 0 used", 0, [&] { arc.setRadius(kNaN); }, {}},
      {"KrCircArc3dImpl::setAngles - non-finite start angle, 0 used", 0, [&] { arc.setAngles(kNaN, 1.0); }, {}},
      {"KrCircArc3dImpl::setAngles - non-finite end angle, full circle used", 0, [&] { arc.setAngles(0.5, -kInf); },
       [&] { return std::make_tuple(arc.center(), arc.radius(), arc.endAng()) ==
                    std::make_tuple(KrGePoint3d::kOrigin, 0.0, 0.5 + 2 * kPi); }},
      {"KrCircArc3dImpl::evalPoint - numDeriv above 1048576, 1048576 used", 0,
       [&] { arc.setRadius(1).evalPoint(1, 1 << 30, derivs); }, [&] { return derivs.GetSize() == 1 << 20; }}};
  for (const auto& row : rows) {
    expectWarning(row.text, row.line, row.action);
    EXPECT_TRUE(!row.repaired || row.repaired()) << row.text;
  }
}

TEST(KrGeCircArc3dConstruct, AngleAxisThreePointAndMirrorRules) {
  KrGeCircArc3d arc;
  const double rows[][3] = {{0, 2 * kPi + 1e-12, 2 * kPi}, {1, 1, 0}, {1, 0.5, 2 * kPi - 0.5}, {0, 4 * kPi, 2 * kPi},
                            {0, 1e-11, 0}, {0, 2e-10, 2e-10}, {-1, -1 - 1e-11, 0}, {3, 3 - 2e-10, 2 * kPi - 2e-10}};
  for (const auto& row : rows)  // start, end, sweep
    EXPECT_NEAR(arc.setAngles(row[0], row[1]).endAng() - arc.startAng(), row[2], 1e-15) << row[0] << " " << row[1];
  arc.setAxes(kZ, KrGeVector3d(1, 0, 1));
  EXPECT_TRUE(within(arc.refVec(), KrGeVector3d(1, 0, 1) / std::sqrt(2.0), 1e-15));
  EXPECT_TRUE(within(arc.normal(), KrGeVector3d(-1, 0, 1) / std::sqrt(2.0), 1e-15));
  arc.set(KrGePoint3d(1, 0, 0), KrGePoint3d(0, 1, 0), KrGePoint3d(-1, 0, 0));
  EXPECT_EQ(std::make_tuple(arc.center(), arc.normal(), arc.radius(), arc.startAng()),
            std::make_tuple(KrGePoint3d::kOrigin, kZ, 1.0, 0.0));
  EXPECT_NEAR(arc.endAng(), kPi, 1e-15);

  const KrGeCircArc3d tilted(KrGePoint3d(1, 2, 3), KrGeVector3d(1, 1, 1), KrGeVector3d(1, -1, 0), 2.5, 0.3, 2.0);
  const KrGePlane mirror(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 2, -1));
  KrGeCircArc3d image(tilted);
  image.mirror(mirror);  // same angles, mirrored points
  for (double t : {0.3, 1.1, 2.0})
    EXPECT_TRUE(within(image.evalPoint(t), KrGeMatrix3d::mirroring(mirror) * tilted.evalPoint(t), 1e-14));
}

TEST(KrGeCircArc3dSampling, CountsBoundsAndPointsOnTheCircle) {
  const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 1, 1), kX, 4.0, -1.0, 2.0);
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  for (double eps : {0.0, 5.0})
    EXPECT_EQ((arc.getSamplePoints(0.0, kPi, eps, points, params), points.GetSize()), eps ? 34 : 1501);
  arc.getSamplePoints(-1.0, 2.0, 1e-3, points, params);
  for (int i = 0; i < points.GetSize(); ++i) EXPECT_TRUE(within(points[i], Naive(arc).at(params[i]), 1e-13));
  const auto records = recordsOf([&] {
    arc.getSamplePoints(0.0, 1.0, -1.0, points, params);
    arc.getSamplePoints(1, points);
  });
  EXPECT_EQ(countAssertions(records, "(numSamples<2)"), 1);
  EXPECT_EQ(countAssertions(records, "(approxEps<0)"), 1);
  expectWarning("KrCircArc3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used", 0,
                [&] { arc.getSamplePoints(2147483647, points); });
  ASSERT_EQ(points.GetSize(), 1 << 20);
  EXPECT_TRUE(within(points[(1 << 20) - 1], arc.endPoint(), 1e-9));
}

// Point to arc: the closest point is no farther than the brute-force minimum, lies on the arc,
// and its parameter gives it back. Every fifth point lies on the axis.
TEST(KrGeCircArc3dClosest, RandomPointsAgreeWithBruteForce) {
  repeat(20240917, 2000, [](Random& random, int trial) {
    const double scale = random.magnitude(-3, 5);
    const KrGeCircArc3d arc = randomArc(random, scale);
    const KrGePoint3d q = trial % 5 ? arc.center() + (random.point(2 * scale) - KrGePoint3d::kOrigin)
                                    : arc.center() + arc.normal() * random.uniform(-scale, scale);
    const KrGePoint3d closest = arc.closestPointTo(q);
    EXPECT_LE(closest.distanceTo(q), Naive(arc).bruteDistance(q) + 1e-9 * scale);
    const double t = arc.paramOf(closest);
    EXPECT_NEAR(t, (arc.startAng() + arc.endAng()) / 2, (arc.endAng() - arc.startAng()) / 2 + 1e-12);
    EXPECT_TRUE(within(arc.evalPoint(t), closest, 1e-9 * scale));
  });
}

// The axis gets the start; wrap at 0 and 2 pi; a point in the gap gets the parameter on its
// nearer side.
TEST(KrGeCircArc3dClosest, AxisWrapAndGap) {
  const KrGePoint3d c(5, 0, 0);
  const KrGeCircArc3d circle(c, kZ, kX, 1.0, 0.0, 2 * kPi), arc(c, kZ, kX, 1.0, 0.0, 1.5);
  EXPECT_EQ(arc.paramOf(KrGePoint3d(5, 0.5e-10, -3)), 0.0);
  const std::tuple<const KrGeCircArc3d*, double, double> rows[] = {  // curve, angle of the point, parameter
      {&circle, -1e-6, 2 * kPi - 1e-6}, {&circle, -1e-11, 0.0}, {&circle, 2 * kPi, 0.0}, {&arc, 1.5 + 1e-11, 1.5},
      {&arc, -0.5, -0.5}, {&arc, 3.0, 3.0}, {&arc, -2.0, -2.0}};
  for (const auto& [curve, angle, t] : rows) EXPECT_NEAR(curve->paramOf(Naive(circle).at(angle)), t, 1e-12) << angle;
}

// Both blocks hold every sample and are no larger than the samples' extent plus what sampling
// misses (r (1 - cos(step / 2))): along the axes, and along the flat block's two edges.
TEST(KrGeCircArc3dBlocks, ExactAgainstDenseSampling) {
  repeat(31337, 300, [](Random& random, int) {
    const double scale = random.magnitude(-3, 5), gap = 2e-6 * scale;
    const KrGeCircArc3d arc = randomArc(random, scale);
    KrGePoint3d low, high, base;
    KrGeVector3d dirs[3];
    arc.orthoBoundBlock().getMinMaxPoints(low, high);
    arc.boundBlock().get(base, dirs[0], dirs[1], dirs[2]);
    double extent[5][2] = {{1e300, -1e300}, {1e300, -1e300}, {1e300, -1e300}, {1e300, -1e300}, {1e300, -1e300}};
    for (const KrGePoint3d& p : Naive(arc).samples(4000)) {
      ASSERT_TRUE(arc.boundBlock().contains(p));
      for (int k = 0; k < 5; ++k) {  // the axes, then the block's two edges
        const double along = k < 3 ? p[k] : (p - base).dotProduct(dirs[k - 3]) / dirs[k - 3].length();
        extent[k][0] = std::min(extent[k][0], along), extent[k][1] = std::max(extent[k][1], along);
      }
    }
    for (int k = 0; k < 6; ++k)  // the box within [-rounding, gap] beyond the samples' extremes
      EXPECT_NEAR(k < 3 ? extent[k][0] - low[k] : high[k % 3] - extent[k % 3][1], gap / 2, gap / 2 + scale * 1e-12);
    for (int k = 3; k < 5; ++k) EXPECT_LE(dirs[k - 3].length() - (extent[k][1] - extent[k][0]), gap) << k;
  });
}

// Area between arc and chord: the polygon of the arc closed by its chord, in long double in the
// arc's plane, with Richardson extrapolation over the number of sides.
TEST(KrGeCircArc3dArea, AgreesWithQuadrature) {
  const auto polygon = [](long double r, long double phi, int n) {
    long double sum = 0;  // fan from the first vertex; x - r = -2 r sin^2(a / 2) keeps its digits
    for (int i = 1; i < n; ++i) {
      const long double a = phi * i / n, b = phi * (i + 1) / n, sa = std::sin(a / 2), sb = std::sin(b / 2);
      sum += r * r * (sb * sb * std::sin(a) - sa * sa * std::sin(b));
    }
    return sum;
  };
  for (double phi : {1e-4, 0.01, 1.0, 3.0, 6.0, 2 * kPi}) {
    const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0.6, 0.8), kX, 3e2, 0.5, 0.5 + phi);
    double value = -1;
    EXPECT_TRUE(arc.area(arc.startAng(), arc.endAng(), value));
    const double reference = (double)((16 * polygon(3e2, phi, 4000) - polygon(3e2, phi, 1000)) / 15);
    EXPECT_NEAR(value, reference, 1e-10 * reference) << phi;
  }
  double value = 1;
  EXPECT_EQ((KrGeCircArc3d().area(0, 20, value), value), kPi);  // more than a turn is the disc
}

// Every reported crossing lies on the arc and on the plane; every sign change of the height over a
// dense sampling has a reported point near it; the closest point to the plane is no farther than
// the nearest sample.
TEST(KrGeCircArc3dPlane, RandomCrossingsAgreeWithSampling) {
  repeat(4242, 1500, [](Random& random, int trial) {
    const double scale = random.magnitude(-3, 5);
    const KrGeCircArc3d arc = randomArc(random, scale);
    const Naive naive(arc);
    const KrGePoint3d through = naive.at(naive.start + (naive.end - naive.start) * random.uniform(-0.2, 1.2));
    const KrGePlane plane(through + random.unitVector() * (trial % 3 ? 0.0 : scale * random.magnitude(-3, 0)),
                          random.unitVector());
    const KrGeTol tol = tolerance(1e-9 * scale, 1e-10);
    int count = -1;
    KrGePoint3d points[2], onPlane;
    arc.intersectWith(plane, count, points[0], points[1], tol);
    for (int i = 0; i < count; ++i)  // on the plane and on the arc
      EXPECT_LE(std::max(std::fabs(plane.signedDistanceTo(points[i])), arc.distanceTo(points[i])), tol.equalPoint());
    const std::vector<KrGePoint3d> samples = naive.samples(2000);
    const double step = arc.radius() * (arc.endAng() - arc.startAng()) / 2000;
    double least = 1e300;
    for (size_t i = 0; i + 1 < samples.size(); ++i) {
      const double ha = plane.signedDistanceTo(samples[i]), hb = plane.signedDistanceTo(samples[i + 1]);
      least = std::min({least, std::fabs(ha), std::fabs(hb)});
      const bool crossing = ha * hb < 0 && std::fabs(ha) > tol.equalPoint() && std::fabs(hb) > tol.equalPoint();
      const double found = std::min(count > 0 ? points[0].distanceTo(samples[i]) : 1e300,
                                    count > 1 ? points[1].distanceTo(samples[i]) : 1e300);
      EXPECT_LE(crossing ? found : 0.0, 2 * step) << "crossing near sample " << i << " missed";
    }
    const KrGePoint3d nearest = arc.closestPointToPlane(plane, onPlane, tol);
    EXPECT_LE(nearest.distanceTo(onPlane), least + tol.equalPoint());
    EXPECT_LE(std::fabs(plane.signedDistanceTo(onPlane)), tol.equalPoint());
  });
}

// A circle touching a plane within tol is one point, beyond it none; lying in it, none.
TEST(KrGeCircArc3dPlane, TouchingAndInPlane_BothSidesOfTheTolerance) {
  const KrGeCircArc3d circle(KrGePoint3d(0, 0, 0), kY, 2.0);
  const double rows[][3] = {{2, 0, 1}, {2 + 0.5e-10, 0, 1}, {2 + 2e-10, 0, 0}, {1, 0, 2}, {0, 0.5e-10, 0}};
  for (const auto& row : rows) {  // x, y of the plane's origin (normal X, or Y when x is 0); count
    int count = -1;
    KrGePoint3d p1, p2;
    circle.intersectWith(KrGePlane(KrGePoint3d(row[0], row[1], 0), row[0] ? kX : kY), count, p1, p2);
    EXPECT_EQ(count, row[2]) << row[0];
  }
}

TEST(KrGeCircArc3dMake, ProjectOffsetAndSplit) {
  const KrGeCircArc3d arc(KrGePoint3d(1, 2, 3), kZ, kX, 2.0, 0.5, 2.0);
  const KrGePlane floor(KrGePoint3d(0, 0, -1), kZ), wall(KrGePoint3d(0, 9, 0), kY);
  std::unique_ptr<KrGeEntity3d> faceOn(arc.project(floor, KrGeVector3d(1, 1, -2))), edgeOn(arc.project(wall, kY));
  ASSERT_EQ(std::make_pair(faceOn->type(), edgeOn->type()), std::make_pair(KrGe::kCircArc3d, KrGe::kLineSeg3d));
  const KrGeVector3d shift(2, 2, -4);  // along the direction down to the floor
  EXPECT_TRUE(within(static_cast<KrGeCircArc3d&>(*faceOn).startPoint(), arc.startPoint() + shift, 1e-14));
  const auto& segment = static_cast<const KrGeLineSeg3d&>(*edgeOn);  // across the view (-x), from low to high
  EXPECT_TRUE(within(segment.startPoint(), KrGePoint3d(1 + 2 * std::cos(0.5), 9, 3), 1e-14));
  EXPECT_TRUE(within(segment.endPoint(), KrGePoint3d(1 + 2 * std::cos(2.0), 9, 3), 1e-14));
  const KrGeVector3d slant(0, 1, 1);
  std::unique_ptr<KrGeEntity3d> oblique(arc.project(wall, slant));
  ASSERT_TRUE(oblique && oblique->type() == KrGe::kEllipArc3d);
  const auto& image = static_cast<const KrGeEllipArc3d&>(*oblique);
  EXPECT_TRUE(within(image.startPoint(), arc.startPoint().project(wall, slant), 1e-14));
  EXPECT_TRUE(within(image.endPoint(), arc.endPoint().project(wall, slant), 1e-14));

  KrsArray<void*> offsets;  // outward about the normal, inward against it; through the centre refused
  const auto records = recordsOf([&] {
    for (double z : {3.0, -1.0}) arc.getTrimmedOffset(0.5, kZ * z, offsets, KrGe::kExtend);
    arc.getTrimmedOffset(2.0, -kZ, offsets, KrGe::kExtend);
  });
  EXPECT_EQ(countAssertions(records, "(((HRESULT)0x80070057L))"), 1);
  ASSERT_EQ(offsets.GetSize(), 2);
  EXPECT_EQ(static_cast<KrGeCircArc3d*>(offsets[0])->radius(), 2.5);
  EXPECT_EQ(static_cast<KrGeCircArc3d*>(offsets[1])->radius(), 1.5);
  for (int i = 0; i < offsets.GetSize(); ++i) delete static_cast<KrGeCurve3d*>(offsets[i]);

  const KrGeCircArc3d circle(KrGePoint3d(1, 2, 3), kZ, 2.0);
  const struct {
    const KrGeCircArc3d& curve;
    double param;
    int pieces;  // bit 1: piece1, bit 2: piece2
  } rows[] = {{arc, 1, 3}, {arc, 0.5, 2}, {arc, 2, 1}, {arc, 2.5, 0}, {circle, 1 - 2 * kPi, 3}, {circle, 4 * kPi, 2}};
  for (const auto& row : rows) {
    KrGeCurve3d *piece1 = nullptr, *piece2 = nullptr;
    row.curve.getSplitCurves(row.param, piece1, piece2);
    std::unique_ptr<KrGeCurve3d> own1(piece1), own2(piece2);
    ASSERT_EQ((piece1 ? 1 : 0) + (piece2 ? 2 : 0), row.pieces) << row.param;
    if (row.pieces != 3) continue;  // the same parametrisation, cut where asked
    EXPECT_TRUE(within(piece1->evalPoint(0.9), row.curve.evalPoint(0.9), 0.0));
    EXPECT_TRUE(within(piece2->evalPoint(row.param), row.curve.evalPoint(row.param), 0.0));
  }
}

TEST(KrGeCircArc3dQuery, RangeShapeAndTangentRules) {
  KrGeCircArc3d original(KrGePoint3d(1, 2, 3), kZ, kX, 2.0, 0.5, 2.0), arc(original);
  EXPECT_TRUE(within(static_cast<KrGeCircArc3d&>(arc.reverseParam()).startPoint(), original.endPoint(), 1e-15));
  EXPECT_TRUE(arc.reverseParam().isEqualTo(original));
  EXPECT_FALSE(arc.setInterval(KrGeInterval(1.0, 1.0 + 2 * kPi + 1e-6)));
  EXPECT_EQ((arc.setInterval(KrGeInterval(-1.0, 1.0)), arc.endAng()), 1.0);

  KrGeLine3d line;
  KrGe::ErrorCondition status = KrGe::kOk;
  const std::pair<KrGePoint3d, KrGe::ErrorCondition> rows[] = {
      {{1, 4, 3}, KrGe::kOk}, {{1, 4, 3.1}, KrGe::kNonCoplanarGeometry}, {{1, 3, 3}, KrGe::kArg1InsideThis},
      {{1, 5, 3}, KrGe::kSingularPoint}, {{1, 0, 3}, KrGe::kSingularPoint}};  // the last on the circle, off the arc
  for (const auto& row : rows) {
    EXPECT_EQ(original.tangent(row.first, line, KrGeContext::gTol, status), row.second == KrGe::kOk);
    EXPECT_EQ(status, row.second);
  }
  EXPECT_TRUE(within(line.direction(), KrGeVector3d(-1, 0, 0), 1e-15));  // the first row's, at the top
}
