// Stateless closest-point maths of straight curves. A span is origin + s * direction for s in
// [lower, upper]; an open side is -inf / +inf, a point is a span with a zero direction.
#pragma once

#include <cmath>
#include <limits>

#include "KrGeInterval.h"
#include "KrGePoint3d.h"
#include "KrGeVector3d.h"

struct KrLinearSpan {
  KrGePoint3d origin;
  KrGeVector3d direction;
  double lower = -std::numeric_limits<double>::infinity();
  double upper = std::numeric_limits<double>::infinity();

  KrGePoint3d at(double s) const { return origin + direction * s; }
};

// v clamped into [lower, upper]; written as selects so that it compiles to min/max without
// branches. A NaN passes through.
inline double krClampParam(double v, double lower, double upper) {
  v = v < lower ? lower : v;
  return v > upper ? upper : v;
}

// A parameter standing in for a NaN one: the lower bound, else the upper one, else 0, so that
// no NaN parameter leaves the closest-point routines for finite spans.
inline double krFallbackParam(double lower, double upper) {
  if (std::isfinite(lower)) return lower;
  return std::isfinite(upper) ? upper : 0.0;
}

// A direction whose squared length is not a normal double is a point: its parameter cannot be
// recovered by dividing by that square, and all its points coincide to within 1e-154.
constexpr double krLinearTinySquare = 2.2250738585072014e-308;
// Directions whose cross product is this small relative to their lengths (sin^2 of the angle)
// are parallel: the cross product then has no correct digit left.
constexpr double krLinearParallelSin2 = 1e-30;

// Parameter on `span` of the point of the span nearest to `point` (the projection, clamped).
// A zero direction answers the clamped 0.
double krClosestParamToPoint(const KrLinearSpan& span, const KrGePoint3d& point);


// Minimising f(s, t) = |A(s) - B(t)|^2 over the parameter box. With g(s) = min_t f(s, t) convex,
// s0 = clamp(argmin g) minimises g over [a.lower, a.upper]; (s0, T(s0)) is then optimal over
// that range times all t, so if T(s0) is inside b's range it is the answer. Otherwise
// h(t) = min_s f(s, t) is convex with its minimum beyond the clamped side, so the answer lies on
// that side: t = the bound, s = clamp(S(t)). (The clamp-project-clamp scheme of the literature.)
// The unconstrained s is found from cross products, s = ((b.o - a.o) x d2) . n / |n|^2 with
// n = d1 x d2, not from the 2x2 normal equations: |n|^2 computed as a e - b^2 cancels
// catastrophically for nearly parallel directions (error ~ eps / sin^2), the cross products
// keep a relative error ~ eps / sin, which moves the found point along the valley of f where f
// changes only by ~ eps |b.o - a.o|. So the distance stays accurate whatever the angle.
inline void krClosestParamsRaw(const KrLinearSpan& a, const KrLinearSpan& b, double& s, double& t) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const KrGeVector3d& d1 = a.direction;
  const KrGeVector3d& d2 = b.direction;
  const KrGeVector3d r = a.origin - b.origin;
  const double aa = d1.dotProduct(d1);
  const double ee = d2.dotProduct(d2);
  const bool point1 = !(aa >= krLinearTinySquare);
  const bool point2 = !(ee >= krLinearTinySquare);

  if (point1 && point2) {
    s = krClampParam(0.0, a.lower, a.upper);
    t = krClampParam(0.0, b.lower, b.upper);
    return;
  }
  if (point1) {
    s = krClampParam(0.0, a.lower, a.upper);
    t = krClampParam(d2.dotProduct(a.at(s) - b.origin) / ee, b.lower, b.upper);
    return;
  }
  if (point2) {
    t = krClampParam(0.0, b.lower, b.upper);
    s = krClampParam(d1.dotProduct(b.at(t) - a.origin) / aa, a.lower, a.upper);
    return;
  }

  const double bb = d1.dotProduct(d2);
  const double c = d1.dotProduct(r);
  const double f = d2.dotProduct(r);
  const KrGeVector3d n = d1.crossProduct(d2);
  const double nn = n.dotProduct(n);

  // Parallel: g is constant and any s minimises it; 0 (clamped) is taken. The three divisions
  // are independent reciprocals issued together, and both candidates for s are computed and
  // then selected: random pairs then meet neither a chain of divisions nor mispredicted
  // branches. (A reciprocal product is within 1.5 ulp of the quotient.) The parallel test is
  // applied to the quotient, not to the divisor, so that the division does not wait for it.
  const bool parallel = !(nn > krLinearParallelSin2 * aa * ee);
  const double invNN = 1.0 / nn;
  const double invEE = 1.0 / ee;
  const double sRaw = parallel ? 0.0 : (-r).crossProduct(d2).dotProduct(n) * invNN;
  if (a.lower == -kInf && a.upper == kInf && b.lower == -kInf && b.upper == kInf) {
    // Two infinite lines: no clamp can bind, so s is the free minimum and t its foot. A NaN t
    // makes s NaN as the clamped path below does (its t0 == tFree test fails).
    const double tRaw = (bb * sRaw + f) * invEE;
    s = tRaw == tRaw ? sRaw : tRaw;
    t = tRaw;
    return;
  }
  const double invAA = 1.0 / aa;
  const double s0 = krClampParam(sRaw, a.lower, a.upper);
  const double tFree = (bb * s0 + f) * invEE;
  const double t0 = krClampParam(tFree, b.lower, b.upper);
  const double s1 = krClampParam((bb * t0 - c) * invAA, a.lower, a.upper);
  s = t0 == tFree ? s0 : s1;
  t = t0;
}

