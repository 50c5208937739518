#include "entity/arc/arc_sampler.h"

#include <cmath>

void krSampleArc(double from, double to, int count, const KrGePoint3d& center, const KrGeVector3d& xAxis,
                 const KrGeVector3d& yAxis, KrsArray<KrGePoint3d>& points, KrsArray<double>* params) {
  const int n = count > 0 ? count : 0;
  points.SetSize(n);
  if (params) params->SetSize(n);
  if (n == 0) return;
  const double step = n > 1 ? (to - from) / (n - 1) : 0.0;
  const double cosStep = std::cos(step);
  const double sinStep = std::sin(step);
  double c = std::cos(from);
  double s = std::sin(from);
  KrGePoint3d* out = points.GetData();
  double* angles = params ? params->GetData() : nullptr;
  for (int i = 0; i < n; ++i) {
    out[i] = KrGePoint3d(center.x + c * xAxis.x + s * yAxis.x, center.y + c * xAxis.y + s * yAxis.y,
                         center.z + c * xAxis.z + s * yAxis.z);
    if (angles) angles[i] = from + i * step;
    const double nextC = c * cosStep - s * sinStep;
    s = s * cosStep + c * sinStep;
    c = nextC;
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
