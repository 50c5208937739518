#include "KrGeMatrix3d.h"

#include <cmath>
#include <type_traits>

#include "algebra/ortho_vector.h"

static_assert(sizeof(KrGeMatrix3d) == 16 * sizeof(double), "KrGeMatrix3d is sixteen doubles");
static_assert(std::is_trivially_copyable<KrGeMatrix3d>::value, "KrGeMatrix3d is plain data");

const KrGeMatrix3d KrGeMatrix3d::kIdentity;

namespace {

KrGeVector3d column(const KrGeMatrix3d& m, unsigned index) {
  return KrGeVector3d(m.entry[0][index], m.entry[1][index], m.entry[2][index]);
}

}  // namespace

KrGeMatrix3d& KrGeMatrix3d::setToIdentity() {
  *this = KrGeMatrix3d();
  return *this;
}

KrGeMatrix3d& KrGeMatrix3d::setCoordSystem(const KrGePoint3d& origin, const KrGeVector3d& xAxis,
                                           const KrGeVector3d& yAxis, const KrGeVector3d& zAxis) {
  for (unsigned row = 0; row < 3; ++row) {
    entry[row][0] = xAxis[row];
    entry[row][1] = yAxis[row];
    entry[row][2] = zAxis[row];
    entry[row][3] = origin[row];
  }
  entry[3][0] = 0.0;
  entry[3][1] = 0.0;
  entry[3][2] = 0.0;
  entry[3][3] = 1.0;
  return *this;
}

void KrGeMatrix3d::getCoordSystem(KrGePoint3d& origin, KrGeVector3d& xAxis, KrGeVector3d& yAxis,
                                  KrGeVector3d& zAxis) const {
  xAxis = column(*this, 0);
  yAxis = column(*this, 1);
  zAxis = column(*this, 2);
  origin.set(entry[0][3], entry[1][3], entry[2][3]);
}

KrGeMatrix3d& KrGeMatrix3d::setToTranslation(const KrGeVector3d& v) {
  setToIdentity();
  return setTranslation(v);
}

KrGeMatrix3d& KrGeMatrix3d::setToScaling(double scaleFactor, const KrGePoint3d& center) {
  setToIdentity();
  for (unsigned i = 0; i < 3; ++i) {
    entry[i][i] = scaleFactor;
    entry[i][3] = center[i] - scaleFactor * center[i];
  }
  return *this;
}

KrGeMatrix3d& KrGeMatrix3d::setToProduct(const KrGeMatrix3d& a, const KrGeMatrix3d& b) {
  double product[4][4];
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j)
      product[i][j] = a.entry[i][0] * b.entry[0][j] + a.entry[i][1] * b.entry[1][j] +
                      a.entry[i][2] * b.entry[2][j] + a.entry[i][3] * b.entry[3][j];
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j) entry[i][j] = product[i][j];
  return *this;
}

KrGeMatrix3d KrGeMatrix3d::transpose() const {
  KrGeMatrix3d result;
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j) result.entry[i][j] = entry[j][i];
  return result;
}

KrGeMatrix3d& KrGeMatrix3d::transposeIt() { return *this = transpose(); }

bool KrGeMatrix3d::isEqualTo(const KrGeMatrix3d& m, const KrGeTol& tol) const {
  for (unsigned c = 0; c < 4; ++c)
    if (!column(*this, c).isEqualTo(column(m, c), tol)) return false;
  return true;
}

double KrGeMatrix3d::det() const {
  const double(&e)[4][4] = entry;
  return e[0][0] * e[1][1] * e[2][2] + e[0][1] * e[1][2] * e[2][0] + e[0][2] * e[1][0] * e[2][1] -
         e[0][2] * e[1][1] * e[2][0] - e[0][1] * e[1][0] * e[2][2] - e[0][0] * e[1][2] * e[2][1];
}

