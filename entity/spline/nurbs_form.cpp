#include "entity/spline/nurbs_form.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMaxOrder = kKrNurbsMaxDegree + 1;

// The p + 1 non-zero basis functions of span s at u: the triangular Cox-de Boor scheme, every
// term a convex combination on a valid span, so no cancellation and no division by zero.
inline void basisFuns(const double* k, int s, int p, double u, double* N) {
  double left[kMaxOrder], right[kMaxOrder];
  N[0] = 1.0;
  for (int j = 1; j <= p; ++j) {
    left[j] = u - k[s + 1 - j];
    right[j] = k[s + j] - u;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      const double temp = N[r] / (right[r + 1] + left[j - r]);
      N[r] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    N[j] = saved;
  }
}

// Basis functions and their derivatives up to order n (n <= p) of span s at u: the triangle
// of knot differences and basis values is built once, and the derivative coefficients follow by
// the difference recurrence, so each order costs O(p^2).
void dersBasisFuns(const double* k, int s, int p, double u, int n, double ders[][kMaxOrder]) {
  double ndu[kMaxOrder][kMaxOrder];
  double left[kMaxOrder], right[kMaxOrder];
  ndu[0][0] = 1.0;
  for (int j = 1; j <= p; ++j) {
    left[j] = u - k[s + 1 - j];
    right[j] = k[s + j] - u;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      ndu[j][r] = right[r + 1] + left[j - r];
      const double temp = ndu[r][j - 1] / ndu[j][r];
      ndu[r][j] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    ndu[j][j] = saved;
  }
  for (int j = 0; j <= p; ++j) ders[0][j] = ndu[j][p];
  double a[2][kMaxOrder];
  for (int r = 0; r <= p; ++r) {
    int s1 = 0, s2 = 1;
    a[0][0] = 1.0;
    for (int kk = 1; kk <= n; ++kk) {
      double d = 0.0;
      const int rk = r - kk, pk = p - kk;
      if (r >= kk) {
        a[s2][0] = a[s1][0] / ndu[pk + 1][rk];
        d = a[s2][0] * ndu[rk][pk];
      }
      const int j1 = rk >= -1 ? 1 : -rk;
      const int j2 = (r - 1 <= pk) ? kk - 1 : p - r;
      for (int j = j1; j <= j2; ++j) {
        a[s2][j] = (a[s1][j] - a[s1][j - 1]) / ndu[pk + 1][rk + j];
        d += a[s2][j] * ndu[rk + j][pk];
      }
      if (r <= pk) {
        a[s2][kk] = -a[s1][kk - 1] / ndu[pk + 1][r];
        d += a[s2][kk] * ndu[r][pk];
      }
      ders[kk][r] = d;
      std::swap(s1, s2);
    }
  }
  double factor = p;
  for (int kk = 1; kk <= n; ++kk) {
    for (int j = 0; j <= p; ++j) ders[kk][j] *= factor;
    factor *= (p - kk);
  }
}

// Compile-time-degree versions of the hot paths (degrees 1 to 5): the same schemes, unrolled.
template <int P>
inline KrGePoint3d pointT(const KrNurbsForm& form, int s, double u) {
  double N[P + 1];
  basisFuns(form.knots.data(), s, P, u, N);
  const double* h = &form.hw[4 * static_cast<std::size_t>(s - P)];
  double x = 0.0, y = 0.0, z = 0.0, w = 0.0;
  for (int j = 0; j <= P; ++j, h += 4) {
    x += N[j] * h[0];
    y += N[j] * h[1];
    z += N[j] * h[2];
    w += N[j] * h[3];
  }
  if (!form.rational) return KrGePoint3d(x, y, z);
  const double inv = 1.0 / w;
  return KrGePoint3d(x * inv, y * inv, z * inv);
}

