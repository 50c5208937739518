// The NURBS data object: construction, the stored definition and its own operations (fit data,
// weights, knot insertion, degree elevation, the stored point evaluation and one basis function).
#include "entity/spline/KrGeNurbCurve3dImpl.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "KrGeEllipArc3d.h"
#include "KrGeLineSeg3d.h"
#include "KrsDiagnostics.h"

namespace {

constexpr const char* kSource = "KrNurbCurve3dImpl";
constexpr int kMaxBasisOrder = 33;
constexpr const char* kFitIndexText = "(index < 0 || index >= mFitPoints.GetCount())";
constexpr const char* kFitWeightIndexText = "(index < 0 || index >= mWeights.GetCount())";
constexpr const char* kWeightIndexText = "(idx < 0 || idx >= mWeights.GetCount())";

bool inRange(int index, int count) { return index >= 0 && index < count; }

}  // namespace

KrGeNurbCurve3dImpl::KrGeNurbCurve3dImpl() : m_degree(1) {
  const double knots[] = {0.0, 0.0, 1.0, 1.0};
  m_knots.set(4, knots);
  m_controlPoints.Add(KrGePoint3d(0.0, 0.0, 0.0));
  m_controlPoints.Add(KrGePoint3d(1.0, 0.0, 0.0));
  refresh();
}

KrGeNurbCurve3dImpl::KrGeNurbCurve3dImpl(const KrGeNurbCurve3dImpl& source)
    : KrEntityKind(source),
      m_degree(source.m_degree),
      m_knots(source.m_knots),
      m_controlPoints(source.m_controlPoints),
      mWeights(source.mWeights),
      mFitPoints(source.mFitPoints),
      m_form(source.m_form) {}

KrGeNurbCurve3dImpl::KrGeNurbCurve3dImpl(Empty) {}

KrGeNurbCurve3dImpl::KrGeNurbCurve3dImpl(int degree, const KrGeKnotVector& knots,
                                         const KrsArray<KrGePoint3d>& controlPoints, const KrsArray<double>* weights)
    : m_degree(degree), m_knots(knots), m_controlPoints(controlPoints) {
  if (weights) mWeights = *weights;
  refresh();
}

KrGeNurbCurve3dImpl::KrGeNurbCurve3dImpl(const KrGeLineSeg3d& segment) : m_degree(1) {
  const double length = segment.length();
  const double knots[] = {0.0, 0.0, length, length};
  m_knots.set(4, knots);
  m_controlPoints.Add(segment.startPoint());
  m_controlPoints.Add(segment.endPoint());
  refresh();
}

KrGeNurbCurve3dImpl::KrGeNurbCurve3dImpl(const KrGeEllipArc3d& ellipse) : m_degree(2) {
  const double sweep = ellipse.endAng() - ellipse.startAng();
  const double knots[] = {0.0, 0.0, 0.0, sweep, sweep, sweep};
  m_knots.set(6, knots);
  m_controlPoints.Add(ellipse.startPoint());
  m_controlPoints.Add(ellipse.center() + ellipse.majorRadius() * ellipse.majorAxis() +
                      ellipse.minorRadius() * ellipse.minorAxis());
  m_controlPoints.Add(ellipse.endPoint());
  refresh();
}

void KrGeNurbCurve3dImpl::reportFitConstructor(int line) const {
  // One check site per constructor, each with its own once-only flag.
  switch (line) {
    case 275: KRS_NOT_IMPLEMENTED_AT(kSource, 275); break;
    case 364: KRS_NOT_IMPLEMENTED_AT(kSource, 364); break;
    case 370: KRS_NOT_IMPLEMENTED_AT(kSource, 370); break;
    case 398: KRS_NOT_IMPLEMENTED_AT(kSource, 398); break;
    default: break;
  }
}

void KrGeNurbCurve3dImpl::assignData(const KrGeNurbCurve3dImpl& source) {
  m_degree = source.m_degree;
  m_knots = source.m_knots;
  m_controlPoints = source.m_controlPoints;
  mWeights = source.mWeights;
  mFitPoints = source.mFitPoints;
  m_form = source.m_form;
}

