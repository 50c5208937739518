#include "entity/relation/ellipse_pairs.h"

#include <cmath>

#include "KrGeContext.h"
#include "entity/ellipse/ellipse_affine.h"

namespace {

bool unitDirection(const KrGeVector3d& direction, KrGeVector3d& unit) {
  const bool finite = std::isfinite(direction.x) && std::isfinite(direction.y) && std::isfinite(direction.z);
  if (!finite || direction.isZeroLength(KrGeContext::gTol)) return false;
  unit = direction / direction.length();
  return true;
}

}  // namespace

namespace krellipsepairs {

KrEllipseFrame restricted(const KrEllipseFrame& frame, const KrGeInterval* nbhd) {
  if (!nbhd) return frame;
  double lower = frame.startAng;
  double upper = frame.endAng();
  if (nbhd->isBoundedBelow() && nbhd->lowerBound() > lower) lower = nbhd->lowerBound();
  if (nbhd->isBoundedAbove() && nbhd->upperBound() < upper) upper = nbhd->upperBound();
  if (!(lower <= upper)) return frame;
  KrEllipseFrame part = frame;
  part.startAng = lower;
  part.sweep = upper - lower;
  return part;
}

KrPairMinimum closest(const KrEllipseFrame& ellipse, const KrLinearSpan& line) {
  return krEllipsePairMinimum(ellipse, ellipse.startAng, ellipse.endAng(), KrNearestOnSpan(line));
}

KrPairMinimum closest(const KrEllipseFrame& ellipse, const KrEllipseFrame& other) {
  return krEllipsePairMinimum(ellipse, ellipse.startAng, ellipse.endAng(), KrNearestOnEllipse(other));
}

bool closestSeen(const KrEllipseFrame& ellipse, const KrLinearSpan& line, const KrGeVector3d& direction, double& t,
                 double& s) {
  KrGeVector3d unit;
  if (!unitDirection(direction, unit)) return false;
  KrLinearSpan seenLine;
  if (!krSeenAlong(line, ellipse.center, unit, seenLine)) return false;
  seenLine.origin = ellipse.center + (seenLine.origin - KrGePoint3d::kOrigin);  // it is kept relative to the base
  double shift = 0.0;
  const KrEllipseFrame seen = krEllipseSeenAlong(ellipse, unit, ellipse.center, shift);
  const KrPairMinimum pair = closest(seen, seenLine);
  t = pair.t + shift;
  s = pair.otherParam;
  return true;
}

bool closestSeen(const KrEllipseFrame& ellipse, const KrEllipseFrame& other, const KrGeVector3d& direction, double& t,
                 double& s) {
  KrGeVector3d unit;
  if (!unitDirection(direction, unit)) return false;
  double shift = 0.0;
  double otherShift = 0.0;
  const KrEllipseFrame seen = krEllipseSeenAlong(ellipse, unit, ellipse.center, shift);
  const KrEllipseFrame otherSeen = krEllipseSeenAlong(other, unit, ellipse.center, otherShift);
  const KrPairMinimum pair = closest(seen, otherSeen);
  t = pair.t + shift;
  s = pair.otherParam + otherShift;
  return true;
}

}  // namespace krellipsepairs