// Parameters s on `a` and t on `b` of a closest pair. Exact for every combination of lines,
// segments and points; for parallel spans (sin^2 of the angle below 1e-30) one of the closest
// pairs is chosen, starting from a's lower bound (its origin when open). Inline: it is the
// core of the segment-segment closest points, called through two virtual calls already.
inline void krClosestParams(const KrLinearSpan& a, const KrLinearSpan& b, double& s, double& t) {
  krClosestParamsRaw(a, b, s, t);
  if (!(s == s)) s = krFallbackParam(a.lower, a.upper);
  if (!(t == t)) t = krFallbackParam(b.lower, b.upper);
}

// The points of a closest pair of the two spans (krClosestParams).
inline void krClosestPoints(const KrLinearSpan& a, const KrLinearSpan& b, KrGePoint3d& onA, KrGePoint3d& onB) {
  double s = 0.0;
  double t = 0.0;
  krClosestParams(a, b, s, t);
  onA = a.at(s);
  onB = b.at(t);
}

// The span restricted to a parameter neighbourhood (null: the whole span); a neighbourhood that
// misses the span's range is ignored.
KrLinearSpan krRestrictedSpan(KrLinearSpan span, const KrGeInterval* nbhd);

// The span as seen along `direction`: origin and direction with their components along it
// removed, the origin taken relative to `base` so that large coordinates cancel first. Null when
// nothing can be seen: a zero (gTol) or non-finite direction, or non-finite data of the span.
const KrLinearSpan* krSeenAlong(const KrLinearSpan& span, const KrGePoint3d& base, const KrGeVector3d& direction,
                                KrLinearSpan& seen);

// Effective tolerance for deciding that two closest points coincide: tol.equalPoint() or, when
// coordinates are so large that it is below their precision, 10^(k - 14) with k the number of
// integer decimal digits of the largest absolute coordinate of p1 and p2 (14 significant
// digits). NaN or infinite coordinates answer NaN (no comparison passes).
double krEffectiveEqualPoint(const KrGePoint3d& p1, const KrGePoint3d& p2, double equalPoint);
