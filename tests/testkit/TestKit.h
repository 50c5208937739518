// What every test program shares: seeded generators with log-uniform sizes, tolerances, point
// comparisons that print both sides, and queries over the records the monitor received.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "KrGeL.h"
#include "testkit/MonitorCapture.h"

namespace testkit {

constexpr double kPi = 3.141592653589793;
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

inline KrGeTol tolerance(double point, double vector = -1.0) {
  KrGeTol tol;
  tol.setEqualPoint(point);
  tol.setEqualVector(vector < 0 ? point : vector);
  return tol;
}

class Random {
public:
  explicit Random(std::uint64_t seed) : m_engine(seed), m_seed(seed) {}
  std::string trace() const { return "seed " + std::to_string(m_seed); }
  double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
  // 10^u with u uniform in [lowExponent, highExponent], of random sign.
  double logUniform(double lowExponent, double highExponent) {
    const double magnitude = std::pow(10.0, uniform(lowExponent, highExponent));
    return uniform(0, 1) < 0.5 ? -magnitude : magnitude;
  }
  // 10^u, u uniform in [lowExponent, highExponent].
  double magnitude(double lowExponent, double highExponent) { return std::pow(10.0, uniform(lowExponent, highExponent)); }
  // Uniform on the sphere by rejection; 64 misses in a row (probability below 1e-20) give OZ.
  KrGeVector3d unitVector() {
    for (int attempt = 0; attempt < 64; ++attempt) {
      const KrGeVector3d v(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
      const double length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
      if (length > 0.1 && length <= 1.0) return v / length;
    }
    return KrGeVector3d(0, 0, 1);
  }
  KrGeVector3d vector(double lowExponent, double highExponent) {
    return unitVector() * std::fabs(logUniform(lowExponent, highExponent));
  }
  // A unit vector at `angle` radians from the unit vector u.
  KrGeVector3d tilted(const KrGeVector3d& u, double angle) {
    const KrGeVector3d side = u.crossProduct(unitVector());
    return u * std::cos(angle) + side * (std::sin(angle) / side.length());
  }
  KrGePoint3d point(double range) {
    const double x = uniform(-range, range), y = uniform(-range, range);
    return KrGePoint3d(x, y, uniform(-range, range));
  }

private:
  std::mt19937_64 m_engine;
  std::uint64_t m_seed;
};

// Runs trial(random, i) `count` times from one generator; the seed and the trial number are in
// every failure message, and the first failing trial ends the loop.
template <class Trial>
void repeat(std::uint64_t seed, int count, Trial trial) {
  Random random(seed);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < count && !::testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE("trial " + std::to_string(i));
    trial(random, i);
  }
}

// |a - b| <= tol, with both sides in the failure message.
inline ::testing::AssertionResult within(const KrGePoint3d& a, const KrGePoint3d& b, double tol) {
  if (a.distanceTo(b) <= tol) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs (" << b.x << ", " << b.y
                                       << ", " << b.z << "): " << a.distanceTo(b) << " > " << tol;
}
inline ::testing::AssertionResult within(const KrGeVector3d& a, const KrGeVector3d& b, double tol) {
  return within(KrGePoint3d() + a, KrGePoint3d() + b, tol);
}

// The records the library sends while `action` runs.
template <class Action>
std::vector<Record> recordsOf(Action action) {
  MonitorCapture::clear();
  action();
  return MonitorCapture::drain();
}

// Assertion records whose expression is `expression`, from any source and line.
inline int countAssertions(const std::vector<Record>& records, const std::string& expression) {
  return static_cast<int>(std::count_if(records.begin(), records.end(), [&](const Record& record) {
    return record.message.find("Expression: '" + expression + "'") != std::string::npos;
  }));
}

// A check reports once per process. A test that counts the reports of a check that other tests
// reach too expects exactly one when it runs alone in its process (ctest runs each test so on
// POSIX) and at most one when earlier tests of the same process may have taken the report.
inline ::testing::AssertionResult reportedOnce(int count) {
  const bool alone = ::testing::UnitTest::GetInstance()->test_to_run_count() == 1;
  if (count == 1 || (!alone && count == 0)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "reported " << count << " times" << (alone ? " (alone in its process)" : "");
}

inline std::string warningText(const std::string& message) { return "WARNING '" + message + "'"; }
inline std::string noticeText(const std::string& signature) { return "AUTOTEST not passed for \"" + signature + "\""; }

// The messages of the warnings among `records`, in order.
inline std::vector<std::string> warningsIn(const std::vector<Record>& records) {
  std::vector<std::string> messages;
  for (const Record& record : records)
    if (record.message.rfind("WARNING", 0) == 0) messages.push_back(record.message);
  return messages;
}

}  // namespace testkit
