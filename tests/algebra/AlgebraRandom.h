// Seeded random inputs for the algebra property tests: the seed is fixed and printed by the
// SCOPED_TRACE of each test, magnitudes are log-uniform.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

namespace algebra_test {

constexpr double kPi = 3.141592653589793;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// A tolerance with `value` for both points and vectors.
inline KrGeTol tolerance(double value) {
  KrGeTol tol;
  tol.setEqualPoint(value);
  tol.setEqualVector(value);
  return tol;
}

class Random {
public:
  explicit Random(std::uint64_t seed) : m_engine(seed), m_seed(seed) {}
  std::string trace() const { return "seed " + std::to_string(m_seed); }
  double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
  // 10^u with u uniform in [lowExponent, highExponent], random sign.
  double logUniform(double lowExponent, double highExponent) {
    const double magnitude = std::pow(10.0, uniform(lowExponent, highExponent));
    return uniform(0.0, 1.0) < 0.5 ? -magnitude : magnitude;
  }
  KrGeVector3d unitVector() {
    for (int attempt = 0; attempt < 64; ++attempt) {
      const KrGeVector3d v(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
      const double len = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
      if (len > 0.1 && len <= 1.0) return v / len;
    }
    return KrGeVector3d(0, 0, 1);
  }
  KrGeVector3d vector(double lowExponent, double highExponent) {
    return unitVector() * std::fabs(logUniform(lowExponent, highExponent));
  }
  KrGePoint3d point(double range) { return KrGePoint3d(uniform(-range, range), uniform(-range, range), uniform(-range, range)); }

private:
  std::mt19937_64 m_engine;
  std::uint64_t m_seed;
};

// The angle between two vectors by the well-conditioned atan2 form, independent of angleTo.
inline double referenceAngle(const KrGeVector3d& a, const KrGeVector3d& b) {
  const long double cx = (long double)a.y * b.z - (long double)a.z * b.y;
  const long double cy = (long double)a.z * b.x - (long double)a.x * b.z;
  const long double cz = (long double)a.x * b.y - (long double)a.y * b.x;
  const long double dot = (long double)a.x * b.x + (long double)a.y * b.y + (long double)a.z * b.z;
  return (double)std::atan2(std::sqrt(cx * cx + cy * cy + cz * cz), dot);
}

}  // namespace algebra_test
