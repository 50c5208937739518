// Public base of spline curves. Its own queries are provisional: each one reports the
// not-implemented assertion "(((HRESULT)0x80004001L))" (source "krsent3d", once per operation and
// process, only while assertions are on) and answers a neutral value. The concrete spline,
// KrGeNurbCurve3d, does not override them: read a NURBS curve through the curve operations
// (evalPoint, getInterval, length, ...) instead.
#pragma once

#include "KrGeCurve3d.h"
#include "KrGeKnotVector.h"

// type() of a spline curve is its concrete kind; isKindOf(KrGe::kSplineEnt3d) (41) is true for
// every spline curve, together with kCurve3d and kEntity3d.
class KRGEL_API KrGeSplineEnt3d : public KrGeCurve3d {
public:
  using KrGeCurve3d::operator=;

  // false (line 12).
  virtual bool isRational() const;
  // 0 (line 18).
  virtual int degree() const;
  // 0 (line 24).
  virtual int order() const;
  // 0 (line 30).
  virtual int numKnots() const;
  // One shared empty knot vector (tolerance 1e-9), built on first use and kept for the life of
  // the process (line 36).
  virtual const KrGeKnotVector& knots() const;
  // 0 (line 43).
  virtual int numControlPoints() const;
  // 0 (line 49).
  virtual int continuityAtKnot(int index, const KrGeTol& tol = KrGeContext::gTol) const;
  // 0 (lines 55 and 61).
  virtual double startParam() const;
  virtual double endParam() const;
  // The origin (lines 67 and 73).
  virtual KrGePoint3d startPoint() const;
  virtual KrGePoint3d endPoint() const;
  // false (line 79).
  virtual bool hasFitData() const;
  // 0 (line 85).
  virtual double knotAt(int index) const;
  // Changes nothing; returns this curve (line 91).
  virtual KrGeSplineEnt3d& setKnotAt(int index, double val);
  // The origin (line 97).
  virtual KrGePoint3d controlPointAt(int index) const;
  // Changes nothing; returns this curve (line 103).
  virtual KrGeSplineEnt3d& setControlPointAt(int index, const KrGePoint3d& point);
  // Changes nothing (line 109); copy a spline through its concrete class or KrGeEntity3d&.
  KrGeSplineEnt3d& operator=(const KrGeSplineEnt3d& spline);

protected:
  KrGeSplineEnt3d();
  // Shallow, as KrGeEntity3d's: for derived classes only.
  KrGeSplineEnt3d(const KrGeSplineEnt3d& spline);
};
