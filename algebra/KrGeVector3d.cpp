#include "KrGeVector3d.h"

#include <cstdlib>
#include <type_traits>

#include "KrGeMatrix3d.h"
#include "KrsDiagnostics.h"
#include "algebra/vector_math.h"

static_assert(sizeof(KrGeVector3d) == 3 * sizeof(double), "KrGeVector3d is three doubles");
static_assert(std::is_trivially_copyable<KrGeVector3d>::value, "KrGeVector3d is plain data");

const KrGeVector3d KrGeVector3d::kIdentity(0.0, 0.0, 0.0);
const KrGeVector3d KrGeVector3d::kXAxis(1.0, 0.0, 0.0);
const KrGeVector3d KrGeVector3d::kYAxis(0.0, 1.0, 0.0);
const KrGeVector3d KrGeVector3d::kZAxis(0.0, 0.0, 1.0);

double KrGeVector3d::lengthScaled(double sum) const { return krge::scaledLength(sum, x, y, z); }

unsigned KrGeVector3d::largestElement() const {
  unsigned index = 0;
  double largest = std::fabs(x);
  if (std::fabs(y) > largest) {
    index = 1;
    largest = std::fabs(y);
  }
  if (std::fabs(z) > largest) index = 2;
  return index;
}

bool KrGeVector3d::isUnitLength(const KrGeTol& tol) const {
  return std::fabs(length() - 1.0) <= tol.equalVector();
}

KrGeVector3d& KrGeVector3d::normalize(const KrGeTol& tol, KrGe::ErrorCondition& status) {
  (void)tol;  // only an exact zero length fails: tiny vectors still have a direction
  const double len = length();
  if (len == 0.0) {
    status = KrGe::k0This;
    return *this;
  }
  status = KrGe::kOk;
  if (len < 2.2250738585072014e-308) {
    // A subnormal length carries only a few significant bits; scaling the components by an
    // exact power of two first keeps the quotient accurate to rounding.
    x = std::ldexp(x, 600);
    y = std::ldexp(y, 600);
    z = std::ldexp(z, 600);
    const double scaledLength = length();
    x /= scaledLength;
    y /= scaledLength;
    z /= scaledLength;
    return *this;
  }
  x /= len;
  y /= len;
  z /= len;
  return *this;
}

KrGeVector3d& KrGeVector3d::normalize(const KrGeTol& tol) {
  KrGe::ErrorCondition status = KrGe::kOk;
  return normalize(tol, status);
}

KrGeVector3d KrGeVector3d::normal(const KrGeTol& tol) const {
  KrGeVector3d copy(*this);
  return copy.normalize(tol);
}

bool KrGeVector3d::isPerpendicularTo(const KrGeVector3d& v, const KrGeTol& tol,
                                     KrGe::ErrorCondition& status) const {
  return krge::perpendicularByUnits(*this, v, tol, status);
}

bool KrGeVector3d::isPerpendicularTo(const KrGeVector3d& v, const KrGeTol& tol) const {
  KrGe::ErrorCondition status = KrGe::kOk;
  return isPerpendicularTo(v, tol, status);
}

namespace {

// Directions are compared as unit vectors: |a - b| is the chord between them on the unit
// sphere, 2 sin(angle / 2), about the angle itself for the small tolerances in use. A vector
// whose components are all exactly zero has no direction and passes, with its status.
bool sameDirection(const KrGeVector3d& self, const KrGeVector3d& v, const KrGeTol& tol,
                   KrGe::ErrorCondition& status, bool allowOpposite) {
  status = KrGe::kOk;
  if (self.x == 0.0 && self.y == 0.0 && self.z == 0.0) {
    status = KrGe::k0This;
    return true;
  }
  if (v.x == 0.0 && v.y == 0.0 && v.z == 0.0) {
    status = KrGe::k0Arg1;
    return true;
  }
  const KrGeVector3d a = self.normal(KrGeContext::gTol);
  const KrGeVector3d b = v.normal(KrGeContext::gTol);
  return (a - b).length() <= tol.equalVector() || (allowOpposite && (a + b).length() <= tol.equalVector());
}

}  // namespace

bool KrGeVector3d::isParallelTo(const KrGeVector3d& v, const KrGeTol& tol,
                                KrGe::ErrorCondition& status) const {
  return sameDirection(*this, v, tol, status, true);
}

bool KrGeVector3d::isParallelTo(const KrGeVector3d& v, const KrGeTol& tol) const {
  KrGe::ErrorCondition status = KrGe::kOk;
  return isParallelTo(v, tol, status);
}

