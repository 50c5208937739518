// Closest pairs and intersections of arcs with lines, segments and arcs, against an independent
// brute-force minimisation and dense sign-change sampling on fixed-seed random configurations
// (sizes log-uniform in 1e-3 .. 1e5): coplanar, parallel planes, skew, coaxial, nearly tangent.
#include "tests/entity/EntityKit.h"


namespace {

const double kTwoPi = 6.283185307179586;

// An arc as plain numbers read back through the public accessors, with an independent
// point-to-arc distance: the radial foot when its angle is on the arc, else the nearer end.
struct Arc {
  KrGePoint3d c;
  KrGeVector3d n, u, v;
  double r, start, sweep;
  explicit Arc(const KrGeCircArc3d& a)
      : c(a.center()),
        n(a.normal()),
        u(a.refVec()),
        v(a.normal().crossProduct(a.refVec())),
        r(a.radius()),
        start(a.startAng()),
        sweep(a.endAng() - a.startAng()) {}
  KrGePoint3d at(double angle) const { return c + (u * std::cos(angle) + v * std::sin(angle)) * r; }
  // Angle from the start, in [0, 2 pi).
  double offset(double angle) const { return angle - start - kTwoPi * std::floor((angle - start) / kTwoPi); }
  double distance(const KrGePoint3d& p) const {
    const KrGeVector3d w = p - c;
    const double h = w.dotProduct(n), x = w.dotProduct(u), y = w.dotProduct(v);
    if (sweep >= kTwoPi || offset(std::atan2(y, x)) <= sweep) return std::hypot(h, std::hypot(x, y) - r);
    return std::min(p.distanceTo(at(start)), p.distanceTo(at(start + sweep)));
  }
};

// The least value of f on [low, high]: 400 samples, then golden sections on the brackets of the
// eight least sampled local minima.
template <class F>
double bruteMinimum(F f, double low, double high) {
  const int n = 400;
  std::vector<double> values(n + 1);
  for (int i = 0; i <= n; ++i) values[i] = f(low + (high - low) * i / n);
  std::vector<int> minima;
  for (int i = 0; i <= n; ++i)
    if ((i == 0 || values[i] <= values[i - 1]) && (i == n || values[i] <= values[i + 1])) minima.push_back(i);
  std::sort(minima.begin(), minima.end(), [&](int a, int b) { return values[a] < values[b]; });
  double best = *std::min_element(values.begin(), values.end());
  for (size_t k = 0; k < minima.size() && k < 8; ++k) {
    double a = low + (high - low) * std::max(0, minima[k] - 1) / n,
           b = low + (high - low) * std::min(n, minima[k] + 1) / n;
    for (int i = 0; i < 100; ++i) {
      const double m1 = b - 0.618033988749895 * (b - a), m2 = a + 0.618033988749895 * (b - a);
      (f(m1) <= f(m2) ? b : a) = f(m1) <= f(m2) ? m2 : m1;
    }
    best = std::min(best, f(0.5 * (a + b)));
  }
  return best;
}

// A random arc: radius log-uniform, centre near `around`, start anywhere, full half of the time.
KrGeCircArc3d randomArc(Random& random, const KrGePoint3d& around, const KrGeVector3d& normal, double radius) {
  const double start = random.uniform(-10, 10);
  const double sweep = random.uniform(0, 1) < 0.5 ? kTwoPi : random.uniform(0.05, 6.2);
  return KrGeCircArc3d(around, normal, normal.perpVector(), radius, start, start + sweep);
}

KrGeVector3d rotated(KrGeVector3d v, double angle, const KrGeVector3d& axis) { return v.rotateBy(angle, axis); }

KrGeTol tolOf(double scale) { return tolerance(1e-8 * scale, 1e-10); }

bool recordsHaveDescentWarning(const std::vector<testkit::Record>& records) {
  for (const auto& record : records)
    if (record.message.find("more than 1000 iterations") != std::string::npos) return true;
  return false;
}

}  // namespace

