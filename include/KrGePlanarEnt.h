// Abstract facade of flat surfaces; KrGePlane is the infinite plane.
#pragma once

#include "KrGeSurface.h"

class KrPlanarEntImpl;

// A planar entity is origin + u * uAxis + v * vAxis. The axes are kept as given (neither
// normalised nor made orthogonal); the normal is unit length, U x V normalised, negated when the
// frame is reversed (a mirror image). Tolerances follow the lines': tol.equalPoint() for
// distances, tol.equalVector() for directions (a cosine for perpendicular tests, a chord
// between unit directions for parallel ones), "<=" counting as within; a zero line direction
// is parallel to every plane.
class KRGEL_API KrGePlanarEnt : public KrGeSurface {
public:
  // Where the line meets the entity. False when the line's direction is parallel to it
  // (|stored direction . normal| <= equalVector) or a segment ends before reaching it.
  bool intersectWith(const KrGeLinearEnt3d& linEnt, KrGePoint3d& pnt,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The closest pair between this entity and the linear entity; answers the point on the plane
  // and writes the one on the line. A crossing entity gives its intersection point twice; a
  // parallel line gives its origin and that point's foot; a segment that stops short gives its
  // end nearer the plane and the foot of that end.
  KrGePoint3d closestPointToLinearEnt(const KrGeLinearEnt3d& line, KrGePoint3d& pointOnLine,
                                      const KrGeTol& tol = KrGeContext::gTol) const;
  // The closest pair between two planes: for crossing planes the point of their common line
  // nearest to this origin (twice); for parallel planes this origin and its foot on the other.
  KrGePoint3d closestPointToPlanarEnt(const KrGePlanarEnt& otherPln, KrGePoint3d& pointOnOtherPln,
                                      const KrGeTol& tol = KrGeContext::gTol) const;
  // Normals parallel (chord test, either sense).
  bool isParallelTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol = KrGeContext::gTol) const;
  // The line's direction perpendicular to the normal (|cos| <= equalVector); a zero direction
  // answers true.
  bool isParallelTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol = KrGeContext::gTol) const;
  // Normals perpendicular (|cos| <= equalVector).
  bool isPerpendicularTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol = KrGeContext::gTol) const;
  // The line's direction parallel to the normal (chord test); a zero direction answers true.
  bool isPerpendicularTo(const KrGeLinearEnt3d& linEnt, const KrGeTol& tol = KrGeContext::gTol) const;
  // Parallel, and each origin within tol.equalPoint() of the other plane.
  bool isCoplanarTo(const KrGePlanarEnt& otherPlnEnt, const KrGeTol& tol = KrGeContext::gTol) const;
  // origin + uAxis, origin, origin + vAxis.
  void get(KrGePoint3d& pntU, KrGePoint3d& org, KrGePoint3d& pntV) const;
  // The origin and the two axes as stored.
  void get(KrGePoint3d& origin, KrGeVector3d& uAxis, KrGeVector3d& vAxis) const;
  // The origin.
  KrGePoint3d pointOnPlane() const;
  // The unit normal.
  KrGeVector3d normal() const;
  // a*x + b*y + c*z + d = 0: (a, b, c) is the unit normal and d = -(normal . origin).
  void getCoefficients(double& a, double& b, double& c, double& d) const;
  // An orthonormal frame of the plane: axis1 is uAxis normalised, axis2 the unit vector in the
  // plane perpendicular to it on the side of vAxis. Degenerate axes fall back to the normal's
  // perpendiculars (KrGeVector3d::perpVector).
  void getCoordSystem(KrGePoint3d& origin, KrGeVector3d& axis1, KrGeVector3d& axis2) const;

  // In-place copy of the frame (origin, normal, axes, reversed flag, envelope); across types it
  // changes nothing and reports "(type() != entImpl.type())".
  KrGePlanarEnt& operator=(const KrGePlanarEnt& src);

protected:
  KrGePlanarEnt();
  // Shallow, as KrGeEntity3d's: for derived classes only.
  KrGePlanarEnt(const KrGePlanarEnt& src);

private:
  KrPlanarEntImpl* impl() const;
};
