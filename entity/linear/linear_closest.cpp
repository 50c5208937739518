#include "entity/linear/linear_closest.h"

#include <algorithm>
#include <cfloat>

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
