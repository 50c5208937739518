#include "KrGePoint3d.h"

#include <cstdlib>
#include <type_traits>

#include "KrGeMatrix3d.h"

static_assert(sizeof(KrGePoint3d) == 3 * sizeof(double), "KrGePoint3d is three doubles");
static_assert(std::is_trivially_copyable<KrGePoint3d>::value, "KrGePoint3d is plain data");

const KrGePoint3d KrGePoint3d::kOrigin(0.0, 0.0, 0.0);

KrGePoint3d& KrGePoint3d::rotateBy(double angle, const KrGeVector3d& axis, const KrGePoint3d& centre) {
  KrGeMatrix3d rotation;
  rotation.setToRotation(angle, axis, centre);
  return *this = rotation * *this;
}

KrGePoint3d& KrGePoint3d::scaleBy(double factor, const KrGePoint3d& centre) {
  KrGeMatrix3d scaling;
  scaling.setToScaling(factor, centre);
  return *this = scaling * *this;
}

