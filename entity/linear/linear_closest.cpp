#include "entity/linear/linear_closest.h"

#include <algorithm>
#include <cfloat>

#include "KrGeContext.h"

double krClosestParamToPoint(const KrLinearSpan& span, const KrGePoint3d& point) {
  const double a = span.direction.dotProduct(span.direction);
  const double t = a >= krLinearTinySquare ? span.direction.dotProduct(point - span.origin) / a : 0.0;
  const double clamped = krClampParam(t, span.lower, span.upper);
  return clamped == clamped ? clamped : krFallbackParam(span.lower, span.upper);
}

double krEffectiveEqualPoint(const KrGePoint3d& p1, const KrGePoint3d& p2, double equalPoint) {
  const double m = std::max({std::fabs(p1.x), std::fabs(p1.y), std::fabs(p1.z), std::fabs(p2.x),
                             std::fabs(p2.y), std::fabs(p2.z)});
  if (!std::isfinite(m)) return std::numeric_limits<double>::quiet_NaN();
  if (m == 0.0) return equalPoint;
  const double digits = std::ceil(std::log10(m));
  return std::max(equalPoint, std::pow(10.0, digits - 14.0));
}

KrLinearSpan krRestrictedSpan(KrLinearSpan span, const KrGeInterval* nbhd) {
  if (!nbhd) return span;
  const double lower = nbhd->isBoundedBelow() ? std::fmax(span.lower, nbhd->lowerBound()) : span.lower;
  const double upper = nbhd->isBoundedAbove() ? std::fmin(span.upper, nbhd->upperBound()) : span.upper;
  if (lower <= upper) {
    span.lower = lower;
    span.upper = upper;
  }
  return span;
}

const KrLinearSpan* krSeenAlong(const KrLinearSpan& span, const KrGePoint3d& base, const KrGeVector3d& direction,
                                KrLinearSpan& seen) {
  if (direction.isZeroLength(KrGeContext::gTol)) return nullptr;
  const KrGeVector3d u = direction.normal(KrGeContext::gTol);
  const KrGeVector3d offset = span.origin - base;
  seen = span;
  seen.origin = KrGePoint3d::kOrigin + (offset - u * offset.dotProduct(u));
  seen.direction = span.direction - u * span.direction.dotProduct(u);
  const bool finite = std::isfinite(u.x) && std::isfinite(u.y) && std::isfinite(u.z) &&
                      std::isfinite(seen.origin.x) && std::isfinite(seen.origin.y) && std::isfinite(seen.origin.z) &&
                      std::isfinite(seen.direction.x) && std::isfinite(seen.direction.y) &&
                      std::isfinite(seen.direction.z);
  return finite ? &seen : nullptr;
}
