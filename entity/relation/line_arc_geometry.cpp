#include "entity/relation/line_arc_geometry.h"

#include <algorithm>
#include <limits>

#include "entity/linear/linear_closest.h"

KrArcFrame krFrameOf(const KrCircle& circle) {
  KrArcFrame frame;
  frame.center = circle.center;
  frame.normal = circle.n;
  frame.refVec = circle.u;
  frame.radius = circle.radius;
  frame.startAng = circle.start;
  frame.sweep = circle.sweep;
  return frame;
}

bool krIsFinite(const KrLinearSpan& span) {
  return krIsFinite(span.origin) && krIsFinite(span.direction) && span.lower == span.lower &&
         span.upper == span.upper && span.lower <= span.upper;
}

KrTurn krClosestArcTurn(const KrCircle& circle, const KrGePoint3d& point) {
  const KrGeVector3d w = point - circle.center;
  const double x = w.dotProduct(circle.u);
  const double y = w.dotProduct(circle.v);
  if (x == 0.0 && y == 0.0) return krTurnOf(circle.start);
  KrTurn turn = krTurnTowards(x, y);
  const double offset = krArcOffset(circle, turn.angle);
  turn.angle = circle.start + offset;
  if (circle.full || offset <= circle.sweep) return turn;
  // Off the arc the distance grows with the angle to an end, so the nearer end in angle wins.
  return krTurnOf(offset - circle.sweep < kKrRelTwoPi - offset ? circle.start + circle.sweep : circle.start);
}

double krClosestArcParam(const KrCircle& circle, const KrGePoint3d& point) {
  return krClosestArcTurn(circle, point).angle;
}

namespace {

// The projected ellipse in its axis frame, scaled so that the major semi-axis is 1 (the radius);
// the minor one is beta = |cos| of the angle between line and normal, kappa = 1 - beta^2. The
// foot of a normal from (x0, y0) (both >= 0) has the Lagrange form x = x0 / (s + kappa),
// y / beta = beta y0 / s with s a root of F(s) = x^2 + (y / beta)^2 - 1, s shifted so that the
// nearest point has s > 0. F is convex on each side of its poles (-kappa and 0).
struct Ellipse {
  double x0, by, kappa;
  double f(double s) const {
    const double x = x0 / (s + kappa), y = by / s;
    return x * x + y * y - 1.0;
  }
  // Newton from a point where F >= 0 towards the root on the side it slopes down to. Convexity
  // keeps every iterate on that side of the root, so the iteration is monotone; it ends when F
  // stops being positive or a step no longer moves.
  double newtonToRoot(double s) const {
    for (int i = 0; i < 100; ++i) {
      const double x = x0 / (s + kappa), y = by / s;
      const double value = x * x + y * y - 1.0;
      if (!(value > 0.0)) break;
      const double slope = -2.0 * (x * x / (s + kappa) + y * y / s);
      const double next = s - value / slope;
      if (next == s || !std::isfinite(next)) break;
      s = next;
    }
    return s;
  }
  // The root in [low, high] (F(low) >= 0 >= F(high)) with s > 0. Newton on F from the left is
  // safe but crawls near the poles, where F ~ c / s^2; Newton on G = (F + 1)^(-1/2) - 1, which
  // is nearly linear both there and far out, is taken instead when it stays in the bracket
  // (and, from the left, goes farther). Ends when the bracket is down to a few units in the last
  // place, or after a step below 1e-9 relative: convergence is quadratic by then, so the error
  // left is far below the rounding. It also ends when the steps show that the next one would be
  // below the rounding: with quadratic convergence a step d after a step p predicts the next as
  // about d^3 / p^2 (relative). Most calls thus save the last, confirming, step.
  double nearestRoot(double low, double high) const {
    double s = low;
    double previous = 0.0;  // the size of the last step
    for (int i = 0; i < 100; ++i) {
      // Both reciprocals from one division, and one more for the two step lengths.
      const double ab = 1.0 / (s * (s + kappa));
      const double a = s * ab, b = (s + kappa) * ab;
      const double x = x0 * a, y = by * b;
      const double q = x * x + y * y;
      const double inverseW = 1.0 / (x * x * a + y * y * b);  // -2 / F'(s)
      const double linear = s + q * (std::sqrt(q) - 1.0) * inverseW;
      double next;
      if (q >= 1.0) {
        low = s;
        next = s + 0.5 * (q - 1.0) * inverseW;
        if (linear > next && linear < high) next = linear;
      } else {
        high = s;
        next = linear > low ? linear : 0.5 * (low + high);
      }
      if (!std::isfinite(next) || high - low <= 4e-16 * high) break;
      const double step = std::fabs(next - s);
      const bool small = step <= 1e-9 * next || step * step * step <= kKrRelEpsilon * previous * previous * next;
      previous = step;
      s = next;
      if (small) break;
    }
    return s;
  }
};

}  // namespace

