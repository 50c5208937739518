// The NURBS curve as a curve: identity, range, evaluation, sampling, transformation, shape
// queries, splitting and bounding blocks.
#include <algorithm>
#include <cmath>

#include "KrGeBoundBlock3d.h"
#include "KrGePointEnt3d.h"
#include "KrsDiagnostics.h"
#include "entity/spline/KrGeNurbCurve3dImpl.h"
#include "entity/spline/nurbs_measure.h"

namespace {

constexpr int kMaxCount = 1 << 20;

bool finite(const KrGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

KrGeNurbCurve3d* newCurve(const KrNurbsForm& form) {
  auto* curve = new KrGeNurbCurve3d();
  const_cast<KrGeNurbCurve3dImpl&>(KrGeNurbCurve3dImpl::of(*curve)).setFromForm(form);
  return curve;
}

// The two control points farthest apart among those in use (the line of a linear curve, the
// base of a plane), and the point farthest from their line.
void extremePoints(const KrNurbsForm& form, int& a, int& b, int& c) {
  a = 0;
  b = 0;
  c = 0;
  double far = -1.0;
  for (int i = 0; i < form.count; ++i) {
    const double d = (form.controlPoint(i) - form.controlPoint(0)).length();
    if (d > far) {
      far = d;
      b = i;
    }
  }
  far = -1.0;
  for (int i = 0; i < form.count; ++i) {
    const double d = (form.controlPoint(i) - form.controlPoint(b)).length();
    if (d > far) {
      far = d;
      a = i;
    }
  }
  const KrGePoint3d pa = form.controlPoint(a);
  const KrGeVector3d axis = form.controlPoint(b) - pa;
  far = -1.0;
  for (int i = 0; i < form.count; ++i) {
    const double d = axis.crossProduct(form.controlPoint(i) - pa).length();
    if (d > far) {
      far = d;
      c = i;
    }
  }
}

}  // namespace

KrGeEntity3d* KrGeNurbCurve3dImpl::copy() const { return copyInto(new KrGeNurbCurve3d(), *this); }

bool KrGeNurbCurve3dImpl::equalData(const KrGeNurbCurve3dImpl& other, const KrGeTol& tol) const {
  if (m_degree != other.m_degree || m_knots.length() != other.m_knots.length() ||
      m_controlPoints.GetSize() != other.m_controlPoints.GetSize() || mWeights.GetSize() != other.mWeights.GetSize())
    return false;
  for (int i = 0; i < m_knots.length(); ++i)
    if (!(std::fabs(m_knots[i] - other.m_knots[i]) <= m_knots.tolerance())) return false;
  for (int i = 0; i < m_controlPoints.GetSize(); ++i)
    if (!m_controlPoints[i].isEqualTo(other.m_controlPoints[i], tol)) return false;
  for (int i = 0; i < mWeights.GetSize(); ++i)
    if (!(std::fabs(mWeights[i] - other.mWeights[i]) <= tol.equalVector())) return false;
  return true;
}

KrEnt3dImpl& KrGeNurbCurve3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (!std::isfinite(matrix(r, c))) return *this;
  for (int i = 0; i < m_controlPoints.GetSize(); ++i) m_controlPoints[i] = matrix * m_controlPoints[i];
  for (int i = 0; i < mFitPoints.GetSize(); ++i) mFitPoints[i] = matrix * mFitPoints[i];
  refresh();
  return *this;
}

void KrGeNurbCurve3dImpl::getInterval(KrGeInterval& range) const {
  if (valid()) {
    range.set(m_form.startParam(), m_form.endParam());
  } else if (!m_knots.isEmpty()) {
    range.set(m_knots[0], m_knots[m_knots.length() - 1]);
  } else {
    range.set(0.0, 0.0);
  }
}

KrGeCurve3dImpl& KrGeNurbCurve3dImpl::reverseParam() {
  const int m = m_knots.length();
  if (m > 0) {
    const double sum = m_knots[0] + m_knots[m - 1];
    KrsArray<double> reversed;
    reversed.SetSize(m);
    for (int i = 0; i < m; ++i) reversed[i] = sum - m_knots[m - 1 - i];
    m_knots = reversed;
  }
  for (int i = 0, j = m_controlPoints.GetSize() - 1; i < j; ++i, --j) std::swap(m_controlPoints[i], m_controlPoints[j]);
  for (int i = 0, j = mWeights.GetSize() - 1; i < j; ++i, --j) std::swap(mWeights[i], mWeights[j]);
  refresh();
  return *this;
}

