// The geometry of an elliptical arc as plain data, for the stateless maths of ellipses and of the
// relations between ellipses and other kinds.
#pragma once

#include <cmath>

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "entity/arc/arc_frame.h"

constexpr double kKrEllipseTwoPi = 6.283185307179586;

// point(theta) = center + majorRadius cos theta majorAxis + minorRadius sin theta minorAxis for
// theta in [startAng, startAng + sweep]. The axes are unit and perpendicular, majorRadius >=
// minorRadius >= 0, 0 <= sweep <= 2 pi.
struct KrEllipseFrame {
  KrGePoint3d center;
  KrGeVector3d majorAxis = KrGeVector3d::kXAxis;
  KrGeVector3d minorAxis = KrGeVector3d::kYAxis;
  double majorRadius = 1.0;
  double minorRadius = 1.0;
  double startAng = 0.0;
  double sweep = kKrEllipseTwoPi;

  KrGeVector3d normal() const { return majorAxis.crossProduct(minorAxis); }
  double endAng() const { return startAng + sweep; }
  bool isFull() const { return sweep >= kKrEllipseTwoPi; }
  // The point whose eccentric angle has cosine c and sine s.
  KrGePoint3d pointAt(double c, double s) const {
    const double x = c * majorRadius;
    const double y = s * minorRadius;
    return KrGePoint3d(center.x + x * majorAxis.x + y * minorAxis.x, center.y + x * majorAxis.y + y * minorAxis.y,
                       center.z + x * majorAxis.z + y * minorAxis.z);
  }
  KrGePoint3d pointAt(double angle) const { return pointAt(std::cos(angle), std::sin(angle)); }
  // The point at local coordinates (x, y) of the ellipse's plane.
  KrGePoint3d pointOfLocal(double x, double y) const {
    return KrGePoint3d(center.x + x * majorAxis.x + y * minorAxis.x, center.y + x * majorAxis.y + y * minorAxis.y,
                       center.z + x * majorAxis.z + y * minorAxis.z);
  }
  // Coordinates of `point` along the major axis, the minor axis and the normal, from the centre.
  void toLocal(const KrGePoint3d& point, double& x, double& y, double& height) const {
    const KrGeVector3d d = point - center;
    x = d.dotProduct(majorAxis);
    y = d.dotProduct(minorAxis);
    height = d.dotProduct(normal());
  }
};

// Whether `angle`, moved by whole turns, lies in [startAng - slack, startAng + sweep + slack].
inline bool krArcHoldsAngle(double startAng, double sweep, double angle, double slack) {
  double d = angle - startAng;
  d -= kKrEllipseTwoPi * std::floor(d / kKrEllipseTwoPi);
  return d <= sweep + slack || d >= kKrEllipseTwoPi - slack;
}

// `angle` moved by whole turns to the representative nearest to [startAng, startAng + sweep]:
// inside it when it is on the arc, else just after its end or just before its start, whichever
// is nearer.
inline double krArcParamOf(double startAng, double sweep, double angle) {
  double d = angle - startAng;
  d -= kKrEllipseTwoPi * std::floor(d / kKrEllipseTwoPi);
  if (d <= sweep || d - sweep <= kKrEllipseTwoPi - d) return startAng + d;
  return startAng + d - kKrEllipseTwoPi;
}

// A circular arc as the ellipse of equal radii with the same points at the same parameters.
inline KrEllipseFrame krEllipseFrameOf(const KrArcFrame& arc) {
  KrEllipseFrame frame;
  frame.center = arc.center;
  frame.majorAxis = arc.refVec;
  frame.minorAxis = arc.yAxis();
  frame.majorRadius = arc.radius;
  frame.minorRadius = arc.radius;
  frame.startAng = arc.startAng;
  frame.sweep = arc.sweep;
  return frame;
}
