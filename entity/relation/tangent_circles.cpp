// The tangent circles: of a given radius tangent to two curves, and inscribed in three lines.
#include <cmath>

#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/relation/tangent_construction.h"
#include "entity/relation/tangent_curves.h"

using krtangent::Curve;
using krtangent::Plane;
using krtangent::cross;

namespace {

// The locus of centres at distance R from a curve, in the plane: a line (point, unit direction)
// or a circle (centre, radius).
struct Locus {
  bool isLine = true;
  KrGeVector2d point;
  KrGeVector2d direction;
  double radius = 0.0;
};

// The offsets of a line are its two parallels at R; those of a circle of radius r the concentric
// circles of radius r + R and |r - R| (the latter dropped when it collapses to the centre: the
// circle would coincide with the given one).
int offsetsOf(const Curve& curve, const Plane& plane, double radius, double eps, Locus loci[2]) {
  if (curve.isLine()) {
    const KrGeVector2d direction = plane.to2d(curve.direction);
    const KrGeVector2d unit = direction / direction.length();
    const KrGeVector2d base = plane.to2d(curve.origin);
    for (int i = 0; i < 2; ++i) {
      loci[i].isLine = true;
      loci[i].point = base + unit.perpVector() * (i == 0 ? radius : -radius);
      loci[i].direction = unit;
    }
    return 2;
  }
  const KrGeVector2d centre = plane.to2d(curve.arc.center);
  const double sizes[2] = {curve.arc.radius + radius, std::fabs(curve.arc.radius - radius)};
  int count = 0;
  for (double size : sizes) {
    if (!(size > eps)) continue;
    loci[count].isLine = false;
    loci[count].point = centre;
    loci[count].radius = size;
    ++count;
  }
  return count;
}

// Where two loci meet: up to two points. Near-tangent meetings (a gap within eps) give one point.
int meet(const Locus& a, const Locus& b, double eps, KrGeVector2d points[2]) {
  if (a.isLine && b.isLine) {
    const double denominator = cross(a.direction, b.direction);
    if (denominator == 0.0) return 0;
    points[0] = a.point + a.direction * (cross(b.point - a.point, b.direction) / denominator);
    return 1;
  }
  if (!a.isLine && b.isLine) return meet(b, a, eps, points);
  if (a.isLine) {
    // Line and circle: the foot of the centre on the line, then +-h along it.
    const KrGeVector2d foot = a.point + a.direction * (b.point - a.point).dotProduct(a.direction);
    const double gap = (foot - b.point).length();
    if (gap > b.radius + eps) return 0;
    const double h = std::sqrt(std::fmax(0.0, (b.radius - gap) * (b.radius + gap)));
    points[0] = foot + a.direction * h;
    points[1] = foot - a.direction * h;
    return h > 0.0 ? 2 : 1;
  }
  // Two circles: along the line of centres at x = (d^2 + ra^2 - rb^2) / 2d, then +-h across it.
  const KrGeVector2d axis = b.point - a.point;
  const double d = axis.length();
  if (!(d > eps) || d > a.radius + b.radius + eps || d < std::fabs(a.radius - b.radius) - eps) return 0;
  const KrGeVector2d u = axis / d;
  const double x = (d * d + a.radius * a.radius - b.radius * b.radius) / (2.0 * d);
  const double h = std::sqrt(std::fmax(0.0, a.radius * a.radius - x * x));
  points[0] = a.point + u * x + u.perpVector() * h;
  points[1] = a.point + u * x - u.perpVector() * h;
  return h > 0.0 ? 2 : 1;
}

// Where the circle about `centre` of radius R touches the curve: the foot on a line; on a circle
// the near or the far point of the radial line through the centre, whichever is R away.
KrGeVector2d touchOf(const Curve& curve, const Plane& plane, const KrGeVector2d& centre, double radius) {
  if (curve.isLine()) {
    const KrGeVector2d direction = plane.to2d(curve.direction);
    const KrGeVector2d unit = direction / direction.length();
    const KrGeVector2d base = plane.to2d(curve.origin);
    return base + unit * (centre - base).dotProduct(unit);
  }
  const KrGeVector2d c = plane.to2d(curve.arc.center);
  const double distance = (centre - c).length();
  const KrGeVector2d radial = distance > 0.0 ? (centre - c) / distance : KrGeVector2d(1.0, 0.0);
  const KrGeVector2d nearPoint = c + radial * curve.arc.radius, farPoint = c - radial * curve.arc.radius;
  return std::fabs((nearPoint - centre).length() - radius) <= std::fabs((farPoint - centre).length() - radius)
             ? nearPoint
             : farPoint;
}

// Builds the arc through three points (the three-point set leaves the arc as it was when they
// are collinear, and warns); the construction then reports its own failure.
bool buildThrough(KrCircArc3dImpl& arc, const KrGePoint3d& p1, const KrGePoint3d& p2, const KrGePoint3d& p3) {
  KrGe::ErrorCondition status = KrGe::kOk;
  arc.set(p1, p2, p3, status);
  if (status == KrGe::kOk) return true;
  KRS_WARN_AT("set() fail", "KrCircArc3dImpl", __LINE__);
  return false;
}

bool isWorkable(const Curve& curve) {
  if (curve.isLine()) return !curve.direction.isZeroLength(KrGeContext::gTol);
  return std::isfinite(curve.arc.radius);
}

}  // namespace