bool KrGeNurbCurve3dImpl::setInterval(const KrGeInterval& range) {
  if (!valid() || !range.isBounded()) return false;
  const double lo = range.lowerBound(), hi = range.upperBound();
  const double tol = m_knots.tolerance();
  if (!(lo < hi) || lo < m_form.startParam() - tol || hi > m_form.endParam() + tol) return false;
  setFromForm(krNurbsExtract(m_form, std::max(lo, m_form.startParam()), std::min(hi, m_form.endParam())));
  return true;
}

KrGeCurve3dImpl& KrGeNurbCurve3dImpl::setInterval() { return *this; }

KrGePoint3d KrGeNurbCurve3dImpl::evalPoint(double param) const {
  return valid() ? krNurbsPoint(m_form, param) : evaluatePoint(param);
}

KrGePoint3d KrGeNurbCurve3dImpl::evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const {
  if (numDeriv > kMaxCount)
    KRS_WARN_AT("KrNurbCurve3dImpl::evalPoint - numDeriv above 1048576, 1048576 used", kReportSource, __LINE__);
  const int count = std::max(0, std::min(numDeriv, kMaxCount));
  derivArray.SetSize(count);
  if (!valid()) {
    for (int i = 0; i < count; ++i) derivArray[i] = KrGeVector3d(0.0, 0.0, 0.0);
    return evaluatePoint(param);
  }
  if (count == 0) return krNurbsPoint(m_form, param);
  if (count <= 2) {
    KrGeVector3d few[3];
    krNurbsDerivs(m_form, param, count, few);
    KrGeVector3d* target = derivArray.GetData();
    for (int i = 0; i < count; ++i) target[i] = few[i + 1];
    return KrGePoint3d(few[0].x, few[0].y, few[0].z);
  }
  KrGeVector3d local[8];
  KrsArray<KrGeVector3d> heap;
  KrGeVector3d* out = local;
  if (count + 1 > 8) {
    heap.SetSize(count + 1);
    out = heap.GetData();
  }
  krNurbsDerivs(m_form, param, count, out);
  for (int i = 0; i < count; ++i) derivArray[i] = out[i + 1];
  return KrGePoint3d(out[0].x, out[0].y, out[0].z);
}

void KrGeNurbCurve3dImpl::getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const {
  pointArray.RemoveAll();
  if (numSample > kMaxCount)
    KRS_WARN_AT("KrNurbCurve3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used", kReportSource, __LINE__);
  if (!valid()) return;
  const int count = std::max(2, std::min(numSample, kMaxCount));
  pointArray.SetSize(count);
  const double a = m_form.startParam(), b = m_form.endParam();
  for (int i = 0; i < count; ++i)
    pointArray[i] = krNurbsPoint(m_form, i == count - 1 ? b : a + (b - a) * (static_cast<double>(i) / (count - 1)));
}

void KrGeNurbCurve3dImpl::getSamplePoints(double fromParam, double toParam, double approxEps,
                                          KrsArray<KrGePoint3d>& pointArray, KrsArray<double>& paramArray) const {
  pointArray.RemoveAll();
  paramArray.RemoveAll();
  if (!valid() || !std::isfinite(fromParam) || !std::isfinite(toParam)) return;
  const double a = std::max(m_form.startParam(), std::min(fromParam, toParam));
  const double b = std::min(m_form.endParam(), std::max(fromParam, toParam));
  if (a > b) return;
  KrGePoint3d low, high;
  krNurbsPieceHull(m_form, m_form.startParam(), m_form.endParam(), low, high);
  const double eps = std::max(std::isfinite(approxEps) ? approxEps : 0.0, 1e-12 * (high - low).length());
  KrsArray<double> breaks;
  krNurbsBreaks(m_form, breaks);
  auto add = [&](double t) {
    if (pointArray.GetSize() >= kMaxCount) return;
    pointArray.Add(krNurbsPoint(m_form, t));
    paramArray.Add(t);
  };
  add(a);
  // Between knots the chord of a step h deviates at most h^2 max|C''| / 8; |C''| is bounded by
  // its largest value at the samples of a first pass, doubled for safety.
  for (int i = 0; i + 1 < breaks.GetSize() && pointArray.GetSize() < kMaxCount; ++i) {
    const double from = std::max(a, breaks[i]), to = std::min(b, breaks[i + 1]);
    if (!(from < to)) continue;
    double curvature = 0.0;
    const int probes = 2 * m_form.degree + 2;
    for (int j = 0; j <= probes; ++j) {
      KrGeVector3d d[3];
      krNurbsDerivs(m_form, from + (to - from) * j / probes, 2, d);
      curvature = std::max(curvature, d[2].length());
    }
    const double step = curvature > 0.0 ? std::sqrt(8.0 * eps / (2.0 * curvature)) : (to - from);
    const double pieces = std::min(static_cast<double>(kMaxCount), std::ceil((to - from) / step));
    const int n = std::max(1, static_cast<int>(pieces));
    for (int j = 1; j <= n && pointArray.GetSize() < kMaxCount; ++j)
      add(j == n ? to : from + (to - from) * (static_cast<double>(j) / n));
  }
  if (paramArray.GetSize() == 1 && b > a) add(b);
}

