// The circular arc in 3D space; a full circle when its sweep is 2 pi.
#pragma once

#include "KrGe.h"
#include "KrGeCurve3d.h"

class KrCircArc3dImpl;

// Representation: centre, unit normal, unit reference vector perpendicular to the normal, radius
// (never negative), start angle and sweep (0 <= sweep <= 2 pi). The parameter is the angle theta
// in radians, measured counter-clockwise about the normal from the reference vector:
//   point(theta) = center + radius * (cos theta * refVec + sin theta * (normal x refVec)),
// over [startAng, startAng + sweep]. type() is kCircArc3d; isKindOf is true for kCircArc3d,
// kCurve3d and kEntity3d.
//
// Degenerate input is repaired, never refused, with a warning naming the fallback (warnings can
// be silenced with KrsSetWarningsEnabled(false)); zero-length tests use KrGeContext::gTol.
class KRGEL_API KrGeCircArc3d : public KrGeCurve3d {
public:
  // The unit circle in the XY plane: centre origin, normal +Z, refVec +X, full sweep.
  KrGeCircArc3d();
  KrGeCircArc3d(const KrGeCircArc3d& arc);
  // set(center, normal, radius): a full circle.
  KrGeCircArc3d(const KrGePoint3d& center, const KrGeVector3d& normal, double radius);
  // set(center, normal, refVec, radius, startAngle, endAngle).
  KrGeCircArc3d(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec, double radius,
                double startAngle, double endAngle);
  // set(point1, point2, point3): the arc from point1 through point2 to point3.
  KrGeCircArc3d(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3);

  using KrGeCurve3d::operator=;
  KrGeCircArc3d& operator=(const KrGeCircArc3d& arc);

  // The point of the arc nearest to the planar entity, and the matching point on the plane
  // (pointOnPlane).
  KrGePoint3d closestPointToPlane(const KrGePlanarEnt& plane, KrGePoint3d& pointOnPlane,
                                  const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc meets the linear entity (within their ranges), at most two; numInt
  // receives the count, a tangency is one point. True when there is any.
  bool intersectWith(const KrGeLinearEnt3d& line, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the arc meets the planar entity, at most two. An arc lying in the plane
  // gives no points.
  bool intersectWith(const KrGePlanarEnt& plane, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // The points where the two arcs meet (within both ranges), at most two; coincident arcs give
  // no points.
  bool intersectWith(const KrGeCircArc3d& arc, int& numInt, KrGePoint3d& p1, KrGePoint3d& p2,
                     const KrGeTol& tol = KrGeContext::gTol) const;
  // Not provided: the first call reports the notice and the not-implemented assertion; numInt is
  // 0, the points are the origin and the answer false.
  bool projIntersectWith(const KrGeLinearEnt3d& line, const KrGeVector3d& projDir, int& numInt,
                         KrGePoint3d& pntOnArc1, KrGePoint3d& pntOnArc2, KrGePoint3d& pntOnLine1,
                         KrGePoint3d& pntOnLine2, const KrGeTol& tol = KrGeContext::gTol) const;
  // The tangent line of the arc at a point of the arc.
  bool tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol = KrGeContext::gTol) const;
  bool tangent(const KrGePoint3d& point, KrGeLine3d& line, const KrGeTol& tol, KrGe::ErrorCondition& status) const;
  // Whether the point lies inside the circle (the disc of the full circle).
  bool isInside(const KrGePoint3d& point, const KrGeTol& tol = KrGeContext::gTol) const;

  KrGePoint3d center() const;
  double radius() const;
  double startAng() const;
  // startAng() + sweep.
  double endAng() const;
  KrGeVector3d normal() const;
  KrGeVector3d refVec() const;
  // The plane through the centre with the arc's normal.
  void getPlane(KrGePlane& plane) const;
  KrGePoint3d startPoint() const;
  KrGePoint3d endPoint() const;

  // Replaces the centre only.
  KrGeCircArc3d& setCenter(const KrGePoint3d& center);
  // Replaces the radius.
  KrGeCircArc3d& setRadius(double radius);
  // startAng = startAngle and the sweep endAngle - startAngle normalised into [0, 2 pi].
  KrGeCircArc3d& setAngles(double startAngle, double endAngle);
  // refVec keeps its direction; the normal is made perpendicular to it.
  KrGeCircArc3d& setAxes(const KrGeVector3d& normal, const KrGeVector3d& refVec);
  // The full circle about `normal`.
  KrGeCircArc3d& set(const KrGePoint3d& center, const KrGeVector3d& normal, double radius);
  // Centre, setAxes(normal, refVec), radius, setAngles(startAngle, endAngle).
  KrGeCircArc3d& set(const KrGePoint3d& center, const KrGeVector3d& normal, const KrGeVector3d& refVec,
                     double radius, double startAngle, double endAngle);
  // The arc from point1 through point2 to point3.
  KrGeCircArc3d& set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3);
  KrGeCircArc3d& set(const KrGePoint3d& point1, const KrGePoint3d& point2, const KrGePoint3d& point3,
                     KrGe::ErrorCondition& status);
  // The arc of the given radius tangent to both curves; param1 and param2 receive the tangency
  // parameters on them.
  KrGeCircArc3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double radius, double& param1,
                     double& param2, bool& success);
  // The arc tangent to three lines.
  KrGeCircArc3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeCurve3d& curve3,
                     double& param1, double& param2, double& param3, bool& success);

private:
  KrCircArc3dImpl* impl() const;
};
