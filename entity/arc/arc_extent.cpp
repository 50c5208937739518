#include "entity/arc/arc_extent.h"

#include <cmath>

#include "entity/arc/arc_angles.h"

namespace {

// Whether phase + 2 pi k lies in [from, to] for some integer k; the first such value is `at`.
bool crestInside(double phase, double from, double to, double& at) {
  at = from + krArcOffset(phase, from);
  return to - from >= kKrTwoPi || at <= to;
}

}  // namespace

KrArcExtent krArcExtent(double center, double x, double y, double from, double to, double fromValue,
                        double toValue) {
  KrArcExtent extent;
  extent.low = extent.high = fromValue;
  extent.lowParam = extent.highParam = from;
  if (toValue < extent.low) {
    extent.low = toValue;
    extent.lowParam = to;
  }
  if (toValue > extent.high) {
    extent.high = toValue;
    extent.highParam = to;
  }
  const double amplitude = std::hypot(x, y);
  if (!(amplitude > 0.0)) return extent;
  const double phase = std::atan2(y, x);
  double at = 0.0;
  if (crestInside(phase, from, to, at) && center + amplitude > extent.high) {
    extent.high = center + amplitude;
    extent.highParam = at;
  }
  if (crestInside(phase + kKrPi, from, to, at) && center - amplitude < extent.low) {
    extent.low = center - amplitude;
    extent.lowParam = at;
  }
  return extent;
}
