// Construction, setters with their fallbacks, evaluation, transformation and sampling of arcs.
#include "entity/arc/KrCircArc3dImpl.h"

#include <cmath>

#include "KrGeCircArc3d.h"
#include "KrsDiagnostics.h"
#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_sampler.h"

namespace {

constexpr const char* kSource = "KrCircArc3dImpl";

bool isFinite(const KrGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }
bool isFinite(const KrGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

// A direction that cannot define an axis: zero length under the global tolerance, or not finite.
bool isUnusable(const KrGeVector3d& v) { return !isFinite(v) || v.isZeroLength(KrGeContext::gTol); }

// The counter-clockwise angle about `normal` from `from` to `to`, in [0, 2 pi).
double ccwAngle(const KrGeVector3d& from, const KrGeVector3d& to, const KrGeVector3d& normal) {
  const double angle = std::atan2(from.crossProduct(to).dotProduct(normal), from.dotProduct(to));
  return angle < 0.0 ? angle + kKrTwoPi : angle;
}

KrGePoint3d finiteCenter(const KrGePoint3d& center) {
  if (isFinite(center)) return center;
  KRS_WARN_AT("KrCircArc3dImpl - non-finite center, origin used", kSource, __LINE__);
  return KrGePoint3d::kOrigin;
}

// Radii are kept as magnitudes: a negative radius describes the same circle.
double finiteRadius(double radius) {
  if (std::isfinite(radius)) return std::fabs(radius);
  KRS_WARN_AT("KrCircArc3dImpl - non-finite radius, 0 used", kSource, __LINE__);
  return 0.0;
}

}  // namespace

KrCircArc3dImpl::KrCircArc3dImpl(const KrGePoint3d& center, const KrGeVector3d& normal, double radius) {
  set(center, normal, radius);
}

KrCircArc3dImpl::KrCircArc3dImpl(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec,
                                 double radius, double startAngle, double endAngle) {
  set(center, normal, refVec, radius, startAngle, endAngle);
}

KrCircArc3dImpl::KrCircArc3dImpl(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3) {
  KrGe::ErrorCondition status = KrGe::kOk;
  set(point1, point2, point3, status);
}

KrGeEntity3d* KrCircArc3dImpl::copy() const { return copyInto(new KrGeCircArc3d(), *this); }

bool KrCircArc3dImpl::equalData(const KrCircArc3dImpl& other, const KrGeTol& tol) const {
  const KrArcFrame& a = m_arc;
  const KrArcFrame& b = other.m_arc;
  return a.center.isEqualTo(b.center, tol) && a.normal.isEqualTo(b.normal, tol) && a.refVec.isEqualTo(b.refVec, tol) &&
         std::fabs(a.radius - b.radius) <= tol.equalPoint() && std::fabs(a.startAng - b.startAng) <= tol.equalVector() &&
         std::fabs(a.sweep - b.sweep) <= tol.equalVector();
}

// Points map as points and the axes as vectors; the radius scales with the matrix. The normal is
// re-orthogonalised against the mapped reference vector, and a mirror (negative determinant)
// flips it so that the same angles still describe the mirrored points: for a reflection M,
// M(n x r) = -(Mn x Mr). An axis degenerates only when its image is zero, not finite, or (the
// normal) parallel to the mapped reference vector: a tiny uniform scaling keeps both.
KrEnt3dImpl& KrCircArc3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_arc.radius = finiteRadius(m_arc.radius * matrix.scale());
  m_arc.center = finiteCenter(matrix * m_arc.center);
  KrGeVector3d refVec = (matrix * m_arc.refVec).normal(KrGeContext::gTol);
  if (isUnusable(refVec)) {
    KRS_WARN_AT("KrCircArc3dImpl::transformBy - refVec become degenerated, use X", kSource, 276);
    refVec = KrGeVector3d::kXAxis;
  }
  m_arc.refVec = refVec;
  const KrGeVector3d mapped = matrix * m_arc.normal;
  KrGeVector3d normal = refVec.crossProduct(mapped.crossProduct(refVec)).normal(KrGeContext::gTol);
  if (isUnusable(normal) || mapped.isParallelTo(refVec, KrGeContext::gTol)) {
    KRS_WARN_AT("KrCircArc3dImpl::transformBy - normal become degenerated, use pR", kSource, 286);
    normal = refVec.perpVector().normal(KrGeContext::gTol);
  }
  m_arc.normal = normal;
  if (matrix.det() < 0.0) m_arc.normal.negate();
  return *this;
}

