// The NURBS data object: degree, knots, control points, weights and fit points as given, and the
// curve implementation built on them. The stored definition is kept exactly as the operations
// leave it (even when it no longer describes a curve); the curve operations read the checked
// evaluable form m_form, rebuilt after every change.
#pragma once

#include "KrGeKnotVector.h"
#include "KrGeLine3d.h"
#include "KrGeNurbCurve3d.h"
#include "KrGePlane.h"
#include "entity/core/KrEntityKind.h"
#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/spline/nurbs_form.h"

class KrGeLineSeg3d;
class KrGeEllipArc3d;

class KrGeNurbCurve3dImpl final : public KrEntityKind<KrGeNurbCurve3dImpl, KrGeCurve3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kSplineEnt3d, KrGe::kCurve3d, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrNurbCurve3dImpl";
  static constexpr int kAssignLine = 735;

  // Degree 1 from (0,0,0) to (1,0,0) over [0, 1].
  KrGeNurbCurve3dImpl();
  KrGeNurbCurve3dImpl(const KrGeNurbCurve3dImpl& source);
  // An empty definition: degree 0, no knots, no points.
  struct Empty {};
  explicit KrGeNurbCurve3dImpl(Empty);
  KrGeNurbCurve3dImpl(int degree, const KrGeKnotVector& knots, const KrsArray<KrGePoint3d>& controlPoints,
                      const KrsArray<double>* weights);
  explicit KrGeNurbCurve3dImpl(const KrGeLineSeg3d& segment);
  explicit KrGeNurbCurve3dImpl(const KrGeEllipArc3d& ellipse);

  using KrGeCurve3dImpl::isOn;
  using KrGeCurve3dImpl::evalPoint;

  // Identity and data.
  KrGe::EntityId type() const override { return KrGe::kNurbCurve3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrGeNurbCurve3dImpl& source);
  bool equalData(const KrGeNurbCurve3dImpl& other, const KrGeTol& tol) const;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;

  // Curve slots (KrGeNurbCurve3dImpl_curve.cpp, _query.cpp).
  void getInterval(KrGeInterval& range) const override;
  KrGeCurve3dImpl& reverseParam() override;
  bool setInterval(const KrGeInterval& range) override;
  KrGeCurve3dImpl& setInterval() override;
  KrGePoint3d closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                             const KrGeTol& tol) const override;
  KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const override;
  KrGePoint3d projClosestPointTo(const KrGeCurve3d& curve2, const KrGeVector3d& projectDirection,
                                 KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const override;
  KrGePoint3d projClosestPointTo(const KrGePoint3d& point, const KrGeVector3d& projectDirection,
                                 const KrGeTol& tol) const override;
  bool getNormalPoint(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& pntOnCrv,
                      const KrGeTol& tol) const override;
  KrGeBoundBlock3d boundBlock(const KrGeInterval& range) const override;
  KrGeBoundBlock3d orthoBoundBlock(const KrGeInterval& range) const override;
  KrGeEntity3d* project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                        const KrGeTol& tol) const override;
  double paramOf(const KrGePoint3d& point, const KrGeTol& tol) const override;
  void getTrimmedOffset(double distance, const KrGeVector3d& planeNormal, KrsArray<void*>& offsetCurveList,
                        KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) const override;
  bool isClosed(const KrGeTol& tol) const override;
  bool isPlanar(KrGePlane& plane, const KrGeTol& tol) const override;
  bool isLinear(KrGeLine3d& line, const KrGeTol& tol) const override;
  bool isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const override;
  bool isPeriodic(double& period) const override;
  double length(double fromParam, double toParam, double tol) const override;
  double paramAtLength(double datumParam, double length, bool posParamDir, double tol) const override;
  bool area(double startParam, double endParam, double& value, const KrGeTol& tol) const override;
  bool isDegenerate(KrGeEntity3d*& degenerateEntity, const KrGeTol& tol) const override;
  bool isDegenerate(KrGe::EntityId& degenerateType, const KrGeTol& tol) const override;
  void getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const override;
  bool explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves, KrsArray<int>& newExplodedCurve,
               const KrGeInterval* intrvl) const override;
  void getLocalClosestPoints(const KrGeCurve3d& self, const KrGeCurve3d& curve2, KrGePointOnCurve3d& approxPnt1,
                             KrGePointOnCurve3d& approxPnt2, const KrGeInterval* nbhd1,
                             const KrGeInterval* nbhd2, const KrGeTol& tol) const override;
  void getLocalClosestPoints(const KrGeCurve3d& self, const KrGePoint3d& point, KrGePointOnCurve3d& approxPnt,
                             const KrGeInterval* nbhd, const KrGeTol& tol) const override;
  KrGePoint3d evalPoint(double param) const override;
  KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const override;
  void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const override;
  void getSamplePoints(double fromParam, double toParam, double approxEps, KrsArray<KrGePoint3d>& pointArray,
                       KrsArray<double>& paramArray) const override;

  // The NURBS operations, in table order (KrGeNurbCurve3dImpl.cpp).
  virtual int numFitPoints() const;
  virtual bool getFitPointAt(int index, KrGePoint3d& point) const;
  virtual bool getFitTolerance(KrGeTol& fitTolerance) const;
  virtual bool getFitTangents(KrGeVector3d& startTangent, KrGeVector3d& endTangent, bool& startTangentDefined,
                              bool& endTangentDefined) const;
  virtual bool getFitTangents(KrGeVector3d& startTangent, KrGeVector3d& endTangent) const;
  virtual bool getFitData(KrsArray<KrGePoint3d>& fitPoints, KrGeTol& fitTolerance, bool& tangentsExist,
                          KrGeVector3d& startTangent, KrGeVector3d& endTangent) const;
  virtual bool getDefinitionData(int& degree, bool& rational, bool& periodic, KrGeKnotVector& knots,
                                 KrsArray<KrGePoint3d>& controlPoints, KrsArray<double>& weights) const;
  virtual int numWeights() const;
  virtual double weightAt(int idx) const;
  virtual bool evalMode() const;
  virtual bool getParamsOfC1Discontinuity(KrsArray<double>& params, const KrGeTol& tol) const;
  virtual bool getParamsOfG1Discontinuity(KrsArray<double>& params, const KrGeTol& tol) const;
  virtual bool setFitPointAt(int index, const KrGePoint3d& point);
  virtual bool addFitPointAt(int index, const KrGePoint3d& point);
  virtual bool deleteFitPointAt(int index);
  virtual bool setFitTolerance(const KrGeTol& fitTol);
  virtual bool setFitTangents(const KrGeVector3d& startTangent, const KrGeVector3d& endTangent,
                              bool startTangentDefined, bool endTangentDefined);
  virtual bool setFitTangents(const KrGeVector3d& startTangent, const KrGeVector3d& endTangent);
  virtual void setFitData(int degree, const KrsArray<KrGePoint3d>& fitPoints, const KrGeTol& fitTol);
  virtual void setFitData(const KrGeKnotVector& fitKnots, const KrsArray<KrGePoint3d>& fitPoints,
                          const KrGeVector3d& startTangent, const KrGeVector3d& endTangent, const KrGeTol& fitTol,
                          bool isPeriodic);
  virtual void setFitData(const KrsArray<KrGePoint3d>& fitPoints, const KrGeVector3d& startTangent,
                          const KrGeVector3d& endTangent, const KrGeTol& fitTol);
  virtual bool purgeFitData();
  virtual void addKnot(double newKnot);
  virtual void insertKnot(double newKnot);
  virtual void setWeightAt(int idx, double weight);
  virtual void setEvalMode(bool evalMode);
  virtual void joinWith(const KrGeNurbCurve3d& curve);
  virtual void hardTrimByParams(double newStartParam, double newEndParam);
  virtual void makeRational(double weight);
  virtual void makeClosed();
  virtual void makePeriodic();
  virtual void makeNonPeriodic();
  virtual void makeOpen();
  virtual void elevateDegree(int plusDegree);
  // 35: the point at u by the definition as stored (not the checked form); see the facade.
  virtual KrGePoint3d evaluatePoint(double u) const;
  // 36: the B-spline basis function of index i and order q at u over the stored knots.
  virtual double basisValue(double u, int i, int q) const;

  // The not-implemented report of a constructor (lines 275, 364, 370 and 398).
  void reportFitConstructor(int line) const;
  // The definition in evaluable form (valid() false: the curve operations answer neutrally).
  const KrNurbsForm& form() const { return m_form; }
  bool valid() const { return m_form.valid; }
  // Replaces the definition with an evaluable form (splits, trims); fit points stay.
  void setFromForm(const KrNurbsForm& form);
  // The NURBS data object behind a NURBS facade.
  static const KrGeNurbCurve3dImpl& of(const KrGeNurbCurve3d& curve) {
    return *krImplAs<const KrGeNurbCurve3dImpl>(implOf(curve));
  }

private:
  void refresh();
  // The parameter nearest to `point` over [lo, hi] (a valid form), and its distance.
  double nearestParam(const KrGePoint3d& point, double lo, double hi, double* distance) const;

  int m_degree = 0;
  KrGeKnotVector m_knots;
  KrsArray<KrGePoint3d> m_controlPoints;
  KrsArray<double> mWeights;
  KrsArray<KrGePoint3d> mFitPoints;
  KrNurbsForm m_form;
};
