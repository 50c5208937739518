// A point on a curve: the curve (not owned) and a parameter; the point and its derivatives are
// evaluated from the curve on demand, so they follow the curve when it changes.
#pragma once

#include "KrGePointEnt3d.h"

class KrGeCurve3d;
class KrPointOnCurve3dImpl;

// The curve must outlive the point on it (or be replaced with setCurve first). type() is
// kPointOnCurve3d; isKindOf is true for kPointOnCurve3d, kPointEnt3d and kEntity3d, not for
// kPosition3d. Without a curve every evaluation reports "(!m_pCurve)" once and answers the
// origin or the zero vector. isEqualTo: the same curve object and points within tol.equalPoint().
// transformBy is not supported (the curve is not the point's to move): it reports
// "(((HRESULT)0x80004001L))" and changes nothing.
class KRGEL_API KrGePointOnCurve3d : public KrGePointEnt3d {
public:
  // No curve, parameter 0.
  KrGePointOnCurve3d();
  KrGePointOnCurve3d(const KrGePointOnCurve3d& src);
  explicit KrGePointOnCurve3d(const KrGeCurve3d& crv, double param = 0.0);

  // The curve, null when none is set.
  const KrGeCurve3d* curve() const;
  double parameter() const;

  // The point of the curve at the parameter.
  KrGePoint3d point() const;
  // setParameter(param), then point().
  KrGePoint3d point(double param);
  // setCurve(crv), setParameter(param), then point().
  KrGePoint3d point(const KrGeCurve3d& crv, double param);
  // The derivative of the given order (1 = first) at the parameter; an order below 1 or above
  // 256 reports "(order<1)" or "(order>kMaxDerivOrder)" once and answers the zero vector. Never
  // throws: should the curve's derivatives not get memory, the answer is the zero vector.
  KrGeVector3d deriv(int order) const;
  KrGeVector3d deriv(int order, double param);
  KrGeVector3d deriv(int order, const KrGeCurve3d& crv, double param);

  KrGePointOnCurve3d& setCurve(const KrGeCurve3d& crv);
  KrGePointOnCurve3d& setParameter(double param);

  // point().
  KrGePoint3d point3d() const override;
  // Moves the parameter to that of the curve point nearest to `point` (the curve's
  // closestPointTo and paramOf, KrGeContext::gTol); without a curve nothing changes.
  KrGePointEnt3d& set(const KrGePoint3d& point) override;

  using KrGePointEnt3d::operator=;
  // In-place copy of curve pointer and parameter; self-assignment does nothing.
  KrGePointOnCurve3d& operator=(const KrGePointOnCurve3d& src);

private:
  KrPointOnCurve3dImpl* impl() const;
};
