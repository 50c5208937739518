// Circle geometry shared by the line-arc and arc-arc solvers: the arc with its in-plane axes
// worked out once, angles against the arc's range, the closest point of an arc to a point, and
// the algebraic closest approaches of a circle to an infinite line.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "entity/arc/arc_frame.h"
#include "entity/linear/linear_closest.h"

constexpr double kKrRelTwoPi = 6.283185307179586;
constexpr double kKrRelEpsilon = 2.220446049250313e-16;  // the spacing of doubles at 1

// An angle with its cosine and sine, so that points and derivatives at it cost no trigonometry.
struct KrTurn {
  double angle = 0.0, cosine = 1.0, sine = 0.0;
};
inline KrTurn krTurnOf(double angle) { return KrTurn{angle, std::cos(angle), std::sin(angle)}; }
// sqrt(x^2 + y^2), by hypot only where the squares would underflow or overflow.
inline double krNorm(double x, double y) {
  const double rr = x * x + y * y;
  return rr > 1e-300 && rr < 1e300 ? std::sqrt(rr) : std::hypot(x, y);
}
// The turn towards (x, y), angle in (-pi, pi]; (0, 0) gives the angle 0.
inline KrTurn krTurnTowards(double x, double y) {
  const double r = krNorm(x, y);
  if (!(r > 0.0)) return KrTurn{};
  const double inverse = 1.0 / r;
  return KrTurn{std::atan2(y, x), x * inverse, y * inverse};
}

// An arc with a radius that is never negative: a stored negative radius r describes the same
// points as |r| with both in-plane axes reversed (r e(theta) = |r| (-e(theta))), and the angles
// keep their meaning. u = refVec, v = normal x refVec.
struct KrCircle {
  KrGePoint3d center;
  KrGeVector3d u, v, n;
  double radius = 0.0;
  double start = 0.0;
  double sweep = 0.0;
  bool full = false;  // sweep >= 2 pi: every angle is on the arc

  KrGePoint3d at(double cosine, double sine) const {
    return KrGePoint3d(center.x + radius * (cosine * u.x + sine * v.x), center.y + radius * (cosine * u.y + sine * v.y),
                       center.z + radius * (cosine * u.z + sine * v.z));
  }
  KrGePoint3d at(double angle) const { return at(std::cos(angle), std::sin(angle)); }
  KrGePoint3d at(const KrTurn& turn) const { return at(turn.cosine, turn.sine); }
  // The point relative to the centre, and its derivative in the angle.
  KrGeVector3d radial(const KrTurn& turn) const { return (u * turn.cosine + v * turn.sine) * radius; }
  KrGeVector3d tangent(const KrTurn& turn) const { return (v * turn.cosine - u * turn.sine) * radius; }
  // The turn of the direction of `w` (any vector) in the plane.
  KrTurn turnOf(const KrGeVector3d& w) const { return krTurnTowards(w.dotProduct(u), w.dotProduct(v)); }
  // The angle of the direction of `w` (any vector) in the plane, in (-pi, pi]; 0 along the axis.
  double angleOf(const KrGeVector3d& w) const { return std::atan2(w.dotProduct(v), w.dotProduct(u)); }
};

// The arc as a circle; inline, as every relation starts with it.
inline KrCircle krCircleOf(const KrArcFrame& frame) {
  KrCircle circle;
  circle.center = frame.center;
  circle.n = frame.normal;
  circle.u = frame.refVec;
  circle.v = frame.yAxis();
  circle.radius = frame.radius;
  if (frame.radius < 0.0) {
    circle.radius = -frame.radius;
    circle.u.negate();
    circle.v.negate();
  }
  circle.start = frame.startAng;
  circle.sweep = frame.sweep > 0.0 ? frame.sweep : 0.0;
  circle.full = frame.sweep >= kKrRelTwoPi;
  return circle;
}

// The circle as arc data again (positive radius), as the coordinate descents take it.
KrArcFrame krFrameOf(const KrCircle& circle);
// Every field a finite number. x * 0 is 0 for every finite x and NaN for infinities and NaN,
// so one sum tells for all (v = n x u is finite with them).
inline bool krIsFinite(const KrGePoint3d& p) { return p.x * 0.0 + p.y * 0.0 + p.z * 0.0 == 0.0; }
inline bool krIsFinite(const KrGeVector3d& v) { return v.x * 0.0 + v.y * 0.0 + v.z * 0.0 == 0.0; }
inline bool krIsFinite(const KrCircle& c) {
  const double sum = c.u.x + c.u.y + c.u.z + c.n.x + c.n.y + c.n.z + c.radius + c.start + c.sweep;
  return krIsFinite(c.center) && sum * 0.0 == 0.0;
}
// Origin and direction finite, bounds ordered (either may be infinite).
bool krIsFinite(const KrLinearSpan& span);

