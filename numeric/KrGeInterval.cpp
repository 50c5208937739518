#include "KrGeInterval.h"

#include "KrsDiagnostics.h"

#include <cfloat>
#include <cmath>

namespace {

constexpr double kPieceTolerance = 1e-12;
constexpr double kEqualityTolerance = 1e-10;

// The fields an operation reads, taken before it writes an output that may alias an input.
struct Snapshot {
  double lower;
  double upper;
  double tol;
  bool boundedBelow;
  bool boundedAbove;
};

}  // namespace

KrGeInterval::KrGeInterval()
    : m_lower(0.0), m_upper(0.0), m_tol(1e-12), m_boundedBelow(false), m_boundedAbove(false) {}

KrGeInterval::KrGeInterval(double tol)
    : m_lower(0.0), m_upper(0.0), m_tol(tol), m_boundedBelow(false), m_boundedAbove(false) {}

KrGeInterval::KrGeInterval(const KrGeInterval& source)
    : m_lower(0.0), m_upper(0.0), m_tol(1e-12), m_boundedBelow(false), m_boundedAbove(false) {
  *this = source;
}

KrGeInterval::KrGeInterval(double lower, double upper, double tol)
    : m_lower(lower), m_upper(upper), m_tol(tol), m_boundedBelow(true), m_boundedAbove(true) {
  if (upper < lower - tol) KRS_WARN_AT("KrGeInterval: lower-tol>upper - some functions may fail", "Interval", 28);
}

KrGeInterval::KrGeInterval(bool boundedBelow, double bound, double tol)
    : m_lower(boundedBelow ? bound : 0.0), m_upper(boundedBelow ? 0.0 : bound), m_tol(tol),
      m_boundedBelow(boundedBelow), m_boundedAbove(!boundedBelow) {}

KrGeInterval::~KrGeInterval() = default;

KrGeInterval& KrGeInterval::operator=(const KrGeInterval& source) {
  if (this != &source) {
    m_tol = source.m_tol;
    m_lower = source.m_lower;
    m_upper = source.m_upper;
    m_boundedBelow = source.m_boundedBelow;
    m_boundedAbove = source.m_boundedAbove;
  }
  return *this;
}

double KrGeInterval::lowerBound() const { return m_boundedBelow ? m_lower : -DBL_MAX; }

double KrGeInterval::upperBound() const { return m_boundedAbove ? m_upper : DBL_MAX; }

double KrGeInterval::element() const {
  if (m_boundedAbove) return m_upper;
  if (m_boundedBelow) return m_lower;
  return 0.0;
}

void KrGeInterval::getBounds(double& lower, double& upper) const {
  lower = lowerBound();
  upper = upperBound();
}

double KrGeInterval::length() const { return isBounded() ? std::fabs(m_upper - m_lower) : DBL_MAX; }

double KrGeInterval::tolerance() const { return m_tol; }

KrGeInterval& KrGeInterval::set() {
  m_lower = 0.0;
  m_upper = 0.0;
  m_boundedBelow = false;
  m_boundedAbove = false;
  return *this;
}

KrGeInterval& KrGeInterval::set(bool boundedBelow, double bound) {
  set();
  if (boundedBelow)
    setLower(bound);
  else
    setUpper(bound);
  return *this;
}

KrGeInterval& KrGeInterval::set(double lower, double upper) {
  setLower(lower);
  setUpper(upper);
  return *this;
}

KrGeInterval& KrGeInterval::setUpper(double upper) {
  m_upper = upper;
  m_boundedAbove = true;
  return *this;
}

KrGeInterval& KrGeInterval::setLower(double lower) {
  m_lower = lower;
  m_boundedBelow = true;
  return *this;
}

KrGeInterval& KrGeInterval::setTolerance(double tol) {
  m_tol = tol;
  return *this;
}