// Lines and segments passing in the plane, parallel to it, skew, near the axis and nearly
// tangent; half through the arc's operation, half through the segment's.
TEST(ArcRelations, LineArcClosestPair_MatchesBruteForce) {
  const auto records = recordsOf([] {
    repeat(901, 3000, [](Random& random, int i) {
      const double radius = random.magnitude(-3, 5);
      const KrGeVector3d normal = random.unitVector();
      const KrGeCircArc3d arcEntity = randomArc(random, random.point(radius), normal, radius);
      const Arc arc(arcEntity);
      const KrGeVector3d inPlane = rotated(normal.perpVector().normal(), random.uniform(0, kTwoPi), normal);
      KrGeVector3d direction = random.unitVector();
      KrGePoint3d through = arc.c + random.unitVector() * random.magnitude(-3, 5);
      switch (i % 5) {
        case 0:
          through = arc.c + normal.crossProduct(inPlane) * (radius * random.uniform(0, 2));
          direction = inPlane;
          break;
        case 1:
          through = through + normal * random.magnitude(-3, 5);
          direction = inPlane;
          break;
        case 3:
          through = arc.c + random.unitVector() * (radius * random.magnitude(-9, 0));
          direction = random.tilted(normal, random.magnitude(-9, -1));
          break;
        case 4: {
          const double at = random.uniform(0, kTwoPi);
          through = arc.at(at) + random.unitVector() * (radius * random.magnitude(-9, -3));
          direction = random.tilted(arc.v * std::cos(at) - arc.u * std::sin(at), random.magnitude(-9, -2));
        }
      }
      const double length = random.magnitude(-3, 5);
      const bool isLine = random.uniform(0, 1) < 0.3;
      const KrGePoint3d p = through - direction * (length * random.uniform(0, 1)), q = p + direction * length;
      std::unique_ptr<KrGeLinearEnt3d> line;
      if (isLine) line.reset(new KrGeLine3d(p, q)); else line.reset(new KrGeLineSeg3d(p, q));
      const Segment seg{p, q};
      const auto toLinear = [&](const KrGePoint3d& x) { return distanceToSegment(x, seg, isLine); };
      double reference = bruteMinimum([&](double a) { return toLinear(arc.at(a)); }, arc.start, arc.start + arc.sweep);
      if (!isLine)
        reference = std::min(reference, bruteMinimum([&](double t) { return arc.distance(p + (q - p) * t); }, 0, 1));
      KrGePoint3d onArc, onLine;
      if (i % 2)
        onArc = arcEntity.closestPointTo(*line, onLine, tolOf(radius));
      else
        onLine = line->closestPointTo(arcEntity, onArc, tolOf(radius));
      // Relative to the configuration: the answer, the radius and the coordinates given.
      const double scale = std::max({reference, radius, p.distanceTo(KrGePoint3d()), q.distanceTo(KrGePoint3d())});
      EXPECT_LE(onArc.distanceTo(onLine), reference + 1e-9 * scale) << "case " << i % 5;
      EXPECT_LE(arc.distance(onArc) + toLinear(onLine), 1e-11 * scale);
    });
  });
  EXPECT_FALSE(recordsHaveDescentWarning(records));
}

// Coplanar, parallel planes, coaxial, skew, nearly touching and linked pairs of any two sizes.
TEST(ArcRelations, ArcArcClosestPair_MatchesBruteForce) {
  const auto records = recordsOf([] {
    repeat(902, 3000, [](Random& random, int i) {
      const double r1 = random.magnitude(-3, 5), r2 = random.magnitude(-3, 5);
      const KrGeVector3d n1 = random.unitVector();
      const KrGeCircArc3d first = randomArc(random, random.point(r1), n1, r1);
      const Arc a1(first);
      KrGeVector3d n2 = random.unitVector();
      KrGePoint3d c2 = a1.c + random.unitVector() * random.magnitude(-3, 5);
      const KrGeVector3d side = (random.unitVector().crossProduct(n1)).normal();
      switch (i % 6) {
        case 0:
          n2 = random.uniform(0, 1) < 0.5 ? n1 : -n1;
          c2 = a1.c + side * random.magnitude(-3, 5);
          break;
        case 1:
          n2 = n1;
          c2 = a1.c + side * random.magnitude(-3, 5) + n1 * random.magnitude(-3, 5);
          break;
        case 2:
          n2 = -n1;
          c2 = a1.c + n1 * (random.uniform(0, 1) < 0.3 ? 0.0 : random.magnitude(-3, 5));
          break;
        case 4: {
          const KrGePoint3d touch =
              a1.at(random.uniform(0, kTwoPi)) + random.unitVector() * (r1 * random.magnitude(-9, -4));
          c2 = touch + n2.crossProduct(random.unitVector()).normal() * r2;
          break;
        }
        case 5:
          n2 = random.tilted(n1.crossProduct(a1.u).normal(), random.magnitude(-6, 0));
          c2 = a1.at(random.uniform(0, kTwoPi));
          break;
      }
      const KrGeCircArc3d second = randomArc(random, c2, n2, r2);
      const Arc a2(second);
      const double reference =
          std::min(bruteMinimum([&](double a) { return a2.distance(a1.at(a)); }, a1.start, a1.start + a1.sweep),
                   bruteMinimum([&](double a) { return a1.distance(a2.at(a)); }, a2.start, a2.start + a2.sweep));
      KrGePoint3d on2;
      const KrGePoint3d on1 = first.closestPointTo(second, on2, tolOf(r1));
      const double scale = std::max({reference, r1, r2});
      EXPECT_LE(on1.distanceTo(on2), reference + 1e-9 * scale) << "case " << i % 6;
      EXPECT_LE(a1.distance(on1) + a2.distance(on2), 1e-11 * scale);
    });
  });
  EXPECT_FALSE(recordsHaveDescentWarning(records));
}

