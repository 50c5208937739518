// Intersection points of linear entities and circular arcs.
#include <algorithm>

#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/line_arc.h"
#include "entity/relation/line_arc_descent.h"
#include "entity/relation/line_arc_geometry.h"

namespace {

// Collects intersection points: parameters pulled onto the ranges within the tolerance (or the
// pair is dropped), the midpoint of the pair reported, repeats within the tolerance merged.
struct Collector {
  const KrCircle& circle;
  const KrLinearSpan& span;
  double tol;
  KrCurveIntersections& result;

  // `reach` bounds the pair's distance: tol, or up to 2 tol for a touching in the plane (tol
  // across the plane and tol along it), whose midpoint is then still within tol of both.
  // Distances are compared squared.
  void add(const KrGePoint3d& onLine, const KrGePoint3d& onArc, double t, double angle, double reach) {
    if (!((onLine - onArc).lengthSqrd() <= reach * reach)) return;
    if (t < span.lower || t > span.upper) {
      const double bound = t < span.lower ? span.lower : span.upper;
      const double beyond = (t - bound) * (t - bound) * span.direction.lengthSqrd();
      if (!(beyond <= tol * tol)) return;
      t = bound;
    }
    const double param = krArcParamWithin(circle, angle, tol);
    if (!(param == param)) return;
    const KrGePoint3d point = onLine + (onArc - onLine) * 0.5;
    for (int i = 0; i < result.count; ++i)
      if ((result.points[i] - point).lengthSqrd() <= tol * tol) return;
    result.add(point, t, param);
  }
};

}  // namespace

// The line meets the plane within tol over the disc's shadow or it does not. In the plane: the
// in-plane foot of the centre at distance delta, the chord half-length sqrt(R^2 - delta^2);
// |delta - R| <= tol is a touching, one point. The tests compare squares, so that only the chord
// takes a square root. Out of the plane the line is within tol of the circle only near its
// crossing of the plane, at a local minimum of their distance, and those are known
// algebraically.
bool krLineArcIntersections(const KrLinearSpan& span, const KrArcFrame& arc, double tolerance,
                            KrCurveIntersections& result) {
  const KrCircle circle = krCircleOf(arc);
  if (!krIsFinite(circle) || !krIsFinite(span)) return false;
  const KrGeVector3d& d = span.direction;
  const double dd = d.lengthSqrd();
  const KrGeVector3d w0 = span.origin - circle.center;
  const double tol =
      krEffectiveTolerance(std::max(krMagnitude(circle.center, circle.radius), krMagnitude(span.origin)), tolerance);
  Collector collect{circle, span, tol, result};
  const auto nearestTo = [&](double t) {
    const KrGePoint3d onLine = span.at(t);
    const double angle = krClosestArcParam(circle, onLine);
    collect.add(onLine, circle.at(angle), t, angle, tol);
  };
  if (!(dd >= krLinearTinySquare)) {
    nearestTo(krClampParam(0.0, span.lower, span.upper));
    return true;
  }
  const double radius = circle.radius;
  if (radius <= tol) {
    nearestTo(krClosestParamToPoint(span, circle.center));
    return true;
  }

  const KrGeVector3d& n = circle.n;
  const double h0 = w0.dotProduct(n), dn = d.dotProduct(n);
  const KrGeVector3d inPlane0 = w0 - n * h0, inPlaneD = d - n * dn;
  const double dpp = inPlaneD.lengthSqrd();
  if (dpp >= krLinearTinySquare) {
    const double tc = -inPlane0.dotProduct(inPlaneD) / dpp;
    const KrGeVector3d toFoot = inPlane0 + inPlaneD * tc;
    const double delta2 = toFoot.lengthSqrd();
    const double outer2 = (radius + tol) * (radius + tol);
    if (delta2 > outer2) return true;  // the shadow misses the disc: every pair is farther
    // The height over the plane is linear along the line: its largest size over the stretch
    // that the disc's shadow covers, |h(tc)| + |dn| reach, compared squared.
    const double slack = tol - std::fabs(h0 + dn * tc);
    if (slack >= 0.0 && dn * dn * (outer2 - delta2) <= slack * slack * dpp) {
      const double inner = radius - tol;
      if (delta2 >= inner * inner) {
        const KrGeVector3d direction = toFoot / std::sqrt(delta2);
        collect.add(span.at(tc), circle.center + direction * radius, tc, circle.angleOf(direction), 2.0 * tol);
      } else {
        const double half = std::sqrt((radius * radius - delta2) / dpp);
        for (const double t : {tc - half, tc + half}) {
          const KrGeVector3d onCircle = inPlane0 + inPlaneD * t;
          collect.add(span.at(t), circle.center + onCircle, t, circle.angleOf(onCircle), tol);
        }
      }
      return true;
    }
  }
  KrTurn turns[4];
  const int count = krLineCircleMinima(circle, span.origin, d, true, turns);
  for (int i = 0; i < count; ++i) {
    double t = (circle.at(turns[i]) - span.origin).dotProduct(d) / dd;
    krPolishArcLine(circle, span.origin, d, turns[i], t);
    collect.add(span.at(t), circle.at(turns[i]), t, turns[i].angle, tol);
  }
  return true;
}

namespace krrelation {

bool intersectLineArc(const KrGeCurve3dImpl& line, const KrGeCurve3dImpl& arc, const KrGeTol& tol,
                      KrCurveIntersections& result) {
  return krLineArcIntersections(static_cast<const KrLinearEnt3dImpl&>(line).span(),
                                static_cast<const KrCircArc3dImpl&>(arc).frame(), tol.equalPoint(), result);
}

}  // namespace krrelation
