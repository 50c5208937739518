#include "entity/arc/arc_angles.h"

#include <cmath>

#include "KrGeContext.h"

double krArcSweep(double start, double end, double radius) {
  double sweep = end - start;
  const double eps = radius == 0.0 ? 0.0 : KrGeContext::gTol.equalPoint() / radius;
  if (std::fabs(sweep) <= eps) return 0.0;
  if (std::fabs(sweep - kKrTwoPi) <= eps) return kKrTwoPi;
  sweep = std::fmod(sweep, kKrTwoPi);
  if (sweep > 0.0) return sweep;
  if (std::fabs(start - end) <= 1e-10) return sweep;
  return sweep + kKrTwoPi;
}
