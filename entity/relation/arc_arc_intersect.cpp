// Intersection points of two circular arcs.
#include <algorithm>

#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/relation/arc_arc.h"
#include "entity/relation/line_arc_geometry.h"

namespace {

// Collects intersection points: angles pulled onto the arcs within the tolerance (or the pair
// is dropped), the midpoint of the pair reported, repeats within the tolerance merged.
struct Collector {
  const KrCircle& circle1;
  const KrCircle& circle2;
  double tol;
  KrCurveIntersections& result;

  // `reach` bounds the pair's distance: tol, or 2 tol for a touching in one plane (tol across
  // the planes and tol within them), whose midpoint is then still within tol of both.
  void add(const KrGePoint3d& on1, const KrGePoint3d& on2, double angle1, double angle2, double reach) {
    if (!((on1 - on2).lengthSqrd() <= reach * reach)) return;
    const double param1 = krArcParamWithin(circle1, angle1, tol);
    const double param2 = krArcParamWithin(circle2, angle2, tol);
    if (!(param1 == param1) || !(param2 == param2)) return;
    const KrGePoint3d point = on1 + (on2 - on1) * 0.5;
    for (int i = 0; i < result.count; ++i)
      if ((result.points[i] - point).lengthSqrd() <= tol * tol) return;
    result.add(point, param1, param2);
  }
  // The pair of nearest points of the two circles around `point`, added when within tol.
  void addNear(const KrGePoint3d& point) {
    const double angle1 = circle1.angleOf(point - circle1.center);
    const double angle2 = circle2.angleOf(point - circle2.center);
    add(circle1.at(angle1), circle2.at(angle2), angle1, angle2, tol);
  }
};

// Equal circles: the arcs share whatever part of their angle ranges overlaps. Arc 2 is written
// in arc 1's angles from the offset o of its first point (its end when it turns the other way),
// so it covers [o, o + sweep2]; the overlap with [0, sweep1] is that interval and its copy one
// turn down. A shared stretch longer than tol gives no points; ends that only touch give one.
void coincident(const KrCircle& c1, const KrCircle& c2, Collector& collect) {
  const double slack = collect.tol / c1.radius;
  const bool sameTurn = c1.n.dotProduct(c2.n) > 0.0;
  const double first = sameTurn ? c2.start : c2.start + c2.sweep;
  const double offset = krArcOffset(c1, c1.angleOf(c2.at(first) - c2.center));
  const double sweep1 = c1.full ? kKrRelTwoPi : c1.sweep, sweep2 = c2.full ? kKrRelTwoPi : c2.sweep;
  double lows[2], highs[2];
  int count = 0;
  double shared = 0.0;
  for (const double shift : {0.0, -kKrRelTwoPi}) {
    const double low = std::max(0.0, offset + shift), high = std::min(sweep1, offset + shift + sweep2);
    if (high < low - slack) continue;
    shared += std::max(0.0, high - low);
    lows[count] = low;
    highs[count++] = high;
  }
  if (shared > slack) return;
  for (int i = 0; i < count; ++i) {
    const double angle1 = c1.start + 0.5 * (lows[i] + highs[i]);
    const KrGePoint3d on1 = c1.at(angle1);
    const double angle2 = c2.angleOf(on1 - c2.center);
    collect.add(on1, c2.at(angle2), angle1, angle2, 2.0 * collect.tol);
  }
}

// Both circles within tol of plane 1. With the shadow of the second centre at distance D along
// w^, the crossings are at a = (D + (R1 - R2)(R1 + R2) / D) / 2 along w^ and
// +-sqrt((R1 - a)(R1 + a)) across; D within tol of R1 + R2 or |R1 - R2| is a touching on the
// line of the centres.
void coplanar(const KrCircle& c1, const KrCircle& c2, Collector& collect) {
  const double tol = collect.tol;
  const KrGeVector3d offset = c2.center - c1.center;
  const KrGeVector3d w = offset - c1.n * offset.dotProduct(c1.n);
  const double distance2 = w.lengthSqrd();
  const double r1 = c1.radius, r2 = c2.radius;
  if (distance2 <= tol * tol) {
    if (std::fabs(r1 - r2) <= tol) coincident(c1, c2, collect);
    return;
  }
  const double distance = std::sqrt(distance2);
  const double inverse = 1.0 / distance;
  const KrGeVector3d along = w * inverse;
  if (std::fabs(distance - (r1 + r2)) <= tol) {
    collect.add(c1.center + along * r1, c2.center - along * r2, c1.angleOf(along), c2.angleOf(-along), 2.0 * tol);
  } else if (std::fabs(distance - std::fabs(r1 - r2)) <= tol) {
    const KrGeVector3d side = r1 >= r2 ? along : -along;
    collect.add(c1.center + side * r1, c2.center + side * r2, c1.angleOf(side), c2.angleOf(side), 2.0 * tol);
  } else if (distance < r1 + r2 && distance > std::fabs(r1 - r2)) {
    const double a = 0.5 * (distance + (r1 - r2) * (r1 + r2) * inverse);
    const KrGeVector3d across = c1.n.crossProduct(along) * std::sqrt(std::max(0.0, (r1 - a) * (r1 + a)));
    for (const double sign : {-1.0, 1.0}) {
      const KrGeVector3d from1 = along * a + across * sign;
      const KrGeVector3d from2 = from1 - w;
      collect.add(c1.center + from1, c2.center + from2, c1.angleOf(from1), c2.angleOf(from2), tol);
    }
  }
}

}  // namespace