void KrGeInterval::getMerge(const KrGeInterval& other, KrGeInterval& result) const {
  const Snapshot self{m_lower, m_upper, m_tol, m_boundedBelow, m_boundedAbove};
  const Snapshot arg{other.m_lower, other.m_upper, other.m_tol, other.m_boundedBelow, other.m_boundedAbove};
  result.set();
  if (self.boundedAbove && arg.boundedAbove) result.setUpper(self.upper > arg.upper ? self.upper : arg.upper);
  if (self.boundedBelow && arg.boundedBelow) result.setLower(self.lower < arg.lower ? self.lower : arg.lower);
}

int KrGeInterval::subtract(const KrGeInterval& other, KrGeInterval& leftPiece, KrGeInterval& rightPiece) const {
  const Snapshot self{m_lower, m_upper, m_tol, m_boundedBelow, m_boundedAbove};
  const Snapshot arg{other.m_lower, other.m_upper, other.m_tol, other.m_boundedBelow, other.m_boundedAbove};
  leftPiece.set();
  rightPiece.set();

  KrGeInterval left(kPieceTolerance);
  KrGeInterval right(kPieceTolerance);
  bool leftValid = false;
  bool rightValid = false;
  if (arg.boundedBelow) {
    left.setUpper(arg.lower);
    if (!self.boundedBelow) {
      leftValid = true;
    } else if (arg.lower > self.lower) {
      left.setLower(self.lower);
      leftValid = true;
    }
  }
  // The right piece is gated by the lower-bound flag and reads the stored upper value even when
  // this interval is open above; callers rely on that reading of half-open ranges.
  if (arg.boundedAbove) {
    right.setLower(arg.upper);
    if (!self.boundedBelow) {
      rightValid = true;
    } else if (self.upper > arg.upper) {
      right.setUpper(self.upper);
      rightValid = true;
    }
  }

  if (leftValid && rightValid) {
    leftPiece = left;
    rightPiece = right;
    return 2;
  }
  if (leftValid) {
    leftPiece = left;
    return 1;
  }
  if (rightValid) {
    leftPiece = right;
    return 1;
  }
  return 0;
}

bool KrGeInterval::intersectWith(const KrGeInterval& other, KrGeInterval& result) const {
  const Snapshot self{m_lower, m_upper, m_tol, m_boundedBelow, m_boundedAbove};
  const Snapshot arg{other.m_lower, other.m_upper, other.m_tol, other.m_boundedBelow, other.m_boundedAbove};
  result.set();
  if (self.boundedAbove && arg.boundedAbove)
    result.setUpper(arg.upper < self.upper ? arg.upper : self.upper);
  else if (self.boundedAbove)
    result.setUpper(self.upper);
  else if (arg.boundedAbove)
    result.setUpper(arg.upper);

  if (self.boundedBelow && arg.boundedBelow)
    result.setLower(arg.lower > self.lower ? arg.lower : self.lower);
  else if (self.boundedBelow)
    result.setLower(self.lower);
  else if (arg.boundedBelow)
    result.setLower(arg.lower);

  if (self.boundedAbove && arg.boundedBelow && arg.lower - arg.tol > self.upper + self.tol) return false;
  if (self.boundedBelow && arg.boundedAbove && self.lower - self.tol > arg.upper + arg.tol) return false;
  return true;
}

bool KrGeInterval::isBounded() const { return m_boundedBelow && m_boundedAbove; }

bool KrGeInterval::isBoundedAbove() const { return m_boundedAbove; }

bool KrGeInterval::isBoundedBelow() const { return m_boundedBelow; }

bool KrGeInterval::isUnBounded() const { return !isBounded(); }

bool KrGeInterval::isSingleton() const { return isBounded() && length() < tolerance(); }