// Point and first derivative: the basis of degree P - 1 is the second-to-last row of the
// triangle, and N'_{i,P} = P (N_{i,P-1} / (t[i+P] - t[i]) - N_{i+1,P-1} / (t[i+P+1] - t[i+1])).
template <int P>
inline void firstT(const KrNurbsForm& form, int s, double u, KrGeVector3d* out) {
  const double* k = form.knots.data();
  double left[P + 1], right[P + 1], N[P + 1], lower[P + 1];
  N[0] = 1.0;
  lower[0] = 1.0;
  for (int j = 1; j <= P; ++j) {
    if (j == P)
      for (int r = 0; r < P; ++r) lower[r] = N[r];
    left[j] = u - k[s + 1 - j];
    right[j] = k[s + j] - u;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      const double temp = N[r] / (right[r + 1] + left[j - r]);
      N[r] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    N[j] = saved;
  }
  double a[4] = {0.0, 0.0, 0.0, 0.0}, b[4] = {0.0, 0.0, 0.0, 0.0};
  const double* h = &form.hw[4 * static_cast<std::size_t>(s - P)];
  for (int r = 0; r <= P; ++r, h += 4) {
    const int i = s - P + r;
    const double up = r > 0 ? lower[r - 1] / (k[i + P] - k[i]) : 0.0;
    const double down = r < P ? lower[r] / (k[i + P + 1] - k[i + 1]) : 0.0;
    const double d = P * (up - down);
    for (int c = 0; c < 4; ++c) {
      a[c] += N[r] * h[c];
      b[c] += d * h[c];
    }
  }
  if (!form.rational) {
    out[0] = KrGeVector3d(a[0], a[1], a[2]);
    out[1] = KrGeVector3d(b[0], b[1], b[2]);
    return;
  }
  const double inv = 1.0 / a[3];
  const double x = a[0] * inv, y = a[1] * inv, z = a[2] * inv;
  out[0] = KrGeVector3d(x, y, z);
  out[1] = KrGeVector3d((b[0] - x * b[3]) * inv, (b[1] - y * b[3]) * inv, (b[2] - z * b[3]) * inv);
}

// Point and two derivatives (P >= 2): rows P - 2 and P - 1 of the triangle give N'_{., P-1},
// then N'' of row P by the same difference rule one level up.
template <int P>
inline void secondT(const KrNurbsForm& form, int s, double u, KrGeVector3d* out) {
  const double* k = form.knots.data();
  double left[P + 1], right[P + 1], N[P + 1], row1[P + 1] = {}, row2[P + 1] = {};
  N[0] = 1.0;
  for (int j = 1; j <= P; ++j) {
    if (j == P - 1)
      for (int r = 0; r < P - 1; ++r) row2[r] = N[r];
    if (j == P)
      for (int r = 0; r < P; ++r) row1[r] = N[r];
    left[j] = u - k[s + 1 - j];
    right[j] = k[s + j] - u;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      const double temp = N[r] / (right[r + 1] + left[j - r]);
      N[r] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    N[j] = saved;
  }
  if (P == 1) row2[0] = 1.0;
  // N'_{i,P-1} for i = s - P + 1 + r.
  double d1Row[P + 1];
  for (int r = 0; r < P; ++r) {
    const int i = s - P + 1 + r;
    const double up = r > 0 ? row2[r - 1] / (k[i + P - 1] - k[i]) : 0.0;
    const double down = r < P - 1 ? row2[r] / (k[i + P] - k[i + 1]) : 0.0;
    d1Row[r] = (P - 1) * (up - down);
  }
  double a[4] = {0.0, 0.0, 0.0, 0.0}, b[4] = {0.0, 0.0, 0.0, 0.0}, c2[4] = {0.0, 0.0, 0.0, 0.0};
  const double* h = &form.hw[4 * static_cast<std::size_t>(s - P)];
  for (int r = 0; r <= P; ++r, h += 4) {
    const int i = s - P + r;
    const double left1 = r > 0 ? 1.0 / (k[i + P] - k[i]) : 0.0;
    const double right1 = r < P ? 1.0 / (k[i + P + 1] - k[i + 1]) : 0.0;
    const double d = P * ((r > 0 ? row1[r - 1] : 0.0) * left1 - (r < P ? row1[r] : 0.0) * right1);
    const double dd = P * ((r > 0 ? d1Row[r - 1] : 0.0) * left1 - (r < P ? d1Row[r] : 0.0) * right1);
    for (int c = 0; c < 4; ++c) {
      a[c] += N[r] * h[c];
      b[c] += d * h[c];
      c2[c] += dd * h[c];
    }
  }
  if (!form.rational) {
    out[0] = KrGeVector3d(a[0], a[1], a[2]);
    out[1] = KrGeVector3d(b[0], b[1], b[2]);
    out[2] = KrGeVector3d(c2[0], c2[1], c2[2]);
    return;
  }
  // C = A / w, C' = (A' - w' C) / w, C'' = (A'' - 2 w' C' - w'' C) / w.
  const double inv = 1.0 / a[3];
  const KrGeVector3d point(a[0] * inv, a[1] * inv, a[2] * inv);
  const KrGeVector3d first = (KrGeVector3d(b[0], b[1], b[2]) - b[3] * point) * inv;
  out[0] = point;
  out[1] = first;
  out[2] = (KrGeVector3d(c2[0], c2[1], c2[2]) - 2.0 * b[3] * first - c2[3] * point) * inv;
}

