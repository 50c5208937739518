// The adaptive Gauss-Kronrod (7, 15) rule declared in nurbs_measure.h.
#pragma once

#include <cmath>

namespace krnurbsdetail {
// Kronrod nodes on [-1, 1] (positive half, centre last) and the weights of both rules.
constexpr double kNodes[8] = {0.991455371120812639206854697526329, 0.949107912342758524526189684047851,
                              0.864864423359769072789712788640926, 0.741531185599394439863864773280788,
                              0.586087235467691130294144845693013, 0.405845151377397166906606412076961,
                              0.207784955007898467600689403773245, 0.0};
constexpr double kKronrod[8] = {0.022935322010529224963732008058970, 0.063092092629978553290700663189204,
                                0.104790010322250183839876322541518, 0.140653259715525918745189590510238,
                                0.169004726639267902826583426598550, 0.190350578064785409913256402421014,
                                0.204432940075298892414161999234649, 0.209482141084727828012999174891714};
// Gauss weights of the nodes 1, 3, 5 and the centre.
constexpr double kGauss[4] = {0.129484966168869693270611432679082, 0.279705391489276667901467771423780,
                              0.381830050505118944950369775488975, 0.417959183673469387755102040816327};
constexpr int kMaxDepth = 48;
constexpr int kMaxPieces = 4096;

template <class F>
void rule(const F& f, double a, double b, double& kronrod, double& gauss) {
  const double centre = 0.5 * (a + b), half = 0.5 * (b - a);
  const double fc = f(centre);
  kronrod = kKronrod[7] * fc;
  gauss = kGauss[3] * fc;
  for (int i = 0; i < 7; ++i) {
    const double sum = f(centre - half * kNodes[i]) + f(centre + half * kNodes[i]);
    kronrod += kKronrod[i] * sum;
    if (i % 2 == 1) gauss += kGauss[i / 2] * sum;
  }
  kronrod *= half;
  gauss *= half;
}
}  // namespace krnurbsdetail

template <class F>
double krGaussKronrod(const F& f, double a, double b, double tol, double* errorEstimate) {
  using namespace krnurbsdetail;
  struct Item {
    double a, b;
    int depth;
  };
  Item stack[kMaxDepth + 2];
  int top = 0;
  stack[top++] = Item{a, b, 0};
  double total = 0.0, error = 0.0;
  int pieces = 0;
  const double width = b - a;
  while (top > 0) {
    const Item item = stack[--top];
    double kronrod, gauss;
    rule(f, item.a, item.b, kronrod, gauss);
    ++pieces;
    const double estimate = std::fabs(kronrod - gauss);
    const double allowed = std::fmax(tol * ((item.b - item.a) / width), 1e-15 * std::fabs(kronrod));
    if (estimate <= allowed || item.depth >= kMaxDepth || pieces + top >= kMaxPieces || !std::isfinite(estimate)) {
      total += kronrod;
      error += estimate;
      continue;
    }
    const double mid = 0.5 * (item.a + item.b);
    stack[top++] = Item{mid, item.b, item.depth + 1};
    stack[top++] = Item{item.a, mid, item.depth + 1};
  }
  if (errorEstimate) *errorEstimate = error;
  return total;
}
