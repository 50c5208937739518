// Closest pairs and intersections of linear entities and circular arcs.
#include "entity/relation/line_arc.h"

#include <algorithm>
#include <cfloat>
#include <limits>

#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/line_arc_descent.h"
#include "entity/relation/line_arc_geometry.h"

namespace {

bool isFiniteSpan(const KrLinearSpan& span) {
  return krIsFinite(span.origin) && krIsFinite(span.direction) && span.lower == span.lower &&
         span.upper == span.upper && span.lower <= span.upper;
}

// The arc with a positive radius as the coordinate descent takes it.
KrArcFrame frameOf(const KrCircle& circle) {
  KrArcFrame frame;
  frame.center = circle.center;
  frame.normal = circle.n;
  frame.refVec = circle.u;
  frame.radius = circle.radius;
  frame.startAng = circle.start;
  frame.sweep = circle.sweep;
  return frame;
}

// The nearest pair seen so far; the first one wins a tie.
struct NearestPair {
  const KrCircle& circle;
  const KrLinearSpan& span;
  double theta = 0.0, t = 0.0, value = std::numeric_limits<double>::infinity();
  bool any = false;

  void consider(double angle, double param) {
    if (!std::isfinite(angle) || !std::isfinite(param)) return;
    const double distance = (circle.at(angle) - span.at(param)).lengthSqrd();
    if (any && !(distance < value)) return;
    theta = angle;
    t = param;
    value = distance;
    any = true;
  }
};

}  // namespace

void krLineArcClosestParams(const KrLinearSpan& span, const KrArcFrame& arc, double& t, double& theta) {
  const KrCircle circle = krCircleOf(arc);
  if (!krIsFinite(circle) || !isFiniteSpan(span)) {
    t = krFallbackParam(span.lower, span.upper);
    theta = std::isfinite(arc.startAng) ? arc.startAng : 0.0;
    return;
  }
  const KrGeVector3d& d = span.direction;
  const double dd = d.lengthSqrd();
  if (!(dd >= krLinearTinySquare)) {
    t = krClampParam(0.0, span.lower, span.upper);
    theta = krClosestArcParam(circle, span.at(t));
    return;
  }
  const double footParam = (circle.center - span.origin).dotProduct(d) / dd;
  const KrGePoint3d foot = span.at(footParam);
  if (!(circle.radius > 1e-15 * std::max(krMagnitude(circle.center), krMagnitude(foot)))) {
    t = krClosestParamToPoint(span, circle.center);
    theta = krClosestArcParam(circle, span.at(t));
    return;
  }

  NearestPair nearest{circle, span};
  const bool bounded = std::isfinite(span.lower) || std::isfinite(span.upper);
  double angles[4];
  const int count = krLineCircleMinima(circle, span.origin, d, bounded || !circle.full, angles);
  // The descent works on the line re-based at the centre's foot with a step of one radius, so
  // that both of its parameters are measured in radii.
  const double length = std::sqrt(dd);
  const KrGeVector3d scaled = d * (circle.radius / length);
  const double toCaller = circle.radius / length;
  const KrArcFrame positive = frameOf(circle);
  for (int i = 0; i < count; ++i) {
    double angle = angles[i];
    if (!krOnArc(circle, angle)) continue;
    const KrGePoint3d onArc = circle.at(angle);
    double scaledT = (onArc - foot).dotProduct(scaled) / (circle.radius * circle.radius);
    const double seedT = footParam + scaledT * toCaller;
    if (!(seedT >= span.lower && seedT <= span.upper)) continue;  // an edge is nearer
    nearest.consider(angle, seedT);
    krArcLineCoordDescent(positive, foot, scaled, angle, scaledT,
                          krArcLineDescentTolerance(circle, foot, scaled, angle, scaledT));
    krPolishArcLine(circle, foot, scaled, angle, scaledT);
    const double refinedT = footParam + scaledT * toCaller;
    if (krOnArc(circle, angle) && refinedT >= span.lower && refinedT <= span.upper) nearest.consider(angle, refinedT);
  }
  for (const double bound : {span.lower, span.upper})
    if (std::isfinite(bound)) nearest.consider(krClosestArcParam(circle, span.at(bound)), bound);
  if (!circle.full)
    for (const double end : {circle.start, circle.start + circle.sweep})
      nearest.consider(end, krClosestParamToPoint(span, circle.at(end)));
  if (!nearest.any) nearest.consider(circle.start, krClosestParamToPoint(span, circle.at(circle.start)));
  t = nearest.t;
  theta = krArcParam(circle, nearest.theta);
}

namespace {

// Collects intersection points: parameters pulled onto the ranges within the tolerance (or the
// pair is dropped), the midpoint of the pair reported, repeats within the tolerance merged.
struct Collector {
  const KrCircle& circle;
  const KrLinearSpan& span;
  double tol;
  double directionLength;
  KrCurveIntersections& result;