bool KrGeInterval::isDisjoint(const KrGeInterval& other) const {
  if (!m_boundedBelow && !m_boundedAbove) return false;
  if (!other.m_boundedBelow && !other.m_boundedAbove) return false;
  if (m_boundedAbove && other.contains(m_upper)) return false;
  if (other.m_boundedAbove && contains(other.m_upper)) return false;
  if (m_boundedBelow && other.contains(m_lower)) return false;
  if (other.m_boundedBelow && contains(other.m_lower)) return false;
  return true;
}

bool KrGeInterval::contains(double x) const {
  if (m_boundedBelow && x < m_lower - m_tol) return false;
  if (m_boundedAbove && x > m_upper + m_tol) return false;
  return true;
}

bool KrGeInterval::contains(const KrGeInterval& other) const {
  if (m_boundedBelow && m_boundedAbove) {
    if (!(other.m_boundedBelow && other.m_boundedAbove)) return false;
    return contains(other.m_lower) && contains(other.m_upper);
  }
  const double ownTol = tolerance();
  const double otherTol = other.tolerance();
  const double maxTol = ownTol > otherTol ? ownTol : otherTol;
  if (m_boundedBelow) return other.m_boundedBelow && m_lower - maxTol <= other.m_lower;
  if (m_boundedAbove) return other.m_boundedAbove && other.m_upper <= m_upper + maxTol;
  return true;
}

bool KrGeInterval::isContinuousAtUpper(const KrGeInterval& other) const {
  return m_boundedAbove && other.m_boundedBelow && std::fabs(m_upper - other.m_lower) <= m_tol;
}

bool KrGeInterval::isOverlapAtUpper(const KrGeInterval& other, KrGeInterval& overlap) const {
  if (!m_boundedAbove) return false;
  if (!other.m_boundedBelow) return false;
  if (isSingleton() || other.isSingleton()) return false;
  if (!other.contains(m_upper)) return false;
  if (!contains(other.m_lower)) return false;
  if (m_boundedBelow && other.contains(m_lower)) return false;
  overlap.set(other.m_lower, m_upper);
  return true;
}

bool KrGeInterval::operator==(const KrGeInterval& other) const {
  return m_boundedBelow == other.m_boundedBelow && m_boundedAbove == other.m_boundedAbove &&
         std::fabs(m_lower - other.m_lower) <= kEqualityTolerance &&
         std::fabs(m_upper - other.m_upper) <= kEqualityTolerance;
}

bool KrGeInterval::operator!=(const KrGeInterval& other) const { return !(*this == other); }

bool KrGeInterval::isEqualAtUpper(double x) const { return m_boundedAbove && std::fabs(m_upper - x) <= m_tol; }

bool KrGeInterval::isEqualAtUpper(const KrGeInterval& other) const {
  if (!m_boundedAbove && !other.m_boundedAbove) return true;
  if (m_boundedAbove != other.m_boundedAbove) return false;
  const double maxTol = m_tol > other.m_tol ? m_tol : other.m_tol;
  return std::fabs(m_upper - other.m_upper) <= maxTol;
}

bool KrGeInterval::isEqualAtLower(double x) const { return m_boundedBelow && std::fabs(m_lower - x) <= m_tol; }

bool KrGeInterval::isEqualAtLower(const KrGeInterval& other) const {
  if (!m_boundedBelow && !other.m_boundedBelow) return true;
  if (m_boundedBelow != other.m_boundedBelow) return false;
  const double maxTol = m_tol > other.m_tol ? m_tol : other.m_tol;
  return std::fabs(m_lower - other.m_lower) <= maxTol;
}

bool KrGeInterval::isPeriodicallyOn(double period, double& param) const {
  if (!isBounded()) return true;
  // k is the largest whole shift with param + k*period <= upper + tol; the shifted parameter is
  // inside exactly when that shift also reaches lower - tol, i.e. k >= a. Kept as doubles so a
  // huge or non-finite quotient never meets an integer conversion.
  const double lowestShift = (m_lower - param - m_tol) / period;
  const double shift = std::floor((m_upper - param + m_tol) / period);
  param += shift * period;
  return shift >= lowestShift;
}
