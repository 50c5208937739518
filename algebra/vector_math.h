// Angle constants, range folding and the overflow-safe length shared by the vector classes
// (library-internal).

#include <cmath>

#include "KrGe.h"
#include "KrGeTol.h"

namespace krge {

constexpr double kPi = 3.141592653589793;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kTwoPi = 6.283185307179586;
// The largest double below 2pi: a full-turn angle that rounded up to 2pi stands for it, so
// results promised in [0, 2pi) stay inside the half-open range.
inline double belowTwoPi(double angle) {
  return angle >= kTwoPi ? std::nextafter(kTwoPi, 0.0) : angle;
}

// Length of (x, y, z) for the cases the plain sum of squares cannot represent: the largest
// magnitude is brought into [0.5, 1) by a power of two, which is exact, so the scaled sum
// neither underflows nor overflows and the result equals the true length to rounding.
// `sum` is the plain sum of squares (its NaN marks a NaN component).
inline double scaledLength(double sum, double x, double y, double z) {
  if (sum != sum) return sum;
  const double largest = std::fmax(std::fabs(x), std::fmax(std::fabs(y), std::fabs(z)));
  if (largest == 0.0 || std::isinf(largest)) return largest;
  int exponent = 0;
  std::frexp(largest, &exponent);
  const double sx = std::ldexp(x, -exponent);
  const double sy = std::ldexp(y, -exponent);
  const double sz = std::ldexp(z, -exponent);
  return std::ldexp(std::sqrt(sx * sx + sy * sy + sz * sz), exponent);
}

// The perpendicularity test with a status, alike in 2D and 3D: both vectors are normalised
// with their own class's rule (status 1 when this one fails, 2 when the argument does, and the
// answer is true), then the cosine of the angle between them is compared with equalVector.
template <class Vector>
bool perpendicularByUnits(const Vector& self, const Vector& v, const KrGeTol& tol, KrGe::ErrorCondition& status) {
  Vector a(self);
  Vector b(v);
  a.normalize(tol, status);
  if (status != KrGe::kOk) {
    status = KrGe::k0This;
    return true;
  }
  b.normalize(tol, status);
  if (status != KrGe::kOk) {
    status = KrGe::k0Arg1;
    return true;
  }
  return std::fabs(a.dotProduct(b)) <= tol.equalVector();
}

}  // namespace krge