void KrGeNurbCurve3dImpl::refresh() {
  KrsArray<double> knots;
  const int numKnots = m_knots.length();
  knots.SetSize(numKnots);
  for (int i = 0; i < numKnots; ++i) knots[i] = m_knots[i];
  krNurbsBuild(m_form, m_degree, knots.GetData(), numKnots, m_controlPoints.GetData(), m_controlPoints.GetSize(),
               mWeights.GetData(), mWeights.GetSize());
}

void KrGeNurbCurve3dImpl::setFromForm(const KrNurbsForm& form) {
  m_degree = form.degree;
  m_knots.set(static_cast<int>(form.knots.size()), form.knots.data());
  m_controlPoints.SetSize(form.count);
  mWeights.SetSize(form.rational ? form.count : 0);
  for (int i = 0; i < form.count; ++i) {
    m_controlPoints[i] = form.controlPoint(i);
    if (form.rational) mWeights[i] = form.weight(i);
  }
  refresh();
}

int KrGeNurbCurve3dImpl::numFitPoints() const { return m_controlPoints.GetSize(); }

bool KrGeNurbCurve3dImpl::getFitPointAt(int index, KrGePoint3d& point) const {
  const bool ok = inRange(index, mFitPoints.GetCount());
  KRS_CHECK_TEXT_AT(ok, kFitIndexText, kSource, 447);
  if (ok) point = mFitPoints[index];
  return false;
}

bool KrGeNurbCurve3dImpl::getFitTolerance(KrGeTol&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 454);
  return false;
}

bool KrGeNurbCurve3dImpl::getFitTangents(KrGeVector3d&, KrGeVector3d&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 460);
  return false;
}

bool KrGeNurbCurve3dImpl::getFitTangents(KrGeVector3d&, KrGeVector3d&, bool&, bool&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 470);
  return false;
}

bool KrGeNurbCurve3dImpl::getFitData(KrsArray<KrGePoint3d>&, KrGeTol&, bool&, KrGeVector3d&, KrGeVector3d&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 481);
  return false;
}

bool KrGeNurbCurve3dImpl::getDefinitionData(int&, bool&, bool&, KrGeKnotVector&, KrsArray<KrGePoint3d>&,
                                            KrsArray<double>&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 493);
  return false;
}

int KrGeNurbCurve3dImpl::numWeights() const { return mWeights.GetSize(); }

double KrGeNurbCurve3dImpl::weightAt(int idx) const {
  const bool ok = inRange(idx, mWeights.GetCount());
  KRS_CHECK_TEXT_AT(ok, kWeightIndexText, kSource, 503);
  return ok ? mWeights[idx] : 0.0;
}

bool KrGeNurbCurve3dImpl::evalMode() const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 509);
  return false;
}

bool KrGeNurbCurve3dImpl::getParamsOfC1Discontinuity(KrsArray<double>&, const KrGeTol&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 515);
  return false;
}

bool KrGeNurbCurve3dImpl::getParamsOfG1Discontinuity(KrsArray<double>&, const KrGeTol&) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 521);
  return false;
}

bool KrGeNurbCurve3dImpl::setFitPointAt(int index, const KrGePoint3d& point) {
  KRS_CHECK_TEXT_AT(inRange(index, mWeights.GetCount()), kFitWeightIndexText, kSource, 527);
  if (inRange(index, mFitPoints.GetCount())) mFitPoints[index] = point;
  KRS_NOT_IMPLEMENTED_AT(kSource, 529);
  return false;
}

bool KrGeNurbCurve3dImpl::addFitPointAt(int index, const KrGePoint3d& point) {
  if (index >= 0 && index <= mFitPoints.GetCount()) mFitPoints.InsertAt(index, point);
  KRS_NOT_IMPLEMENTED_AT(kSource, 536);
  return false;
}

bool KrGeNurbCurve3dImpl::deleteFitPointAt(int) {
  KRS_NOT_IMPLEMENTED_AT(kSource, 543);
  return false;
}

bool KrGeNurbCurve3dImpl::setFitTolerance(const KrGeTol&) {
  KRS_NOT_IMPLEMENTED_AT(kSource, 549);
  return false;
}

bool KrGeNurbCurve3dImpl::setFitTangents(const KrGeVector3d&, const KrGeVector3d&) {
  KRS_NOT_IMPLEMENTED_AT(kSource, 558);
  return false;
}

bool KrGeNurbCurve3dImpl::setFitTangents(const KrGeVector3d&, const KrGeVector3d&, bool, bool) {
  KRS_NOT_IMPLEMENTED_AT(kSource, 568);
  return false;
}

