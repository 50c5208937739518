// Identity, copying, setters, evaluation, sampling and bounding of lines and segments.
#include "entity/linear/KrLinearEnt3dImpl.h"

#include <cfloat>
#include <limits>

#include "KrGeBoundBlock3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePointEnt3d.h"
#include "KrsDiagnostics.h"
#include "entity/core/entity_limits.h"

KrLinearEnt3dImpl::KrLinearEnt3dImpl(bool unbounded)
    : m_origin(KrGePoint3d::kOrigin), m_direction(KrGeVector3d::kXAxis), m_interval(1e-12), m_unbounded(unbounded) {
  setInterval();
}

KrLinearEnt3dImpl::KrLinearEnt3dImpl(const KrGePoint3d& pnt, const KrGeVector3d& vec, bool unbounded)
    : m_interval(1e-12), m_unbounded(unbounded) {
  set(pnt, vec, unbounded);
}

KrLinearEnt3dImpl::KrLinearEnt3dImpl(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2, bool unbounded)
    : m_interval(1e-12), m_unbounded(unbounded) {
  set(pnt1, pnt2, unbounded);
}

KrGeEntity3d* KrLinearEnt3dImpl::copy() const {
  if (m_unbounded) return copyInto(new KrGeLine3d(), *this);
  return copyInto(new KrGeLineSeg3d(), *this);
}

void KrLinearEnt3dImpl::assignData(const KrLinearEnt3dImpl& source) {
  m_origin = source.m_origin;
  m_direction = source.m_direction;
  m_interval = source.m_interval;
  m_unbounded = source.m_unbounded;
  refreshBounds();
}

bool KrLinearEnt3dImpl::equalData(const KrLinearEnt3dImpl& line, const KrGeTol& tol) const {
  return line.m_unbounded == m_unbounded && m_origin.isEqualTo(line.m_origin, tol) &&
         m_direction.isEqualTo(line.m_direction, tol) && m_interval.isEqualAtLower(line.m_interval) &&
         m_interval.isEqualAtUpper(line.m_interval);
}

KrEnt3dImpl& KrLinearEnt3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_origin = matrix * m_origin;
  m_direction = matrix * m_direction;
  return *this;
}

// A segment first moves its origin to the far end, so that on [0, 1] it keeps its two points
// and only swaps them; the interval is deliberately left alone.
KrGeCurve3dImpl& KrLinearEnt3dImpl::reverseParam() {
  if (!m_unbounded) m_origin += m_direction;
  m_direction.negate();
  return *this;
}

bool KrLinearEnt3dImpl::setInterval(const KrGeInterval& range) {
  if (m_unbounded) return !range.isBoundedBelow() && !range.isBoundedAbove();
  if (!range.isBounded() || range.lowerBound() > range.upperBound()) return false;
  m_interval = range;
  refreshBounds();
  return true;
}

KrGeCurve3dImpl& KrLinearEnt3dImpl::setInterval() {
  if (m_unbounded)
    m_interval.set();
  else
    m_interval.set(0.0, 1.0);
  refreshBounds();
  return *this;
}

void KrLinearEnt3dImpl::refreshBounds() {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  m_lower = !m_unbounded && m_interval.isBoundedBelow() ? m_interval.lowerBound() : -kInf;
  m_upper = !m_unbounded && m_interval.isBoundedAbove() ? m_interval.upperBound() : kInf;
  m_paramTol = m_interval.tolerance();
}

KrLinearEnt3dImpl& KrLinearEnt3dImpl::set(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2, bool unbounded) {
  m_origin = pnt1;
  m_direction = pnt2 - pnt1;
  m_unbounded = unbounded;
  setInterval();
  return *this;
}

KrLinearEnt3dImpl& KrLinearEnt3dImpl::set(const KrGePoint3d& pnt, const KrGeVector3d& vec, bool unbounded) {
  m_origin = pnt;
  m_direction = vec;
  m_unbounded = unbounded;
  setInterval();
  return *this;
}

KrGePoint3d KrLinearEnt3dImpl::evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const {
  using krge::kMaxDerivOrder;
  KRS_FAIL_IF(numDeriv<0);
  KRS_FAIL_IF(numDeriv>kMaxDerivOrder);
  derivArray.SetSize(numDeriv > 0 && numDeriv <= kMaxDerivOrder ? numDeriv : 0);
  for (int i = 0; i < derivArray.GetSize(); ++i) derivArray[i] = i == 0 ? m_direction : KrGeVector3d();
  return evalPoint(param);
}

