// Construction, setters with their fallbacks, evaluation, transformation, sampling and the
// parameter range of elliptical arcs.
#include "entity/ellipse/KrEllipticArc3dImpl.h"

#include <cmath>

#include "KrGeCircArc3d.h"
#include "KrGeEllipArc3d.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_sampler.h"
#include "entity/ellipse/ellipse_affine.h"

namespace {

constexpr const char* kSource = "KrEllipArc3dImpl";
constexpr double kHalfPi = 1.5707963267948966;
// The most samples or derivatives one call fills in (8 to 16 MB).
constexpr int kMaxCount = 1 << 20;

bool isFinite(const KrGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }
bool isFinite(const KrGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

// A direction that cannot define an axis: zero length under the global tolerance, or not finite.
bool isUnusable(const KrGeVector3d& v) { return !isFinite(v) || v.isZeroLength(KrGeContext::gTol); }

KrGeVector3d unit(const KrGeVector3d& v) { return v / v.length(); }

// A radius as stored: finite and not negative, each repair announced.
double repairedRadius(double radius) {
  if (!std::isfinite(radius)) {
    KRS_WARN_AT("KrEllipArc3dImpl::set - radius not finite, 0 used", kSource, __LINE__);
    return 0.0;
  }
  if (radius < 0.0) {
    KRS_WARN_AT("KrEllipArc3dImpl::set - negative radius, absolute value used", kSource, __LINE__);
    radius = -radius;
  }
  if (radius == 0.0) KRS_WARN_AT("KrEllipArc3dImpl::set - zero radius, degenerate ellipse kept", kSource, __LINE__);
  return radius;
}

}  // namespace

KrGeEntity3d* KrEllipticArc3dImpl::copy() const { return copyInto(new KrGeEllipArc3d(), *this); }

bool KrEllipticArc3dImpl::equalData(const KrEllipticArc3dImpl& other, const KrGeTol& tol) const {
  const KrEllipseFrame& a = m_frame;
  const KrEllipseFrame& b = other.m_frame;
  return a.center.isEqualTo(b.center, tol) && a.majorAxis.isEqualTo(b.majorAxis, tol) &&
         a.minorAxis.isEqualTo(b.minorAxis, tol) && std::fabs(a.majorRadius - b.majorRadius) <= tol.equalPoint() &&
         std::fabs(a.minorRadius - b.minorRadius) <= tol.equalPoint() &&
         std::fabs(a.startAng - b.startAng) <= tol.equalVector() && std::fabs(a.sweep - b.sweep) <= tol.equalVector();
}

void KrEllipticArc3dImpl::orderRadii() {
  if (!(m_frame.minorRadius > m_frame.majorRadius)) return;
  KRS_WARN_AT("KrEllipArc3dImpl::set - minor radius above major, axes exchanged", kSource, __LINE__);
  const KrGeVector3d oldMajor = m_frame.majorAxis;
  m_frame.majorAxis = m_frame.minorAxis;
  m_frame.minorAxis = -oldMajor;
  const double oldMajorRadius = m_frame.majorRadius;
  m_frame.majorRadius = m_frame.minorRadius;
  m_frame.minorRadius = oldMajorRadius;
  m_frame.startAng -= kHalfPi;
}

KrEllipticArc3dImpl& KrEllipticArc3dImpl::setCenter(const KrGePoint3d& center) {
  if (isFinite(center)) {
    m_frame.center = center;
  } else {
    KRS_WARN_AT("KrEllipArc3dImpl::setCenter - center not finite, origin used", kSource, __LINE__);
    m_frame.center = KrGePoint3d::kOrigin;
  }
  return *this;
}

KrEllipticArc3dImpl& KrEllipticArc3dImpl::setMajorRadius(double radius) {
  m_frame.majorRadius = repairedRadius(radius);
  orderRadii();
  return *this;
}

KrEllipticArc3dImpl& KrEllipticArc3dImpl::setMinorRadius(double radius) {
  m_frame.minorRadius = repairedRadius(radius);
  orderRadii();
  return *this;
}

// The major axis wins: it keeps its direction and the minor axis is tilted into the plane
// perpendicular to it, within the plane of the two.
KrEllipticArc3dImpl& KrEllipticArc3dImpl::setAxes(const KrGeVector3d& majorAxis, const KrGeVector3d& minorAxis) {
  const bool noMajor = isUnusable(majorAxis);
  const bool noMinor = isUnusable(minorAxis);
  if (noMajor && noMinor) {
    KRS_WARN_AT("KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - 0-length vectors, X,Y used", kSource, __LINE__);
    m_frame.majorAxis = KrGeVector3d::kXAxis;
    m_frame.minorAxis = KrGeVector3d::kYAxis;
    return *this;
  }
  if (noMajor) {
    KRS_WARN_AT("KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - 0-length majorAxis, pMinor, Minor used", kSource,
                __LINE__);
    m_frame.minorAxis = unit(minorAxis);
    m_frame.majorAxis = unit(m_frame.minorAxis.perpVector());
    return *this;
  }
  m_frame.majorAxis = unit(majorAxis);
  KrGeVector3d tilted;
  if (!noMinor) {
    const KrGeVector3d minor = unit(minorAxis);
    tilted = minor - m_frame.majorAxis * minor.dotProduct(m_frame.majorAxis);
  }
  if (isUnusable(tilted)) {
    KRS_WARN_AT("KrEllipArc3dImpl::setAxes(majorAxis, minorAxis) - 0-length or parallel minorAxis, Major, pMajor used",
                kSource, __LINE__);
    m_frame.minorAxis = unit(m_frame.majorAxis.perpVector());
    return *this;
  }
  m_frame.minorAxis = unit(tilted);
  return *this;
}

KrEllipticArc3dImpl& KrEllipticArc3dImpl::setAngles(double startAngle, double endAngle) {
  if (!std::isfinite(startAngle) || !std::isfinite(endAngle)) {
    KRS_WARN_AT("KrEllipArc3dImpl::setAngles - angle not finite, full ellipse used", kSource, __LINE__);
    m_frame.startAng = 0.0;
    m_frame.sweep = kKrTwoPi;
    return *this;
  }
  m_frame.startAng = startAngle;
  m_frame.sweep = krArcSweep(startAngle, endAngle, std::fmax(m_frame.majorRadius, m_frame.minorRadius));
  return *this;
}

KrEllipticArc3dImpl& KrEllipticArc3dImpl::set(const KrGePoint3d& center, const KrGeVector3d& majorAxis,
                                              const KrGeVector3d& minorAxis, double majorRadius,
                                              double minorRadius) {
  return set(center, majorAxis, minorAxis, majorRadius, minorRadius, 0.0, kKrTwoPi);
}

// The angles are set before the radii are put in order, so that an exchange of the axes moves
// them with the points they describe.
KrEllipticArc3dImpl& KrEllipticArc3dImpl::set(const KrGePoint3d& center, const KrGeVector3d& majorAxis,
                                              const KrGeVector3d& minorAxis, double majorRadius,
                                              double minorRadius, double startAngle, double endAngle) {
  setCenter(center);
  setAxes(majorAxis, minorAxis);
  m_frame.majorRadius = repairedRadius(majorRadius);
  m_frame.minorRadius = repairedRadius(minorRadius);
  setAngles(startAngle, endAngle);
  orderRadii();
  return *this;
}

KrEllipticArc3dImpl& KrEllipticArc3dImpl::set(const KrGeCircArc3d& arc) {
  const KrArcFrame& circle = KrCircArc3dImpl::of(arc).frame();
  m_frame.center = circle.center;
  m_frame.majorAxis = circle.refVec;
  m_frame.minorAxis = circle.yAxis();
  m_frame.majorRadius = circle.radius;
  m_frame.minorRadius = circle.radius;
  m_frame.startAng = circle.startAng;
  m_frame.sweep = circle.sweep;
  return *this;
}

// The image of center + cos t (a U) + sin t (b V) under an affine map is center' + cos t P +
// sin t Q with P = M a U and Q = M b V, conjugate semi-diameters of the image; its principal
// form holds the same points at parameters moved by -shift (krPrincipalAxes), so the angles move
// with them and the sweep is kept. A map that flattens a proper ellipse leaves a segment (minor
// radius 0) or a point; a non-finite map leaves the ellipse as it was.
KrEnt3dImpl& KrEllipticArc3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  const KrGePoint3d center = matrix * m_frame.center;
  const KrGeVector3d p = matrix * (m_frame.majorAxis * m_frame.majorRadius);
  const KrGeVector3d q = matrix * (m_frame.minorAxis * m_frame.minorRadius);
  if (!isFinite(center) || !isFinite(p) || !isFinite(q)) {
    KRS_WARN_AT("KrEllipArc3dImpl::transformBy - matrix not finite, ellipse unchanged", kSource, __LINE__);
    return *this;
  }
  KrPrincipalAxes axes;
  const bool proper = krPrincipalAxes(p, q, axes);
  if (!proper) {
    const bool wasProper = m_frame.minorRadius > 0.0;
    if (axes.majorRadius == 0.0) {
      // A point: the axes are carried along as far as the map keeps them.
      axes.majorAxis = matrix * m_frame.majorAxis;
      if (isUnusable(axes.majorAxis)) axes.majorAxis = m_frame.majorAxis;
    }
    const KrGeVector3d majorAxis = unit(axes.majorAxis);
    KrGeVector3d minorAxis = matrix * m_frame.minorAxis;
    minorAxis = minorAxis - majorAxis * minorAxis.dotProduct(majorAxis);
    if (isUnusable(minorAxis)) minorAxis = majorAxis.perpVector();
    if (wasProper)
      KRS_WARN_AT("KrEllipArc3dImpl::transformBy - ellipse became degenerated, minor radius 0 used", kSource, __LINE__);
    axes.majorAxis = majorAxis;
    axes.minorAxis = unit(minorAxis);
  }
  m_frame.center = center;
  m_frame.majorAxis = axes.majorAxis;
  m_frame.minorAxis = axes.minorAxis;
  m_frame.majorRadius = axes.majorRadius;
  m_frame.minorRadius = axes.minorRadius;
  m_frame.startAng -= axes.shift;
  return *this;
}

