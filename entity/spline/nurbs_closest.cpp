#include "entity/spline/nurbs_closest.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kNewtonSteps = 40;

struct Piece {
  double lowerBound;
  double from;
  double to;
  int span;
};

// Squared distance from the point to the box of the span's Bezier control points, which holds
// the span (positive weights): a lower bound of its distance.
double hullDistance2(const KrNurbsForm& form, int span, const KrGePoint3d& point) {
  const double* box = form.boxOf(span);
  const double q[3] = {point.x, point.y, point.z};
  double sum = 0.0;
  for (int c = 0; c < 3; ++c) {
    const double gap = q[c] < box[c] ? box[c] - q[c] : (q[c] > box[3 + c] ? q[c] - box[3 + c] : 0.0);
    sum += gap * gap;
  }
  return sum;
}

double distance2(const KrGePoint3d& a, const KrGePoint3d& b) {
  const KrGeVector3d d = a - b;
  return d.dotProduct(d);
}

// Safeguarded Newton for the foot of the perpendicular inside [lo, hi] of one span from t: a
// step that leaves the shrinking bracket (or makes no progress) is replaced by bisection, and
// the best iterate is kept, so the answer is never worse than the seed. The span's own
// polynomial is used at its end knots.
void refine(const KrNurbsForm& form, int span, const KrGePoint3d& point, double lo, double hi, double t,
            double& bestT, double& best2) {
  const double width = hi - lo;
  for (int step = 0; step < kNewtonSteps; ++step) {
    KrGePoint3d c;
    KrGeVector3d d1, d2;
    krNurbsPoint2(form, t, c, d1, d2, span);
    const KrGeVector3d diff = c - point;
    const double dist2 = diff.dotProduct(diff);
    if (dist2 < best2) {
      best2 = dist2;
      bestT = t;
    }
    const double f = d1.dotProduct(diff);
    const double fp = d2.dotProduct(diff) + d1.dotProduct(d1);
    if (f > 0.0) hi = t; else if (f < 0.0) lo = t; else return;
    double next = fp > 0.0 ? t - f / fp : 0.5 * (lo + hi);
    if (!(next > lo && next < hi)) next = 0.5 * (lo + hi);
    if (!(hi - lo > 1e-16 * (std::fabs(t) + width)) || !(std::fabs(next - t) > 1e-16 * (std::fabs(t) + width))) return;
    t = next;
  }
}

// One Bezier piece of a span over [a, b], homogeneous.
struct Bezier {
  double a, b;
  double h[kKrNurbsMaxDegree + 1][4];
};

// Halves a piece by de Casteljau at its middle (convex combinations only).
void halve(const Bezier& piece, int p, Bezier& left, Bezier& right) {
  double work[kKrNurbsMaxDegree + 1][4];
  for (int j = 0; j <= p; ++j)
    for (int c = 0; c < 4; ++c) work[j][c] = piece.h[j][c];
  const double mid = 0.5 * (piece.a + piece.b);
  left.a = piece.a;
  left.b = mid;
  right.a = mid;
  right.b = piece.b;
  for (int c = 0; c < 4; ++c) {
    left.h[0][c] = work[0][c];
    right.h[p][c] = work[p][c];
  }
  for (int r = 1; r <= p; ++r) {
    for (int j = 0; j <= p - r; ++j)
      for (int c = 0; c < 4; ++c) work[j][c] = 0.5 * (work[j][c] + work[j + 1][c]);
    for (int c = 0; c < 4; ++c) {
      left.h[r][c] = work[0][c];
      right.h[p - r][c] = work[p - r][c];
    }
  }
}

constexpr double kFlatShare = 0.05;
constexpr int kMaxDepth = 48;

