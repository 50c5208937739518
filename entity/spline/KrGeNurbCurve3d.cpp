#include "KrGeNurbCurve3d.h"

#include "entity/spline/KrGeNurbCurve3dImpl.h"

inline KrGeNurbCurve3dImpl* KrGeNurbCurve3d::impl() const { return krImplAs<KrGeNurbCurve3dImpl>(m_pImpl); }

KrGeNurbCurve3d::KrGeNurbCurve3d() { m_pImpl = new KrGeNurbCurve3dImpl(); }
KrGeNurbCurve3d::KrGeNurbCurve3d(const KrGeNurbCurve3d& src) : KrGeSplineEnt3d() { m_pImpl = new KrGeNurbCurve3dImpl(*src.impl()); }
KrGeNurbCurve3d::KrGeNurbCurve3d(int degree, const KrGeKnotVector& knots, const KrsArray<KrGePoint3d>& controlPoints, bool) { m_pImpl = new KrGeNurbCurve3dImpl(degree, knots, controlPoints, nullptr); if (m_pImpl) impl()->reportFitConstructor(275); }
KrGeNurbCurve3d::KrGeNurbCurve3d(int degree, const KrGeKnotVector& knots, const KrsArray<KrGePoint3d>& controlPoints, const KrsArray<double>& weights, bool) { m_pImpl = new KrGeNurbCurve3dImpl(degree, knots, controlPoints, &weights); }
KrGeNurbCurve3d::KrGeNurbCurve3d(const KrGeLineSeg3d& linSeg) { m_pImpl = new KrGeNurbCurve3dImpl(linSeg); }
KrGeNurbCurve3d::KrGeNurbCurve3d(const KrGeEllipArc3d& ellipse) { m_pImpl = new KrGeNurbCurve3dImpl(ellipse); }
KrGeNurbCurve3d::KrGeNurbCurve3d(const KrsArray<KrGePoint3d>&, const KrGeTol&) { m_pImpl = new KrGeNurbCurve3dImpl(KrGeNurbCurve3dImpl::Empty()); if (m_pImpl) impl()->reportFitConstructor(370); }
KrGeNurbCurve3d::KrGeNurbCurve3d(const KrsArray<KrGePoint3d>&, const KrsArray<KrGeVector3d>&, const KrGeTol&, bool) { m_pImpl = new KrGeNurbCurve3dImpl(KrGeNurbCurve3dImpl::Empty()); if (m_pImpl) impl()->reportFitConstructor(398); }
KrGeNurbCurve3d::KrGeNurbCurve3d(const KrsArray<KrGePoint3d>&, const KrGeVector3d&, const KrGeVector3d&, bool, bool, const KrGeTol&) { m_pImpl = new KrGeNurbCurve3dImpl(KrGeNurbCurve3dImpl::Empty()); if (m_pImpl) impl()->reportFitConstructor(364); }

