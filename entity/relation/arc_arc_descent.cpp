#include "entity/relation/arc_arc_descent.h"

#include <algorithm>
#include <cfloat>

#include "KrsDiagnostics.h"

namespace {

// The turn on an arc (axes u, v, radius) of the point nearest to `w` (relative to its centre),
// with `fallback` the in-plane constant terms for a projection exactly at the centre, and the
// chosen radial vector.
KrTurn nearestTurn(const KrGeVector3d& u, const KrGeVector3d& v, double radius, const KrGeVector3d& w,
                   const KrGeVector3d& fallback, KrGeVector3d& radial) {
  double x = w.dotProduct(u), y = w.dotProduct(v);
  if (x == 0.0 && y == 0.0) {
    x = fallback.dotProduct(u);
    y = fallback.dotProduct(v);
  }
  KrTurn turn = krTurnTowards(x, y);
  radial = (u * turn.cosine + v * turn.sine) * radius;
  if ((w + radial).lengthSqrd() < (w - radial).lengthSqrd()) {
    turn = KrTurn{turn.angle + 3.141592653589793, -turn.cosine, -turn.sine};
    radial.negate();
  }
  return turn;
}

}  // namespace

int krArcArcCoordDescent(const KrArcFrame& arc1, const KrArcFrame& arc2, double& theta1, double& theta2,
                         double tolerance, KrTurn* turn1, KrTurn* turn2) {
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
    const KrTurn first = nearestTurn(u1, v1, arc1.radius, offset + radial2, offset, radial1);
    const KrTurn second = nearestTurn(u2, v2, arc2.radius, radial1 - offset, -offset, radial2);
    theta1 = first.angle;
    theta2 = second.angle;
    if (turn1) *turn1 = first;
    if (turn2) *turn2 = second;
    const double step = krNorm(theta1 - old1, theta2 - old2);
    if (step == previousStep || step <= tolerance || step != step) break;
    previousStep = step;
  }
  return round;
}

double krArcArcDescentTolerance(const KrCircle& circle1, const KrCircle& circle2, const KrTurn& theta1,
                                const KrTurn& theta2) {
  const KrGeVector3d radial1 = circle1.radial(theta1), radial2 = circle2.radial(theta2);
  const KrGeVector3d r = (circle1.center - circle2.center) + radial1 - radial2;
  // An angle from a point at w from the centre, rho from the axis, carries eps |w| / rho.
  const auto rounding = [](const KrCircle& c, const KrGeVector3d& w) {
    const double x = w.dotProduct(c.u), y = w.dotProduct(c.v);
    return std::sqrt(w.lengthSqrd() / (x * x + y * y));
  };
  const double angleRounding = kKrRelEpsilon * (rounding(circle1, radial1 - r) + rounding(circle2, radial2 + r));
  const double size =
      std::max(krMagnitude(circle1.center, circle1.radius), krMagnitude(circle2.center, circle2.radius));
  const double noise = kKrRelEpsilon * size * (2.0 * std::sqrt(r.lengthSqrd()) + kKrRelEpsilon * size);
  const double valley = krValleyResolution(circle1.radius * circle1.radius - r.dotProduct(radial1),
                                           -circle1.tangent(theta1).dotProduct(circle2.tangent(theta2)),
                                           circle2.radius * circle2.radius + r.dotProduct(radial2), noise);
  return 1e-12 + 64.0 * angleRounding + 8.0 * valley;
}

void krPolishArcArc(const KrCircle& circle1, const KrCircle& circle2, KrTurn& theta1, KrTurn& theta2) {
  // f/2 has gradient (r . X1', -r . X2') and Hessian [[R1^2 - r . (X1 - C1), -X1' . X2'],
  // [-X1' . X2', R2^2 + r . (X2 - C2)]] with r = X1 - X2.
  const KrGeVector3d offset = circle1.center - circle2.center;
  const double rr1 = circle1.radius * circle1.radius, rr2 = circle2.radius * circle2.radius;
  double value = (offset + circle1.radial(theta1) - circle2.radial(theta2)).lengthSqrd();
  for (int i = 0; i < 3; ++i) {
    const KrGeVector3d radial1 = circle1.radial(theta1), radial2 = circle2.radial(theta2);
    const KrGeVector3d tangent1 = circle1.tangent(theta1), tangent2 = circle2.tangent(theta2);
    const KrGeVector3d r = offset + radial1 - radial2;
    const double g1 = r.dotProduct(tangent1), g2 = -r.dotProduct(tangent2);
    const double a = rr1 - r.dotProduct(radial1), d = rr2 + r.dotProduct(radial2);
    const double b = -tangent1.dotProduct(tangent2);
    const double det = a * d - b * b;
    if (!(a > 0.0 && det > 0.0)) return;
    const double d1 = -(d * g1 - b * g2) / det;
    const double d2 = -(a * g2 - b * g1) / det;
    if (!std::isfinite(d1) || !std::isfinite(d2) || (d1 == 0.0 && d2 == 0.0)) return;
    const KrTurn next1 = krTurnOf(theta1.angle + d1), next2 = krTurnOf(theta2.angle + d2);
    const double next = (offset + circle1.radial(next1) - circle2.radial(next2)).lengthSqrd();
    if (!(next <= value)) return;
    theta1 = next1;
    theta2 = next2;
    value = next;
  }
}
