#include "entity/relation/line_arc_descent.h"

#include <cfloat>
#include <limits>

#include "KrsDiagnostics.h"

int krArcLineCoordDescent(const KrArcFrame& arc, const KrGePoint3d& linePoint, const KrGeVector3d& lineDirection,
                          double& theta, double& t, double tolerance, KrTurn* turn) {
  const KrGeVector3d& u = arc.refVec;
  const KrGeVector3d v = arc.yAxis();
  const KrGeVector3d base = linePoint - arc.center;  // the line relative to the centre at t = 0
  const double dd = lineDirection.dotProduct(lineDirection);
  const double constantX = base.dotProduct(u), constantY = base.dotProduct(v);
  double previousStep = DBL_MAX;
  int round = 0;
  while (true) {
    if (++round > 1000) {
      KRS_WARN_AT("cp_cl_LocalMin_CoordDescent_optimized, more than 1000 iterations!, terminating", "KrCircArc3dImpl",
                  398);
      --round;
      break;
    }
    const double oldTheta = theta, oldT = t;
    const KrGeVector3d w = base + lineDirection * t;
    double x = w.dotProduct(u), y = w.dotProduct(v);
    if (x == 0.0 && y == 0.0) {
      x = constantX;
      y = constantY;
    }
    KrTurn toward = krTurnTowards(x, y);
    KrGeVector3d radial = (u * toward.cosine + v * toward.sine) * arc.radius;
    if ((w + radial).lengthSqrd() < (w - radial).lengthSqrd()) {
      toward = KrTurn{toward.angle + 3.141592653589793, -toward.cosine, -toward.sine};
      radial.negate();
    }
    theta = toward.angle;
    if (turn) *turn = toward;
    t = (radial - base).dotProduct(lineDirection) / dd;
    const double step = krNorm(theta - oldTheta, t - oldT);
    if (step == previousStep || step <= tolerance || step != step) break;
    previousStep = step;
  }
  return round;
}

double krArcLineDescentTolerance(const KrCircle& circle, const KrGePoint3d& linePoint,
                                 const KrGeVector3d& lineDirection, const KrTurn& theta, double t) {
  const KrGeVector3d radial = circle.radial(theta), tangent = circle.tangent(theta);
  const KrGeVector3d toLine = (linePoint - circle.center) + lineDirection * t;
  const KrGeVector3d r = radial - toLine;
  const double dd = lineDirection.lengthSqrd();
  const double x = toLine.dotProduct(circle.u), y = toLine.dotProduct(circle.v);
  const double reach2 = toLine.lengthSqrd();
  // sqrt(p) + sqrt(q) <= sqrt(2 (p + q)): one root for both rounding terms.
  const double rounding = kKrRelEpsilon * std::sqrt(2.0 * reach2 * (1.0 / (x * x + y * y) + 1.0 / dd));
  const double size = krMagnitude(circle.center, circle.radius) + krMagnitude(KrGePoint3d() + toLine);
  const double noise = kKrRelEpsilon * size * (2.0 * std::sqrt(r.lengthSqrd()) + kKrRelEpsilon * size);
  const double valley = krValleyResolution(circle.radius * circle.radius - r.dotProduct(radial),
                                           -tangent.dotProduct(lineDirection), dd, noise);
  return 1e-12 + 64.0 * rounding + 8.0 * valley;
}

void krPolishArcLine(const KrCircle& circle, const KrGePoint3d& linePoint, const KrGeVector3d& lineDirection,
                     KrTurn& theta, double& t) {
  // f/2 has gradient (r . X', -r . d) and Hessian [[R^2 - r . (X - C), -X' . d], [-X' . d, d . d]]
  // with r = X - L the arc point minus the line point and X'' = -(X - C).
  const KrGeVector3d base = linePoint - circle.center;
  const double dd = lineDirection.lengthSqrd();
  const double rr = circle.radius * circle.radius;
  const auto offsetAt = [&](const KrTurn& turn, double param) {
    return circle.radial(turn) - base - lineDirection * param;
  };
  double value = offsetAt(theta, t).lengthSqrd();
  for (int i = 0; i < 3; ++i) {
    const KrGeVector3d radial = circle.radial(theta), tangent = circle.tangent(theta);
    const KrGeVector3d r = radial - base - lineDirection * t;
    const double g1 = r.dotProduct(tangent), g2 = -r.dotProduct(lineDirection);
    const double a = rr - r.dotProduct(radial), b = -tangent.dotProduct(lineDirection);
    const double det = a * dd - b * b;
    if (!(a > 0.0 && det > 0.0)) return;
    const double dTheta = -(dd * g1 - b * g2) / det;
    const double dT = -(a * g2 - b * g1) / det;
    if (!std::isfinite(dTheta) || !std::isfinite(dT) || (dTheta == 0.0 && dT == 0.0)) return;
    const KrTurn next = krTurnOf(theta.angle + dTheta);
    const double nextValue = offsetAt(next, t + dT).lengthSqrd();
    if (!(nextValue <= value)) return;
    theta = next;
    t += dT;
    value = nextValue;
  }
}