KrCircArc3dImpl& KrCircArc3dImpl::setCenter(const KrGePoint3d& center) {
  m_arc.center = finiteCenter(center);
  return *this;
}

KrCircArc3dImpl& KrCircArc3dImpl::setRadius(double radius) {
  m_arc.radius = finiteRadius(radius);
  return *this;
}

KrCircArc3dImpl& KrCircArc3dImpl::setAngles(double startAngle, double endAngle) {
  if (!std::isfinite(startAngle)) {
    KRS_WARN_AT("KrCircArc3dImpl::setAngles - non-finite start angle, 0 used", kSource, __LINE__);
    startAngle = 0.0;
  }
  m_arc.startAng = startAngle;
  if (!std::isfinite(endAngle)) {
    KRS_WARN_AT("KrCircArc3dImpl::setAngles - non-finite end angle, full circle used", kSource, __LINE__);
    m_arc.sweep = kKrTwoPi;
    return *this;
  }
  m_arc.sweep = krArcSweep(startAngle, endAngle, m_arc.radius);
  return *this;
}

// The reference vector wins: it keeps its direction and the normal is tilted into the plane
// perpendicular to it.
KrCircArc3dImpl& KrCircArc3dImpl::setAxes(const KrGeVector3d& normal, const KrGeVector3d& refVec) {
  const bool noNormal = isUnusable(normal);
  const bool noRef = isUnusable(refVec);
  if (noNormal && noRef) {
    KRS_WARN_AT("KrCircArc3dImpl::setAxes(normal, refVec) - 0-length vectors, Z,X used", kSource, 2596);
    m_arc.normal = KrGeVector3d::kZAxis;
    m_arc.refVec = KrGeVector3d::kXAxis;
    return *this;
  }
  if (noRef) {
    KRS_WARN_AT("KrCircArc3dImpl::setAxes(normal, refVec) - 0-length refVec, pN, N used", kSource, 2600);
    m_arc.normal = normal.normal(KrGeContext::gTol);
    m_arc.refVec = m_arc.normal.perpVector().normal(KrGeContext::gTol);
    return *this;
  }
  m_arc.refVec = refVec.normal(KrGeContext::gTol);
  const KrGeVector3d tilted = noNormal ? KrGeVector3d() : normal - m_arc.refVec * normal.dotProduct(m_arc.refVec);
  if (isUnusable(tilted)) {
    // A normal along the reference vector has no part across it: as good as no normal.
    KRS_WARN_AT("KrCircArc3dImpl::setAxes(normal, refVec) - 0-length normal, RV, pRV used", kSource, 2608);
    m_arc.normal = m_arc.refVec.perpVector().normal(KrGeContext::gTol);
    return *this;
  }
  m_arc.normal = tilted.normal(KrGeContext::gTol);
  return *this;
}

KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGePoint3d& center, const KrGeVector3d& normal, double radius) {
  m_arc.center = finiteCenter(center);
  if (isUnusable(normal)) {
    KRS_WARN_AT("KrCircArc3dImpl::set(cent, nrm, rad) fail - 0-length normal, OZ used", kSource, 2640);
    m_arc.normal = KrGeVector3d::kZAxis;
    m_arc.refVec = KrGeVector3d::kXAxis;
  } else {
    m_arc.normal = normal.normal(KrGeContext::gTol);
    m_arc.refVec = m_arc.normal.perpVector().normal(KrGeContext::gTol);
  }
  m_arc.radius = finiteRadius(radius);
  return setAngles(0.0, kKrTwoPi);
}

KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGePoint3d& center, const KrGeVector3d& normal,
                                      const KrGeVector3d& refVec, double radius, double startAngle,
                                      double endAngle) {
  m_arc.center = finiteCenter(center);
  setAxes(normal, refVec);
  m_arc.radius = finiteRadius(radius);
  return setAngles(startAngle, endAngle);
}