void KrGeNurbCurve3dImpl::setFitData(const KrsArray<KrGePoint3d>&, const KrGeVector3d&, const KrGeVector3d&,
                                     const KrGeTol&) {
  KRS_NOT_IMPLEMENTED_AT(kSource, 578);
}

void KrGeNurbCurve3dImpl::setFitData(const KrGeKnotVector&, const KrsArray<KrGePoint3d>&, const KrGeVector3d&,
                                     const KrGeVector3d&, const KrGeTol&, bool) {
  KRS_NOT_IMPLEMENTED_AT(kSource, 590);
}

void KrGeNurbCurve3dImpl::setFitData(int, const KrsArray<KrGePoint3d>& fitPoints, const KrGeTol&) {
  mFitPoints = fitPoints;
  KRS_NOT_IMPLEMENTED_AT(kSource, 600);
}

bool KrGeNurbCurve3dImpl::purgeFitData() {
  if (mFitPoints.GetCount() == 0) return false;
  mFitPoints.RemoveAll();
  return true;
}

void KrGeNurbCurve3dImpl::addKnot(double newKnot) {
  if (m_knots.isEmpty() || !m_knots.isOn(newKnot)) m_knots.insert(newKnot);
  refresh();
}

void KrGeNurbCurve3dImpl::insertKnot(double u) {
  // The coefficients are read from the knots after insertion; an empty span (zero denominator)
  // keeps the old point, which is what a coefficient of 1 means.
  int k = 0;
  while (k < m_knots.length() && m_knots[k] < u) ++k;
  m_knots.insertAt(k, u, 1);
  const int m = m_knots.length();
  const long long p = m_degree;  // any stored degree, without overflow in k - p and j + p
  const KrsArray<KrGePoint3d> old(m_controlPoints);
  const int oldCount = old.GetSize();
  m_controlPoints.SetSize(m);
  for (int j = 0; j < m; ++j) {
    double a = 1.0;
    if (j > k - p && j < k + 1 && j + p < m) {
      const double span = m_knots[static_cast<int>(j + p)] - m_knots[j];
      if (span != 0.0) a = (u - m_knots[j]) / span;
    }
    KrGePoint3d value = KrGePoint3d::kOrigin;
    if (a == 0.0) {
      if (inRange(j - 1, oldCount)) value = old[j - 1];
    } else if (a == 1.0) {
      if (inRange(j, oldCount)) value = old[j];
    } else if (inRange(j, oldCount) && inRange(j - 1, oldCount)) {
      value = KrGePoint3d::kOrigin + a * old[j].asVector() + (1.0 - a) * old[j - 1].asVector();
    }
    m_controlPoints[j] = value;
  }
  refresh();
}

void KrGeNurbCurve3dImpl::setWeightAt(int idx, double weight) {
  const bool ok = inRange(idx, mWeights.GetCount());
  KRS_CHECK_TEXT_AT(ok, kWeightIndexText, kSource, 665);
  if (ok) mWeights[idx] = weight;
  refresh();
}

void KrGeNurbCurve3dImpl::setEvalMode(bool) { KRS_NOT_IMPLEMENTED_AT(kSource, 672); }
void KrGeNurbCurve3dImpl::joinWith(const KrGeNurbCurve3d&) { KRS_NOT_IMPLEMENTED_AT(kSource, 678); }
void KrGeNurbCurve3dImpl::hardTrimByParams(double, double) { KRS_NOT_IMPLEMENTED_AT(kSource, 684); }
void KrGeNurbCurve3dImpl::makeRational(double) { KRS_NOT_IMPLEMENTED_AT(kSource, 690); }
void KrGeNurbCurve3dImpl::makeClosed() { KRS_NOT_IMPLEMENTED_AT(kSource, 696); }
void KrGeNurbCurve3dImpl::makePeriodic() { KRS_NOT_IMPLEMENTED_AT(kSource, 702); }
void KrGeNurbCurve3dImpl::makeNonPeriodic() { KRS_NOT_IMPLEMENTED_AT(kSource, 708); }
void KrGeNurbCurve3dImpl::makeOpen() { KRS_NOT_IMPLEMENTED_AT(kSource, 714); }