double KrGeMatrix3d::norm() const {
  double largest = 0.0;
  for (unsigned i = 0; i < 3; ++i)
    for (unsigned j = 0; j < 3; ++j) {
      const double magnitude = std::fabs(entry[i][j]);
      if (magnitude != magnitude) return magnitude;
      if (magnitude > largest) largest = magnitude;
    }
  return largest;
}

double KrGeMatrix3d::scale() const {
  double largest = column(*this, 0).length();
  for (unsigned c = 1; c < 3; ++c) {
    const double len = column(*this, c).length();
    if (len >= largest || len != len) largest = len;
  }
  return largest;
}

bool KrGeMatrix3d::isSingular(const KrGeTol& tol) const {
  const KrGeVector3d x = column(*this, 0), y = column(*this, 1), z = column(*this, 2);
  if (x.isZeroLength(tol) || y.isZeroLength(tol) || z.isZeroLength(tol)) return true;
  return x.isParallelTo(y, tol) || y.isParallelTo(z, tol) || z.isParallelTo(x, tol);
}

bool KrGeMatrix3d::isScaledOrtho(const KrGeTol& tol) const {
  const KrGeVector3d x = column(*this, 0), y = column(*this, 1), z = column(*this, 2);
  const double e = tol.equalVector();
  if (!(x.length() > e && y.length() > e && z.length() > e)) return false;
  return x.isPerpendicularTo(y, tol) && y.isPerpendicularTo(z, tol) && z.isPerpendicularTo(x, tol);
}

bool KrGeMatrix3d::isUniScaledOrtho(const KrGeTol& tol) const {
  const KrGeVector3d x = column(*this, 0), y = column(*this, 1), z = column(*this, 2);
  const double e = tol.equalVector();
  const double lx = x.length(), ly = y.length(), lz = z.length();
  if (!(lx > e && ly > e && lz > e)) return false;
  if (!(std::fabs(lx - ly) <= e && std::fabs(lx - lz) <= e)) return false;
  return x.isPerpendicularTo(y, tol) && y.isPerpendicularTo(z, tol) && z.isPerpendicularTo(x, tol);
}

// Adjugate inverse of the 3x3 block: inv = adj(A) / det(A), with adj(A)[i][j] the cofactor
// C[j][i]. The translation of the inverse map is -inv * t, written out with the same cofactors
// and divided by the determinant once: -(c_i0 tx + c_i1 ty + c_i2 tz) / det. On integer entries
// the cofactors and their sum are exact, so each translation entry is one correctly rounded
// quotient. Everything is computed into locals first, so result may be this matrix.
bool KrGeMatrix3d::inverse(KrGeMatrix3d& result, const KrGeTol& tol) const {
  (void)tol;
  const double(&e)[4][4] = entry;
  const double determinant = det();
  const double inverseDet = 1.0 / determinant;
  const double c00 = e[1][1] * e[2][2] - e[1][2] * e[2][1];
  const double c01 = e[0][2] * e[2][1] - e[0][1] * e[2][2];
  const double c02 = e[0][1] * e[1][2] - e[0][2] * e[1][1];
  const double c10 = e[1][2] * e[2][0] - e[1][0] * e[2][2];
  const double c11 = e[0][0] * e[2][2] - e[0][2] * e[2][0];
  const double c12 = e[0][2] * e[1][0] - e[0][0] * e[1][2];
  const double c20 = e[1][0] * e[2][1] - e[1][1] * e[2][0];
  const double c21 = e[0][1] * e[2][0] - e[0][0] * e[2][1];
  const double c22 = e[0][0] * e[1][1] - e[0][1] * e[1][0];
  const double tx = e[0][3], ty = e[1][3], tz = e[2][3];
  double(&r)[4][4] = result.entry;
  r[0][0] = c00 * inverseDet; r[0][1] = c01 * inverseDet; r[0][2] = c02 * inverseDet;
  r[1][0] = c10 * inverseDet; r[1][1] = c11 * inverseDet; r[1][2] = c12 * inverseDet;
  r[2][0] = c20 * inverseDet; r[2][1] = c21 * inverseDet; r[2][2] = c22 * inverseDet;
  r[0][3] = -(c00 * tx + c01 * ty + c02 * tz) / determinant;
  r[1][3] = -(c10 * tx + c11 * ty + c12 * tz) / determinant;
  r[2][3] = -(c20 * tx + c21 * ty + c22 * tz) / determinant;
  return true;
}

