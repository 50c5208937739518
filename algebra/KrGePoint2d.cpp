#include "KrGePoint2d.h"

#include <cmath>
#include <type_traits>

#include "KrGeMatrix2d.h"

static_assert(sizeof(KrGePoint2d) == 2 * sizeof(double), "KrGePoint2d is two doubles");
static_assert(std::is_trivially_copyable<KrGePoint2d>::value, "KrGePoint2d is plain data");

const KrGePoint2d KrGePoint2d::kOrigin(0.0, 0.0);

KrGePoint2d& KrGePoint2d::setToProduct(const KrGeMatrix2d& matrix, const KrGePoint2d& point) {
  return *this = matrix * point;
}

KrGePoint2d& KrGePoint2d::transformBy(const KrGeMatrix2d& matrix) { return *this = matrix * *this; }

KrGePoint2d& KrGePoint2d::rotateBy(double angle, const KrGePoint2d& centre) {
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  const double dx = x - centre.x;
  const double dy = y - centre.y;
  x = centre.x + (dx * cosine - dy * sine);
  y = centre.y + (dx * sine + dy * cosine);
  return *this;
}

KrGePoint2d& KrGePoint2d::scaleBy(double factor, const KrGePoint2d& centre) {
  x = centre.x + factor * (x - centre.x);
  y = centre.y + factor * (y - centre.y);
  return *this;
}

KrGePoint2d& KrGePoint2d::mirror(const KrGeLine2d& line) {
  KrGeMatrix2d mirroring;
  mirroring.setToMirroring(line);
  return transformBy(mirroring);
}
