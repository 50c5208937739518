#include "entity/relation/arc_arc_descent.h"

#include <algorithm>
#include <cfloat>

#include "KrsDiagnostics.h"

namespace {

// The angle on an arc (axes u, v, radius) of the point nearest to `w` (relative to its centre),
// with `fallback` the in-plane constant terms for a projection exactly at the centre, and the
// chosen radial vector.
double nearestAngle(const KrGeVector3d& u, const KrGeVector3d& v, double radius, const KrGeVector3d& w,
                    const KrGeVector3d& fallback, KrGeVector3d& radial) {
  double x = w.dotProduct(u), y = w.dotProduct(v);
  if (x == 0.0 && y == 0.0) {
    x = fallback.dotProduct(u);
    y = fallback.dotProduct(v);
  }
  double angle = std::atan2(y, x);
  const double r = std::hypot(x, y);
  radial = (u * (r > 0.0 ? x / r : 1.0) + v * (r > 0.0 ? y / r : 0.0)) * radius;
  if ((w + radial).lengthSqrd() < (w - radial).lengthSqrd()) {
    angle += 3.141592653589793;
    radial.negate();
  }
  return angle;
}

}  // namespace

int krArcArcCoordDescent(const KrArcFrame& arc1, const KrArcFrame& arc2, double& theta1, double& theta2,
                         double tolerance) {
  const KrGeVector3d& u1 = arc1.refVec;
  const KrGeVector3d v1 = arc1.yAxis();
  const KrGeVector3d& u2 = arc2.refVec;
  const KrGeVector3d v2 = arc2.yAxis();
  const KrGeVector3d offset = arc2.center - arc1.center;
  KrGeVector3d radial2 = (u2 * std::cos(theta2) + v2 * std::sin(theta2)) * arc2.radius;
  KrGeVector3d radial1;
  double previousStep = DBL_MAX;
  int round = 0;
  while (true) {
    if (++round > 1000) {
      KRS_WARN_AT("cp_cc_LocalMin_CoordDescent_optimized, more than 1000 iterations!, terminating", "KrCircArc3dImpl",
                  673);
      --round;
      break;
    }
    const double old1 = theta1, old2 = theta2;
    theta1 = nearestAngle(u1, v1, arc1.radius, offset + radial2, offset, radial1);
    theta2 = nearestAngle(u2, v2, arc2.radius, radial1 - offset, -offset, radial2);
    const double step = std::hypot(theta1 - old1, theta2 - old2);
    if (step == previousStep || step <= tolerance || step != step) break;
    previousStep = step;
  }
  return round;
}

double krArcArcDescentTolerance(const KrCircle& circle1, const KrCircle& circle2, double theta1, double theta2) {
  constexpr double kEpsilon = 2.220446049250313e-16;
  const auto radialOf = [](const KrCircle& c, double angle) {
    return (c.u * std::cos(angle) + c.v * std::sin(angle)) * c.radius;
  };
  const auto tangentOf = [](const KrCircle& c, double angle) {
    return (c.v * std::cos(angle) - c.u * std::sin(angle)) * c.radius;
  };
  const KrGeVector3d radial1 = radialOf(circle1, theta1), radial2 = radialOf(circle2, theta2);
  const KrGeVector3d r = (circle1.center - circle2.center) + radial1 - radial2;
  // An angle from a point at w from the centre, rho from the axis, carries eps |w| / rho.
  const auto rounding = [](const KrCircle& c, const KrGeVector3d& w) {
    return w.length() / std::hypot(w.dotProduct(c.u), w.dotProduct(c.v));
  };
  const double angleRounding = kEpsilon * (rounding(circle1, radial1 - r) + rounding(circle2, radial2 + r));
  const double size = std::max(krMagnitude(circle1.center, circle1.radius), krMagnitude(circle2.center, circle2.radius));
  const double noise = kEpsilon * size * (2.0 * r.length() + kEpsilon * size);
  const double valley = krValleyResolution(circle1.radius * circle1.radius - r.dotProduct(radial1),
                                           -tangentOf(circle1, theta1).dotProduct(tangentOf(circle2, theta2)),
                                           circle2.radius * circle2.radius + r.dotProduct(radial2), noise);
  return 1e-12 + 64.0 * angleRounding + 8.0 * valley;
}

void krPolishArcArc(const KrCircle& circle1, const KrCircle& circle2, double& theta1, double& theta2) {
  // f/2 has gradient (r . X1', -r . X2') and Hessian [[R1^2 - r . (X1 - C1), -X1' . X2'],
  // [-X1' . X2', R2^2 + r . (X2 - C2)]] with r = X1 - X2.
  const KrGeVector3d offset = circle1.center - circle2.center;
  const double rr1 = circle1.radius * circle1.radius, rr2 = circle2.radius * circle2.radius;
  double c1 = std::cos(theta1), s1 = std::sin(theta1), c2 = std::cos(theta2), s2 = std::sin(theta2);
  const auto radialOf = [](const KrCircle& c, double cosine, double sine) {
    return (c.u * cosine + c.v * sine) * c.radius;
  };
  double value = (offset + radialOf(circle1, c1, s1) - radialOf(circle2, c2, s2)).lengthSqrd();
  for (int i = 0; i < 3; ++i) {
    const KrGeVector3d radial1 = radialOf(circle1, c1, s1), radial2 = radialOf(circle2, c2, s2);
    const KrGeVector3d tangent1 = radialOf(circle1, -s1, c1), tangent2 = radialOf(circle2, -s2, c2);
    const KrGeVector3d r = offset + radial1 - radial2;
    const double g1 = r.dotProduct(tangent1), g2 = -r.dotProduct(tangent2);
    const double a = rr1 - r.dotProduct(radial1), d = rr2 + r.dotProduct(radial2);
    const double b = -tangent1.dotProduct(tangent2);
    const double det = a * d - b * b;
    if (!(a > 0.0 && det > 0.0)) return;
    const double d1 = -(d * g1 - b * g2) / det;
    const double d2 = -(a * g2 - b * g1) / det;
    if (!std::isfinite(d1) || !std::isfinite(d2) || (d1 == 0.0 && d2 == 0.0)) return;
    const double nc1 = std::cos(theta1 + d1), ns1 = std::sin(theta1 + d1);
    const double nc2 = std::cos(theta2 + d2), ns2 = std::sin(theta2 + d2);
    const double next = (offset + radialOf(circle1, nc1, ns1) - radialOf(circle2, nc2, ns2)).lengthSqrd();
    if (!(next <= value)) return;
    theta1 += d1;
    theta2 += d2;
    c1 = nc1;
    s1 = ns1;
    c2 = nc2;
    s2 = ns2;
    value = next;
  }
}
