// Independent geometry for the entity tests: distances to segments and lines in long double, and
// the closest distance of two segments by ternary search rather than by a closed form.
#pragma once

#include "testkit/TestKit.h"

using namespace testkit;

struct Segment {
  KrGePoint3d p, q;
};

// Distance from x to segment [p, q] (to the whole line when `line`), in long double.
inline double distanceToSegment(const KrGePoint3d& x, const Segment& seg, bool line = false) {
  const long double d[3] = {(long double)seg.q.x - seg.p.x, (long double)seg.q.y - seg.p.y, (long double)seg.q.z - seg.p.z};
  const long double w[3] = {(long double)x.x - seg.p.x, (long double)x.y - seg.p.y, (long double)x.z - seg.p.z};
  const long double dd = d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
  long double t = dd > 0 ? (w[0] * d[0] + w[1] * d[1] + w[2] * d[2]) / dd : 0;
  if (!line) t = std::min<long double>(1, std::max<long double>(0, t));
  long double sum = 0;
  for (int i = 0; i < 3; ++i) sum += (w[i] - t * d[i]) * (w[i] - t * d[i]);
  return (double)std::sqrt(sum);
}

// Distance from segment a to segment (or line through) b: a ternary search over a's parameter of
// the convex distance to b.
inline double bruteForceDistance(const Segment& a, const Segment& b, bool bIsLine = false) {
  auto f = [&](double s) { return distanceToSegment(a.p + (a.q - a.p) * s, b, bIsLine); };
  double lo = 0, hi = 1;
  for (int i = 0; i < 200; ++i) {
    const double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
    (f(m1) <= f(m2) ? hi : lo) = f(m1) <= f(m2) ? m2 : m1;
  }
  return std::min({f(lo), f(0.0), f(1.0)});
}