namespace {

// The reported points of `arc` with a linear entity or another arc.
template <class Other>
std::vector<KrGePoint3d> intersections(const KrGeCircArc3d& arc, const Other& other, double tol) {
  int count = 0;
  KrGePoint3d points[2];
  arc.intersectWith(other, count, points[0], points[1], tolerance(tol, 1e-10));
  return std::vector<KrGePoint3d>(points, points + count);
}

// Crossings of the zero level of f along [low, high] (sign changes over 4000 samples, bisected).
template <class F>
std::vector<double> crossings(F f, double low, double high) {
  std::vector<double> found;
  const int n = 4000;
  for (int i = 0; i < n; ++i) {
    double a = low + (high - low) * i / n, b = low + (high - low) * (i + 1) / n;
    if ((f(a) < 0) == (f(b) < 0)) continue;
    for (int k = 0; k < 80; ++k) ((f(a) < 0) == (f(0.5 * (a + b)) < 0) ? a : b) = 0.5 * (a + b);
    found.push_back(0.5 * (a + b));
  }
  return found;
}

// Whether a reported point is near `crossing`: within 2 tol / sine (where a shallow crossing can
// move along the curves) plus rounding.
::testing::AssertionResult reported(const std::vector<KrGePoint3d>& points, const KrGePoint3d& crossing, double reach) {
  for (const KrGePoint3d& point : points)
    if (point.distanceTo(crossing) <= reach) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << points.size() << " points, none within " << reach << " of a crossing";
}

}  // namespace