bool finite(const KrGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

}  // namespace

int KrNurbsForm::spanOf(double u) const {
  const double* k = knots.data();
  int lo = degree, hi = count;
  if (!(u >= k[lo])) {
    while (lo < hi - 1 && k[lo + 1] <= k[lo]) ++lo;
    return lo;
  }
  if (u >= k[hi]) {
    --hi;
    while (hi > lo && k[hi] >= k[hi + 1]) --hi;
    return hi;
  }
  // Invariant k[lo] <= u < k[hi]; at most log2(count) halvings.
  while (hi - lo > 1) {
    const int mid = (lo + hi) / 2;
    if (u < k[mid]) hi = mid; else lo = mid;
  }
  return lo;
}

void krNurbsBuild(KrNurbsForm& form, int degree, const double* knots, int numKnots, const KrGePoint3d* points,
                  int numPoints, const double* weights, int numWeights) {
  form = KrNurbsForm();
  form.degree = degree;
  if (degree < 1 || degree > kKrNurbsMaxDegree || numKnots < 2 * degree + 2 || numPoints < degree + 1) return;
  const int count = std::min(numPoints, numKnots - degree - 1);
  if (count < degree + 1) return;
  const int usedKnots = count + degree + 1;
  for (int i = 0; i < usedKnots; ++i) {
    if (!std::isfinite(knots[i]) || (i > 0 && knots[i] < knots[i - 1])) return;
  }
  if (!(knots[degree] < knots[count])) return;
  const bool rational = numWeights >= numPoints;
  for (int i = 0; i < count; ++i) {
    if (!finite(points[i])) return;
    if (rational && !(std::isfinite(weights[i]) && weights[i] > 0.0)) return;
  }
  form.count = count;
  form.rational = rational;
  form.knots.resize(static_cast<std::size_t>(usedKnots));
  for (int i = 0; i < usedKnots; ++i) form.knots[static_cast<std::size_t>(i)] = knots[i];
  form.hw.resize(4 * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double w = rational ? weights[i] : 1.0;
    double* h = &form.hw[4 * static_cast<std::size_t>(i)];
    h[0] = w * points[i].x;
    h[1] = w * points[i].y;
    h[2] = w * points[i].z;
    h[3] = w;
  }
  for (double v : form.hw)
    if (!std::isfinite(v)) return;
  form.valid = true;
  krNurbsPrepare(form);
  // Coordinates so large that the weighted or Bezier points overflow are not evaluable.
  for (double v : form.spanBox)
    if (!std::isfinite(v)) form.valid = false;
}

