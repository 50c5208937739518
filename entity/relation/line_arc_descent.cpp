#include "entity/relation/line_arc_descent.h"

#include <cfloat>
#include <limits>

#include "KrsDiagnostics.h"

int krArcLineCoordDescent(const KrArcFrame& arc, const KrGePoint3d& linePoint, const KrGeVector3d& lineDirection,
                          double& theta, double& t, double tolerance) {
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
    theta = std::atan2(y, x);
    const double r = std::hypot(x, y);
    const double c = r > 0.0 ? x / r : 1.0, s = r > 0.0 ? y / r : 0.0;
    KrGeVector3d radial = (u * c + v * s) * arc.radius;
    if ((w + radial).lengthSqrd() < (w - radial).lengthSqrd()) {
      theta += 3.141592653589793;
      radial.negate();
    }
    t = (radial - base).dotProduct(lineDirection) / dd;
    const double step = std::hypot(theta - oldTheta, t - oldT);
    if (step == previousStep || step <= tolerance || step != step) break;
    previousStep = step;
  }
  return round;
}

double krArcLineDescentTolerance(const KrCircle& circle, const KrGePoint3d& linePoint,
                                 const KrGeVector3d& lineDirection, double theta, double t) {
  constexpr double kEpsilon = 2.220446049250313e-16;
  const KrGeVector3d base = linePoint - circle.center;
  const KrGeVector3d radial = (circle.u * std::cos(theta) + circle.v * std::sin(theta)) * circle.radius;
  const KrGeVector3d tangent = (circle.v * std::cos(theta) - circle.u * std::sin(theta)) * circle.radius;
  const KrGeVector3d toLine = base + lineDirection * t;
  const KrGeVector3d r = radial - toLine;
  const double dd = lineDirection.lengthSqrd();
  const double rho = std::hypot(toLine.dotProduct(circle.u), toLine.dotProduct(circle.v));
  const double size = krMagnitude(circle.center, circle.radius) + toLine.length();
  const double rounding = kEpsilon * toLine.length() * (1.0 / rho + 1.0 / std::sqrt(dd));
  const double noise = kEpsilon * size * (2.0 * r.length() + kEpsilon * size);
  const double valley = krValleyResolution(circle.radius * circle.radius - r.dotProduct(radial),
                                           -tangent.dotProduct(lineDirection), dd, noise);
  return 1e-12 + 64.0 * rounding + 8.0 * valley;
}

void krPolishArcLine(const KrCircle& circle, const KrGePoint3d& linePoint, const KrGeVector3d& lineDirection,
                     double& theta, double& t) {
  // f/2 has gradient (r . X', -r . d) and Hessian [[R^2 - r . (X - C), -X' . d], [-X' . d, d . d]]
  // with r = X - L the arc point minus the line point and X'' = -(X - C).
  const KrGeVector3d base = linePoint - circle.center;
  const double dd = lineDirection.dotProduct(lineDirection);
  const double rr = circle.radius * circle.radius;
  double c = std::cos(theta), s = std::sin(theta);
  const auto offsetAt = [&](double cosine, double sine, double param) {
    return (circle.u * cosine + circle.v * sine) * circle.radius - base - lineDirection * param;
  };
  double value = offsetAt(c, s, t).lengthSqrd();
  for (int i = 0; i < 3; ++i) {
    const KrGeVector3d radial = (circle.u * c + circle.v * s) * circle.radius;
    const KrGeVector3d tangent = (circle.v * c - circle.u * s) * circle.radius;
    const KrGeVector3d r = radial - base - lineDirection * t;
    const double g1 = r.dotProduct(tangent), g2 = -r.dotProduct(lineDirection);
    const double a = rr - r.dotProduct(radial), b = -tangent.dotProduct(lineDirection);
    const double det = a * dd - b * b;
    if (!(a > 0.0 && det > 0.0)) return;
    const double dTheta = -(dd * g1 - b * g2) / det;
    const double dT = -(a * g2 - b * g1) / det;
    if (!std::isfinite(dTheta) || !std::isfinite(dT) || (dTheta == 0.0 && dT == 0.0)) return;
    const double nc = std::cos(theta + dTheta), ns = std::sin(theta + dTheta);
    const double next = offsetAt(nc, ns, t + dT).lengthSqrd();
    if (!(next <= value)) return;
    theta += dTheta;
    t += dT;
    c = nc;
    s = ns;
    value = next;
  }
}
