// Helpers of the entity-frame, curve and linear tests: seeded inputs, record queries and an
// independent closest-pair reference.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "testkit/MonitorCapture.h"

namespace linear_test {

class Random {
public:
  explicit Random(std::uint64_t seed) : m_engine(seed), m_seed(seed) {}
  std::string trace() const { return "seed " + std::to_string(m_seed); }
  double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
  // 10^u, u uniform in [lowExponent, highExponent].
  double magnitude(double lowExponent, double highExponent) { return std::pow(10.0, uniform(lowExponent, highExponent)); }
  KrGeVector3d unitVector() {
    for (int attempt = 0; attempt < 64; ++attempt) {
      const KrGeVector3d v(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
      const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
      if (length > 0.1 && length <= 1.0) return v / length;
    }
    return KrGeVector3d(0, 0, 1);
  }
  // A unit vector at `angle` radians from the unit vector u.
  KrGeVector3d tilted(const KrGeVector3d& u, double angle) {
    KrGeVector3d side = u.crossProduct(unitVector());
    side = side / std::sqrt(side.x * side.x + side.y * side.y + side.z * side.z);
    return u * std::cos(angle) + side * std::sin(angle);
  }
  KrGePoint3d point(double range) {
    return KrGePoint3d(uniform(-range, range), uniform(-range, range), uniform(-range, range));
  }

private:
  std::mt19937_64 m_engine;
  std::uint64_t m_seed;
};

// Assertion records whose expression is `expression`, wherever they were reported.
inline int countAssertions(const std::vector<testkit::Record>& records, const std::string& expression) {
  const std::string needle = "Expression: '" + expression + "'";
  int n = 0;
  for (const auto& record : records) n += record.message.find(needle) != std::string::npos;
  return n;
}

inline std::string warningText(const std::string& message) { return "WARNING '" + message + "'"; }
inline std::string noticeText(const std::string& signature) { return "AUTOTEST not passed for \"" + signature + "\""; }

// Point of segment [p, q] nearest to x, in long double.
struct Segment {
  KrGePoint3d p;
  KrGePoint3d q;
};

inline long double distanceToSegment(const Segment& seg, long double x, long double y, long double z) {
  const long double dx = (long double)seg.q.x - seg.p.x, dy = (long double)seg.q.y - seg.p.y,
                    dz = (long double)seg.q.z - seg.p.z;
  const long double wx = x - seg.p.x, wy = y - seg.p.y, wz = z - seg.p.z;
  const long double dd = dx * dx + dy * dy + dz * dz;
  long double t = dd > 0 ? (wx * dx + wy * dy + wz * dz) / dd : 0;
  t = std::min<long double>(1, std::max<long double>(0, t));
  const long double ex = wx - t * dx, ey = wy - t * dy, ez = wz - t * dz;
  return std::sqrt(ex * ex + ey * ey + ez * ez);
}

// Distance between two segments by brute-force minimisation: golden-section search over the
// parameter of `a` of the (convex) distance to `b`, in long double. Independent of the library's
// closed form.
inline double bruteForceDistance(const Segment& a, const Segment& b) {
  auto at = [&](long double s) {
    return distanceToSegment(b, a.p.x + s * ((long double)a.q.x - a.p.x), a.p.y + s * ((long double)a.q.y - a.p.y),
                             a.p.z + s * ((long double)a.q.z - a.p.z));
  };
  const long double ratio = (std::sqrt(5.0L) - 1) / 2;
  long double lo = 0, hi = 1;
  long double x1 = hi - ratio * (hi - lo), x2 = lo + ratio * (hi - lo);
  long double f1 = at(x1), f2 = at(x2);
  for (int i = 0; i < 200; ++i) {
    if (f1 <= f2) {
      hi = x2; x2 = x1; f2 = f1; x1 = hi - ratio * (hi - lo); f1 = at(x1);
    } else {
      lo = x1; x1 = x2; f1 = f2; x2 = lo + ratio * (hi - lo); f2 = at(x2);
    }
  }
  return (double)std::min({f1, f2, at(0), at(1)});
}

}  // namespace linear_test