// The circumcentre relative to p2, with a = p1 - p2 and b = p3 - p2:
//   c = p2 + ((|a|^2 b - |b|^2 a) x (a x b)) / (2 |a x b|^2),
// the point of the plane of the three points equidistant from them; taken relative to p2 it
// does not lose digits to large coordinates.
KrCircArc3dImpl& KrCircArc3dImpl::set(const KrGePoint3d& point1, const KrGePoint3d& point2,
                                      const KrGePoint3d& point3, KrGe::ErrorCondition& status) {
  status = KrGe::kOk;
  const KrGeVector3d a = point1 - point2;
  const KrGeVector3d b = point3 - point2;
  const KrGeVector3d axb = a.crossProduct(b);
  const double denominator = 2.0 * axb.dotProduct(axb);
  if (a.isParallelTo(b, KrGeContext::gTol) || !isFinite(point1) || !isFinite(point2) || !isFinite(point3) ||
      !(denominator > 0.0) || !std::isfinite(denominator)) {
    KRS_WARN_AT("KrCircArc3dImpl::set, by 3pt - kLinearlyDependentArg1Arg2Arg3", kSource, 2720);
    status = KrGe::kLinearlyDependentArg1Arg2Arg3;
    return *this;
  }
  const KrGeVector3d toCenter =
      (b * a.dotProduct(a) - a * b.dotProduct(b)).crossProduct(axb) * (1.0 / denominator);
  const KrGePoint3d center = point2 + toCenter;
  m_arc.center = center;
  m_arc.normal = b.crossProduct(a).normal(KrGeContext::gTol);
  const KrGeVector3d toStart = point1 - center;
  m_arc.radius = toStart.length();
  m_arc.refVec = toStart.normal(KrGeContext::gTol);
  m_arc.startAng = 0.0;
  m_arc.sweep = ccwAngle(m_arc.refVec, point3 - center, m_arc.normal);
  return *this;
}

void KrCircArc3dImpl::getInterval(KrGeInterval& range) const { range.set(m_arc.startAng, m_arc.endAng()); }

// The k-th derivative of r (cos t X + sin t Y) is r (cos(t + k pi/2) X + sin(t + k pi/2) Y): the
// pair (cos, sin) turns a quarter at each order.
KrGePoint3d KrCircArc3dImpl::evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const {
  KRS_FAIL_IF(numDeriv<0);
  int count = numDeriv > 0 ? numDeriv : 0;
  if (count > kMaxSamples) {
    KRS_WARN_AT("KrCircArc3dImpl::evalPoint - numDeriv above 1048576, 1048576 used", kSource, __LINE__);
    count = kMaxSamples;
  }
  derivArray.SetSize(count);
  const KrGeVector3d x = m_arc.refVec * m_arc.radius;
  const KrGeVector3d y = m_arc.yAxis() * m_arc.radius;
  double c = std::cos(param);
  double s = std::sin(param);
  for (int k = 0; k < count; ++k) {
    const double turnedC = -s;
    s = c;
    c = turnedC;
    derivArray[k] = x * c + y * s;
  }
  return m_arc.pointAt(param);
}

void KrCircArc3dImpl::getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const {
  KRS_CHECK_TEXT_AT(!(numSample < 2), "(numSamples<2)", __FILE__, __LINE__);
  if (numSample > kMaxSamples) {
    KRS_WARN_AT("KrCircArc3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used", kSource, __LINE__);
    numSample = kMaxSamples;
  }
  krSampleArc(m_arc.startAng, m_arc.endAng(), numSample, m_arc.center, m_arc.refVec * m_arc.radius,
              m_arc.yAxis() * m_arc.radius, pointArray, nullptr);
}

void KrCircArc3dImpl::getSamplePoints(double fromParam, double toParam, double approxEps,
                                      KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const {
  KRS_CHECK_TEXT_AT(!(approxEps < 0), "(approxEps<0)", __FILE__, __LINE__);
  if (!std::isfinite(fromParam) || !std::isfinite(toParam)) {
    KRS_WARN_AT("KrCircArc3dImpl::getSamplePoints - non-finite parameter range, no points", kSource, __LINE__);
    pointArray.SetSize(0);
    paramArray.SetSize(0);
    return;
  }
  const int count = krArcSampleCount(fromParam, toParam, approxEps, m_arc.radius);
  krSampleArc(fromParam, toParam, count, m_arc.center, m_arc.refVec * m_arc.radius, m_arc.yAxis() * m_arc.radius,
              pointArray, &paramArray);
}
