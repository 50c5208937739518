#include "entity/intersect/intersection_configs.h"

#include <cmath>

namespace {

enum class Side { kNone, kLeft, kRight, kOverlap, kUnknown };

// The component of v across the unit normal n.
KrGeVector3d inPlane(const KrGeVector3d& v, const KrGeVector3d& n) { return v - n * v.dotProduct(n); }

// The word pair (before, after) as a configuration.
KrGe::KrGeXConfig configOf(Side before, Side after) {
  using namespace KrGe;
  if (before == Side::kUnknown || after == Side::kUnknown) return kUnknown;
  switch (before) {
    case Side::kNone:
      return after == Side::kLeft ? kPointLeft : after == Side::kRight ? kPointRight
                                             : after == Side::kOverlap ? kOverlapStart : kUnknown;
    case Side::kLeft:
      return after == Side::kRight ? kLeftRight : after == Side::kLeft ? kLeftLeft
                                              : after == Side::kOverlap ? kLeftOverlap : kPointLeft;
    case Side::kRight:
      return after == Side::kLeft ? kRightLeft : after == Side::kRight ? kRightRight
                                             : after == Side::kOverlap ? kRightOverlap : kPointRight;
    case Side::kOverlap:
      return after == Side::kLeft ? kOverlapLeft : after == Side::kRight ? kOverlapRight
                                               : after == Side::kOverlap ? kOverlapOverlap : kOverlapEnd;
    default:
      return kUnknown;
  }
}

}  // namespace

KrGe::KrGeXConfig krIntersectionConfig(const KrCurveJet& curve, const KrCurveJet& other,
                                       const KrGeVector3d& planeNormal, double parallelSine) {
  const double normalLength = planeNormal.length();
  if (!(normalLength > 0.0) || !std::isfinite(normalLength) || curve.collapsed) return KrGe::kUnknown;
  const KrGeVector3d n = planeNormal / normalLength;
  const KrGeVector3d t1 = inPlane(curve.first, n);
  const KrGeVector3d t2 = inPlane(other.first, n);
  // A tangent that (nearly) points along the normal leaves no side to see.
  const double length1 = t1.length(), length2 = t2.length();
  if (!(length1 > parallelSine * curve.first.length()) || !(length2 > parallelSine * other.first.length()) ||
      !(length1 > 0.0) || !(length2 > 0.0) || !std::isfinite(length1 * length2))
    return KrGe::kUnknown;
  const KrGeVector3d u = t2 / length2;
  const KrGeVector3d l = n.crossProduct(u);

  Side before, after;
  const double sine = t1.dotProduct(l) / length1;
  if (std::fabs(sine) > parallelSine) {
    before = sine > 0.0 ? Side::kRight : Side::kLeft;
    after = sine > 0.0 ? Side::kLeft : Side::kRight;
  } else {
    const double along = t1.dotProduct(u);
    const double own = inPlane(curve.second, n).dotProduct(l);
    const double others = along * along / (length2 * length2) * inPlane(other.second, n).dotProduct(l);
    const double separation = own - others;
    const Side side = std::fabs(separation) <= parallelSine * (std::fabs(own) + std::fabs(others))
                          ? Side::kOverlap
                          : (separation > 0.0 ? Side::kLeft : Side::kRight);
    if (!std::isfinite(separation)) return KrGe::kUnknown;
    before = side;
    after = side;
  }
  if (curve.startsHere) before = Side::kNone;
  if (curve.endsHere) after = Side::kNone;
  if (before == Side::kNone && after == Side::kNone) return KrGe::kUnknown;
  return configOf(before, after);
}