void krNurbsPrepare(KrNurbsForm& form) {
  const int p = form.degree;
  const int spans = form.count - p;
  form.bezier.assign(static_cast<std::size_t>(form.bezierStride()) * spans, 0.0);
  form.spanBox.assign(6 * static_cast<std::size_t>(spans), 0.0);
  double args[kKrNurbsMaxDegree] = {};
  for (int s = p; s < form.count; ++s) {
    const double a = form.knots[s], b = form.knots[s + 1];
    if (!(a < b)) continue;
    double* bez = &form.bezier[static_cast<std::size_t>(form.bezierStride()) * (s - p)];
    double* box = &form.spanBox[6 * static_cast<std::size_t>(s - p)];
    for (int c = 0; c < 3; ++c) {
      box[c] = HUGE_VAL;
      box[3 + c] = -HUGE_VAL;
    }
    for (int j = 0; j <= p; ++j) {
      for (int i = 0; i < p; ++i) args[i] = i < p - j ? a : b;
      krNurbsBlossom(form, s, args, bez + 4 * j);
      for (int c = 0; c < 3; ++c) {
        const double v = bez[4 * j + c] / bez[4 * j + 3];
        box[c] = std::min(box[c], v);
        box[3 + c] = std::max(box[3 + c], v);
      }
    }
  }
}

KrGePoint3d krNurbsPoint(const KrNurbsForm& form, double u, int span) {
  const int p = form.degree;
  const int s = span >= 0 ? span : form.spanOf(u);
  switch (p) {
    case 1: return pointT<1>(form, s, u);
    case 2: return pointT<2>(form, s, u);
    case 3: return pointT<3>(form, s, u);
    case 4: return pointT<4>(form, s, u);
    case 5: return pointT<5>(form, s, u);
    default: break;
  }
  double N[kMaxOrder];
  basisFuns(form.knots.data(), s, p, u, N);
  const double* h = &form.hw[4 * static_cast<std::size_t>(s - p)];
  double x = 0.0, y = 0.0, z = 0.0, w = 0.0;
  for (int j = 0; j <= p; ++j, h += 4) {
    x += N[j] * h[0];
    y += N[j] * h[1];
    z += N[j] * h[2];
    w += N[j] * h[3];
  }
  if (!form.rational) return KrGePoint3d(x, y, z);
  return KrGePoint3d(x / w, y / w, z / w);
}

void krNurbsDerivs(const KrNurbsForm& form, double u, int numDeriv, KrGeVector3d* out, int span) {
  const int p = form.degree;
  const int n = std::min(numDeriv, p);
  const int s = span >= 0 ? span : form.spanOf(u);
  if (numDeriv == 2) {
    switch (p) {
      case 2: return secondT<2>(form, s, u, out);
      case 3: return secondT<3>(form, s, u, out);
      case 4: return secondT<4>(form, s, u, out);
      case 5: return secondT<5>(form, s, u, out);
      default: break;
    }
  }
  if (numDeriv == 1) {
    switch (p) {
      case 1: return firstT<1>(form, s, u, out);
      case 2: return firstT<2>(form, s, u, out);
      case 3: return firstT<3>(form, s, u, out);
      case 4: return firstT<4>(form, s, u, out);
      case 5: return firstT<5>(form, s, u, out);
      default: break;
    }
  }
  double ders[kMaxOrder][kMaxOrder];
  dersBasisFuns(form.knots.data(), s, p, u, n, ders);
  // Homogeneous derivatives A^(k) (xyz) and w^(k), k <= n; all higher ones vanish.
  double aw[kMaxOrder][4];
  for (int kk = 0; kk <= n; ++kk) {
    double acc[4] = {0.0, 0.0, 0.0, 0.0};
    const double* h = &form.hw[4 * static_cast<std::size_t>(s - p)];
    for (int j = 0; j <= p; ++j, h += 4)
      for (int c = 0; c < 4; ++c) acc[c] += ders[kk][j] * h[c];
    for (int c = 0; c < 4; ++c) aw[kk][c] = acc[c];
  }
  if (!form.rational) {
    for (int kk = 0; kk <= numDeriv; ++kk)
      out[kk] = kk <= n ? KrGeVector3d(aw[kk][0], aw[kk][1], aw[kk][2]) : KrGeVector3d(0.0, 0.0, 0.0);
    return;
  }
  // Quotient rule on Taylor coefficients: with C = A / w, a_k = A^(k)/k!, o_k = w^(k)/k! and
  // D_k = C^(k)/k!, the product A = w C gives D_k = (a_k - sum_{i=1..min(k,p)} o_i D_{k-i}) / o_0.
  // Only the last p coefficients are needed, kept in a ring.
  double ring[kMaxOrder][3];
  double invFact = 1.0, fact = 1.0;
  const double w0 = aw[0][3];
  for (int kk = 0; kk <= numDeriv; ++kk) {
    if (kk > 0) {
      invFact /= kk;
      fact *= kk;
    }
    double d[3];
    for (int c = 0; c < 3; ++c) d[c] = kk <= n ? aw[kk][c] * invFact : 0.0;
    double invFactI = 1.0;
    for (int i = 1; i <= std::min(kk, n); ++i) {
      invFactI /= i;
      const double oi = aw[i][3] * invFactI;
      const double* prev = ring[(kk - i) % kMaxOrder];
      for (int c = 0; c < 3; ++c) d[c] -= oi * prev[c];
    }
    double* cur = ring[kk % kMaxOrder];
    for (int c = 0; c < 3; ++c) cur[c] = d[c] / w0;
    auto scaled = [fact](double v) { return v == 0.0 ? 0.0 : v * fact; };
    out[kk] = KrGeVector3d(scaled(cur[0]), scaled(cur[1]), scaled(cur[2]));
  }
}

