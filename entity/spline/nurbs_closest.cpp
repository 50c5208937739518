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
    const double resolution = 4e-16 * (std::fabs(t) + width);
    double next = fp > 0.0 ? t - f / fp : 0.5 * (lo + hi);
    // A Newton step below the resolution has converged; one leaving the bracket is replaced by
    // bisection.
    if (fp > 0.0 && std::fabs(next - t) <= resolution) return;
    if (!(next > lo && next < hi)) next = 0.5 * (lo + hi);
    if (!(hi - lo > resolution)) return;
    t = next;
  }
}

constexpr double kFlatShare = 0.05;
constexpr int kMaxDepth = 48;
// Pieces examined per span at most (the bound of the search, reached only by degenerate input).
constexpr int kMaxPops = 4096;

// Halves the homogeneous Bezier points `source` of degree p by de Casteljau at the middle into
// `left` and `right` (4 (p + 1) doubles each; convex combinations only).
void halve(const double* source, int p, double* left, double* right) {
  double work[(kKrNurbsMaxDegree + 1) * 4];
  const int n = 4 * (p + 1);
  for (int i = 0; i < n; ++i) work[i] = source[i];
  for (int c = 0; c < 4; ++c) {
    left[c] = work[c];
    right[4 * p + c] = work[4 * p + c];
  }
  for (int r = 1; r <= p; ++r) {
    for (int i = 0; i < 4 * (p - r + 1); ++i) work[i] = 0.5 * (work[i] + work[i + 4]);
    for (int c = 0; c < 4; ++c) {
      left[4 * r + c] = work[c];
      right[4 * (p - r) + c] = work[4 * (p - r) + c];
    }
  }
}

// Branch and bound over the Bezier pieces of one span: a piece whose control box is farther
// than the best distance is dropped; a nearly straight piece running one way (inner control
// points within 5% of its chord from it, their projections on it advancing) has a unimodal
// distance and gets one bracketed refinement; any other piece is halved, nearer half first.
void searchSpan(const KrNurbsForm& form, int span, double from, double to, const KrGePoint3d& point,
                double& bestT, double& best2) {
  const int p = form.degree;
  const int stride = 4 * (p + 1);
  double buffer[(kMaxDepth + 2) * (kKrNurbsMaxDegree + 1) * 4];
  double ranges[(kMaxDepth + 2) * 2];
  int depths[kMaxDepth + 2];
  int top = 0;
  if (from == form.knots[span] && to == form.knots[span + 1]) {
    const double* bez = form.bezierOf(span);
    for (int i = 0; i < stride; ++i) buffer[i] = bez[i];
  } else {
    double args[kKrNurbsMaxDegree] = {};
    for (int j = 0; j <= p; ++j) {
      for (int i = 0; i < p; ++i) args[i] = i < p - j ? from : to;
      krNurbsBlossom(form, span, args, buffer + 4 * j);
    }
  }
  ranges[0] = from;
  ranges[1] = to;
  depths[top++] = 0;
  const double q[3] = {point.x, point.y, point.z};
  for (int pops = 0; top > 0 && pops < kMaxPops; ++pops) {
    --top;
    const double* h = buffer + static_cast<std::size_t>(stride) * top;
    const double a = ranges[2 * top], b = ranges[2 * top + 1];
    const int depth = depths[top];
    KrGePoint3d pts[kKrNurbsMaxDegree + 1];
    double low[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL}, high[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (int j = 0; j <= p; ++j) {
      const double inv = 1.0 / h[4 * j + 3];
      const double v[3] = {h[4 * j] * inv, h[4 * j + 1] * inv, h[4 * j + 2] * inv};
      pts[j] = KrGePoint3d(v[0], v[1], v[2]);
      for (int c = 0; c < 3; ++c) {
        low[c] = std::min(low[c], v[c]);
        high[c] = std::max(high[c], v[c]);
      }
    }
    const double startD2 = distance2(pts[0], point), endD2 = distance2(pts[p], point);
    if (startD2 < best2) best2 = startD2, bestT = a;
    if (endD2 < best2) best2 = endD2, bestT = b;
    double gap2 = 0.0;
    for (int c = 0; c < 3; ++c) {
      const double gap = q[c] < low[c] ? low[c] - q[c] : (q[c] > high[c] ? q[c] - high[c] : 0.0);
      gap2 += gap * gap;
    }
    if (gap2 >= best2) continue;
    // Nearly straight and running one way: the inner points lie near the chord and their
    // projections on it advance, so the distance along the piece is unimodal.
    const KrGeVector3d chord = pts[p] - pts[0];
    const double chord2 = chord.dotProduct(chord);
    double previous = 0.0;
    bool flat = chord2 > 0.0;
    for (int j = 1; j <= p && flat; ++j) {
      const KrGeVector3d arm = pts[j] - pts[0];
      const KrGeVector3d across = chord.crossProduct(arm);
      flat = across.dotProduct(across) <= kFlatShare * kFlatShare * chord2 * chord2;
      const double along = arm.dotProduct(chord);
      flat = flat && along >= previous;
      previous = along;
    }
    if (flat || depth >= kMaxDepth || !(b - a > 1e-15 * (std::fabs(a) + 1.0))) {
      // The end tangents run along the first and last control legs (positive weights), so the
      // signs of (C - P).C' at the ends come free: a unimodal piece whose distance grows from
      // its start (or falls to its end) has its minimum there, already offered.
      const bool risesAtStart = (pts[1] - pts[0]).dotProduct(pts[0] - point) >= 0.0;
      const bool fallsAtEnd = (pts[p] - pts[p - 1]).dotProduct(pts[p] - point) <= 0.0;
      if (flat && (risesAtStart || fallsAtEnd)) continue;
      refine(form, span, point, a, b, startD2 < endD2 ? a : b, bestT, best2);
      continue;
    }
    // The children replace the piece on the stack, the nearer half on top.
    double left[(kKrNurbsMaxDegree + 1) * 4], right[(kKrNurbsMaxDegree + 1) * 4];
    halve(h, p, left, right);
    const double mid = 0.5 * (a + b);
    const bool leftFirst = startD2 < endD2;
    const double* order[2] = {leftFirst ? right : left, leftFirst ? left : right};
    const double bounds[2][2] = {{leftFirst ? mid : a, leftFirst ? b : mid}, {leftFirst ? a : mid, leftFirst ? mid : b}};
    for (int k = 0; k < 2; ++k) {
      double* slot = buffer + static_cast<std::size_t>(stride) * top;
      for (int i = 0; i < stride; ++i) slot[i] = order[k][i];
      ranges[2 * top] = bounds[k][0];
      ranges[2 * top + 1] = bounds[k][1];
      depths[top++] = depth + 1;
    }
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