  // `reach` bounds the pair's distance: tol, or up to 2 tol for a touching in the plane (tol
  // across the plane and tol along it), whose midpoint is then still within tol of both.
  void add(const KrGePoint3d& onLine, const KrGePoint3d& onArc, double t, double angle, double reach) {
    if (!(onLine.distanceTo(onArc) <= reach)) return;
    const double slack = tol / directionLength;
    if (t < span.lower) t = span.lower - t <= slack ? span.lower : std::nan("");
    if (t > span.upper) t = t - span.upper <= slack ? span.upper : std::nan("");
    const double param = krArcParamWithin(circle, angle, tol / circle.radius);
    if (!(t == t) || !(param == param)) return;
    const KrGePoint3d point = onLine + (onArc - onLine) * 0.5;
    for (int i = 0; i < result.count; ++i)
      if (result.points[i].distanceTo(point) <= tol) return;
    result.add(point, t, param);
  }
};

}  // namespace

// The line meets the plane within tol over the disc's shadow or it does not. In the plane: the
// in-plane foot of the centre at distance delta, the chord half-length sqrt((R - delta)(R + delta))
// (no cancellation near tangency); |delta - R| <= tol is a touching, one point. Out of it the line
// is within tol of the circle only near its crossing of the plane, at a local minimum of their
// distance, and those are known algebraically.
bool krLineArcIntersections(const KrLinearSpan& span, const KrArcFrame& arc, double tolerance,
                            KrCurveIntersections& result) {
  const KrCircle circle = krCircleOf(arc);
  if (!krIsFinite(circle) || !isFiniteSpan(span)) return false;
  const KrGeVector3d& d = span.direction;
  const double dd = d.lengthSqrd();
  const KrGeVector3d w0 = span.origin - circle.center;
  const double footParam = dd >= krLinearTinySquare ? -w0.dotProduct(d) / dd : 0.0;
  const double tol =
      krEffectiveTolerance(std::max(krMagnitude(circle.center, circle.radius), krMagnitude(span.at(footParam))), tolerance);
  Collector collect{circle, span, tol, std::sqrt(dd), result};
  const auto nearestTo = [&](double t) {
    const KrGePoint3d onLine = span.at(t);
    const double angle = krClosestArcParam(circle, onLine);
    collect.add(onLine, circle.at(angle), t, angle, tol);
  };
  if (!(dd >= krLinearTinySquare)) {
    nearestTo(krClampParam(0.0, span.lower, span.upper));
    return true;
  }
  if (circle.radius <= tol) {
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
    const double delta = toFoot.length();
    const double radius = circle.radius;
    if (delta > radius + tol) return true;  // the shadow misses the disc: every pair is farther
    const double reach = std::sqrt(std::max(0.0, (radius + tol - delta) * (radius + tol + delta)) / dpp);
    const double rise = std::max(std::fabs(h0 + dn * (tc - reach)), std::fabs(h0 + dn * (tc + reach)));
    if (rise <= tol) {
      if (std::fabs(delta - radius) <= tol) {
        const KrGeVector3d direction = toFoot / delta;
        collect.add(span.at(tc), circle.center + direction * radius, tc, circle.angleOf(direction), 2.0 * tol);
      } else if (delta < radius) {
        const double half = std::sqrt((radius - delta) * (radius + delta) / dpp);
        for (const double t : {tc - half, tc + half}) {
          const KrGeVector3d onCircle = inPlane0 + inPlaneD * t;
          collect.add(span.at(t), circle.center + onCircle, t, circle.angleOf(onCircle), tol);
        }
      }
      return true;
    }
  }
  double angles[4];
  const int count = krLineCircleMinima(circle, span.origin, d, true, angles);
  for (int i = 0; i < count; ++i) {
    double angle = angles[i];
    double t = (circle.at(angle) - span.origin).dotProduct(d) / dd;
    krPolishArcLine(circle, span.origin, d, angle, t);
    collect.add(span.at(t), circle.at(angle), t, angle, tol);
  }
  return true;
}

namespace krrelation {

namespace {
const KrLinearEnt3dImpl& linear(const KrGeCurve3dImpl& curve) { return static_cast<const KrLinearEnt3dImpl&>(curve); }
const KrCircArc3dImpl& circular(const KrGeCurve3dImpl& curve) { return static_cast<const KrCircArc3dImpl&>(curve); }
}  // namespace

bool closestLineArc(const KrGeCurve3dImpl& line, const KrGeCurve3dImpl& arc, KrGePoint3d& onLine, KrGePoint3d& onArc,
                    const KrGeTol&) {
  const KrLinearSpan span = linear(line).span();
  const KrArcFrame& frame = circular(arc).frame();
  double t = 0.0;
  double theta = 0.0;
  krLineArcClosestParams(span, frame, t, theta);
  onLine = span.at(t);
  onArc = frame.pointAt(theta);
  return true;
}

bool intersectLineArc(const KrGeCurve3dImpl& line, const KrGeCurve3dImpl& arc, const KrGeTol& tol,
                      KrCurveIntersections& result) {
  return krLineArcIntersections(linear(line).span(), circular(arc).frame(), tol.equalPoint(), result);
}

}  // namespace krrelation