// Coplanar lines and circles through the disc (crossings found by sign changes along them), and
// lines and circles in other planes through a chosen point of the arc.
TEST(ArcRelations, IntersectWith_PointsLieOnBothAndNoCrossingIsMissed) {
  repeat(903, 2000, [](Random& random, int i) {
    const double radius = random.magnitude(-3, 5), tol = 1e-8 * radius;
    const KrGeVector3d normal = random.unitVector();
    const KrGeCircArc3d arcEntity = randomArc(random, random.point(radius), normal, radius);
    const Arc arc(arcEntity);
    const auto inside = [&](const Arc& a, const KrGePoint3d& x) {
      const KrGeVector3d w = x - a.c;
      const double offset = a.offset(std::atan2(w.dotProduct(a.v), w.dotProduct(a.u)));
      return a.sweep >= kTwoPi || (offset > 1e-6 && offset < a.sweep - 1e-6);
    };
    const KrGePoint3d chosen = arc.at(arc.start + arc.sweep * random.uniform(0.01, 0.99));
    if (i % 2 == 0) {
      KrGeVector3d direction = rotated(normal.perpVector().normal(), random.uniform(0, kTwoPi), normal);
      KrGePoint3d through = arc.c + normal.crossProduct(direction) * (radius * random.uniform(0, 1.5));
      if (i % 4 == 2) direction = random.unitVector(), through = chosen;
      const double length = radius * random.magnitude(-1, 1);
      const KrGePoint3d p = through - direction * (length * random.uniform(0, 1)), q = p + direction * length;
      const KrGeLineSeg3d segment(p, q);
      const auto points = intersections(arcEntity, segment, tol);
      for (const KrGePoint3d& point : points)
        EXPECT_LE(std::max(arc.distance(point), distanceToSegment(point, {p, q})), tol * (1 + 1e-6));
      if (i % 4 == 2) {
        EXPECT_TRUE(reported(points, chosen, tol)) << "3d line";
      }
      for (const double t : crossings([&](double s) { return (p + (q - p) * s).distanceTo(arc.c) - radius; }, 0, 1)) {
        const KrGePoint3d x = p + (q - p) * t;
        const double sine = std::fabs(direction.dotProduct((x - arc.c) / radius));
        if (i % 4 == 0 && inside(arc, x) && sine > 1e-3) {
          EXPECT_TRUE(reported(points, x, 2 * tol / sine + 1e-9 * radius));
        }
      }
    } else {
      const double r2 = radius * random.magnitude(-1, 0.5);
      KrGePoint3d c2 = arc.c + normal.crossProduct(random.unitVector()).normal() * (radius * random.uniform(0, 2));
      KrGeVector3d n2 = random.uniform(0, 1) < 0.5 ? normal : -normal;
      if (i % 4 == 3) n2 = random.unitVector(), c2 = chosen + n2.crossProduct(random.unitVector()).normal() * r2;
      const KrGeCircArc3d other = randomArc(random, c2, n2, r2);
      const Arc a2(other);
      const auto points = intersections(arcEntity, other, tol);
      for (const KrGePoint3d& point : points)
        EXPECT_LE(std::max(arc.distance(point), a2.distance(point)), tol * (1 + 1e-6));
      if (i % 4 == 3 && inside(a2, chosen)) {
        EXPECT_TRUE(reported(points, chosen, tol)) << "3d circles";
      }
      for (const double a :
           crossings([&](double s) { return arc.at(s).distanceTo(a2.c) - r2; }, arc.start, arc.start + arc.sweep)) {
        const KrGePoint3d x = arc.at(a);
        const double sine = std::fabs((arc.v * std::cos(a) - arc.u * std::sin(a)).dotProduct((x - a2.c) / r2));
        if (i % 4 == 1 && inside(a2, x) && sine > 1e-3) {
          EXPECT_TRUE(reported(points, x, 2 * tol / sine + 1e-9 * radius));
        }
      }
    }
  });
}

// Both sides of the tolerance: touching within it is one point, a gap of twice it is none, a
// line cutting three times deeper crosses twice. Equal circles overlapping along a stretch give
// none, arcs meeting end to end give their common end.
TEST(ArcRelations, IntersectWith_TangencyIsOnePointWithinTheTolerance) {
  const double tol = 1e-6, r = 3.0;
  const KrGeCircArc3d circle(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1), r);
  struct Row {
    const char* name;
    double gap;
    int lineCount, outsideCount, insideCount;
  } rows[] = {{"touching", 0.0, 1, 1, 1},
              {"gap 0.9 tol", 0.9 * tol, 1, 1, 1},
              {"overlap 0.9 tol", -0.9 * tol, 1, 1, 1},
              {"gap 2 tol", 2 * tol, 0, 0, 0},
              {"overlap 3 tol", -3 * tol, 2, 2, 2}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const double x = 1 + r + row.gap;
    EXPECT_EQ(intersections(circle, KrGeLine3d(KrGePoint3d(x, 0, 3), KrGeVector3d(0, 1, 0)), tol).size(),
              row.lineCount);
    const KrGeCircArc3d outside(KrGePoint3d(x + 0.5, 2, 3), KrGeVector3d(0, 0, -1), 0.5);
    const KrGeCircArc3d inside(KrGePoint3d(2 - row.gap, 2, 3), KrGeVector3d(0, 0, 1), r - 1);
    EXPECT_EQ(intersections(circle, outside, tol).size(), row.outsideCount);
    EXPECT_EQ(intersections(inside, circle, tol).size(), row.insideCount);
  }
  const auto arcOf = [&](double start, double end) {
    return KrGeCircArc3d(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), r, start, end);
  };
  EXPECT_EQ(intersections(arcOf(0, 1), arcOf(0.5, 2), tol).size(), 0u);
  EXPECT_EQ(intersections(arcOf(0, 1), arcOf(2, 3), tol).size(), 0u);
  const auto touching = intersections(arcOf(0, 1), arcOf(1, 2), tol);
  ASSERT_EQ(touching.size(), 1u);
  EXPECT_TRUE(within(touching[0], arcOf(0, 1).endPoint(), tol));
}