// (angle - start) reduced into [0, 2 pi).
inline double krArcOffset(const KrCircle& circle, double angle) {
  double offset = angle - circle.start;
  if (offset >= 0.0 && offset < kKrRelTwoPi) return offset;
  if (offset < 0.0 && offset >= -kKrRelTwoPi) {
    offset += kKrRelTwoPi;
    return offset < kKrRelTwoPi ? offset : 0.0;
  }
  offset -= kKrRelTwoPi * std::floor(offset / kKrRelTwoPi);
  // The reduction can round up to 2 pi itself, which is the start again.
  return offset >= kKrRelTwoPi || offset < 0.0 ? 0.0 : offset;
}
// The angle as a parameter of the arc: start + its offset, in [start, start + 2 pi).
inline double krArcParam(const KrCircle& circle, double angle) { return circle.start + krArcOffset(circle, angle); }
inline bool krOnArc(const KrCircle& circle, double angle) {
  return circle.full || krArcOffset(circle, angle) <= circle.sweep;
}
// The parameter of the arc within model distance `tol` of the point at `angle` (tol / radius
// radians): its own parameter on the arc, the nearer end within the slack, NaN beyond it.
inline double krArcParamWithin(const KrCircle& circle, double angle, double tol) {
  const double offset = krArcOffset(circle, angle);
  if (circle.full || offset <= circle.sweep) return circle.start + offset;
  const double pastEnd = offset - circle.sweep;
  const double beforeStart = kKrRelTwoPi - offset;
  const double none = std::numeric_limits<double>::quiet_NaN();
  if (pastEnd <= beforeStart) return pastEnd * circle.radius <= tol ? circle.start + circle.sweep : none;
  return beforeStart * circle.radius <= tol ? circle.start : none;
}

// The parameter (in [start, start + sweep]) of the point of the arc nearest to `point`: the
// radial direction of its projection when that lies on the arc, otherwise the nearer end (in
// angle, hence in distance). A point on the axis is equally near to every point: the start.
double krClosestArcParam(const KrCircle& circle, const KrGePoint3d& point);
// The same as a turn (its angle the parameter).
KrTurn krClosestArcTurn(const KrCircle& circle, const KrGePoint3d& point);

// Turns (angles in (-pi, pi]) of the local minima of the squared distance g(theta) from the
// circle point to the infinite line base + t * direction (direction not zero, radius positive).
// The first is the global minimum; when `all` the others follow: the second local minimum where
// there is one (written together with its neighbouring maximum, or their merging point when they
// nearly coincide), and the twin of a minimum that symmetry doubles. Up to 4 are written; the
// count is returned. A line along the axis (g constant) gives the start angle alone.
int krLineCircleMinima(const KrCircle& circle, const KrGePoint3d& base, const KrGeVector3d& direction, bool all,
                       KrTurn* turns);

// About sqrt(noise / lambda) for the least eigenvalue lambda of the symmetric [[a, b], [b, d]]
// (taken as det / trace, within a factor 2); infinite unless it is positive definite.
inline double krValleyResolution(double a, double b, double d, double noise) {
  // The trace is within a factor 2 of the largest eigenvalue, enough for a resolution.
  const double trace = a + d, det = a * d - b * b;
  return trace > 0.0 && det > 0.0 ? std::sqrt(noise * trace / det) : std::numeric_limits<double>::infinity();
}

// tol raised where coordinates of the given magnitude carry fewer digits than it needs
// (krEffectiveEqualPoint); the common small-coordinate case costs one comparison.
inline double krEffectiveTolerance(double magnitude, double tol) {
  // 10^(ceil(log10 m) - 14) <= m * 1e-13, so below tol whenever m * 1e-13 is.
  if (magnitude * 1e-13 <= tol) return tol;
  return krEffectiveEqualPoint(KrGePoint3d(magnitude, 0.0, 0.0), KrGePoint3d::kOrigin, tol);
}
// Largest absolute coordinate of the point plus `extent`.
inline double krMagnitude(const KrGePoint3d& point, double extent = 0.0) {
  return std::max({std::fabs(point.x), std::fabs(point.y), std::fabs(point.z)}) + extent;
}