KrGeMatrix3d KrGeMatrix3d::inverse() const {
  KrGeMatrix3d result(*this);
  inverse(result, KrGeContext::gTol);
  return result;
}

KrGeMatrix3d& KrGeMatrix3d::invert() {
  inverse(*this, KrGeContext::gTol);
  return *this;
}

KrGeMatrix3d& KrGeMatrix3d::setToPlaneToWorld(const KrGeVector3d& normal) {
  const KrGeVector3d z = normal.normal(KrGeContext::gTol);
  const KrGeVector3d x = z.perpVector();
  const KrGeVector3d y = z.crossProduct(x);
  return setCoordSystem(KrGePoint3d::kOrigin, x, y, z);
}

KrGeMatrix3d& KrGeMatrix3d::setToWorldToPlane(const KrGeVector3d& normal) {
  setToPlaneToWorld(normal);
  return invert();
}

// The rotation about an arbitrary axis is the rotation R about Z seen from a frame whose Z is
// the axis: M R M^-1 with M = T(center) * planeToWorld(axis). Every factor has the affine
// fourth row, so the products are taken in the 3x4 form: T(center) * planeToWorld is the frame
// with its origin at center, M R only mixes M's first two columns, and M^-1 is the adjugate
// inverse (rows y x z, z x x, x x y over det). With the default arbitrary-axis rule the frame's
// X is taken straight from the axis, (-a.y, a.x, 0) or (a.z, 0, -a.x) normalised, which is that
// rule without its redundant normalisation of the already unit Z: both square roots then run
// side by side instead of in a chain, and the whole frame stays in registers.
KrGeMatrix3d& KrGeMatrix3d::setToRotation(double angle, const KrGeVector3d& axis, const KrGePoint3d& center) {
  setToIdentity();
  if (axis.isZeroLength(KrGeContext::gTol)) return *this;
  if (axis.isEqualTo(KrGeVector3d::kZAxis, KrGeContext::gTol)) {
    // T(c) * R * T(-c): the block is R and the translation c - R c.
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    entry[0][0] = cosine;
    entry[0][1] = -sine;
    entry[1][0] = sine;
    entry[1][1] = cosine;
    for (unsigned i = 0; i < 3; ++i)
      entry[i][3] = entry[i][0] * -center.x + entry[i][1] * -center.y + entry[i][2] * -center.z + center[i];
    return *this;
  }
  const double axisLength = axis.length();
  const KrGeVector3d z(axis.x / axisLength, axis.y / axisLength, axis.z / axisLength);
  KrGeVector3d x;
  if (KrGeContext::gOrthoVector == krge::defaultOrthoVector) {
    if (std::fabs(z.x) < krge::kArbitraryAxisBound && std::fabs(z.y) < krge::kArbitraryAxisBound)
      x.set(axis.z, 0.0, -axis.x);
    else
      x.set(-axis.y, axis.x, 0.0);
    const double xLength = x.length();
    x.set(x.x / xLength, x.y / xLength, x.z / xLength);
  } else {
    KrGeContext::gOrthoVector(z, x);
  }
  const KrGeVector3d y = z.crossProduct(x);
  // Adjugate of the frame block [x y z]; its rows are y x z, z x x and x x y. The product with
  // M R is taken on the adjugate and scaled by 1/det at the end, so the division runs beside
  // the products instead of before them.
  const KrGeVector3d row0 = y.crossProduct(z), row1 = z.crossProduct(x), row2 = x.crossProduct(y);
  const double determinant = x.x * y.y * z.z + y.x * z.y * x.z + z.x * x.y * y.z -
                             z.x * y.y * x.z - y.x * x.y * z.z - x.x * z.y * y.z;
  const double inverseDet = 1.0 / determinant;
  const KrGeVector3d c = center.asVector();
  const double t0 = -row0.dotProduct(c), t1 = -row1.dotProduct(c), t2 = -row2.dotProduct(c);
  // The angle's sine and cosine are taken last so that they overlap the divisions above.
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  for (unsigned i = 0; i < 3; ++i) {
    const double m0 = x[i] * cosine + y[i] * sine;  // column 0 of M R
    const double m1 = x[i] * -sine + y[i] * cosine;  // column 1 of M R
    const double m2 = z[i];
    entry[i][0] = (m0 * row0.x + m1 * row1.x + m2 * row2.x) * inverseDet;
    entry[i][1] = (m0 * row0.y + m1 * row1.y + m2 * row2.y) * inverseDet;
    entry[i][2] = (m0 * row0.z + m1 * row1.z + m2 * row2.z) * inverseDet;
    entry[i][3] = (m0 * t0 + m1 * t1 + m2 * t2) * inverseDet + c[i];
  }
  return *this;
}

