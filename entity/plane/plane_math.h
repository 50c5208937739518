// Stateless plane maths shared by the planar implementation: frames, parameters and the common
// line of two planes.
#pragma once

#include "KrGePoint2d.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

namespace krplane {

// Coordinates (u, v) of the in-plane part of `offset` in the (not necessarily orthogonal) frame
// of the axes: the least-squares solution of u*uAxis + v*vAxis = offset through the 2x2 Gram
// system. Parallel or zero axes (sine of their angle below 1e-14) fall back to the projection
// on the longer axis, the other coordinate 0.
KrGePoint2d paramsInFrame(const KrGeVector3d& offset, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis);

// Orthonormal in-plane axes: axis1 = uAxis normalised, axis2 the unit vector perpendicular to it
// on the side of vAxis. Degenerate axes fall back to perpendiculars of the normal.
void orthonormalAxes(const KrGeVector3d& uAxis, const KrGeVector3d& vAxis, const KrGeVector3d& normal,
                     KrGeVector3d& axis1, KrGeVector3d& axis2);

// The common line of the planes (origin1, normal1) and (origin2, normal2): unit direction
// normal1 x normal2, and the point where the line in plane 1 through origin1, perpendicular to
// that direction, meets plane 2. False when the normals are parallel (chord test with tol) or
// that auxiliary line is parallel to plane 2 (|aux . normal2| <= tol.equalVector()).
bool intersectPlanes(const KrGePoint3d& origin1, const KrGeVector3d& normal1, const KrGePoint3d& origin2,
                     const KrGeVector3d& normal2, const KrGeTol& tol, KrGePoint3d& linePoint,
                     KrGeVector3d& lineDirection);

}  // namespace krplane
