#include "entity/arc/arc_angles.h"

#include <cmath>

#include "KrGeContext.h"

double krArcSweep(double start, double end, double radius) {
  double sweep = end - start;
  if (!std::isfinite(sweep)) return kKrTwoPi;
  const double eps = radius == 0.0 ? 0.0 : KrGeContext::gTol.equalPoint() / radius;
  if (std::fabs(sweep) <= eps) return 0.0;
  if (std::fabs(sweep - kKrTwoPi) <= eps) return kKrTwoPi;
  sweep = std::fmod(sweep, kKrTwoPi);
  if (sweep > 0.0) return sweep;
  if (std::fabs(start - end) <= 1e-10) return sweep;
  return sweep + kKrTwoPi;
}

// fmod is exact; only adding 2 pi to a tiny negative remainder can round up to 2 pi itself. The
// common case of a difference within one turn either way skips the division.
double krArcOffset(double angle, double start) {
  const double difference = angle - start;
  if (difference >= 0.0 && difference < kKrTwoPi) return difference;
  double offset = difference >= -kKrTwoPi && difference < 0.0 ? difference : std::fmod(difference, kKrTwoPi);
  if (offset < 0.0) offset += kKrTwoPi;
  return offset < kKrTwoPi ? offset : 0.0;
}

double krArcParamOfAngle(double angle, double start, double sweep, double angleTol) {
  const double offset = krArcOffset(angle, start);
  if (kKrTwoPi - offset <= angleTol) return start;
  if (offset <= sweep) return start + offset;
  if (offset - sweep <= angleTol) return start + sweep;
  return offset - sweep < kKrTwoPi - offset ? start + offset : start + offset - kKrTwoPi;
}

bool krArcContainsAngle(double angle, double start, double sweep, double angleTol) {
  const double offset = krArcOffset(angle, start);
  return offset <= sweep + angleTol || kKrTwoPi - offset <= angleTol;
}