// The interval test is KrGeInterval::contains on the cached bounds: t is inside unless it lies
// below lower - tol or above upper + tol.
KrGePoint3d KrLinearEnt3dImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const {
  if (directionIsZero()) return m_origin;
  const double t = paramOf(point, tol);
  if (m_unbounded || !(t < m_lower - m_paramTol || t > m_upper + m_paramTol)) return evalPoint(t);
  if (t > m_upper) return evalPoint(m_upper);
  if (t < m_lower) return evalPoint(m_lower);
  KRS_E_FAIL();
  return evalPoint(t);
}

KrGePoint3d KrLinearEnt3dImpl::startPoint() const { return m_unbounded ? m_origin : evalPoint(m_interval.lowerBound()); }
KrGePoint3d KrLinearEnt3dImpl::endPoint() const { return m_unbounded ? m_origin : evalPoint(m_interval.upperBound()); }
KrGePoint3d KrLinearEnt3dImpl::midPoint() const {
  if (m_unbounded) return m_origin;
  return evalPoint((m_interval.lowerBound() + m_interval.upperBound()) * 0.5);
}

double KrLinearEnt3dImpl::length() const {
  if (m_unbounded) return DBL_MAX;
  return startPoint().distanceTo(endPoint());
}

double KrLinearEnt3dImpl::length(double fromParam, double toParam, double) const {
  return evalPoint(fromParam).distanceTo(evalPoint(toParam));
}

double KrLinearEnt3dImpl::paramAtLength(double datumParam, double length, bool posParamDir, double) const {
  const double step = length / m_direction.length();
  return posParamDir ? datumParam + step : datumParam - step;
}

bool KrLinearEnt3dImpl::area(double, double, double& value, const KrGeTol&) const {
  value = 0.0;
  return true;
}

bool KrLinearEnt3dImpl::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const {
  const bool degenerate =
      m_unbounded ? m_direction.isZeroLength(tol) : startPoint().isEqualTo(endPoint(), tol);
  degenerateType = degenerate ? KrGe::kPosition3d : type();
  return degenerate;
}

bool KrLinearEnt3dImpl::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const {
  KrGe::EntityId kind;
  degenerateEntity = nullptr;
  if (!isDegenerate(kind, tol)) return false;
  degenerateEntity = new KrGePointEnt3d(m_unbounded ? m_origin : midPoint());
  return true;
}

void KrLinearEnt3dImpl::getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const {
  using krge::kMaxSampleCount;
  KRS_FAIL_IF(numSample < 2);
  KRS_FAIL_IF(numSample>kMaxSampleCount);
  if (numSample < 2) numSample = 2;
  if (numSample > kMaxSampleCount) numSample = kMaxSampleCount;
  pointArray.SetSize(0);
  if (m_unbounded) {
    KRS_WARN("KrLinearEnt3dImpl::getSamplePoints on unbounded line");
    return;
  }
  const double lower = m_interval.lowerBound();
  const double step = (m_interval.upperBound() - lower) / (numSample - 1);
  pointArray.SetSize(numSample);
  for (int i = 0; i < numSample; ++i) pointArray[i] = evalPoint(lower + i * step);
}

void KrLinearEnt3dImpl::getSamplePoints(double fromParam, double toParam, double approxEps,
                                        KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const {
  KRS_FAIL_IF(approxEps<0);
  pointArray.SetSize(2);
  paramArray.SetSize(2);
  paramArray[0] = fromParam;
  paramArray[1] = toParam;
  pointArray[0] = evalPoint(fromParam);
  pointArray[1] = evalPoint(toParam);
}

// An open side is represented by a point 1e12 directions away, with 1e-8 added to all three of
// its coordinates (on both sides alike: hosts rely on those exact corners).
KrGeBoundBlock3d KrLinearEnt3dImpl::boundBlock(const KrGeInterval& range) const {
  const KrGeVector3d bump(1e-8, 1e-8, 1e-8);
  const KrGePoint3d lower = range.isBoundedBelow() ? evalPoint(range.lowerBound())
                                                   : m_origin - m_direction * 1e12 + bump;
  const KrGePoint3d upper = range.isBoundedAbove() ? evalPoint(range.upperBound())
                                                   : m_origin + m_direction * 1e12 + bump;
  KrGeBoundBlock3d block;
  block.extend(lower);
  block.extend(upper);
  return block;
}

KrGeBoundBlock3d KrLinearEnt3dImpl::orthoBoundBlock(const KrGeInterval& range) const {
  KrGeBoundBlock3d block = boundBlock(range);
  block.setToBox(true);
  return block;
}
