#include "entity/spline/nurbs_measure.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kNewtonSteps = 60;
constexpr int kBoxDepth = 40;
// Bezier pieces examined per span at most; past it the remaining control hulls are taken whole.
constexpr int kBoxPieces = 4096;

double speed(const KrNurbsForm& form, double t) {
  KrGeVector3d d[2];
  krNurbsDerivs(form, t, 1, d);
  return d[1].length();
}

// Calls piece(from, to) for every non-empty knot span clipped to [a, b], in order (or reverse).
template <class Piece>
bool forEachSpan(const KrNurbsForm& form, double a, double b, bool forwards, const Piece& piece) {
  const double* k = form.knots.data();
  const int first = form.spanOf(a), last = form.spanOf(b);
  for (int i = 0; i <= last - first; ++i) {
    const int s = forwards ? first + i : last - i;
    const double from = std::max(a, k[s]), to = std::min(b, k[s + 1]);
    if (from < to && piece(from, to)) return true;
  }
  return false;
}

}  // namespace

double krNurbsLength(const KrNurbsForm& form, double a, double b, double tol) {
  if (!(a < b)) return 0.0;
  const double width = b - a;
  double total = 0.0;
  forEachSpan(form, a, b, true, [&](double from, double to) {
    total += krGaussKronrod([&form](double t) { return speed(form, t); }, from, to,
                            std::max(tol, 0.0) * ((to - from) / width));
    return false;
  });
  return total;
}

double krNurbsParamAtLength(const KrNurbsForm& form, double datum, double length, bool forwards, double tol) {
  const double lo = form.startParam(), hi = form.endParam();
  if (!(length > 0.0)) return datum;
  double remaining = length;
  double answer = forwards ? hi : lo;
  const double a = forwards ? datum : lo, b = forwards ? hi : datum;
  auto within = [&](double from, double to) {
    const double spanLength = krNurbsLength(form, from, to, tol);
    if (spanLength < remaining) {
      remaining -= spanLength;
      return false;
    }
    // Newton on g(t) = length(origin, t) - remaining, g' = +-|C'(t)|, kept inside a shrinking
    // bracket (bisection when a step leaves it); the length of each trial comes from the
    // quadrature, so the answer is as accurate as the length itself.
    // In x = distance in parameter from the piece's origin, g(x) increases with g' = |C'|.
    const double width = to - from;
    auto paramAt = [&](double x) { return forwards ? from + x : to - x; };
    double low = 0.0, high = width;
    double x = width * (remaining / spanLength);
    for (int step = 0; step < kNewtonSteps; ++step) {
      const double t = paramAt(x);
      const double g = krNurbsLength(form, std::min(t, forwards ? from : to), std::max(t, forwards ? from : to), tol) -
                       remaining;
      if (g == 0.0) break;
      if (g > 0.0) high = x; else low = x;
      const double s = speed(form, t);
      double next = s > 0.0 ? x - g / s : 0.5 * (low + high);
      if (!(next > low && next < high)) next = 0.5 * (low + high);
      const bool done = std::fabs(next - x) <= 1e-15 * (std::fabs(t) + width);
      x = next;
      if (done) break;
    }
    const double t = paramAt(x);
    answer = t;
    return true;
  };
  forEachSpan(form, a, b, forwards, within);
  return answer;
}

double krNurbsChordArea(const KrNurbsForm& form, double a, double b, const KrGeVector3d& normal, double tol) {
  if (!(a < b)) return 0.0;
  const KrGePoint3d origin = krNurbsPoint(form, a);
  double total = 0.0;
  forEachSpan(form, a, b, true, [&](double from, double to) {
    total += krGaussKronrod(
        [&](double t) {
          KrGeVector3d d[2];
          krNurbsDerivs(form, t, 1, d);
          const KrGeVector3d arm = KrGePoint3d(d[0].x, d[0].y, d[0].z) - origin;
          return 0.5 * arm.crossProduct(d[1]).dotProduct(normal);
        },
        from, to, std::max(tol, 0.0));
    return false;
  });
  return total;
}

namespace {

struct Bezier {
  int degree;
  double h[kKrNurbsMaxDegree + 1][4];
};

// Grows [low, high] to the exact range of the Bezier piece within slack: its end points are
// curve points; while the control hull of a coordinate reaches beyond the range by more than
// slack the piece is halved (de Casteljau on homogeneous points, a convex scheme).
void refineBox(const Bezier& bez, double slack, double* low, double* high, int depth, int& budget) {
  const int p = bez.degree;
  bool outside = false;
  for (int c = 0; c < 3; ++c) {
    const double first = bez.h[0][c] / bez.h[0][3], last = bez.h[p][c] / bez.h[p][3];
    low[c] = std::min(low[c], std::min(first, last));
    high[c] = std::max(high[c], std::max(first, last));
  }
  for (int j = 1; j < p && !outside; ++j)
    for (int c = 0; c < 3; ++c) {
      const double v = bez.h[j][c] / bez.h[j][3];
      if (v < low[c] - slack || v > high[c] + slack) outside = true;
    }
  if (!outside) return;
  if (depth >= kBoxDepth || --budget <= 0) {
    for (int j = 1; j < p; ++j)
      for (int c = 0; c < 3; ++c) {
        const double v = bez.h[j][c] / bez.h[j][3];
        low[c] = std::min(low[c], v);
        high[c] = std::max(high[c], v);
      }
    return;
  }
  Bezier left{p, {}}, right{p, {}};
  double work[kKrNurbsMaxDegree + 1][4];
  for (int j = 0; j <= p; ++j)
    for (int c = 0; c < 4; ++c) work[j][c] = bez.h[j][c];
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
  refineBox(left, slack, low, high, depth + 1, budget);
  refineBox(right, slack, low, high, depth + 1, budget);
}

}  // namespace

void krNurbsExactBox(const KrNurbsForm& form, double a, double b, double slack, KrGePoint3d& low, KrGePoint3d& high) {
  double lo[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL}, hi[3] = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
  const int p = form.degree;
  const int first = form.spanOf(a), last = form.spanOf(b);
  const double* k = form.knots.data();
  double args[kKrNurbsMaxDegree] = {};
  for (int s = first; s <= last; ++s) {
    const double from = s == first ? a : std::max(a, k[s]);
    const double to = s == last ? b : std::min(b, k[s + 1]);
    if (from > to || (s != first && !(k[s] < k[s + 1]))) continue;
    Bezier bez{p, {}};
    for (int j = 0; j <= p; ++j) {
      for (int i = 0; i < p; ++i) args[i] = i < p - j ? from : to;
      krNurbsBlossom(form, s, args, bez.h[j]);
    }
    int budget = kBoxPieces;
    refineBox(bez, slack, lo, hi, 0, budget);
  }
  low = KrGePoint3d(lo[0], lo[1], lo[2]);
  high = KrGePoint3d(hi[0], hi[1], hi[2]);
}
