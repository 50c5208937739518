#include "entity/arc/arc_sampler.h"

#include <cmath>

// The rotation by the step is a chain of dependent multiply-adds, so its latency, not the
// arithmetic, bounds the loop: two interleaved chains (even and odd samples, each turned by twice
// the step) halve it, and each chain also takes half as many steps, halving the drift.
void krSampleArc(double from, double to, int count, const KrGePoint3d& center, const KrGeVector3d& xAxis,
                 const KrGeVector3d& yAxis, KrsArray<KrGePoint3d>& points, KrsArray<double>* params) {
  const int n = count > 0 ? count : 0;
  points.SetSize(n);
  if (params) params->SetSize(n);
  if (n == 0) return;
  const double step = n > 1 ? (to - from) / (n - 1) : 0.0;
  const double cosStep = std::cos(step);
  const double sinStep = std::sin(step);
  const double cosDouble = cosStep * cosStep - sinStep * sinStep;
  const double sinDouble = 2.0 * sinStep * cosStep;
  double c0 = std::cos(from);
  double s0 = std::sin(from);
  double c1 = c0 * cosStep - s0 * sinStep;
  double s1 = s0 * cosStep + c0 * sinStep;
  KrGePoint3d* out = points.GetData();
  const auto at = [&](double c, double s) {
    return KrGePoint3d(center.x + c * xAxis.x + s * yAxis.x, center.y + c * xAxis.y + s * yAxis.y,
                       center.z + c * xAxis.z + s * yAxis.z);
  };
  int i = 0;
  for (; i + 1 < n; i += 2) {
    out[i] = at(c0, s0);
    out[i + 1] = at(c1, s1);
    const double nextC0 = c0 * cosDouble - s0 * sinDouble;
    const double nextC1 = c1 * cosDouble - s1 * sinDouble;
    s0 = s0 * cosDouble + c0 * sinDouble;
    s1 = s1 * cosDouble + c1 * sinDouble;
    c0 = nextC0;
    c1 = nextC1;
  }
  if (i < n) out[i] = at(c0, s0);
  if (params) {
    double* angles = params->GetData();
    for (int k = 0; k < n; ++k) angles[k] = from + k * step;
  }
}

int krArcSampleCount(double from, double to, double approxEps, double radius) {
  constexpr int kFewest = 34;
  constexpr int kMost = 1501;
  if (!(approxEps > 0.0)) return kMost;
  if (radius < approxEps) return kFewest;
  const double half = std::acos(1.0 - approxEps / radius);
  const double count = std::ceil(std::fabs(to - from) / (2.0 * half)) + 1.0;
  if (!(count >= kFewest)) return count < kFewest ? kFewest : kMost;
  return count > kMost ? kMost : static_cast<int>(count);
}
