// Helpers of the entity tests, which see the library through its umbrella header as a host does:
// seeded inputs, tolerances, record queries, point comparison and an independent brute-force
// distance between segments and lines.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "KrGeL.h"
#include "testkit/MonitorCapture.h"

namespace linear_test {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

class Random {
public:
  explicit Random(unsigned seed) : m_engine(seed), m_seed(seed) {}
  std::string trace() const { return "seed " + std::to_string(m_seed); }
  double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
  // 10^u, u uniform in [lowExponent, highExponent].
  double magnitude(double lowExponent, double highExponent) {
    return std::pow(10.0, uniform(lowExponent, highExponent));
  }
  KrGeVector3d unitVector() {
    for (int attempt = 0; attempt < 64; ++attempt) {
      const KrGeVector3d v(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
      if (v.length() > 0.1 && v.length() <= 1.0) return v / v.length();
    }
    return KrGeVector3d(0, 0, 1);
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
  unsigned m_seed;
};

// Runs trial(random, i) `count` times with one generator seeded by `seed`; the seed and the trial
// are in every failure message, and the first failing trial ends the loop.
template <class Trial>
void repeat(unsigned seed, int count, Trial trial) {
  Random random(seed);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < count && !::testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE("trial " + std::to_string(i));
    trial(random, i);
  }
}

// The records the library sends while `action` runs.
template <class Action>
std::vector<testkit::Record> recordsOf(Action action) {
  testkit::MonitorCapture::clear();
  action();
  return testkit::MonitorCapture::drain();
}

inline KrGeTol tolerance(double point, double vector = 1e-10) {
  KrGeTol tol;
  tol.setEqualPoint(point);
  tol.setEqualVector(vector);
  return tol;
}

// |a - b| <= tol, with both points in the failure message.
inline ::testing::AssertionResult within(const KrGePoint3d& a, const KrGePoint3d& b, double tol) {
  if (a.distanceTo(b) <= tol) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs (" << b.x << ", " << b.y
                                       << ", " << b.z << "): " << a.distanceTo(b) << " > " << tol;
}
inline ::testing::AssertionResult within(const KrGeVector3d& a, const KrGeVector3d& b, double tol) {
  return within(KrGePoint3d() + a, KrGePoint3d() + b, tol);
}

// Assertion records whose expression is `expression`, wherever they were reported.
inline int countAssertions(const std::vector<testkit::Record>& records, const std::string& expression) {
  return (int)std::count_if(records.begin(), records.end(), [&](const testkit::Record& record) {
    return record.message.find("Expression: '" + expression + "'") != std::string::npos;
  });
}

inline std::string warningText(const std::string& message) { return "WARNING '" + message + "'"; }
inline std::string noticeText(const std::string& signature) { return "AUTOTEST not passed for \"" + signature + "\""; }

// The warning messages among `records`.
inline std::vector<std::string> warningsIn(const std::vector<testkit::Record>& records) {
  std::vector<std::string> messages;
  for (const auto& record : records)
    if (record.message.rfind("WARNING", 0) == 0) messages.push_back(record.message);
  return messages;
}

struct Segment {
  KrGePoint3d p, q;
};

// Distance from x to segment [p, q] (to the whole line when `line`), in long double.
inline double distanceToSegment(const KrGePoint3d& x, const Segment& seg, bool line = false) {
  const long double d[3] = {(long double)seg.q.x - seg.p.x, (long double)seg.q.y - seg.p.y,
                            (long double)seg.q.z - seg.p.z};
  const long double w[3] = {(long double)x.x - seg.p.x, (long double)x.y - seg.p.y, (long double)x.z - seg.p.z};
  const long double dd = d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
  long double t = dd > 0 ? (w[0] * d[0] + w[1] * d[1] + w[2] * d[2]) / dd : 0;
  if (!line) t = std::min<long double>(1, std::max<long double>(0, t));
  long double sum = 0;
  for (int i = 0; i < 3; ++i) sum += (w[i] - t * d[i]) * (w[i] - t * d[i]);
  return (double)std::sqrt(sum);
}

// Distance from segment a to segment (or line through) b by ternary search over the parameter of
// `a` of the convex distance to b. Independent of the library's closed form.
inline double bruteForceDistance(const Segment& a, const Segment& b, bool bIsLine = false) {
  auto f = [&](double s) { return distanceToSegment(a.p + (a.q - a.p) * s, b, bIsLine); };
  double lo = 0, hi = 1;
  for (int i = 0; i < 200; ++i) {
    const double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
    const bool minimumOnTheLeft = f(m1) <= f(m2);
    (minimumOnTheLeft ? hi : lo) = minimumOnTheLeft ? m2 : m1;
  }
  return std::min({f(lo), f(0.0), f(1.0)});
}

}  // namespace linear_test
