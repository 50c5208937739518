#include "KrGeMatrix2d.h"

#include <cmath>
#include <type_traits>

#include "KrsDiagnostics.h"

static_assert(sizeof(KrGeMatrix2d) == 9 * sizeof(double), "KrGeMatrix2d is nine doubles");
static_assert(std::is_trivially_copyable<KrGeMatrix2d>::value, "KrGeMatrix2d is plain data");

const KrGeMatrix2d KrGeMatrix2d::kIdentity;

namespace {

KrGeVector2d column(const KrGeMatrix2d& m, unsigned index) {
  return KrGeVector2d(m.entry[0][index], m.entry[1][index]);
}

KrGeMatrix2d translationBy(double x, double y) {
  KrGeMatrix2d result;
  result.entry[0][2] = x;
  result.entry[1][2] = y;
  return result;
}

}  // namespace

KrGeMatrix2d& KrGeMatrix2d::setToIdentity() {
  *this = KrGeMatrix2d();
  return *this;
}

KrGeMatrix2d& KrGeMatrix2d::setToTranslation(const KrGeVector2d& v) {
  setToIdentity();
  return setTranslation(v);
}

KrGeMatrix2d& KrGeMatrix2d::setCoordSystem(const KrGePoint2d& origin, const KrGeVector2d& xAxis,
                                           const KrGeVector2d& yAxis) {
  setToIdentity();
  entry[0][0] = xAxis.x;
  entry[1][0] = xAxis.y;
  entry[0][1] = yAxis.x;
  entry[1][1] = yAxis.y;
  entry[0][2] = origin.x;
  entry[1][2] = origin.y;
  return *this;
}

void KrGeMatrix2d::getCoordSystem(KrGePoint2d& origin, KrGeVector2d& xAxis, KrGeVector2d& yAxis) const {
  xAxis = column(*this, 0);
  yAxis = column(*this, 1);
  origin.set(entry[0][2], entry[1][2]);
}

KrGeMatrix2d& KrGeMatrix2d::setToScaling(double scaleFactor, const KrGePoint2d& center) {
  setToIdentity();
  entry[0][0] = scaleFactor;
  entry[1][1] = scaleFactor;
  entry[0][2] = center.x - scaleFactor * center.x;
  entry[1][2] = center.y - scaleFactor * center.y;
  return *this;
}

KrGeMatrix2d& KrGeMatrix2d::setToProduct(const KrGeMatrix2d& a, const KrGeMatrix2d& b) {
  double product[3][3];
  for (unsigned i = 0; i < 3; ++i)
    for (unsigned j = 0; j < 3; ++j)
      product[i][j] = a.entry[i][0] * b.entry[0][j] + a.entry[i][1] * b.entry[1][j] + a.entry[i][2] * b.entry[2][j];
  for (unsigned i = 0; i < 3; ++i)
    for (unsigned j = 0; j < 3; ++j) entry[i][j] = product[i][j];
  return *this;
}

KrGeMatrix2d KrGeMatrix2d::transpose() const {
  KrGeMatrix2d result;
  for (unsigned i = 0; i < 3; ++i)
    for (unsigned j = 0; j < 3; ++j) result.entry[i][j] = entry[j][i];
  return result;
}

KrGeMatrix2d& KrGeMatrix2d::transposeIt() { return *this = transpose(); }

bool KrGeMatrix2d::isEqualTo(const KrGeMatrix2d& m, const KrGeTol& tol) const {
  for (unsigned c = 0; c < 3; ++c)
    if (!column(*this, c).isEqualTo(column(m, c), tol)) return false;
  return true;
}

double KrGeMatrix2d::det() const { return entry[0][0] * entry[1][1] - entry[1][0] * entry[0][1]; }

double KrGeMatrix2d::scale() const {
  const double lx = column(*this, 0).length();
  const double ly = column(*this, 1).length();
  return ly >= lx || ly != ly ? ly : lx;
}

bool KrGeMatrix2d::isSingular(const KrGeTol& tol) const {
  return column(*this, 0).isParallelTo(column(*this, 1), tol);
}

bool KrGeMatrix2d::isScaledOrtho(const KrGeTol& tol) const {
  const KrGeVector2d x = column(*this, 0), y = column(*this, 1);
  return !x.isZeroLength(tol) && !y.isZeroLength(tol) && x.isPerpendicularTo(y, tol);
}

bool KrGeMatrix2d::isUniScaledOrtho(const KrGeTol& tol) const {
  return isScaledOrtho(tol) &&
         std::fabs(column(*this, 0).length() - column(*this, 1).length()) <= tol.equalVector();
}