// The squared distance from a circle point to the line is the squared distance, in the plane
// across the line, from the line's trace to the circle's shadow: an ellipse with semi-axes R
// (across the in-plane part of the line direction) and R |e.n|. Its critical points are those
// of the classic point-ellipse problem, solved in the Lagrange form above without trigonometry:
// the nearest foot is the root with s > 0 (one, F decreasing there); a second local minimum and
// its maximum are the two roots in (-kappa, 0), where F is convex with its least value at
// s = -kappa / (1 + (x0 / (beta y0))^(2/3)). The shadow's axes come from the line direction in
// the circle's frame: f1 along its in-plane part, f2 across it, g1 = e_n f1 - e_2 n the image of
// f1 divided by e_n, written without the cancelling difference f1 - e_2 e.
int krLineCircleMinima(const KrCircle& c, const KrGePoint3d& base, const KrGeVector3d& direction, bool all,
                       KrTurn* turns) {
  // Reciprocals first: divisions are the slow, chained steps here.
  const KrGeVector3d e = direction * (1.0 / direction.length());
  const double eu = e.dotProduct(c.u), ev = e.dotProduct(c.v), en = e.dotProduct(c.n);
  const double kappa = eu * eu + ev * ev;
  const double e2 = std::sqrt(kappa);
  const double inverseE2 = e2 > 0.0 ? 1.0 / e2 : 0.0;
  const double cphi = e2 > 0.0 ? eu * inverseE2 : 1.0, sphi = ev * inverseE2;
  const KrGeVector3d q = base - c.center;
  const double qu = q.dotProduct(c.u), qv = q.dotProduct(c.v), qn = q.dotProduct(c.n);
  const double inverseR = 1.0 / c.radius;
  const double bigX = (cphi * qv - sphi * qu) * inverseR;
  const double bigY = (en * (cphi * qu + sphi * qv) - e2 * qn) * inverseR;

  int count = 0;
  const auto emitStart = [&] {
    const KrTurn start = krTurnOf(c.start);
    turns[count++] = KrTurn{std::atan2(start.sine, start.cosine), start.cosine, start.sine};
  };
  // The shadow point (sin psi, e_n cos psi) belongs to the circle angle phi + psi.
  const auto emit = [&](double cosPsi, double sinPsi) {
    const double cosT = cphi * cosPsi - sphi * sinPsi, sinT = sphi * cosPsi + cphi * sinPsi;
    if (!std::isfinite(cosT) || !std::isfinite(sinT)) return;  // an overflowed merging point
    if (cosT == 0.0 && sinT == 0.0) return emitStart();
    turns[count++] = krTurnTowards(cosT, sinT);
  };
  if (!std::isfinite(bigX) || !std::isfinite(bigY) || !std::isfinite(kappa)) {
    emitStart();
    return count;
  }
  const double x0 = std::fabs(bigX), y0 = std::fabs(bigY);
  const double sx = bigX < 0.0 ? -1.0 : 1.0, sy = bigY < 0.0 ? -1.0 : 1.0, sn = en < 0.0 ? -1.0 : 1.0;
  const double by = std::fabs(en) * y0;
  if (kappa == 0.0 && x0 == 0.0 && y0 == 0.0) {
    emitStart();  // the axis itself: every point is as near
    return count;
  }
  if (!(by > 0.0)) {
    // The trace on the major axis line, or a shadow flattened to a segment (line parallel to the
    // plane): x = x0 / kappa inside the evolute, else the vertex; mirror twins across the axis.
    const double x = kappa > 0.0 ? std::min(x0 / kappa, 1.0) : 1.0;
    const double side = std::sqrt(std::max(0.0, (1.0 - x) * (1.0 + x)));
    emit(side, sx * x);
    if (all && side > 0.0) emit(-side, sx * x);
    return count;
  }
  if (x0 == 0.0) {
    // On the minor axis: the near co-vertex, and the far one as the other candidate.
    emit(sy * sn, 0.0);
    if (all) emit(-sy * sn, 0.0);
    return count;
  }
  const Ellipse ellipse{x0, by, kappa};
  // The root lies in [max(beta y0, x0 - kappa, h - kappa), h] with h = hypot(x0, beta y0): F >= 0
  // at the lower end (one of its terms is 1, or at h - kappa both denominators are at most h^2)
  // and <= 0 at the upper one. The nearer the start to the root, the fewer the steps.
  const double h = std::sqrt(x0 * x0 + by * by);
  const double s = ellipse.nearestRoot(std::max({by, x0 - kappa, h - kappa}), h);
  emit(sy * sn * by / s, sx * x0 / (s + kappa));
  if (!all || !(kappa > 0.0)) return count;

  const double ratio = x0 / by;
  const double least = -kappa / (1.0 + std::cbrt(ratio * ratio));
  const double lowest = ellipse.f(least);
  if (lowest < 0.0) {
    // F = 1 on the x term at x0 - kappa and on the y term at -beta y0: both outside the roots.
    const double left = ellipse.newtonToRoot(x0 - kappa);
    const double right = ellipse.newtonToRoot(-by);
    emit(sy * sn * by / left, sx * x0 / (left + kappa));
    emit(sy * sn * by / right, sx * x0 / (right + kappa));
  } else if (lowest <= 1e-10) {
    emit(sy * sn * by / least, sx * x0 / (least + kappa));  // the pair about to merge, or just merged
  }
  return count;
}