void KrGeNurbCurve3dImpl::elevateDegree(int plusDegree) {
  KRS_FAIL_IF_AT(plusDegree < 0, kSource, 720);
  // Saturating: a degree can never wrap around.
  const long long degree = static_cast<long long>(m_degree) + plusDegree;
  m_degree = static_cast<int>(std::max<long long>(std::numeric_limits<int>::min(),
                                                  std::min<long long>(std::numeric_limits<int>::max(), degree)));
  refresh();
}

KrGePoint3d KrGeNurbCurve3dImpl::evaluatePoint(double u) const {
  const int p = m_degree;
  const int n = m_controlPoints.GetSize();
  const int m = m_knots.length();
  if (p > n) {
    KrGeVector3d sum(0.0, 0.0, 0.0);
    const int order = p < std::numeric_limits<int>::max() ? p + 1 : p;
    for (int i = 0; i < n; ++i) sum += basisValue(u, i, order) * m_controlPoints[i].asVector();
    return KrGePoint3d::kOrigin + sum;
  }
  if (m == 0 || p < 0 || p > kMaxBasisOrder - 1) return KrGePoint3d::kOrigin;
  auto knot = [this, m](int i) { return m_knots[std::max(0, std::min(m - 1, i))]; };
  int first = 0;
  while (first < m && m_knots[first] < u) ++first;
  const int s = std::max(p, std::min(n - 1, first - 1));
  double N[kMaxBasisOrder], left[kMaxBasisOrder], right[kMaxBasisOrder];
  N[0] = 1.0;
  for (int j = 1; j <= p; ++j) {
    left[j] = u - knot(s + 1 - j);
    right[j] = knot(s + j) - u;
    double saved = 0.0;
    for (int r = 0; r < j; ++r) {
      const double denominator = right[r + 1] + left[j - r];
      const double temp = denominator != 0.0 ? N[r] / denominator : 0.0;
      N[r] = saved + right[r + 1] * temp;
      saved = left[j - r] * temp;
    }
    N[j] = saved;
  }
  const bool rational = mWeights.GetSize() >= n;
  KrGeVector3d sum(0.0, 0.0, 0.0);
  double denominator = rational ? 0.0 : 1.0;
  for (int j = 0; j <= p; ++j) {
    const int i = s - p + j;
    if (i < 0 || i >= n) continue;
    const double factor = rational ? N[j] * mWeights[i] : N[j];
    sum += factor * m_controlPoints[i].asVector();
    if (rational) denominator += factor;
  }
  return KrGePoint3d::kOrigin + sum / denominator;
}

double KrGeNurbCurve3dImpl::basisValue(double u, int i, int q) const {
  KRS_CHECK_TEXT_AT(q > 0, "(nDegree <= 0)", kSource, 780);
  if (q <= 0) return 0.0;
  const int m = m_knots.length();
  if (i < 0 || q > kMaxBasisOrder || i > m - 1 - q) {
    KRS_E_FAIL_AT(kSource, 784);
    return 0.0;
  }
  // The triangular recurrence of one function: degree-0 indicators on the q spans of its
  // support, raised one degree at a time; empty spans contribute nothing (0/0 is avoided by
  // testing the lower-degree value first).
  int lastSpan = m - 2;
  while (lastSpan > 0 && !(m_knots[lastSpan] < m_knots[lastSpan + 1])) --lastSpan;
  const bool atEnd = u == m_knots[m - 1];
  const int d = q - 1;
  double N[kMaxBasisOrder];
  for (int j = 0; j <= d; ++j) {
    const int span = i + j;
    const bool inside = m_knots[span] <= u && u < m_knots[span + 1];
    N[j] = (inside || (atEnd && span == lastSpan)) ? 1.0 : 0.0;
  }
  for (int kk = 1; kk <= d; ++kk) {
    double saved = N[0] == 0.0 ? 0.0 : ((u - m_knots[i]) * N[0]) / (m_knots[i + kk] - m_knots[i]);
    for (int j = 0; j <= d - kk; ++j) {
      const double left = m_knots[i + j + 1];
      const double right = m_knots[i + j + kk + 1];
      if (N[j + 1] == 0.0) {
        N[j] = saved;
        saved = 0.0;
      } else {
        const double temp = N[j + 1] / (right - left);
        N[j] = saved + (right - u) * temp;
        saved = (u - left) * temp;
      }
    }
  }
  return N[0];
}
