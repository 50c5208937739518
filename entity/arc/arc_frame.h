// The geometry of a circular arc as plain data, for the stateless maths of arcs and of the
// relations between arcs and other kinds.
#pragma once

#include <cmath>

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"

// point(theta) = center + radius * (cos theta * refVec + sin theta * (normal x refVec)) for theta
// in [startAng, startAng + sweep]. normal and refVec are unit and perpendicular.
struct KrArcFrame {
  KrGePoint3d center;
  KrGeVector3d normal = KrGeVector3d::kZAxis;
  KrGeVector3d refVec = KrGeVector3d::kXAxis;
  double radius = 1.0;
  double startAng = 0.0;
  double sweep = 6.283185307179586;

  // The in-plane axis at angle pi/2.
  KrGeVector3d yAxis() const { return normal.crossProduct(refVec); }
  double endAng() const { return startAng + sweep; }
  KrGePoint3d pointAt(double angle) const {
    const KrGeVector3d y = yAxis();
    const double c = std::cos(angle) * radius;
    const double s = std::sin(angle) * radius;
    return KrGePoint3d(center.x + c * refVec.x + s * y.x, center.y + c * refVec.y + s * y.y,
                       center.z + c * refVec.z + s * y.z);
  }
};
