#include "KrGeVector2d.h"

#include <type_traits>

#include "KrGeMatrix2d.h"
#include "algebra/vector_math.h"

static_assert(sizeof(KrGeVector2d) == 2 * sizeof(double), "KrGeVector2d is two doubles");
static_assert(std::is_trivially_copyable<KrGeVector2d>::value, "KrGeVector2d is plain data");

const KrGeVector2d KrGeVector2d::kIdentity(0.0, 0.0);
const KrGeVector2d KrGeVector2d::kXAxis(1.0, 0.0);
const KrGeVector2d KrGeVector2d::kYAxis(0.0, 1.0);

double KrGeVector2d::lengthScaled(double sum) const { return krge::scaledLength(sum, x, y, 0.0); }

KrGeVector2d& KrGeVector2d::setToProduct(const KrGeMatrix2d& matrix, const KrGeVector2d& vector) {
  return *this = matrix * vector;
}

KrGeVector2d& KrGeVector2d::transformBy(const KrGeMatrix2d& matrix) { return *this = matrix * *this; }

// On the axes the angle is returned exactly rather than through atan2, so that quarter turns
// compare equal to the constants.
double KrGeVector2d::angle() const {
  if (y == 0.0) {
    if (x > 0.0) return 0.0;
    if (x < 0.0) return krge::kPi;
    if (x == 0.0) return 0.0;
  }
  if (x == 0.0) {
    if (y > 0.0) return krge::kHalfPi;
    if (y < 0.0) return 3.0 * krge::kHalfPi;
  }
  const double direction = std::atan2(y, x);
  return direction < 0.0 ? krge::belowTwoPi(direction + krge::kTwoPi) : direction;
}

double KrGeVector2d::angleTo(const KrGeVector2d& v) const {
  const double cosine = v.normal(KrGeContext::gTol).dotProduct(normal(KrGeContext::gTol));
  if (cosine >= 1.0) return 0.0;
  if (cosine > -1.0) return std::acos(cosine);
  return krge::kPi;
}

KrGeVector2d& KrGeVector2d::normalize(const KrGeTol& tol, KrGe::ErrorCondition& status) {
  (void)tol;  // the fixed 1e-20 floor decides, not the tolerance
  const double len = length();
  if (!(len > 1e-20)) {
    status = KrGe::k0This;
    return *this;
  }
  status = KrGe::kOk;
  x /= len;
  y /= len;
  return *this;
}

KrGeVector2d& KrGeVector2d::normalize(const KrGeTol& tol) {
  KrGe::ErrorCondition status = KrGe::kOk;
  return normalize(tol, status);
}

KrGeVector2d KrGeVector2d::normal(const KrGeTol& tol) const {
  KrGeVector2d copy(*this);
  return copy.normalize(tol);
}

bool KrGeVector2d::isPerpendicularTo(const KrGeVector2d& v, const KrGeTol& tol) const {
  return std::fabs(dotProduct(v)) <= tol.equalVector();
}

bool KrGeVector2d::isPerpendicularTo(const KrGeVector2d& v, const KrGeTol& tol,
                                     KrGe::ErrorCondition& status) const {
  return krge::perpendicularByUnits(*this, v, tol, status);
}

namespace {

// The 2D direction tests call a vector of length <= equalVector directionless (root taken):
// status 1 for this one, 2 for the argument, and the test answers true. Otherwise status 0.
bool hasZeroLength(const KrGeVector2d& self, const KrGeVector2d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) {
  status = self.length() <= tol.equalVector() ? KrGe::k0This
           : v.length() <= tol.equalVector()  ? KrGe::k0Arg1
                                               : KrGe::kOk;
  return status != KrGe::kOk;
}

}  // namespace

bool KrGeVector2d::isParallelTo(const KrGeVector2d& v, const KrGeTol& tol, KrGe::ErrorCondition& status) const {
  if (hasZeroLength(*this, v, tol, status)) return true;
  const KrGeVector2d a = normal(tol);
  const KrGeVector2d b = v.normal(tol);
  return (a - b).length() <= tol.equalVector() || (a + b).length() <= tol.equalVector();
}

bool KrGeVector2d::isParallelTo(const KrGeVector2d& v, const KrGeTol& tol) const {
  KrGe::ErrorCondition status = KrGe::kOk;
  return isParallelTo(v, tol, status);
}

bool KrGeVector2d::isCodirectionalTo(const KrGeVector2d& v, const KrGeTol& tol,
                                     KrGe::ErrorCondition& status) const {
  if (hasZeroLength(*this, v, tol, status)) return true;
  return normal(tol).isEqualTo(v.normal(tol), tol);
}

bool KrGeVector2d::isCodirectionalTo(const KrGeVector2d& v, const KrGeTol& tol) const {
  KrGe::ErrorCondition status = KrGe::kOk;
  return isCodirectionalTo(v, tol, status);
}

KrGeVector2d& KrGeVector2d::rotateBy(double angleValue) {
  KrGeMatrix2d rotation;
  rotation.setToRotation(angleValue, KrGePoint2d::kOrigin);
  return *this = rotation * *this;
}

KrGeVector2d& KrGeVector2d::mirror(const KrGeVector2d& lineDirection) {
  const KrGeVector2d n = lineDirection.normal(KrGeContext::gTol);
  const double d = dotProduct(lineDirection);
  return *this = ((n * (2.0 * d) / lineDirection.length()) - *this) * lineDirection.dotProduct(lineDirection);
}

KrGeVector2d::operator KrGeMatrix2d() const {
  KrGeMatrix2d result;
  return result.setToTranslation(*this);
}