// Planes that cross: on their common line p + s m^, where p = C1 + h2 (m x n1) / |m|^2 is the
// point of the line nearest to C1 (m = n1 x n2, h2 the height of C2 over plane 1 along n2), each
// circle crosses at its centre's foot +- the chord half-length.
bool krArcArcIntersections(const KrArcFrame& arc1, const KrArcFrame& arc2, double tolerance,
                           KrCurveIntersections& result) {
  const KrCircle c1 = krCircleOf(arc1), c2 = krCircleOf(arc2);
  if (!krIsFinite(c1) || !krIsFinite(c2)) return false;
  const double tol =
      krEffectiveTolerance(std::max(krMagnitude(c1.center, c1.radius), krMagnitude(c2.center, c2.radius)), tolerance);
  Collector collect{c1, c2, tol, result};
  if (c1.radius <= tol || c2.radius <= tol) {
    // A circle this small is its centre to within tol: the other arc's point nearest to it.
    const bool firstSmall = c1.radius <= tol;
    const KrCircle& small = firstSmall ? c1 : c2;
    const KrCircle& other = firstSmall ? c2 : c1;
    const double otherAngle = krClosestArcParam(other, small.center);
    const double smallAngle = krClosestArcParam(small, other.at(otherAngle));
    if (firstSmall)
      collect.add(small.at(smallAngle), other.at(otherAngle), smallAngle, otherAngle, tol);
    else
      collect.add(other.at(otherAngle), small.at(smallAngle), otherAngle, smallAngle, tol);
    return true;
  }
  const KrGeVector3d m = c1.n.crossProduct(c2.n);
  // Each circle within tol of the other's plane: its centre's height plus its radius times the
  // sine of the planes' angle, compared squared.
  const double sine2 = m.lengthSqrd();
  const KrGeVector3d offset = c2.center - c1.center;
  const double height2 = offset.dotProduct(c2.n);
  const double slack1 = tol - std::fabs(offset.dotProduct(c1.n)), slack2 = tol - std::fabs(height2);
  if (slack1 >= 0.0 && slack2 >= 0.0 && c2.radius * c2.radius * sine2 <= slack1 * slack1 &&
      c1.radius * c1.radius * sine2 <= slack2 * slack2) {
    coplanar(c1, c2, collect);
    return true;
  }
  const double sine = std::sqrt(sine2);  // at most 1: no underflow that matters
  if (!(sine > 0.0)) return true;        // parallel planes apart
  const KrGeVector3d direction = m / sine;
  const KrGePoint3d base = c1.center + m.crossProduct(c1.n) * (height2 / (sine * sine));
  if (!krIsFinite(base)) return true;
  const KrCircle* circles[] = {&c1, &c2};
  for (const KrCircle* circle : circles) {
    const KrGeVector3d toCenter = circle->center - base;
    const double foot = toCenter.dotProduct(direction);
    const double apart = (toCenter - direction * foot).length();
    const double r = circle->radius;
    if (apart > r + tol) continue;
    const double half = std::fabs(apart - r) <= tol ? 0.0 : std::sqrt((r - apart) * (r + apart));
    collect.addNear(base + direction * (foot - half));
    if (half > 0.0) collect.addNear(base + direction * (foot + half));
  }
  return true;
}

namespace krrelation {

bool intersectArcArc(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                     KrCurveIntersections& result) {
  return krArcArcIntersections(static_cast<const KrCircArc3dImpl&>(first).frame(),
                               static_cast<const KrCircArc3dImpl&>(second).frame(), tol.equalPoint(), result);
}

}  // namespace krrelation