void KrEllipticArc3dImpl::getInterval(KrGeInterval& range) const { range.set(m_frame.startAng, m_frame.endAng()); }

// point'(t) = point(-t): the minor axis turns round and the range is mirrored.
KrGeCurve3dImpl& KrEllipticArc3dImpl::reverseParam() {
  m_frame.minorAxis = -m_frame.minorAxis;
  m_frame.startAng = -m_frame.endAng();
  return *this;
}

// A bounded range of at most one turn (within the angle rule's snap) becomes the arc's range.
bool KrEllipticArc3dImpl::setInterval(const KrGeInterval& range) {
  if (!range.isBounded()) return false;
  const double lower = range.lowerBound();
  const double upper = range.upperBound();
  if (!std::isfinite(lower) || !std::isfinite(upper) || upper < lower) return false;
  const double sweep = krArcSweep(lower, upper, m_frame.majorRadius);
  if (upper - lower > kKrTwoPi && sweep != kKrTwoPi) return false;
  m_frame.startAng = lower;
  m_frame.sweep = upper == lower ? 0.0 : sweep;
  return true;
}

KrGeCurve3dImpl& KrEllipticArc3dImpl::setInterval() {
  m_frame.sweep = kKrTwoPi;
  return *this;
}

// The k-th derivative of cos t X + sin t Y is cos(t + k pi/2) X + sin(t + k pi/2) Y.
KrGePoint3d KrEllipticArc3dImpl::evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const {
  KRS_FAIL_IF(numDeriv<0);
  int count = numDeriv > 0 ? numDeriv : 0;
  if (count > kMaxCount) {
    KRS_WARN_AT("KrEllipArc3dImpl::evalPoint - numDeriv above 1048576, 1048576 used", kSource, __LINE__);
    count = kMaxCount;
  }
  derivArray.SetSize(count);
  const KrGeVector3d x = m_frame.majorAxis * m_frame.majorRadius;
  const KrGeVector3d y = m_frame.minorAxis * m_frame.minorRadius;
  double c = std::cos(param);
  double s = std::sin(param);
  const KrGePoint3d point = m_frame.pointAt(c, s);
  for (int k = 0; k < count; ++k) {
    const double turnedC = -s;
    s = c;
    c = turnedC;
    derivArray[k] = x * c + y * s;
  }
  return point;
}

