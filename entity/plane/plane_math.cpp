#include "entity/plane/plane_math.h"

#include <cmath>

#include "KrGeContext.h"

namespace krplane {

// Gram system [U.U U.V; U.V V.V] (u, v) = (U.w, V.w), solved by Cramer's rule. Its determinant
// is |U|^2 |V|^2 sin^2 of the angle between the axes, so the relative test below is a test on
// that angle alone, independent of the axes' lengths.
KrGePoint2d paramsInFrame(const KrGeVector3d& offset, const KrGeVector3d& uAxis, const KrGeVector3d& vAxis) {
  constexpr double kMinSineSqrd = 1e-28;
  const double uu = uAxis.dotProduct(uAxis);
  const double uv = uAxis.dotProduct(vAxis);
  const double vv = vAxis.dotProduct(vAxis);
  const double uw = uAxis.dotProduct(offset);
  const double vw = vAxis.dotProduct(offset);
  const double det = uu * vv - uv * uv;
  if (det > kMinSineSqrd * uu * vv) return KrGePoint2d((vv * uw - uv * vw) / det, (uu * vw - uv * uw) / det);
  if (uu >= vv && uu > 0.0) return KrGePoint2d(uw / uu, 0.0);
  if (vv > 0.0) return KrGePoint2d(0.0, vw / vv);
  return KrGePoint2d(0.0, 0.0);
}

// axis2 = normal x axis1 is orthogonal to axis1 to the last bit even when U and V are nearly
// parallel (where Gram-Schmidt would lose orthogonality); its sign is taken from V. Without a
// normal, Gram-Schmidt on (U, V) gives the in-plane direction.
void orthonormalAxes(const KrGeVector3d& uAxis, const KrGeVector3d& vAxis, const KrGeVector3d& normal,
                     KrGeVector3d& axis1, KrGeVector3d& axis2) {
  const KrGeTol& tol = KrGeContext::gTol;
  axis1 = uAxis.normal(tol);
  if (axis1.isZeroLength(tol)) axis1 = normal.isZeroLength(tol) ? KrGeVector3d::kXAxis : normal.perpVector();
  axis2 = normal.crossProduct(axis1).normal(tol);
  if (axis2.dotProduct(vAxis) < 0.0) axis2.negate();
  if (axis2.isZeroLength(tol)) axis2 = (vAxis - axis1 * vAxis.dotProduct(axis1)).normal(tol);
  if (axis2.isZeroLength(tol)) axis2 = axis1.perpVector();
}

bool intersectPlanes(const KrGePoint3d& origin1, const KrGeVector3d& normal1, const KrGePoint3d& origin2,
                     const KrGeVector3d& normal2, const KrGeTol& tol, KrGePoint3d& linePoint,
                     KrGeVector3d& lineDirection) {
  if (normal1.isParallelTo(normal2, tol)) return false;
  const KrGeVector3d direction = normal1.crossProduct(normal2).normal(KrGeContext::gTol);
  const KrGeVector3d across = normal1.crossProduct(direction).normal(KrGeContext::gTol);
  const double denominator = across.dotProduct(normal2);
  if (!(std::fabs(denominator) > tol.equalVector())) return false;
  linePoint = origin1 + across * (-(origin1 - origin2).dotProduct(normal2) / denominator);
  lineDirection = direction;
  return true;
}

}  // namespace krplane