void krNurbsPoint2(const KrNurbsForm& form, double u, KrGePoint3d& point, KrGeVector3d& d1, KrGeVector3d& d2,
                   int span) {
  KrGeVector3d out[3];
  krNurbsDerivs(form, u, 2, out, span);
  point = KrGePoint3d(out[0].x, out[0].y, out[0].z);
  d1 = out[1];
  d2 = out[2];
}

void krNurbsBlossom(const KrNurbsForm& form, int span, const double* args, double* out4) {
  const int p = form.degree;
  const double* k = form.knots.data();
  double d[kMaxOrder][4];
  for (int i = 0; i <= p; ++i)
    for (int c = 0; c < 4; ++c) d[i][c] = form.hw[4 * static_cast<std::size_t>(span - p + i) + c];
  // De Boor's triangle with one argument per level: the polar form is symmetric and multi-affine,
  // so level r may use any of the arguments; each step is an affine combination on the span.
  for (int r = 1; r <= p; ++r) {
    const double x = args[r - 1];
    for (int i = p; i >= r; --i) {
      const int g = span - p + i;
      const double alpha = (x - k[g]) / (k[g + p - r + 1] - k[g]);
      for (int c = 0; c < 4; ++c) d[i][c] = (1.0 - alpha) * d[i - 1][c] + alpha * d[i][c];
    }
  }
  for (int c = 0; c < 4; ++c) out4[c] = d[p][c];
}

void krNurbsPieceHull(const KrNurbsForm& form, double a, double b, KrGePoint3d& low, KrGePoint3d& high) {
  const int p = form.degree;
  const double* k = form.knots.data();
  const double inf = HUGE_VAL;
  low = KrGePoint3d(inf, inf, inf);
  high = KrGePoint3d(-inf, -inf, -inf);
  const int first = form.spanOf(a);
  const int last = form.spanOf(b);
  double args[kKrNurbsMaxDegree] = {};
  for (int s = first; s <= last && s <= form.count - 1; ++s) {
    if (k[s] >= k[s + 1] && s != first) continue;
    const double lo = std::max(a, k[s]), hi = std::min(b, k[s + 1]);
    const double from = s == first ? a : lo;
    const double to = s == last ? b : hi;
    for (int j = 0; j <= p; ++j) {
      for (int i = 0; i < p; ++i) args[i] = i < p - j ? from : to;
      double h[4];
      krNurbsBlossom(form, s, args, h);
      const KrGePoint3d q(h[0] / h[3], h[1] / h[3], h[2] / h[3]);
      low.set(std::min(low.x, q.x), std::min(low.y, q.y), std::min(low.z, q.z));
      high.set(std::max(high.x, q.x), std::max(high.y, q.y), std::max(high.z, q.z));
    }
  }
}