bool KrGeMatrix2d::isConformal(double& scaleFactor, double& angle, bool& isMirror, KrGeVector2d& reflexAxis) const {
  const KrGeVector2d x = column(*this, 0), y = column(*this, 1);
  if (!x.isPerpendicularTo(y, KrGeContext::gTol)) return false;
  const double lengthX = x.length();
  if (std::fabs(lengthX - y.length()) > 1e-10) return false;
  scaleFactor = lengthX;
  if (scaleFactor == 0.0) {
    scaleFactor = 0.0;
    angle = 0.0;
    return false;
  }
  angle = std::acos(entry[0][0] / scaleFactor);
  if (entry[1][0] < 0.0) angle = -angle;
  isMirror = det() < 0.0;
  if (isMirror) reflexAxis = y;
  return true;
}

KrGeMatrix2d KrGeMatrix2d::inverse() const {
  const double(&e)[3][3] = entry;
  const double d = det();
  KrGeMatrix2d result;
  result.entry[0][0] = e[1][1] / d;
  result.entry[0][1] = -e[0][1] / d;
  result.entry[1][0] = -e[1][0] / d;
  result.entry[1][1] = e[0][0] / d;
  result.entry[0][2] = (e[0][1] * e[1][2] - e[1][1] * e[0][2]) / d;
  result.entry[1][2] = -(e[0][0] * e[1][2] - e[1][0] * e[0][2]) / d;
  return result;
}

KrGeMatrix2d& KrGeMatrix2d::invert() { return *this = inverse(); }

KrGeMatrix2d& KrGeMatrix2d::setToRotation(double angle, const KrGePoint2d& center) {
  KrGeMatrix2d rotationAboutOrigin;
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  rotationAboutOrigin.entry[0][0] = cosine;
  rotationAboutOrigin.entry[1][1] = cosine;
  rotationAboutOrigin.entry[1][0] = sine;
  rotationAboutOrigin.entry[0][1] = -sine;
  setToProduct(translationBy(center.x, center.y), rotationAboutOrigin);
  return postMultBy(translationBy(-center.x, -center.y));
}

KrGeMatrix2d& KrGeMatrix2d::setToMirroring(const KrGePoint2d& point) {
  KrGeMatrix2d reflection;
  reflection.entry[0][0] = -1.0;
  reflection.entry[1][1] = -1.0;
  setToProduct(translationBy(point.x, point.y), reflection);
  return postMultBy(translationBy(-point.x, -point.y));
}

KrGeMatrix2d& KrGeMatrix2d::setToMirroring(const KrGeLine2d& line) {
  (void)line;
  setToIdentity();
  KRS_NOT_IMPLEMENTED_AT("Matrix2d", 358);
  KRS_AUTOTEST_AT("KrGeMatrix2d KrGeMatrix2d::mirroring(const KrGeLine2d& line)", "Matrix2d", 359);
  return *this;
}

KrGeMatrix2d& KrGeMatrix2d::setToAlignCoordSys(const KrGePoint2d& fromOrigin, const KrGeVector2d& fromXAxis,
                                               const KrGeVector2d& fromYAxis, const KrGePoint2d& toOrigin,
                                               const KrGeVector2d& toXAxis, const KrGeVector2d& toYAxis) {
  KrGeMatrix2d from;
  from.setCoordSystem(fromOrigin, fromXAxis, fromYAxis);
  KrGeMatrix2d to;
  to.setCoordSystem(toOrigin, toXAxis, toYAxis);
  return setToProduct(to, from.inverse());
}

KrGeMatrix2d KrGeMatrix2d::translation(const KrGeVector2d& v) {
  KrGeMatrix2d result;
  return result.setToTranslation(v);
}

KrGeMatrix2d KrGeMatrix2d::scaling(double scaleFactor, const KrGePoint2d& center) {
  KrGeMatrix2d result;
  return result.setToScaling(scaleFactor, center);
}

KrGeMatrix2d KrGeMatrix2d::rotation(double angle, const KrGePoint2d& center) {
  KrGeMatrix2d result;
  return result.setToRotation(angle, center);
}

KrGeMatrix2d KrGeMatrix2d::mirroring(const KrGePoint2d& point) {
  KrGeMatrix2d result;
  return result.setToMirroring(point);
}

KrGeMatrix2d KrGeMatrix2d::mirroring(const KrGeLine2d& line) {
  KrGeMatrix2d result;
  return result.setToMirroring(line);
}

KrGeMatrix2d KrGeMatrix2d::alignCoordSys(const KrGePoint2d& fromOrigin, const KrGeVector2d& fromXAxis,
                                         const KrGeVector2d& fromYAxis, const KrGePoint2d& toOrigin,
                                         const KrGeVector2d& toXAxis, const KrGeVector2d& toYAxis) {
  KrGeMatrix2d result;
  return result.setToAlignCoordSys(fromOrigin, fromXAxis, fromYAxis, toOrigin, toXAxis, toYAxis);
}