int KrGeNurbCurve3d::numFitPoints() const { return impl()->numFitPoints(); }
bool KrGeNurbCurve3d::getFitPointAt(int index, KrGePoint3d& point) const { return impl()->getFitPointAt(index, point); }
bool KrGeNurbCurve3d::getFitTolerance(KrGeTol& fitTolerance) const { return impl()->getFitTolerance(fitTolerance); }
bool KrGeNurbCurve3d::getFitTangents(KrGeVector3d& startTangent, KrGeVector3d& endTangent) const { return impl()->getFitTangents(startTangent, endTangent); }
bool KrGeNurbCurve3d::getFitTangents(KrGeVector3d& startTangent, KrGeVector3d& endTangent, bool& startTangentDefined, bool& endTangentDefined) const { return impl()->getFitTangents(startTangent, endTangent, startTangentDefined, endTangentDefined); }
bool KrGeNurbCurve3d::getFitData(KrsArray<KrGePoint3d>& fitPoints, KrGeTol& fitTolerance, bool& tangentsExist, KrGeVector3d& startTangent, KrGeVector3d& endTangent) const { return impl()->getFitData(fitPoints, fitTolerance, tangentsExist, startTangent, endTangent); }
bool KrGeNurbCurve3d::getDefinitionData(int& degree, bool& rational, bool& periodic, KrGeKnotVector& knots, KrsArray<KrGePoint3d>& controlPoints, KrsArray<double>& weights) const { return impl()->getDefinitionData(degree, rational, periodic, knots, controlPoints, weights); }
int KrGeNurbCurve3d::numWeights() const { return impl()->numWeights(); }
double KrGeNurbCurve3d::weightAt(int idx) const { return impl()->weightAt(idx); }
bool KrGeNurbCurve3d::evalMode() const { return impl()->evalMode(); }
bool KrGeNurbCurve3d::getParamsOfC1Discontinuity(KrsArray<double>& params, const KrGeTol& tol) const { return impl()->getParamsOfC1Discontinuity(params, tol); }
bool KrGeNurbCurve3d::getParamsOfG1Discontinuity(KrsArray<double>& params, const KrGeTol& tol) const { return impl()->getParamsOfG1Discontinuity(params, tol); }
bool KrGeNurbCurve3d::setFitPointAt(int index, const KrGePoint3d& point) { return impl()->setFitPointAt(index, point); }
bool KrGeNurbCurve3d::addFitPointAt(int index, const KrGePoint3d& point) { return impl()->addFitPointAt(index, point); }
bool KrGeNurbCurve3d::deleteFitPointAt(int index) { return impl()->deleteFitPointAt(index); }
bool KrGeNurbCurve3d::setFitTolerance(const KrGeTol& fitTol) { return impl()->setFitTolerance(fitTol); }
bool KrGeNurbCurve3d::setFitTangents(const KrGeVector3d& startTangent, const KrGeVector3d& endTangent) { return impl()->setFitTangents(startTangent, endTangent); }
bool KrGeNurbCurve3d::setFitTangents(const KrGeVector3d& startTangent, const KrGeVector3d& endTangent, bool startTangentDefined, bool endTangentDefined) { return impl()->setFitTangents(startTangent, endTangent, startTangentDefined, endTangentDefined); }
KrGeNurbCurve3d& KrGeNurbCurve3d::setFitData(int degree, const KrsArray<KrGePoint3d>& fitPoints, const KrGeTol& fitTol) { impl()->setFitData(degree, fitPoints, fitTol); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::setFitData(const KrGeKnotVector& fitKnots, const KrsArray<KrGePoint3d>& fitPoints, const KrGeVector3d& startTangent, const KrGeVector3d& endTangent, const KrGeTol& fitTol, bool isPeriodic) { impl()->setFitData(fitKnots, fitPoints, startTangent, endTangent, fitTol, isPeriodic); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::setFitData(const KrsArray<KrGePoint3d>& fitPoints, const KrGeVector3d& startTangent, const KrGeVector3d& endTangent, const KrGeTol& fitTol) { impl()->setFitData(fitPoints, startTangent, endTangent, fitTol); return *this; }
bool KrGeNurbCurve3d::purgeFitData() { return impl()->purgeFitData(); }
KrGeNurbCurve3d& KrGeNurbCurve3d::addKnot(double newKnot) { impl()->addKnot(newKnot); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::insertKnot(double newKnot) { impl()->insertKnot(newKnot); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::setWeightAt(int idx, double weight) { impl()->setWeightAt(idx, weight); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::setEvalMode(bool evalMode) { impl()->setEvalMode(evalMode); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::joinWith(const KrGeNurbCurve3d& curve) { impl()->joinWith(curve); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::hardTrimByParams(double newStartParam, double newEndParam) { impl()->hardTrimByParams(newStartParam, newEndParam); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::makeRational(double weight) { impl()->makeRational(weight); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::makeClosed() { impl()->makeClosed(); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::makePeriodic() { impl()->makePeriodic(); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::makeNonPeriodic() { impl()->makeNonPeriodic(); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::makeOpen() { impl()->makeOpen(); return *this; }
KrGeNurbCurve3d& KrGeNurbCurve3d::elevateDegree(int plusDegree) { impl()->elevateDegree(plusDegree); return *this; }
KrGePoint3d KrGeNurbCurve3d::evaluatePoint(double u) const { return impl()->evaluatePoint(u); }
double KrGeNurbCurve3d::basisValue(double u, int i, int q) const { return impl()->basisValue(u, i, q); }
KrGeNurbCurve3d& KrGeNurbCurve3d::operator=(const KrGeNurbCurve3d& spline) { if (this != &spline) *m_pImpl = *spline.m_pImpl; return *this; }