namespace krrelation {

void arcTangentToTwoCurves(KrCircArc3dImpl& arc, const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius,
                           double& param1, double& param2, bool& success) {
  success = false;
  const Curve first = Curve::of(curve1), second = Curve::of(curve2);
  if (first.kind == Curve::Kind::kOther || second.kind == Curve::Kind::kOther) {
    KRS_NOT_IMPLEMENTED();
    return;
  }
  const double size = std::fabs(radius);
  Plane plane;
  if (!std::isfinite(size) || !isWorkable(first) || !isWorkable(second) ||
      !krtangent::commonPlane(first, second, plane))
    return;
  const double eps = krtangent::equalPointNear(plane.origin, first.isCircle() ? first.arc.center : first.origin);
  Locus loci1[2], loci2[2];
  const int count1 = offsetsOf(first, plane, size, eps, loci1);
  const int count2 = offsetsOf(second, plane, size, eps, loci2);

  // Every centre of a circle of radius R tangent to both; keep the shortest chord whose touch
  // points lie in both ranges. Touch points that coincide (a circle through the point where the
  // curves touch each other) are skipped unless R itself is below the tolerance.
  bool found = false;
  double bestChord = 0.0;
  KrGeVector2d bestCentre;
  KrGePoint3d bestTouch1, bestTouch2;
  double bestParam1 = 0.0, bestParam2 = 0.0;
  for (int i = 0; i < count1; ++i) {
    for (int j = 0; j < count2; ++j) {
      KrGeVector2d centres[2];
      const int meetings = meet(loci1[i], loci2[j], eps, centres);
      for (int k = 0; k < meetings; ++k) {
        const KrGePoint3d touch1 = plane.to3d(touchOf(first, plane, centres[k], size));
        const KrGePoint3d touch2 = plane.to3d(touchOf(second, plane, centres[k], size));
        const double chord = touch1.distanceTo(touch2);
        if ((size > eps && !(chord > eps)) || (found && !(chord < bestChord - eps))) continue;
        const double t1 = first.paramOf(touch1), t2 = second.paramOf(touch2);
        if (!first.contains(t1) || !second.contains(t2)) continue;
        found = true;
        bestChord = chord;
        bestCentre = centres[k];
        bestTouch1 = touch1;
        bestTouch2 = touch2;
        bestParam1 = t1;
        bestParam2 = t2;
      }
    }
  }
  if (!found) return;
  // The middle of the shorter way between the touch points: the radial through their midpoint
  // (a quarter turn from the first when they are opposite).
  const KrGeVector2d centre = bestCentre;
  const KrGeVector2d halfway = (plane.to2d(bestTouch1) + plane.to2d(bestTouch2)) * 0.5 - centre;
  const double reach = halfway.length();
  const KrGeVector2d toFirst = plane.to2d(bestTouch1) - centre;
  const KrGeVector2d radial = reach > eps ? halfway / reach
                              : toFirst.length() > 0.0 ? toFirst.perpVector() / toFirst.length()
                                                       : KrGeVector2d(1.0, 0.0);
  if (!buildThrough(arc, bestTouch1, plane.to3d(centre + radial * size), bestTouch2)) return;
  param1 = bestParam1;
  param2 = bestParam2;
  success = true;
}

void arcTangentToThreeCurves(KrCircArc3dImpl& arc, const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                             const KrGeCurve3d& curve3, double& param1, double& param2, double& param3,
                             bool& success) {
  success = false;
  const Curve lines[3] = {Curve::of(curve1), Curve::of(curve2), Curve::of(curve3)};
  for (const Curve& line : lines) {
    if (!line.isLine()) {
      KRS_NOT_IMPLEMENTED();
      return;
    }
  }
  Plane plane;
  if (!isWorkable(lines[0]) || !isWorkable(lines[1]) || !isWorkable(lines[2]) ||
      !krtangent::commonPlane(lines[0], lines[1], plane) || !plane.holdsLine(lines[2]))
    return;
  const double eps = krtangent::equalPointNear(lines[0].origin, lines[1].origin);
  // The corners: line i meets line i + 1.
  KrGeVector2d corners[3];
  for (int i = 0; i < 3; ++i) {
    Locus a, b;
    a.point = plane.to2d(lines[i].origin);
    a.direction = plane.to2d(lines[i].direction);
    b.point = plane.to2d(lines[(i + 1) % 3].origin);
    b.direction = plane.to2d(lines[(i + 1) % 3].direction);
    if (meet(a, b, eps, &corners[i]) != 1) return;
  }
  // Lines through one point, or parallel ones, make no triangle.
  const double area = cross(corners[1] - corners[0], corners[2] - corners[0]);
  const double perimeter = (corners[1] - corners[0]).length() + (corners[2] - corners[1]).length() +
                           (corners[0] - corners[2]).length();
  if (!(std::fabs(area) > eps * perimeter) || !std::isfinite(area)) return;
  // The inner bisector at a corner runs along the sum of the unit vectors to the other corners.
  Locus bisectors[2];
  for (int i = 0; i < 2; ++i) {
    const KrGeVector2d toNext = corners[(i + 1) % 3] - corners[i], toLast = corners[(i + 2) % 3] - corners[i];
    bisectors[i].point = corners[i];
    bisectors[i].direction = toNext / toNext.length() + toLast / toLast.length();
  }
  KrGeVector2d centre;
  if (meet(bisectors[0], bisectors[1], eps, &centre) != 1 || !std::isfinite(centre.x + centre.y)) {
    KRS_WARN_AT("Internal error, KrCircArc3dImpl.set() by 3 lines, bisectors must have intersection point",
                "KrCircArc3dImpl", __LINE__);
    return;
  }
  KrGePoint3d touches[3];
  double params[3];
  for (int i = 0; i < 3; ++i) {
    touches[i] = plane.to3d(touchOf(lines[i], plane, centre, 0.0));
    params[i] = lines[i].paramOf(touches[i]);
  }
  if (!buildThrough(arc, touches[0], touches[1], touches[2])) return;
  param1 = params[0];
  param2 = params[1];
  param3 = params[2];
  success = true;
}

}  // namespace krrelation