bool KrGeNurbCurve3dImpl::isClosed(const KrGeTol& tol) const {
  return valid() && krNurbsPoint(m_form, m_form.startParam()).isEqualTo(krNurbsPoint(m_form, m_form.endParam()), tol);
}

bool KrGeNurbCurve3dImpl::isLinear(KrGeLine3d& line, const KrGeTol& tol) const {
  if (!valid()) return false;
  int a, b, c;
  extremePoints(m_form, a, b, c);
  const KrGePoint3d pa = m_form.controlPoint(a);
  const KrGeVector3d axis = m_form.controlPoint(b) - pa;
  const double length = axis.length();
  if (!(length > tol.equalPoint())) return false;
  if (!(axis.crossProduct(m_form.controlPoint(c) - pa).length() / length <= tol.equalPoint())) return false;
  line.set(pa, axis);
  return true;
}

bool KrGeNurbCurve3dImpl::isPlanar(KrGePlane& plane, const KrGeTol& tol) const {
  if (!valid()) return false;
  int a, b, c;
  extremePoints(m_form, a, b, c);
  const KrGePoint3d pa = m_form.controlPoint(a);
  const KrGeVector3d axis = m_form.controlPoint(b) - pa;
  KrGeVector3d normal = axis.crossProduct(m_form.controlPoint(c) - pa);
  if (!(normal.length() > 0.0) || axis.crossProduct(m_form.controlPoint(c) - pa).length() / axis.length() <= tol.equalPoint()) {
    // A linear or point-like curve lies in every plane through its line: the one whose normal
    // is perpendicular to the line by the library's arbitrary-axis rule.
    normal = axis.length() > 0.0 ? axis.perpVector() : KrGeVector3d::kZAxis;
  }
  normal.normalize();
  for (int i = 0; i < m_form.count; ++i)
    if (!(std::fabs((m_form.controlPoint(i) - pa).dotProduct(normal)) <= tol.equalPoint())) return false;
  plane.set(pa, normal);
  return true;
}

bool KrGeNurbCurve3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const {
  KrGePlane own;
  if (!isPlanar(own, tol)) return false;
  KrGePlane other;
  if (!curve2.isPlanar(other, tol)) return false;
  KrGeLine3d line;
  if (isLinear(line, tol)) own = other;
  if (!curve2.isLinear(line, tol) && !own.isCoplanarTo(other, tol)) return false;
  KrGePoint3d start, end;
  if (curve2.hasStartPoint(start) && !(std::fabs(own.signedDistanceTo(start)) <= tol.equalPoint())) return false;
  if (curve2.hasEndPoint(end) && !(std::fabs(own.signedDistanceTo(end)) <= tol.equalPoint())) return false;
  plane = own;
  return true;
}

bool KrGeNurbCurve3dImpl::isPeriodic(double&) const { return false; }

bool KrGeNurbCurve3dImpl::isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const {
  if (!valid()) return false;
  for (int i = 1; i < m_form.count; ++i)
    if (!m_form.controlPoint(i).isEqualTo(m_form.controlPoint(0), tol)) return false;
  degenerateType = KrGe::kPosition3d;
  return true;
}