// Documented answers: a line along the axis is equally near to every point and the start is
// taken; concentric circles in one plane are |R1 - R2| apart along a direction on both arcs;
// coaxial arcs whose ranges do not meet are nearest at their nearest ends.
TEST(ArcRelations, ClosestPair_ClosedFormCases) {
  const KrGeVector3d z(0, 0, 1), x(1, 0, 0);
  const KrGeCircArc3d arc(KrGePoint3d(1, 1, 1), z, x, 2.0, 0.5, 2.0);
  KrGePoint3d onLine;
  EXPECT_TRUE(within(arc.closestPointTo(KrGeLine3d(KrGePoint3d(1, 1, 7), z), onLine), arc.startPoint(), 1e-12));
  EXPECT_TRUE(within(onLine, KrGePoint3d(1, 1, 1), 1e-12));
  KrGePoint3d onOther;
  const KrGePoint3d onArc = arc.closestPointTo(KrGeCircArc3d(KrGePoint3d(1, 1, 1), -z, x, 5.0, -1.8, 2.0), onOther);
  EXPECT_NEAR(onArc.distanceTo(onOther), 3.0, 1e-12);
  const double angle = std::atan2(onArc.y - 1, onArc.x - 1);
  EXPECT_TRUE(angle >= 0.5 && angle <= 1.8) << angle;
  const KrGeCircArc3d above(KrGePoint3d(1, 1, 5), z, x, 2.0, 3.0, 4.0);
  above.closestPointTo(arc, onOther);
  EXPECT_TRUE(within(onOther, arc.endPoint(), 1e-12));
}

// Zero, negative, huge and tiny radii, far centres, and lines with NaN or infinite data: every
// query answers, finite data gives finite points, non-finite data gives no intersection.
TEST(ArcRelations, BadInput_AnswersWithoutFailingOrHanging) {
  const KrGeVector3d z(0, 0, 1), x(1, 0, 0);
  const KrGePoint3d p(3, -1, 2);
  const auto arcWith = [&](const KrGePoint3d& center, double radius) {
    return KrGeCircArc3d(center, z, x, radius, 0.5, 2.5);
  };
  const KrGeCircArc3d arcs[] = {arcWith(p, 0.0), arcWith(p, -2.0), arcWith(p, 1e8), arcWith(p, 1e-8),
                                arcWith(KrGePoint3d(1e8, -1e8, 1e8), 1e-8)};
  const KrGeLineSeg3d segment(KrGePoint3d(1, 1, 1), KrGePoint3d(3, -2, 5)), point(p, p);
  const KrGeLine3d line(KrGePoint3d(0, 0, 1), KrGeVector3d(1, 1, 0));
  const KrGeCircArc3d circle(KrGePoint3d(0.5, 0, 0), KrGeVector3d(1, 1, 0), 1.5);
  const KrGeLineSeg3d nanSegment(KrGePoint3d(kNaN, 0, 0), p);
  const KrGeLine3d infLine(p, KrGeVector3d(kInf, 1, 0));
  const KrGeCurve3d* others[] = {&segment, &point, &line, &circle};
  const auto finite = [](const KrGePoint3d& a) { return std::isfinite(a.x + a.y + a.z); };
  const auto records = recordsOf([&] {
    for (const KrGeCircArc3d& arc : arcs) {
      for (const KrGeCurve3d* other : others) {
        KrGePoint3d onOther, onArc;
        EXPECT_TRUE(finite(arc.closestPointTo(*other, onOther)));
        EXPECT_TRUE(finite(other->closestPointTo(arc, onArc)));
      }
      KrGePoint3d onOther;
      arc.closestPointTo(nanSegment, onOther);
      arc.closestPointTo(infLine, onOther);
      EXPECT_EQ(intersections(arc, nanSegment, 1e-10).size() + intersections(arc, infLine, 1e-10).size(), 0u);
    }
  });
  EXPECT_FALSE(recordsHaveDescentWarning(records));
  EXPECT_EQ(intersections(arcs[0], point, 1e-10).size(), 1u);
}
