#include "entity/intersect/KrCurveCurveInt3dImpl.h"

#include "KrGeCurveCurveInt3d.h"
#include "KrGePointOnCurve3d.h"
#include "KrsDiagnostics.h"
#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/intersect/intersection_configs.h"
#include "entity/relation/KrCurveRelation.h"

namespace {

// The index reports: intPoint's text and the one of the point and configuration accessors.
constexpr const char* kIntPointIndexText = "(intNum < 0 || intNum > 4)";
constexpr const char* kAccessorIndexText = "(intNum<0 || intNum>4)";
bool isAcceptedIndex(int intNum) { return intNum >= 0 && intNum <= 4; }

// Lines and segments, circular arcs and elliptical arcs are the kinds with intersection solvers.
bool isUnderstood(const KrGeCurve3d& curve) {
  return curve.isKindOf(KrGe::kLinearEnt3d) || curve.type() == KrGe::kCircArc3d ||
         curve.type() == KrGe::kEllipArc3d;
}

// A curve's place in the candidate test: its range, and the point entity it collapses to when it
// is degenerate (owned here, deleted with the test).
class CandidateTest {
public:
  CandidateTest(const KrGeCurve3d& curve, const KrGeInterval& range, const KrGeTol& tol)
      : m_curve(curve), m_range(range), m_tol(tol) {
    m_curve.isDegenerate(m_degenerate, m_tol);
  }
  ~CandidateTest() { delete m_degenerate; }
  CandidateTest(const CandidateTest&) = delete;
  CandidateTest& operator=(const CandidateTest&) = delete;

  bool passes(const KrGePoint3d& candidate) const {
    if (m_degenerate) return m_curve.isOn(candidate, m_tol);
    return m_range.contains(m_curve.paramOf(candidate, m_tol));
  }

private:
  const KrGeCurve3d& m_curve;
  const KrGeInterval& m_range;
  const KrGeTol& m_tol;
  KrGeEntity3d* m_degenerate = nullptr;
};

// The local expansion of a curve at parameter `param` within `range`.
KrCurveJet jetOf(const KrGeCurve3d& curve, const KrGeInterval& range, double param, const KrGePoint3d& point,
                 const KrGeTol& tol) {
  KrCurveJet jet;
  KrsArray<KrGeVector3d> derivatives;
  curve.evalPoint(param, 2, derivatives);
  if (derivatives.GetSize() > 0) jet.first = derivatives[0];
  if (derivatives.GetSize() > 1) jet.second = derivatives[1];
  const bool atStart = range.isBoundedBelow() && curve.evalPoint(range.lowerBound()).isEqualTo(point, tol);
  const bool atEnd = range.isBoundedAbove() && curve.evalPoint(range.upperBound()).isEqualTo(point, tol);
  if (atStart && atEnd) {
    // Both ends here: a loop closing at the point, unless the whole range collapsed onto it.
    const double middle = 0.5 * (range.lowerBound() + range.upperBound());
    jet.collapsed = curve.evalPoint(middle).isEqualTo(point, tol);
  } else {
    jet.startsHere = atStart;
    jet.endsHere = atEnd;
  }
  return jet;
}

}  // namespace

KrCurveCurveInt3dImpl::KrCurveCurveInt3dImpl() : m_planeNormal(KrGeVector3d::kZAxis), m_tol(KrGeContext::gTol) {}

KrGeEntity3d* KrCurveCurveInt3dImpl::copy() const { return copyInto(new KrGeCurveCurveInt3d(), *this); }

void KrCurveCurveInt3dImpl::assignData(const KrCurveCurveInt3dImpl& source) {
  m_planeNormal = source.m_planeNormal;
  m_pCurve1 = source.m_pCurve1;
  m_pCurve2 = source.m_pCurve2;
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column) m_block[row][column] = source.m_block[row][column];
  m_range1 = source.m_range1;
  m_range2 = source.m_range2;
  m_tol = source.m_tol;
  m_numIntPoints = source.m_numIntPoints;
  m_orderReversed = source.m_orderReversed;
  for (int i = 0; i < kMaxPoints; ++i) m_points[i] = source.m_points[i];
}

bool KrCurveCurveInt3dImpl::equalData(const KrCurveCurveInt3dImpl& other, const KrGeTol& tol) const {
  if (m_pCurve1 != other.m_pCurve1 || m_pCurve2 != other.m_pCurve2) return false;
  if (!(m_range1 == other.m_range1) || !(m_range2 == other.m_range2)) return false;
  if (!m_planeNormal.isEqualTo(other.m_planeNormal, tol) || m_numIntPoints != other.m_numIntPoints) return false;
  for (int i = 0; i < m_numIntPoints; ++i)
    if (!pointAt(i).isEqualTo(other.pointAt(i), tol)) return false;
  return true;
}

