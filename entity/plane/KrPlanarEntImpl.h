// The one implementation of planar entities: a frame (origin, two in-plane axes, unit normal)
// with a reversed flag that survives mirroring, and one parameter interval per axis. The plane
// (type 25) has both intervals unbounded; bounded planar entities served by this class report
// another type and restrict the envelope. Slots 27 to 45 follow the surface slots.
#pragma once

#include "KrGeInterval.h"
#include "KrGeLine3d.h"
#include "KrGeLinearEnt3d.h"
#include "KrGePlanarEnt.h"
#include "entity/core/KrEntityKind.h"
#include "entity/plane/KrSurfaceImpl.h"

class KrPlanarEntImpl : public KrEntityKind<KrPlanarEntImpl, KrSurfaceImpl> {
public:
  static constexpr KrGe::EntityId kKinship[] = {KrGe::kSurface, KrGe::kPlanarEnt, KrGe::kEntity3d};
  static constexpr const char* kReportSource = "KrPlanarEntImpl";
  static constexpr int kAssignLine = 42;
  // The XY plane through the origin: set(kOrigin, kZAxis).
  KrPlanarEntImpl();
  // Each constructor runs the matching set().
  KrPlanarEntImpl(const KrGePoint3d& origin, const KrGeVector3d& normal);
  KrPlanarEntImpl(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV);
  KrPlanarEntImpl(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis);
  KrPlanarEntImpl(double a, double b, double c, double d);
  KrPlanarEntImpl(const KrPlanarEntImpl& source) = default;

  using KrSurfaceImpl::isOn;

  // Slots 1 to 13.
  KrGe::EntityId type() const override { return KrGe::kPlane; }
  KrGeEntity3d* copy() const override;
  void assignData(const KrPlanarEntImpl& source);
  // Same orientation flag, frame and envelope within tol.
  bool equalData(const KrPlanarEntImpl& other, const KrGeTol& tol) const;
  KrEnt3dImpl& transformBy(const KrGeMatrix3d& matrix) override;
  // Within tol.equalPoint() of the plane and, for a bounded entity, inside its envelope.
  bool isOn(const KrGePoint3d& point, const KrGeTol& tol) const override;

  // Surface slots 14 to 26.
  KrGePoint2d paramOf(const KrGePoint3d& point, const KrGeTol& tol) const override;
  KrGePoint3d closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const override;
  double distanceTo(const KrGePoint3d& point, const KrGeTol& tol) const override;
  bool isNormalReversed() const override { return m_reversed; }
  KrSurfaceImpl& reverseNormal() override;
  void getEnvelope(KrGeInterval& intrvlU, KrGeInterval& intrvlV) const override;
  bool isClosedInU(const KrGeTol&) const override { return false; }
  bool isClosedInV(const KrGeTol&) const override { return false; }
  KrGePoint3d evalPoint(const KrGePoint2d& param) const override {
    return m_origin + m_uAxis * param.x + m_vAxis * param.y;
  }
  using KrSurfaceImpl::evalPoint;
  KrGePoint3d evalPoint(const KrGePoint2d& param, int derivOrd, KrsArray<KrGeVector3d>& derivatives,
                        KrGeVector3d& normal) const override;

  // Planar slots 27 to 45.
  virtual KrGePoint3d closestPointToLinearEnt(const KrGeLinearEnt3d& line, KrGePoint3d& pointOnLine,
                                              const KrGeTol& tol) const;
  virtual KrGePoint3d closestPointToPlanarEnt(const KrGePlanarEnt& otherPln, KrGePoint3d& pointOnOtherPln,
                                              const KrGeTol& tol) const;
  virtual bool isParallelTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol, bool coplanar) const;
  virtual bool isParallelTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol) const;
  virtual bool isPerpendicularTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol) const;
  virtual bool isPerpendicularTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol) const;
  virtual void get(KrGePoint3d& pntU, KrGePoint3d& org, KrGePoint3d& pntV) const;
  virtual void get(KrGePoint3d& origin, KrGeVector3d& uAxis, KrGeVector3d& vAxis) const;
  virtual KrGePoint3d pointOnPlane() const { return m_origin; }
  virtual KrGeVector3d normal() const { return m_normal; }
  virtual void getCoefficients(double& a, double& b, double& c, double& d) const;
  virtual void getCoordSystem(KrGePoint3d& origin, KrGeVector3d& axis1, KrGeVector3d& axis2) const;
  virtual double signedDistanceTo(const KrGePoint3d& point) const;
  virtual bool intersectWith(const KrGeLinearEnt3d& linEnt, KrGePoint3d& intPnt, bool checkBounds,
                             const KrGeTol& tol) const;
  virtual bool intersectWith(const KrGePlanarEnt& otherPln, KrGeLine3d& resultLine, const KrGeTol& tol) const;
  virtual KrPlanarEntImpl& set(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis);
  virtual KrPlanarEntImpl& set(double a, double b, double c, double d);
  virtual KrPlanarEntImpl& set(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV);
  virtual KrPlanarEntImpl& set(const KrGePoint3d& origin, const KrGeVector3d& normal);

  // Slot 40 for an infinite line given by a point and a direction (no entity needed): where
  // lineOrigin + t * lineDirection meets the plane; with checkBounds a bounded entity also needs
  // the point on itself.
  bool intersectLine(const KrGePoint3d& lineOrigin, const KrGeVector3d& lineDirection, KrGePoint3d& intPnt,
                     bool checkBounds, const KrGeTol& tol) const;
  // normal.normal(gTol), or +Z with the warning "KrPlanarEntImpl::set - degenerated normal, OZ
  // used" when the normal is zero or not finite.
  static KrGeVector3d unitNormalOrZ(const KrGeVector3d& normal);

  // The planar implementation behind a planar facade.
  static const KrPlanarEntImpl& of(const KrGePlanarEnt& plane) {
    return *krImplAs<const KrPlanarEntImpl>(implOf(plane));
  }

private:
  // The envelope restricts the entity (a bounded planar entity): some interval has a bound.
  bool isBounded() const {
    return m_intervalU.isBoundedBelow() || m_intervalU.isBoundedAbove() || m_intervalV.isBoundedBelow() ||
           m_intervalV.isBoundedAbove();
  }
  // (point - origin) . normal without the plane-only report of signedDistanceTo.
  double heightOf(const KrGePoint3d& point) const { return (point - m_origin).dotProduct(m_normal); }
  // The foot of the perpendicular from the point on the infinite plane.
  KrGePoint3d footOf(const KrGePoint3d& point) const { return point - m_normal * heightOf(point); }
  // Parameter t at which origin + t * direction meets the infinite plane; false when
  // |direction . normal| <= tol.equalVector() (parallel) or not a number.
  bool lineParameter(const KrGePoint3d& origin, const KrGeVector3d& direction, const KrGeTol& tol,
                     double& t) const;
  // Nearest point of the envelope region (a parallelogram, strip or half-plane) to a point of
  // the plane.
  KrGePoint3d clampToEnvelope(const KrGePoint3d& pointInPlane) const;

  KrGePoint3d m_origin;
  KrGeVector3d m_normal;
  bool m_reversed = false;
  KrGeVector3d m_uAxis;
  KrGeVector3d m_vAxis;
  KrGeInterval m_intervalU{1e-12};
  KrGeInterval m_intervalV{1e-12};
};