bool KrGeNurbCurve3dImpl::isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const {
  degenerateEntity = nullptr;
  KrGe::EntityId kind;
  if (!isDegenerate(kind, tol)) return false;
  degenerateEntity = new KrGePointEnt3d(m_form.controlPoint(0));
  return true;
}

void KrGeNurbCurve3dImpl::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const {
  piece1 = nullptr;
  piece2 = nullptr;
  if (!valid() || !std::isfinite(param)) return;
  const double a = m_form.startParam(), b = m_form.endParam(), tol = m_knots.tolerance();
  if (param <= a + tol) {
    piece2 = newCurve(m_form);
  } else if (param >= b - tol) {
    piece1 = newCurve(m_form);
  } else {
    piece1 = newCurve(krNurbsExtract(m_form, a, param));
    piece2 = newCurve(krNurbsExtract(m_form, param, b));
  }
}

bool KrGeNurbCurve3dImpl::explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves,
                                  KrsArray<int>& newExplodedCurve, const KrGeInterval* intrvl) const {
  if (intrvl && intrvl->isBounded() && valid()) {
    auto* piece = new KrGeNurbCurve3d();
    const_cast<KrGeNurbCurve3dImpl&>(of(*piece)).assignData(*this);
    if (!piece->setInterval(*intrvl)) {
      delete piece;
      return false;
    }
    explodedCurves.Add(piece);
    newExplodedCurve.Add(1);
    return true;
  }
  explodedCurves.Add(const_cast<KrGeCurve3d*>(&self));
  newExplodedCurve.Add(0);
  return true;
}

KrGeEntity3d* KrGeNurbCurve3dImpl::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                                           const KrGeTol& tol) const {
  const KrGeVector3d normal = projectionPlane.normal();
  const double along = projectDirection.dotProduct(normal);
  if (projectDirection.isZeroLength(tol) || !(std::fabs(along) > tol.equalVector() * projectDirection.length()))
    return nullptr;
  // A parallel projection is affine, so projecting the control points projects the curve.
  auto* curve = new KrGeNurbCurve3d();
  KrGeNurbCurve3dImpl& impl = const_cast<KrGeNurbCurve3dImpl&>(of(*curve));
  impl.assignData(*this);
  const KrGePoint3d origin = projectionPlane.pointOnPlane();
  for (int i = 0; i < impl.m_controlPoints.GetSize(); ++i) {
    const KrGePoint3d& p = impl.m_controlPoints[i];
    impl.m_controlPoints[i] = p - ((p - origin).dotProduct(normal) / along) * projectDirection;
  }
  impl.refresh();
  return curve;
}

void KrGeNurbCurve3dImpl::getTrimmedOffset(double, const KrGeVector3d&, KrsArray<void*>&, KrGe::OffsetCrvExtType,
                                           const KrGeTol&) const {
  KRS_NOT_IMPLEMENTED_AT(kReportSource, 760);
}

KrGeBoundBlock3d KrGeNurbCurve3dImpl::boundBlock(const KrGeInterval& range) const {
  if (!valid()) return KrGeBoundBlock3d();
  double a = m_form.startParam(), b = m_form.endParam();
  if (range.isBoundedBelow()) a = std::max(a, range.lowerBound());
  if (range.isBoundedAbove()) b = std::min(b, range.upperBound());
  if (!(a <= b)) return KrGeBoundBlock3d();
  KrGePoint3d low, high;
  krNurbsPieceHull(m_form, a, b, low, high);
  krNurbsExactBox(m_form, a, b, 1e-12 * (high - low).length(), low, high);
  return finite(low) && finite(high) ? KrGeBoundBlock3d(low, high) : KrGeBoundBlock3d();
}

KrGeBoundBlock3d KrGeNurbCurve3dImpl::orthoBoundBlock(const KrGeInterval& range) const {
  if (!valid()) return KrGeBoundBlock3d();
  double a = m_form.startParam(), b = m_form.endParam();
  if (range.isBoundedBelow()) a = std::max(a, range.lowerBound());
  if (range.isBoundedAbove()) b = std::min(b, range.upperBound());
  if (!(a <= b)) return KrGeBoundBlock3d();
  KrGePoint3d low, high;
  krNurbsPieceHull(m_form, a, b, low, high);
  return finite(low) && finite(high) ? KrGeBoundBlock3d(low, high) : KrGeBoundBlock3d();
}