// Branch and bound over the Bezier pieces of one span: a piece whose control box is farther
// than the best distance is dropped; a nearly straight piece (inner control points within 5% of
// its chord from it) has at most one interior minimum and gets one bracketed refinement; any
// other piece is halved, nearer half first.
void searchSpan(const KrNurbsForm& form, int span, double from, double to, const KrGePoint3d& point,
                double& bestT, double& best2) {
  const int p = form.degree;
  Bezier stack[kMaxDepth + 2];
  int depths[kMaxDepth + 2];
  int top = 0;
  double args[kKrNurbsMaxDegree] = {};
  Bezier& first = stack[top];
  first.a = from;
  first.b = to;
  if (from == form.knots[span] && to == form.knots[span + 1]) {
    const double* bez = form.bezierOf(span);
    for (int j = 0; j <= p; ++j)
      for (int c = 0; c < 4; ++c) first.h[j][c] = bez[4 * j + c];
  } else {
    for (int j = 0; j <= p; ++j) {
      for (int i = 0; i < p; ++i) args[i] = i < p - j ? from : to;
      krNurbsBlossom(form, span, args, first.h[j]);
    }
  }
  depths[top++] = 0;
  const double q[3] = {point.x, point.y, point.z};
  while (top > 0) {
    const Bezier piece = stack[--top];
    const int depth = depths[top];
    KrGePoint3d pts[kKrNurbsMaxDegree + 1];
    double low[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL}, high[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (int j = 0; j <= p; ++j) {
      const double w = piece.h[j][3];
      pts[j] = KrGePoint3d(piece.h[j][0] / w, piece.h[j][1] / w, piece.h[j][2] / w);
      for (int c = 0; c < 3; ++c) {
        low[c] = std::min(low[c], pts[j][static_cast<unsigned>(c)]);
        high[c] = std::max(high[c], pts[j][static_cast<unsigned>(c)]);
      }
    }
    for (double t : {piece.a, piece.b}) {
      const double d2 = distance2(t == piece.a ? pts[0] : pts[p], point);
      if (d2 < best2) {
        best2 = d2;
        bestT = t;
      }
    }
    double gap2 = 0.0;
    for (int c = 0; c < 3; ++c) {
      const double gap = q[c] < low[c] ? low[c] - q[c] : (q[c] > high[c] ? q[c] - high[c] : 0.0);
      gap2 += gap * gap;
    }
    if (gap2 >= best2) continue;
    const KrGeVector3d chord = pts[p] - pts[0];
    const double chordLength = chord.length();
    // Nearly straight and running one way: the inner points lie near the chord and their
    // projections on it advance, so the distance along the piece is unimodal.
    double deviation = 0.0, previous = 0.0;
    bool forward = chordLength > 0.0;
    for (int j = 1; j <= p && forward; ++j) {
      const KrGeVector3d arm = pts[j] - pts[0];
      deviation = std::max(deviation, chord.crossProduct(arm).length() / chordLength);
      const double along = arm.dotProduct(chord);
      forward = along >= previous;
      previous = along;
    }
    if ((forward && deviation <= kFlatShare * chordLength) || depth >= kMaxDepth || !(piece.b - piece.a > 1e-15 * (std::fabs(piece.a) + 1.0))) {
      const double seed = distance2(pts[0], point) < distance2(pts[p], point) ? piece.a : piece.b;
      refine(form, span, point, piece.a, piece.b, seed, bestT, best2);
      continue;
    }
    Bezier left, right;
    halve(piece, p, left, right);
    const bool leftFirst = distance2(pts[0], point) < distance2(pts[p], point);
    stack[top] = leftFirst ? right : left;
    depths[top++] = depth + 1;
    stack[top] = leftFirst ? left : right;
    depths[top++] = depth + 1;
  }
}

}  // namespace

double krNurbsNearestParam(const KrNurbsForm& form, const KrGePoint3d& point, double lo, double hi,
                           double* distance) {
  double bestT = lo;
  double best2 = distance2(krNurbsPoint(form, lo), point);
  const double end2 = distance2(krNurbsPoint(form, hi), point);
  if (end2 < best2) {
    best2 = end2;
    bestT = hi;
  }
  if (!std::isfinite(best2)) {
    if (distance) *distance = best2;
    return lo;
  }
  const double* k = form.knots.data();
  Piece local[64];
  std::vector<Piece> heap;
  Piece* pieces = local;
  const int first = form.spanOf(lo), last = form.spanOf(hi);
  if (last - first + 1 > 64) {
    heap.resize(static_cast<std::size_t>(last - first + 1));
    pieces = heap.data();
  }
  int numPieces = 0;
  for (int s = first; s <= last; ++s) {
    const double from = std::max(lo, k[s]), to = std::min(hi, k[s + 1]);
    if (!(from < to)) continue;
    pieces[numPieces++] = Piece{hullDistance2(form, s, point), from, to, s};
  }
  std::sort(pieces, pieces + numPieces, [](const Piece& a, const Piece& b) { return a.lowerBound < b.lowerBound; });
  for (int i = 0; i < numPieces; ++i) {
    const Piece& piece = pieces[i];
    if (piece.lowerBound >= best2) break;
    searchSpan(form, piece.span, piece.from, piece.to, point, bestT, best2);
  }
  if (distance) *distance = std::sqrt(best2);
  return bestT;
}
