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

// Squared distance from the point to the axis-aligned box of the span's control points: the
// span lies in their convex hull (positive weights), so this bounds its distance from below.
double hullDistance2(const KrNurbsForm& form, int span, const KrGePoint3d& point) {
  double low[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL}, high[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
  for (int i = span - form.degree; i <= span; ++i) {
    const double* h = &form.hw[4 * static_cast<std::size_t>(i)];
    for (int c = 0; c < 3; ++c) {
      const double v = h[c] / h[3];
      low[c] = std::min(low[c], v);
      high[c] = std::max(high[c], v);
    }
  }
  const double q[3] = {point.x, point.y, point.z};
  double sum = 0.0;
  for (int c = 0; c < 3; ++c) {
    const double gap = q[c] < low[c] ? low[c] - q[c] : (q[c] > high[c] ? q[c] - high[c] : 0.0);
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
  const int p = form.degree;
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
  const int samples = p + 2;
  for (int i = 0; i < numPieces; ++i) {
    const Piece& piece = pieces[i];
    if (piece.lowerBound >= best2) break;
    // Every sampled local minimum, with its neighbours as bracket, seeds one refinement.
    double values[kKrNurbsMaxDegree + 2];
    const double h = (piece.to - piece.from) / (samples - 1);
    auto at = [&](int j) { return j == samples - 1 ? piece.to : piece.from + j * h; };
    for (int j = 0; j < samples; ++j) values[j] = distance2(krNurbsPoint(form, at(j), piece.span), point);
    for (int j = 0; j < samples; ++j) {
      if ((j > 0 && values[j - 1] < values[j]) || (j + 1 < samples && values[j + 1] < values[j])) continue;
      if (values[j] < best2) {
        best2 = values[j];
        bestT = at(j);
      }
      refine(form, piece.span, point, at(std::max(0, j - 1)), at(std::min(samples - 1, j + 1)), at(j), bestT, best2);
    }
  }
  if (distance) *distance = std::sqrt(best2);
  return bestT;
}