void krNurbsInsertKnot(KrNurbsForm& form, double u, int times) {
  const int p = form.degree;
  for (int t = 0; t < times && t < p + 1; ++t) {
    const KrDoubles& k = form.knots;
    int s = form.count - 1;
    while (s > p && k[s] > u) --s;
    KrDoubles hw;
    hw.resize(4 * static_cast<std::size_t>(form.count + 1));
    for (int i = 0; i <= form.count; ++i) {
      double* q = &hw[4 * static_cast<std::size_t>(i)];
      if (i <= s - p) {
        for (int c = 0; c < 4; ++c) q[c] = form.hw[4 * static_cast<std::size_t>(i) + c];
      } else if (i >= s + 1) {
        for (int c = 0; c < 4; ++c) q[c] = form.hw[4 * static_cast<std::size_t>(i - 1) + c];
      } else {
        const double alpha = (u - k[i]) / (k[i + p] - k[i]);
        for (int c = 0; c < 4; ++c)
          q[c] = alpha * form.hw[4 * static_cast<std::size_t>(i) + c] +
                 (1.0 - alpha) * form.hw[4 * static_cast<std::size_t>(i - 1) + c];
      }
    }
    const std::size_t at = static_cast<std::size_t>(s) + 1;
    form.knots.resize(form.knots.size() + 1);
    for (std::size_t i = form.knots.size() - 1; i > at; --i) form.knots[i] = form.knots[i - 1];
    form.knots[at] = u;
    form.hw.swap(hw);
    ++form.count;
  }
}

KrNurbsForm krNurbsExtract(const KrNurbsForm& source, double a, double b) {
  KrNurbsForm form = source;
  const int p = form.degree;
  auto multiplicity = [&form](double u) {
    int count = 0;
    for (double k : form.knots) count += k == u ? 1 : 0;
    return count;
  };
  krNurbsInsertKnot(form, a, std::max(0, p - multiplicity(a)));
  krNurbsInsertKnot(form, b, std::max(0, p - multiplicity(b)));
  const KrDoubles& k = form.knots;
  // The last knot <= a and the first knot >= b (the knots are sorted).
  const int numKnots = static_cast<int>(k.size());
  int lastA = -1, firstB = numKnots;
  for (int i = 0; i < numKnots; ++i) {
    if (k[static_cast<std::size_t>(i)] <= a) lastA = i;
    if (firstB == numKnots && k[static_cast<std::size_t>(i)] >= b) firstB = i;
  }
  const int firstPoint = lastA - p;
  const int lastPoint = firstB - 1;
  KrNurbsForm piece;
  piece.degree = p;
  piece.rational = form.rational;
  piece.count = lastPoint - firstPoint + 1;
  const int interior = std::max(0, firstB - lastA - 1);
  piece.knots.assign(static_cast<std::size_t>(2 * (p + 1) + interior), b);
  for (int i = 0; i <= p; ++i) piece.knots[static_cast<std::size_t>(i)] = a;
  for (int i = 0; i < interior; ++i) piece.knots[static_cast<std::size_t>(p + 1 + i)] = k[lastA + 1 + i];
  piece.hw.resize(4 * static_cast<std::size_t>(piece.count));
  for (std::size_t i = 0; i < piece.hw.size(); ++i) piece.hw[i] = form.hw[4 * static_cast<std::size_t>(firstPoint) + i];
  piece.valid = piece.count >= p + 1 && a < b;
  return piece;
}

void krNurbsBreaks(const KrNurbsForm& form, KrsArray<double>& breaks) {
  breaks.RemoveAll();
  for (int i = form.degree; i <= form.count; ++i)
    if (breaks.IsEmpty() || form.knots[i] > breaks[breaks.GetSize() - 1]) breaks.Add(form.knots[i]);
}