KrEnt3dImpl& KrCurveCurveInt3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  m_planeNormal.transformBy(matrix);
  for (int i = 0; i < m_numIntPoints; ++i) m_points[i].transformBy(matrix);
  return *this;
}

bool KrCurveCurveInt3dImpl::isOn(const KrGePoint3d& point, const KrGeTol& tol) const {
  for (int i = 0; i < m_numIntPoints; ++i)
    if (m_points[i].isEqualTo(point, tol)) return true;
  return false;
}

void KrCurveCurveInt3dImpl::getIntRanges(KrGeInterval& range1, KrGeInterval& range2) const {
  range1 = m_range1;
  range2 = m_range2;
}

// A negative index has no slot in either order (and INT_MIN must not be subtracted from).
int KrCurveCurveInt3dImpl::slotOf(int intNum) const {
  if (intNum < 0) return -1;
  const int slot = m_orderReversed ? m_numIntPoints - 1 - intNum : intNum;
  return slot >= 0 && slot < kMaxPoints ? slot : -1;
}

KrGePoint3d KrCurveCurveInt3dImpl::intPoint(int intNum) const {
  KRS_CHECK_TEXT_AT(isAcceptedIndex(intNum), kIntPointIndexText, __FILE__, __LINE__);
  return pointAt(intNum);
}

KrGePoint3d KrCurveCurveInt3dImpl::pointAt(int intNum) const {
  const int slot = slotOf(intNum);
  return slot < 0 ? KrGePoint3d::kOrigin : m_points[slot];
}

void KrCurveCurveInt3dImpl::getIntParams(int, double&, double&) const { KRS_NOT_IMPLEMENTED(); }

bool KrCurveCurveInt3dImpl::paramsOf(int intNum, double& param1, double& param2) const {
  if (!m_pCurve1 || !m_pCurve2 || intNum < 0 || intNum >= m_numIntPoints) return false;
  const KrGePoint3d point = m_points[slotOf(intNum)];
  param1 = m_pCurve1->paramOf(point, KrGeContext::gTol);
  param2 = m_pCurve2->paramOf(point, KrGeContext::gTol);
  return true;
}

void KrCurveCurveInt3dImpl::getPointOnCurve1(int intNum, KrGePointOnCurve3d& intPnt) const {
  KRS_CHECK_TEXT_AT(isAcceptedIndex(intNum), kAccessorIndexText, __FILE__, __LINE__);
  if (!m_pCurve1) return;
  intPnt.setCurve(*m_pCurve1);
  intPnt.setParameter(m_pCurve1->paramOf(pointAt(intNum), KrGeContext::gTol));
}

void KrCurveCurveInt3dImpl::getPointOnCurve2(int intNum, KrGePointOnCurve3d& intPnt) const {
  KRS_CHECK_TEXT_AT(isAcceptedIndex(intNum), kAccessorIndexText, __FILE__, __LINE__);
  if (!m_pCurve2) return;
  intPnt.setCurve(*m_pCurve2);
  intPnt.setParameter(m_pCurve2->paramOf(pointAt(intNum), KrGeContext::gTol));
}

void KrCurveCurveInt3dImpl::getIntConfigs(int intNum, KrGe::KrGeXConfig& config1wrt2,
                                          KrGe::KrGeXConfig& config2wrt1) const {
  KRS_CHECK_TEXT_AT(isAcceptedIndex(intNum), kAccessorIndexText, __FILE__, __LINE__);
  config1wrt2 = KrGe::kNotDefined;
  config2wrt1 = KrGe::kNotDefined;
  double param1 = 0.0, param2 = 0.0;
  if (!paramsOf(intNum, param1, param2)) return;
  const KrGePoint3d point = m_points[slotOf(intNum)];
  const KrCurveJet jet1 = jetOf(*m_pCurve1, m_range1, param1, point, m_tol);
  const KrCurveJet jet2 = jetOf(*m_pCurve2, m_range2, param2, point, m_tol);
  const double parallelSine = KrGeContext::gTol.equalVector();
  config1wrt2 = krIntersectionConfig(jet1, jet2, m_planeNormal, parallelSine);
  config2wrt1 = krIntersectionConfig(jet2, jet1, m_planeNormal, parallelSine);
}

