// Point, vector and matrix operations that take a plane or a line. They need the entity
// classes, so this file joins the build together with the planes and lines.
#include "KrGeLine3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlanarEnt.h"
#include "KrGePlane.h"
#include "KrGePoint2d.h"
#include "KrGePoint3d.h"
#include "KrGeVector2d.h"
#include "KrGeVector3d.h"
#include "entity/plane/KrPlanarEntImpl.h"

namespace {

// Parallel projection along d onto n . p + dd = 0: p' = p - ((n . p + dd) / (n . d)) d, whose
// linear part is I - d n^T / (n . d) and translation -dd d / (n . d). Rows 0 to 2 only.
void writeProjection(KrGeMatrix3d& m, double a, double b, double c, double d, const KrGeVector3d& direction) {
  const double dx = direction.x, dy = direction.y, dz = direction.z;
  const double denominator = a * dx + b * dy + c * dz;
  m.entry[0][0] = (b * dy + c * dz) / denominator;
  m.entry[0][1] = -b * dx / denominator;
  m.entry[0][2] = -c * dx / denominator;
  m.entry[0][3] = -d * dx / denominator;
  m.entry[1][0] = -a * dy / denominator;
  m.entry[1][1] = (a * dx + c * dz) / denominator;
  m.entry[1][2] = -c * dy / denominator;
  m.entry[1][3] = -d * dy / denominator;
  m.entry[2][0] = -a * dz / denominator;
  m.entry[2][1] = -b * dz / denominator;
  m.entry[2][2] = (a * dx + b * dy) / denominator;
  m.entry[2][3] = -d * dz / denominator;
}

}  // namespace

KrGeVector3d::KrGeVector3d(const KrGePlanarEnt& plane, const KrGeVector2d& vector2d) : x(0.0), y(0.0), z(0.0) {
  set(plane, vector2d);
}

KrGeVector3d& KrGeVector3d::set(const KrGePlanarEnt& plane, const KrGeVector2d& vector2d) {
  KrGePoint3d origin;
  KrGeVector3d axis1;
  KrGeVector3d axis2;
  plane.get(origin, axis1, axis2);
  return *this = axis1 * vector2d.x + axis2 * vector2d.y;
}

KrGeVector2d KrGeVector3d::convert2d(const KrGePlanarEnt& plane) const {
  KrGePoint3d origin;
  KrGeVector3d axis1;
  KrGeVector3d axis2;
  plane.get(origin, axis1, axis2);
  return KrGeVector2d(dotProduct(axis1), dotProduct(axis2));
}

double KrGeVector3d::angleOnPlane(const KrGePlanarEnt& plane) const { return convert2d(plane).angle(); }

// The projection runs even when the direction lies in the plane: the caller reads status 3 and
// gets the non-finite image that the parallel projection gives. The plane through the origin is
// formed as a plane entity would form it (a zero normal becomes +Z with that entity's warning),
// but from its coefficients alone, so that no entity is allocated.
KrGeVector3d KrGeVector3d::project(const KrGeVector3d& planeNormal, const KrGeVector3d& projectDirection,
                                   const KrGeTol& tol, KrGe::ErrorCondition& status) const {
  (void)tol;
  if (projectDirection.isPerpendicularTo(planeNormal, KrGeContext::gTol)) status = KrGe::kPerpendicularArg1Arg2;
  const KrGeVector3d normal = KrPlanarEntImpl::unitNormalOrZ(planeNormal);
  KrGeMatrix3d projection;
  writeProjection(projection, normal.x, normal.y, normal.z, 0.0, projectDirection);
  return projection * *this;
}

KrGeVector3d KrGeVector3d::project(const KrGeVector3d& planeNormal, const KrGeVector3d& projectDirection) const {
  KrGe::ErrorCondition status = KrGe::kOk;
  return project(planeNormal, projectDirection, KrGeContext::gTol, status);
}

KrGePoint3d::KrGePoint3d(const KrGePlanarEnt& plane, const KrGePoint2d& point2d) : x(0.0), y(0.0), z(0.0) {
  set(plane, point2d);
}

KrGePoint3d& KrGePoint3d::set(const KrGePlanarEnt& plane, const KrGePoint2d& point2d) {
  return *this = plane.evalPoint(point2d);
}

KrGePoint2d KrGePoint3d::convert2d(const KrGePlanarEnt& plane) const {
  return plane.paramOf(*this, KrGeContext::gTol);
}

// The line through this point is intersected as a line entity would be, without allocating one.
KrGePoint3d KrGePoint3d::project(const KrGePlanarEnt& plane, const KrGeVector3d& direction) const {
  KrGePoint3d result;
  if (!KrPlanarEntImpl::of(plane).intersectLine(*this, direction, result, true, KrGeContext::gTol))
    result = KrGePoint3d();
  return result;
}

KrGePoint3d KrGePoint3d::orthoProject(const KrGePlanarEnt& plane) const { return project(plane, plane.normal()); }

KrGePoint3d& KrGePoint3d::mirror(const KrGePlane& plane) {
  KrGeMatrix3d mirroring;
  mirroring.setToMirroring(plane);
  return *this = mirroring * *this;
}

KrGeMatrix3d& KrGeMatrix3d::setToPlaneToWorld(const KrGePlane& plane) {
  KrGePoint3d origin;
  KrGeVector3d axis1;
  KrGeVector3d axis2;
  plane.get(origin, axis1, axis2);
  return setCoordSystem(origin, axis1, axis2, plane.normal());
}

KrGeMatrix3d& KrGeMatrix3d::setToWorldToPlane(const KrGePlane& plane) {
  setToPlaneToWorld(plane);
  return invert();
}

KrGeMatrix3d& KrGeMatrix3d::setToMirroring(const KrGePlane& plane) {
  KrGeMatrix3d reflection;
  reflection.entry[2][2] = -1.0;
  KrGeMatrix3d toWorld;
  toWorld.setToPlaneToWorld(plane);
  KrGeMatrix3d toPlane;
  toPlane.setToWorldToPlane(plane);
  setToProduct(toWorld, reflection);
  return postMultBy(toPlane);
}

KrGeMatrix3d& KrGeMatrix3d::setToMirroring(const KrGeLine3d& line) {
  return setToRotation(3.141592653589793, line.direction(), line.pointOnLine());
}

KrGeMatrix3d& KrGeMatrix3d::setToProjection(const KrGePlane& plane, const KrGeVector3d& direction) {
  double a = 0.0, b = 0.0, c = 0.0, d = 0.0;
  plane.getCoefficients(a, b, c, d);
  writeProjection(*this, a, b, c, d, direction);
  return *this;
}

KrGeMatrix3d KrGeMatrix3d::projection(const KrGePlane& plane, const KrGeVector3d& direction) {
  KrGeMatrix3d result;
  return result.setToProjection(plane, direction);
}

KrGeMatrix3d KrGeMatrix3d::mirroring(const KrGePlane& plane) {
  KrGeMatrix3d result;
  return result.setToMirroring(plane);
}

KrGeMatrix3d KrGeMatrix3d::mirroring(const KrGeLine3d& line) {
  KrGeMatrix3d result;
  return result.setToMirroring(line);
}

KrGeMatrix3d KrGeMatrix3d::planeToWorld(const KrGePlane& plane) {
  KrGeMatrix3d result;
  return result.setToPlaneToWorld(plane);
}

KrGeMatrix3d KrGeMatrix3d::worldToPlane(const KrGePlane& plane) {
  KrGeMatrix3d result;
  return result.setToWorldToPlane(plane);
}
