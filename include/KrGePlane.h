// The infinite plane.
#pragma once

#include "KrGePlanarEnt.h"

class KrPlanarEntImpl;

// type() is kPlane; isKindOf is true for kPlane, kSurface, kPlanarEnt and kEntity3d. Both
// parameter intervals are unbounded. Degenerate input is repaired, never refused, with a warning
// that names the fallback (an axis or normal with a NaN or infinite component counts as
// degenerate):
//   set(origin, normal) with a normal that does not normalise (exactly zero or not finite; any
//     other length, however small, is a direction): "KrPlanarEntImpl::set - degenerated normal, OZ used";
//   set(origin, uAxis, vAxis) with parallel axes of which one or both are zero (gTol):
//     "plane::set(or, uAxis, vAxis) - degenerated V axis, use U, pU, U x pU" (V := U.perpVector()),
//     "plane::set(or, uAxis, vAxis) - degenerated U axis, use V, pV, pV x V" (U := V.perpVector()),
//     "plane::set(or, uAxis, vAxis) - degenerated axes, use X, Y, Z";
//     two parallel non-zero axes are kept as given and leave a zero normal.
//   transformBy collapsing an axis: "KrPlanarEntImpl::transformBy, result - degenerated V, use pU",
//     "KrPlanarEntImpl::transformBy, result - degenerated U, use pV",
//     "KrPlanarEntImpl::transformBy, result - degenerated U, V, use X, Y".
// transformBy maps the origin and both axes; a matrix of determinant below -1e-10 (a mirror)
// toggles the reversed flag, so that mirroring twice gives the plane back.
class KRGEL_API KrGePlane : public KrGePlanarEnt {
public:
  static const KrGePlane kXYPlane;  // origin, X and Y axes: normal +Z
  static const KrGePlane kYZPlane;  // origin, Y and Z axes: normal +X
  static const KrGePlane kZXPlane;  // origin, Z and X axes: normal +Y

  // The XY plane through the origin (normal +Z).
  KrGePlane();
  KrGePlane(const KrGePlane& src);
  KrGePlane(const KrGePoint3d& origin, const KrGeVector3d& normal);
  KrGePlane(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV);
  KrGePlane(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis);
  KrGePlane(double a, double b, double c, double d);

  // (point - origin) . normal: positive on the side the normal points to.
  double signedDistanceTo(const KrGePoint3d& pnt) const;
  // Where the linear entity meets the plane: origin + t * direction with t from the stored
  // (unnormalised) direction. False when |direction . normal| <= tol.equalVector() (parallel)
  // or a segment does not reach the plane (the point is not within tol.equalPoint() of it).
  bool intersectWith(const KrGeLinearEnt3d& linEnt, KrGePoint3d& resultPnt,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The common line of two planes, with a unit direction this normal x other normal, through
  // the point where the in-plane line from this origin, perpendicular to that direction, meets
  // the other plane. False (the line untouched) when the normals are parallel (chord test).
  bool intersectWith(const KrGePlane& otherPln, KrGeLine3d& resultLine,
                     const KrGeTol& tol = KrGeContext::gTol) const;

  // Frame from the axes as given; normal = U x V (negated when reversed), normalised.
  KrGePlane& set(const KrGePoint3d& origin, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis);
  // The plane a*x + b*y + c*z + d = 0 through (-k*a, -k*b, -k*c), k = d / (a*a + b*b + c*c),
  // with normal (a, b, c). A zero (a, b, c) is not guarded: the origin comes out non-finite and
  // the normal falls back to +Z with the degenerated-normal warning.
  KrGePlane& set(double a, double b, double c, double d);
  // set(org, pntU - org, pntV - org): the middle point is the origin.
  KrGePlane& set(const KrGePoint3d& pntU, const KrGePoint3d& org, const KrGePoint3d& pntV);
  // Origin and unit normal; U = normal.perpVector(), V = normal x U (U x normal when reversed).
  KrGePlane& set(const KrGePoint3d& origin, const KrGeVector3d& normal);

  using KrGePlanarEnt::operator=;
  // In-place copy of the frame; self-assignment does nothing.
  KrGePlane& operator=(const KrGePlane& src);

private:
  KrPlanarEntImpl* impl() const;
};