void KrEllipticArc3dImpl::getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const {
  KRS_CHECK_TEXT_AT(!(numSample < 2), "(numSamples<2)", __FILE__, __LINE__);
  if (numSample > kMaxCount) {
    KRS_WARN_AT("KrEllipArc3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used", kSource, __LINE__);
    numSample = kMaxCount;
  }
  krSampleArc(m_frame.startAng, m_frame.endAng(), numSample, m_frame.center, m_frame.majorAxis * m_frame.majorRadius,
              m_frame.minorAxis * m_frame.minorRadius, pointArray, nullptr);
}

// The affine image of a circle's chord keeps its sagitta below a (1 - cos(step / 2)), so the
// circle of the major radius gives a count that holds for the ellipse.
void KrEllipticArc3dImpl::getSamplePoints(double fromParam, double toParam, double approxEps,
                                          KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const {
  KRS_CHECK_TEXT_AT(!(approxEps < 0), "(approxEps<0)", __FILE__, __LINE__);
  if (!std::isfinite(fromParam) || !std::isfinite(toParam)) {
    KRS_WARN_AT("KrEllipArc3dImpl::getSamplePoints - non-finite parameter range, no points", kSource, __LINE__);
    pointArray.SetSize(0);
    paramArray.SetSize(0);
    return;
  }
  const int count = krArcSampleCount(fromParam, toParam, approxEps, m_frame.majorRadius);
  krSampleArc(fromParam, toParam, count, m_frame.center, m_frame.majorAxis * m_frame.majorRadius,
              m_frame.minorAxis * m_frame.minorRadius, pointArray, &paramArray);
}