bool KrCurveCurveInt3dImpl::isTangential(int intNum) const {
  double param1 = 0.0, param2 = 0.0;
  if (!paramsOf(intNum, param1, param2)) return false;
  KrsArray<KrGeVector3d> derivatives1, derivatives2;
  m_pCurve1->evalPoint(param1, 1, derivatives1);
  m_pCurve2->evalPoint(param2, 1, derivatives2);
  if (derivatives1.GetSize() < 1 || derivatives2.GetSize() < 1) return false;
  return derivatives1[0].isParallelTo(derivatives2[0], KrGeContext::gTol);
}

bool KrCurveCurveInt3dImpl::isTransversal(int intNum) const {
  return intNum >= 0 && intNum < m_numIntPoints && m_pCurve1 && m_pCurve2 && !isTangential(intNum);
}

double KrCurveCurveInt3dImpl::intPointTol(int) const {
  KRS_NOT_IMPLEMENTED();
  return 0.0;
}

int KrCurveCurveInt3dImpl::overlapCount() const {
  KRS_NOT_IMPLEMENTED();
  return 0;
}

bool KrCurveCurveInt3dImpl::overlapDirection() const {
  if (m_numIntPoints < 2 || !m_pCurve1 || !m_pCurve2) {
    KRS_NOT_IMPLEMENTED();
    return false;
  }
  const KrGeTol& tol = KrGeContext::gTol;
  const double step1 = m_pCurve1->paramOf(m_points[1], tol) - m_pCurve1->paramOf(m_points[0], tol);
  const double step2 = m_pCurve2->paramOf(m_points[1], tol) - m_pCurve2->paramOf(m_points[0], tol);
  return (step1 > 0.0) == (step2 > 0.0);
}

void KrCurveCurveInt3dImpl::getOverlapRanges(int, KrGeInterval&, KrGeInterval&) const { KRS_NOT_IMPLEMENTED(); }

void KrCurveCurveInt3dImpl::orderByCurve1() {
  if (m_numIntPoints < 2 || !m_pCurve1) return;
  const double first = m_pCurve1->paramOf(pointAt(0), KrGeContext::gTol);
  const double second = m_pCurve1->paramOf(pointAt(1), KrGeContext::gTol);
  if (second < first) changeCurveOrder();
}

void KrCurveCurveInt3dImpl::orderWrt1() {
  orderByCurve1();
  KRS_NOT_IMPLEMENTED();
}

// Curve 1 is read here too, as for orderWrt1.
void KrCurveCurveInt3dImpl::orderWrt2() {
  orderByCurve1();
  KRS_NOT_IMPLEMENTED();
}

void KrCurveCurveInt3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeInterval& range1,
                                const KrGeInterval& range2, const KrGeVector3d& planeNormal, const KrGeTol& tol) {
  m_pCurve1 = &curve1;
  m_pCurve2 = &curve2;
  m_range1 = range1;
  m_range2 = range2;
  m_planeNormal = planeNormal;
  m_tol = tol;
  calculate();
}

void KrCurveCurveInt3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                                const KrGeVector3d& planeNormal, const KrGeTol& tol) {
  KrGeInterval range1, range2;
  curve1.getInterval(range1);
  curve2.getInterval(range2);
  set(curve1, curve2, range1, range2, planeNormal, tol);
}

void KrCurveCurveInt3dImpl::calculate() {
  m_orderReversed = false;
  m_numIntPoints = 0;
  for (KrGePoint3d& point : m_points) point = KrGePoint3d::kOrigin;
  const KrGeTol tol = m_tol;
  if (!m_pCurve1 || !m_pCurve2) return;
  const bool understood1 = isUnderstood(*m_pCurve1);
  if (!understood1) KRS_NOT_IMPLEMENTED();
  const bool understood2 = isUnderstood(*m_pCurve2);
  if (!understood2) KRS_NOT_IMPLEMENTED();
  const auto* impl1 = static_cast<const KrGeCurve3dImpl*>(implOf(*m_pCurve1));
  const auto* impl2 = static_cast<const KrGeCurve3dImpl*>(implOf(*m_pCurve2));
  if (!understood1 || !understood2 || !impl1 || !impl2) return;

  KrCurveIntersections candidates;
  if (!krrelation::intersect(*impl1, *impl2, tol, candidates)) return;
  const CandidateTest test1(*m_pCurve1, m_range1, tol);
  const CandidateTest test2(*m_pCurve2, m_range2, tol);
  for (int i = 0; i < candidates.count && m_numIntPoints < kMaxPoints; ++i) {
    const KrGePoint3d& candidate = candidates.points[i];
    if (test1.passes(candidate) && test2.passes(candidate)) m_points[m_numIntPoints++] = candidate;
  }
}