KrGeMatrix3d& KrGeMatrix3d::setToMirroring(const KrGePoint3d& point) {
  setToIdentity();
  for (unsigned i = 0; i < 3; ++i) {
    entry[i][i] = -1.0;
    entry[i][3] = point[i] + point[i];
  }
  return *this;
}

KrGeMatrix3d& KrGeMatrix3d::setToAlignCoordSys(const KrGePoint3d& fromOrigin, const KrGeVector3d& fromXAxis,
                                               const KrGeVector3d& fromYAxis, const KrGeVector3d& fromZAxis,
                                               const KrGePoint3d& toOrigin, const KrGeVector3d& toXAxis,
                                               const KrGeVector3d& toYAxis, const KrGeVector3d& toZAxis) {
  KrGeMatrix3d from;
  from.setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
  KrGeMatrix3d to;
  to.setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
  return setToProduct(to, from.inverse());
}

KrGeMatrix3d KrGeMatrix3d::translation(const KrGeVector3d& v) {
  KrGeMatrix3d result;
  return result.setToTranslation(v);
}

KrGeMatrix3d KrGeMatrix3d::scaling(double scaleFactor, const KrGePoint3d& center) {
  KrGeMatrix3d result;
  return result.setToScaling(scaleFactor, center);
}

KrGeMatrix3d KrGeMatrix3d::rotation(double angle, const KrGeVector3d& axis, const KrGePoint3d& center) {
  KrGeMatrix3d result;
  return result.setToRotation(angle, axis, center);
}

KrGeMatrix3d KrGeMatrix3d::mirroring(const KrGePoint3d& point) {
  KrGeMatrix3d result;
  return result.setToMirroring(point);
}

KrGeMatrix3d KrGeMatrix3d::planeToWorld(const KrGeVector3d& normal) {
  KrGeMatrix3d result;
  return result.setToPlaneToWorld(normal);
}

KrGeMatrix3d KrGeMatrix3d::worldToPlane(const KrGeVector3d& normal) {
  KrGeMatrix3d result;
  return result.setToWorldToPlane(normal);
}

KrGeMatrix3d KrGeMatrix3d::alignCoordSys(const KrGePoint3d& fromOrigin, const KrGeVector3d& fromXAxis,
                                         const KrGeVector3d& fromYAxis, const KrGeVector3d& fromZAxis,
                                         const KrGePoint3d& toOrigin, const KrGeVector3d& toXAxis,
                                         const KrGeVector3d& toYAxis, const KrGeVector3d& toZAxis) {
  KrGeMatrix3d result;
  return result.setToAlignCoordSys(fromOrigin, fromXAxis, fromYAxis, fromZAxis, toOrigin, toXAxis,
                                   toYAxis, toZAxis);
}
