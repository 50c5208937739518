// Closest pairs of linear entities and circular arcs.
#include "entity/relation/line_arc.h"

#include <algorithm>
#include <limits>

#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/line_arc_descent.h"
#include "entity/relation/line_arc_geometry.h"

namespace {

// The nearest pair seen so far (the first wins a tie). Seeds are unconstrained local minima
// inside both ranges; edge pairs are exact. Only the nearest candidate is refined, when it is a
// seed: the others are critical points already, which the refinement would move by no more than
// rounding, so it could not change which is nearest.
struct NearestPair {
  NearestPair(const KrCircle& arc, const KrLinearSpan& linear) : circle(arc), span(linear) {}
  const KrCircle& circle;
  const KrLinearSpan& span;
  KrTurn theta;
  double t = 0.0, value = std::numeric_limits<double>::infinity();
  bool any = false, seeded = false;

  void consider(const KrTurn& turn, double param, bool isSeed = false) {
    if (!std::isfinite(turn.angle) || !std::isfinite(param)) return;
    const double distance = (circle.at(turn) - span.at(param)).lengthSqrd();
    if (any && !(distance < value)) return;
    theta = turn;
    t = param;
    value = distance;
    any = true;
    seeded = isSeed;
  }
};

}  // namespace

void krLineArcClosest(const KrLinearSpan& span, const KrArcFrame& arc, double& t, double& theta, KrGePoint3d& onLine,
                      KrGePoint3d& onArc) {
  const KrCircle circle = krCircleOf(arc);
  const auto answer = [&](const KrTurn& turn, double param) {
    t = param;
    theta = krArcParam(circle, turn.angle);
    onLine = span.at(param);
    onArc = circle.at(turn);
  };
  if (!krIsFinite(circle) || !krIsFinite(span)) {
    t = krFallbackParam(span.lower, span.upper);
    theta = std::isfinite(arc.startAng) ? arc.startAng : 0.0;
    onLine = span.at(t);
    onArc = arc.pointAt(theta);
    return;
  }
  const KrGeVector3d& d = span.direction;
  const double dd = d.lengthSqrd();
  if (!(dd >= krLinearTinySquare)) {
    const double param = krClampParam(0.0, span.lower, span.upper);
    return answer(krClosestArcTurn(circle, span.at(param)), param);
  }
  const double footParam = (circle.center - span.origin).dotProduct(d) / dd;
  const KrGePoint3d foot = span.at(footParam);
  if (!(circle.radius > 1e-15 * std::max(krMagnitude(circle.center), krMagnitude(foot)))) {
    const double param = krClosestParamToPoint(span, circle.center);
    return answer(krClosestArcTurn(circle, span.at(param)), param);
  }

  NearestPair nearest{circle, span};
  const bool bounded = std::isfinite(span.lower) || std::isfinite(span.upper);
  KrTurn turns[4];
  const int count = krLineCircleMinima(circle, span.origin, d, bounded || !circle.full, turns);
  // The descent works on the line re-based at the centre's foot with a step of one radius, so
  // that both of its parameters are measured in radii.
  const double rr = circle.radius * circle.radius;
  const double toCaller = circle.radius / std::sqrt(dd);
  const KrGeVector3d scaled = d * toCaller;
  for (int i = 0; i < count; ++i) {
    if (!krOnArc(circle, turns[i].angle)) continue;
    const double seedT = footParam + (circle.at(turns[i]) - foot).dotProduct(scaled) / rr * toCaller;
    if (seedT >= span.lower && seedT <= span.upper) nearest.consider(turns[i], seedT, true);  // else an edge is nearer
  }
  for (const double bound : {span.lower, span.upper})
    if (std::isfinite(bound)) nearest.consider(krClosestArcTurn(circle, span.at(bound)), bound);
  if (!circle.full)
    for (const double end : {circle.start, circle.start + circle.sweep}) {
      const KrTurn turn = krTurnOf(end);
      nearest.consider(turn, krClosestParamToPoint(span, circle.at(turn)));
    }
  if (!nearest.any) {
    const KrTurn start = krTurnOf(circle.start);
    nearest.consider(start, krClosestParamToPoint(span, circle.at(start)));
  }
  if (nearest.seeded) {
    // A descent that stops at its first round has confirmed the seed; one that went on may
    // have crawled along a valley and is finished by Newton.
    KrTurn refined = nearest.theta;
    double angle = refined.angle;
    double scaledT = (circle.at(refined) - foot).dotProduct(scaled) / rr;
    const double tolerance = krArcLineDescentTolerance(circle, foot, scaled, refined, scaledT);
    if (krArcLineCoordDescent(krFrameOf(circle), foot, scaled, angle, scaledT, tolerance, &refined) > 1)
      krPolishArcLine(circle, foot, scaled, refined, scaledT);
    const double refinedT = footParam + scaledT * toCaller;
    if (krOnArc(circle, refined.angle) && refinedT >= span.lower && refinedT <= span.upper)
      nearest.consider(refined, refinedT);
  }
  answer(nearest.theta, nearest.t);
}

namespace krrelation {

bool closestLineArc(const KrGeCurve3dImpl& line, const KrGeCurve3dImpl& arc, KrGePoint3d& onLine, KrGePoint3d& onArc,
                    const KrGeTol&) {
  double t = 0.0, theta = 0.0;
  krLineArcClosest(static_cast<const KrLinearEnt3dImpl&>(line).span(), static_cast<const KrCircArc3dImpl&>(arc).frame(),
                   t, theta, onLine, onArc);
  return true;
}

}  // namespace krrelation