bool KrGeVector3d::isCodirectionalTo(const KrGeVector3d& v, const KrGeTol& tol,
                                     KrGe::ErrorCondition& status) const {
  return sameDirection(*this, v, tol, status, false);
}

bool KrGeVector3d::isCodirectionalTo(const KrGeVector3d& v, const KrGeTol& tol) const {
  KrGe::ErrorCondition status = KrGe::kOk;
  return isCodirectionalTo(v, tol, status);
}

// acos has an unbounded derivative at +-1, so near 0 and pi the angle comes from the sine,
// |a x b| of the unit vectors, whose relative error stays at a few ulps. The switch at
// |cos| = 0.9 keeps both branches well conditioned. When the plain cosine quotient is not
// representable (lengths whose product or dot product over- or underflows) the cosine is taken
// from the unit vectors instead.
double KrGeVector3d::angleTo(const KrGeVector3d& v) const {
  const double lengthA = length();
  const double lengthB = v.length();
  if (lengthA == 0.0 || lengthB == 0.0) return 0.0;
  const KrGeVector3d a = *this / lengthA;
  const KrGeVector3d b = v / lengthB;
  const double lengths = lengthA * lengthB;
  const double dot = dotProduct(v);
  double cosine = dot / lengths;
  if (!(lengths >= 2.2250738585072014e-308 && std::isfinite(lengths) && std::isfinite(dot)))
    cosine = a.dotProduct(b);
  if (std::fabs(cosine) <= 0.9) return std::acos(cosine);
  const double sine = a.crossProduct(b).length();
  return cosine >= 0.0 ? std::asin(sine) : krge::kPi - std::asin(sine);
}

double KrGeVector3d::angleTo(const KrGeVector3d& v, const KrGeVector3d& reference) const {
  const double angle = angleTo(v);
  if (crossProduct(v).dotProduct(reference) < -1e-10) return krge::belowTwoPi(krge::kTwoPi - angle);
  return angle;
}

KrGeVector3d KrGeVector3d::orthoProject(const KrGeVector3d& planeNormal) const {
  const KrGeVector3d n = planeNormal.normal(KrGeContext::gTol);
  return *this - n * dotProduct(n);
}

KrGeVector3d KrGeVector3d::orthoProject(const KrGeVector3d& planeNormal, const KrGeTol& tol,
                                        KrGe::ErrorCondition& status) const {
  KrGeVector3d n(planeNormal);
  n.normalize(tol, status);
  if (status != KrGe::kOk) return *this;
  return *this - n * dotProduct(n);
}

KrGeVector3d KrGeVector3d::perpVector() const {
  KrGeVector3d result;
  KrGeContext::gOrthoVector(*this, result);
  return result;
}

KrGeVector3d& KrGeVector3d::rotateBy(double angle, const KrGeVector3d& axis) {
  KrGeMatrix3d rotation;
  rotation.setToRotation(angle, axis, KrGePoint3d::kOrigin);
  return *this = rotation * *this;
}

KrGeVector3d& KrGeVector3d::mirror(const KrGeVector3d& planeNormal) {
  const KrGeVector3d n = planeNormal.normal(KrGeContext::gTol);
  return *this -= n * (2.0 * dotProduct(n));
}

KrGeMatrix3d KrGeVector3d::rotateTo(const KrGeVector3d& target, const KrGeVector3d& axis) const {
  KrGeMatrix3d result;
  const bool axisGiven = !axis.isEqualTo(kIdentity, KrGeContext::gTol);
  // Only the target is checked against the given axis: this vector is rotated about the axis
  // whatever its own inclination.
  if (axisGiven && !target.isPerpendicularTo(axis, KrGeContext::gTol)) {
    KRS_WARN_AT("not correct input data", "Vector3d", 256);
    return result;
  }
  if (isZeroLength(KrGeContext::gTol) || target.isZeroLength(KrGeContext::gTol)) {
    KRS_WARN_AT("not correct input data", "Vector3d", 262);
    return result;
  }
  KrGeVector3d rotationAxis;
  if (axisGiven)
    rotationAxis = axis;
  else if (isParallelTo(target, KrGeContext::gTol))
    rotationAxis = target.perpVector();
  else
    rotationAxis = crossProduct(target);
  result.setToRotation(angleTo(target, rotationAxis), rotationAxis, KrGePoint3d::kOrigin);
  return result;
}

KrGeVector3d::operator KrGeMatrix3d() const {
  KrGeMatrix3d result;
  result.setToTranslation(*this);
  return result;
}

