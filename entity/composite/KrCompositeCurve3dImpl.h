// Implementation of the composite curve: the segment list with its owned flags, the stored
// interval, and the summed segment lengths that make the arc-length mapping a binary search.
// Lists and ownership are in KrCompositeCurve3dImpl.cpp, the parameter mapping, evaluation and
// sampling in _param.cpp, point and plane queries in _query.cpp, the operations not provided in
// _stubs.cpp; the closest pair with another curve is a row of the relation layer (composite_any).
#pragma once

#include "KrGeCompositeCurve3d.h"
#include "KrGeLine3d.h"
#include "KrGePlane.h"
#include "entity/composite/composite_chain.h"
#include "entity/core/KrEntityKind.h"
#include "entity/curve/KrGeCurve3dImpl.h"

class KrCompositeCurve3dImpl final : public KrEntityKind<KrCompositeCurve3dImpl, KrGeCurve3dImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kCurve3d, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrCompositeCurve3dImpl";
  static constexpr int kAssignLine = 98;
  static constexpr int kMaxDepth = 256;

  KrCompositeCurve3dImpl();
  // A copy owns copies of the source's owned segments and shares the others.
  KrCompositeCurve3dImpl(const KrCompositeCurve3dImpl& source);
  // Releases the segments (last to first).
  ~KrCompositeCurve3dImpl() override;
  KrCompositeCurve3dImpl& operator=(const KrCompositeCurve3dImpl&) = delete;
  using KrEntityKind::operator=;

  using KrGeCurve3dImpl::isOn;
  using KrGeCurve3dImpl::evalPoint;
  using KrGeCurve3dImpl::boundBlock;
  using KrGeCurve3dImpl::orthoBoundBlock;

  // Identity and data.
  KrGe::EntityId type() const override { return KrGe::kCompositeCrv3d; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrCompositeCurve3dImpl& source);
  bool equalData(const KrCompositeCurve3dImpl& other, const KrGeTol& tol) const;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;

  // Curve slots.
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
  bool isOn(double param, const KrGeTol& tol) const override;
  bool isOn(const KrGePoint3d& point, double& param, const KrGeTol& tol) const override;
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
  KrGePoint3d evalPoint(double param, int numDeriv, KrsArray<KrGeVector3d>& derivArray) const override;
  void getSamplePoints(int numSample, KrsArray<KrGePoint3d>& pointArray) const override;
  void getSamplePoints(double fromParam, double toParam, double approxEps, KrsArray<KrGePoint3d>& pointArray,
                       KrsArray<double>& paramArray) const override;

  // The composite's own operations.
  virtual void getCurveList(KrsArray<void*>& curves) const;
  virtual void setCurveList(const KrsArray<void*>& curves, const KrsArray<int>& isOwnerOfCurves);
  virtual void setCurveList(const KrsArray<void*>& curves);
  virtual double globalToLocalParam(double param, int& segNum) const;
  virtual double localToGlobalParam(double param, int segNum) const;

  // The mapping without its notices and checks (index in range): the own parameter on segment
  // `index` of global `param`, the global parameter of own parameter `local`, the summed lengths
  // before segment `index` (index == count() gives the total).
  double localOf(int index, double param) const;
  double globalOf(int index, double local) const;
  double lengthBefore(int index) const { return mLengths.before(index); }
  // How many composites deep the chain was when its list was set (1 without nested ones).
  int depth() const { return mDepth; }

  // The segments, for the relation layer and the tests of the library.
  int count() const { return mCurveList.GetCount(); }
  const KrGeCurve3d& segment(int index) const { return *static_cast<const KrGeCurve3d*>(mCurveList[index]); }
  KrGeCurve3d& segment(int index) { return *static_cast<KrGeCurve3d*>(mCurveList[index]); }
  static const KrCompositeCurve3dImpl* of(const KrGeCurve3dImpl& curve) {
    return curve.type() == KrGe::kCompositeCrv3d ? static_cast<const KrCompositeCurve3dImpl*>(&curve) : nullptr;
  }

private:
  // Unregisters from every segment, last to first, deleting the owned ones that no one else owns
  // or uses and that `keep` does not list again.
  void releaseCurves(const KrsArray<void*>* keep);
  // Curve facades only, none that is or holds this composite, nested at most kMaxDepth deep (each
  // refusal reported).
  bool acceptable(const KrsArray<void*>& curves) const;
  static int depthOf(const KrsArray<void*>& curves);
  // Takes the list over (already checked): flags, registrations, sums and interval.
  void adoptCurves(const KrsArray<void*>& curves, const KrsArray<bool>& owned);
  // The block of either kind over a global range (see the public contract).
  KrGeBoundBlock3d blockOver(const KrGeInterval& range, bool ortho) const;
  // Every segment linear and colinear with the first one, whose line is answered.
  bool linearChain(KrGeLine3d& line, const KrGeTol& tol) const;
  // Recomputes the summed lengths and the stored interval [0, L].
  void refreshLengths();

  KrsArray<void*> mCurveList;
  KrsArray<bool> mOwned;
  KrGeInterval mInterval;
  KrCompositeLengths mLengths;
  int mDepth = 1;
};
