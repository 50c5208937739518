#include "entity/bound/KrBlock3d.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLargest = 1.7976931348623157e308;
constexpr double kEpsilon = 2.220446049250313e-16;
// Sine of the smallest angle between non-zero directions that still counts as independent.
constexpr double kIndependentSine = 1e-12;
// Rounding slack of the separating-axis tests, in units of the coordinates' magnitude: the
// centre, the offset and the projected half widths each carry a few ulps of it.
constexpr double kRoundingSlack = 64.0 * kEpsilon;
// Candidate axes of two blocks: 15 generator pairs, 6 in-plane normals, 2 for low rank.
constexpr int kMaxAxes = 24;

bool isFiniteVector(const KrGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }
bool isFinitePoint(const KrGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
double maxAbs(const KrGeVector3d& v) { return std::max(std::fabs(v.x), std::max(std::fabs(v.y), std::fabs(v.z))); }

bool unitOf(const KrGeVector3d& v, KrGeVector3d& unit) {
  const double length = v.length();
  if (!(length > 0.0) || !std::isfinite(length)) return false;
  unit = v / length;
  return true;
}

// A unit vector perpendicular to the unit vector u, from the coordinate axis least aligned with
// it (independent of the replaceable KrGeContext::gOrthoVector).
KrGeVector3d perpendicularUnit(const KrGeVector3d& u) {
  const double ax = std::fabs(u.x), ay = std::fabs(u.y), az = std::fabs(u.z);
  const KrGeVector3d axis = (ax <= ay && ax <= az) ? KrGeVector3d::kXAxis
                            : (ay <= az)            ? KrGeVector3d::kYAxis
                                                    : KrGeVector3d::kZAxis;
  KrGeVector3d unit;
  unitOf(u.crossProduct(axis), unit);
  return unit;
}

// Half the width of the zonotope spanned by the generators, measured along the unit axis.
double halfWidth(const KrGeVector3d* generators, int count, const KrGeVector3d& axis) {
  double sum = 0.0;
  for (int i = 0; i < count; ++i) sum += std::fabs(axis.dotProduct(generators[i]));
  return 0.5 * sum;
}

// Candidate separating axes for the zonotope spanned by the generators and a point at offset
// `delta` from its centre. Facets of a zonotope of full rank are normal to cross products of
// generator pairs; of rank 2, the plane normal m and the in-plane normals m x g; of rank 1 or 0
// the separating direction is the offset's component off the generators' line. Any axis gives
// a valid test, so extra candidates cost time but never a wrong answer.
int candidateAxes(const KrGeVector3d* generators, int count, const KrGeVector3d& delta, KrGeVector3d* axes) {
  int axisCount = 0;
  KrGeVector3d planeNormal;
  double largestCross = 0.0;
  for (int i = 0; i < count; ++i) {
    for (int j = i + 1; j < count; ++j) {
      const KrGeVector3d cross = generators[i].crossProduct(generators[j]);
      if (!unitOf(cross, axes[axisCount])) continue;
      const double length = cross.length();
      if (length > largestCross) {
        largestCross = length;
        planeNormal = axes[axisCount];
      }
      ++axisCount;
    }
  }
  if (largestCross > 0.0) {
    for (int i = 0; i < count; ++i)
      if (unitOf(planeNormal.crossProduct(generators[i]), axes[axisCount])) ++axisCount;
    return axisCount;
  }
  // All generators on one line through the centre (or none): u along it, then the offset off it.
  KrGeVector3d lineDirection;
  double longest = 0.0;
  for (int i = 0; i < count; ++i) {
    const double length = generators[i].length();
    if (length > longest && unitOf(generators[i], lineDirection)) longest = length;
  }
  if (longest > 0.0) {
    axes[axisCount++] = lineDirection;
    if (unitOf(delta - lineDirection * delta.dotProduct(lineDirection), axes[axisCount])) ++axisCount;
  } else if (unitOf(delta, axes[axisCount])) {
    ++axisCount;
  }
  return axisCount;
}

// True when an axis separates the zonotope (centred at the origin) from the point `delta` by
// more than `slack`.
bool isSeparated(const KrGeVector3d* generators, int count, const KrGeVector3d& delta, double slack) {
  KrGeVector3d axes[kMaxAxes];
  const int axisCount = candidateAxes(generators, count, delta, axes);
  for (int i = 0; i < axisCount; ++i)
    if (std::fabs(axes[i].dotProduct(delta)) > halfWidth(generators, count, axes[i]) + slack) return true;
  return false;
}

}  // namespace

void KrBlock3d::setEmpty() {
  *this = KrBlock3d();
}

void KrBlock3d::setBox(const KrGePoint3d& corner1, const KrGePoint3d& corner2) {
  m_base.set(std::min(corner1.x, corner2.x), std::min(corner1.y, corner2.y), std::min(corner1.z, corner2.z));
  m_max.set(std::max(corner1.x, corner2.x), std::max(corner1.y, corner2.y), std::max(corner1.z, corner2.z));
  m_dir[0] = m_dir[1] = m_dir[2] = KrGeVector3d();
  m_isBox = true;
  m_isEmpty = false;
}

void KrBlock3d::setParallelepiped(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2,
                                  const KrGeVector3d& dir3) {
  m_base = base;
  m_max = KrGePoint3d();
  m_dir[0] = dir1;
  m_dir[1] = dir2;
  m_dir[2] = dir3;
  m_isBox = false;
  m_isEmpty = false;
}

void KrBlock3d::get(KrGePoint3d& base, KrGeVector3d& dir1, KrGeVector3d& dir2, KrGeVector3d& dir3) const {
  if (m_isEmpty) {
    base = KrGePoint3d();
    dir1 = dir2 = dir3 = KrGeVector3d();
  } else if (m_isBox) {
    base = m_base;
    dir1.set(m_max.x - m_base.x, 0.0, 0.0);
    dir2.set(0.0, m_max.y - m_base.y, 0.0);
    dir3.set(0.0, 0.0, m_max.z - m_base.z);
  } else {
    base = m_base;
    dir1 = m_dir[0];
    dir2 = m_dir[1];
    dir3 = m_dir[2];
  }
}

void KrBlock3d::getMinMax(KrGePoint3d& minPoint, KrGePoint3d& maxPoint) const {
  if (m_isEmpty) {
    minPoint.set(kLargest, kLargest, kLargest);
    maxPoint.set(-kLargest, -kLargest, -kLargest);
    return;
  }
  if (m_isBox) {
    minPoint = m_base;
    maxPoint = m_max;
    return;
  }
  minPoint = m_base;
  maxPoint = m_base;
  for (unsigned c = 0; c < 3; ++c) {
    for (const KrGeVector3d& dir : m_dir) {
      if (dir[c] < 0.0) minPoint[c] += dir[c];
      else maxPoint[c] += dir[c];
    }
  }
}

void KrBlock3d::setToBox(bool toBox) {
  if (m_isEmpty || toBox == m_isBox) return;
  if (toBox) {
    KrGePoint3d minPoint, maxPoint;
    getMinMax(minPoint, maxPoint);
    setBox(minPoint, maxPoint);
  } else {
    KrGePoint3d base;
    KrGeVector3d dir1, dir2, dir3;
    get(base, dir1, dir2, dir3);
    setParallelepiped(base, dir1, dir2, dir3);
  }
}

bool KrBlock3d::isFinite() const {
  if (m_isEmpty) return true;
  if (m_isBox) return isFinitePoint(m_base) && isFinitePoint(m_max);
  return isFinitePoint(m_base) && isFiniteVector(m_dir[0]) && isFiniteVector(m_dir[1]) && isFiniteVector(m_dir[2]);
}

bool KrBlock3d::growthFrame(KrGeVector3d frame[3], double lo[3], double hi[3]) const {
  int nonZero[3];
  int zero[3];
  int nonZeroCount = 0, zeroCount = 0;
  for (int i = 0; i < 3; ++i) {
    frame[i] = m_dir[i];
    lo[i] = 0.0;
    if (m_dir[i].length() > 0.0) {
      hi[i] = 1.0;
      nonZero[nonZeroCount++] = i;
    } else {
      hi[i] = 0.0;
      zero[zeroCount++] = i;
    }
  }
  if (nonZeroCount == 3) {
    const double volume = m_dir[0].dotProduct(m_dir[1].crossProduct(m_dir[2]));
    return std::fabs(volume) > kIndependentSine * m_dir[0].length() * m_dir[1].length() * m_dir[2].length();
  }
  if (nonZeroCount == 2) {
    const KrGeVector3d& a = m_dir[nonZero[0]];
    const KrGeVector3d& b = m_dir[nonZero[1]];
    const KrGeVector3d cross = a.crossProduct(b);
    if (!(cross.length() > kIndependentSine * a.length() * b.length())) return false;
    return unitOf(cross, frame[zero[0]]);
  }
  if (nonZeroCount == 1) {
    KrGeVector3d u;
    if (!unitOf(m_dir[nonZero[0]], u)) return false;
    frame[zero[0]] = perpendicularUnit(u);
    frame[zero[1]] = u.crossProduct(frame[zero[0]]);
    return true;
  }
  frame[0] = KrGeVector3d::kXAxis;
  frame[1] = KrGeVector3d::kYAxis;
  frame[2] = KrGeVector3d::kZAxis;
  return true;
}

void KrBlock3d::setFromFrame(const KrGeVector3d frame[3], const double lo[3], const double hi[3]) {
  KrGePoint3d base = m_base;
  for (int i = 0; i < 3; ++i) {
    if (lo[i] != 0.0) base += frame[i] * lo[i];
    m_dir[i] = frame[i] * (hi[i] - lo[i]);
  }
  m_base = base;
}

void KrBlock3d::extend(const KrGePoint3d& point) {
  if (!isFinitePoint(point)) return;
  if (m_isEmpty) {
    setBox(point, point);
    return;
  }
  if (!isFinite()) return;
  if (m_isBox) {
    for (unsigned c = 0; c < 3; ++c) {
      m_base[c] = std::min(m_base[c], point[c]);
      m_max[c] = std::max(m_max[c], point[c]);
    }
    return;
  }
  KrGeVector3d frame[3];
  double lo[3], hi[3];
  if (!growthFrame(frame, lo, hi)) {
    setToBox(true);
    extend(point);
    return;
  }
  // Coordinates of the point in the frame by Cramer's rule: s_i = (f_j x f_k) . w / det. Each
  // carries a rounding error of about eps |w| |f_j| |f_k| / |det|, which grows as the frame
  // flattens; a range that has to grow is widened by a few times that, so the point stays
  // inside the rebuilt block.
  const KrGeVector3d w = point - m_base;
  const double det = frame[0].dotProduct(frame[1].crossProduct(frame[2]));
  for (int i = 0; i < 3; ++i) {
    const KrGeVector3d& f1 = frame[(i + 1) % 3];
    const KrGeVector3d& f2 = frame[(i + 2) % 3];
    const double s = f1.crossProduct(f2).dotProduct(w) / det;
    const double pad = kRoundingSlack * w.length() * f1.length() * f2.length() / std::fabs(det);
    if (s < lo[i]) lo[i] = s - pad;
    if (s > hi[i]) hi[i] = s + pad;
  }
  setFromFrame(frame, lo, hi);
}

void KrBlock3d::swell(double distance) {
  if (m_isEmpty || !std::isfinite(distance) || !isFinite()) return;
  if (m_isBox) {
    for (unsigned c = 0; c < 3; ++c) {
      double lower = m_base[c] - distance;
      double upper = m_max[c] + distance;
      if (lower > upper) lower = upper = 0.5 * (m_base[c] + m_max[c]);
      m_base[c] = lower;
      m_max[c] = upper;
    }
    return;
  }
  KrGeVector3d frame[3];
  double lo[3], hi[3];
  if (!growthFrame(frame, lo, hi)) {
    setToBox(true);
    swell(distance);
    return;
  }
  // A face pair i is normal to n = f_j x f_k; one unit of s_i moves |n . f_i| across it, so the
  // range widens by distance / |n . f_i| on each side.
  for (int i = 0; i < 3; ++i) {
    KrGeVector3d faceNormal;
    unitOf(frame[(i + 1) % 3].crossProduct(frame[(i + 2) % 3]), faceNormal);
    const double step = distance / std::fabs(faceNormal.dotProduct(frame[i]));
    lo[i] -= step;
    hi[i] += step;
    if (lo[i] > hi[i]) lo[i] = hi[i] = 0.5 * (lo[i] + hi[i]);
  }
  setFromFrame(frame, lo, hi);
}

void KrBlock3d::generators(KrGeVector3d dirs[3], KrGePoint3d& centre) const {
  KrGePoint3d base;
  get(base, dirs[0], dirs[1], dirs[2]);
  centre = m_isBox ? KrGePoint3d(0.5 * (m_base.x + m_max.x), 0.5 * (m_base.y + m_max.y), 0.5 * (m_base.z + m_max.z))
                   : base + (dirs[0] + dirs[1] + dirs[2]) * 0.5;
}

bool KrBlock3d::contains(const KrGePoint3d& point, double tolerance) const {
  if (m_isEmpty || !isFinitePoint(point) || !isFinite()) return false;
  if (m_isBox) {
    for (unsigned c = 0; c < 3; ++c)
      if (!(point[c] >= m_base[c] - tolerance && point[c] <= m_max[c] + tolerance)) return false;
    return true;
  }
  KrGeVector3d dirs[3];
  KrGePoint3d centre;
  generators(dirs, centre);
  const KrGeVector3d delta = point - centre;
  const double magnitude = std::max(maxAbs(centre.asVector()), maxAbs(point.asVector())) + maxAbs(dirs[0]) +
                           maxAbs(dirs[1]) + maxAbs(dirs[2]);
  return !isSeparated(dirs, 3, delta, tolerance + kRoundingSlack * magnitude);
}

bool KrBlock3d::isDisjoint(const KrBlock3d& other, double tolerance) const {
  if (m_isEmpty || other.m_isEmpty || !isFinite() || !other.isFinite()) return true;
  if (m_isBox && other.m_isBox) {
    for (unsigned c = 0; c < 3; ++c)
      if (m_base[c] > other.m_max[c] + tolerance || other.m_base[c] > m_max[c] + tolerance) return true;
    return false;
  }
  // Two parallelepipeds are disjoint exactly when the point cB - cA lies outside the zonotope
  // spanned by all six generators (their Minkowski difference).
  KrGeVector3d dirs[6];
  KrGePoint3d centre, otherCentre;
  generators(dirs, centre);
  other.generators(dirs + 3, otherCentre);
  double magnitude = std::max(maxAbs(centre.asVector()), maxAbs(otherCentre.asVector()));
  for (const KrGeVector3d& dir : dirs) magnitude += maxAbs(dir);
  return isSeparated(dirs, 6, otherCentre - centre, tolerance + kRoundingSlack * magnitude);
}

void KrBlock3d::transformBy(const KrGeMatrix3d& matrix) {
  if (m_isEmpty) return;
  if (m_isBox) {
    // A signed, scaled permutation of the axes (one non-zero entry in every row and column of
    // the 3x3 block) maps the box onto a box.
    bool keepsAxes = true;
    for (unsigned i = 0; i < 3 && keepsAxes; ++i) {
      int inRow = 0, inColumn = 0;
      for (unsigned j = 0; j < 3; ++j) {
        if (matrix(i, j) != 0.0) ++inRow;
        if (matrix(j, i) != 0.0) ++inColumn;
      }
      keepsAxes = inRow == 1 && inColumn == 1;
    }
    if (keepsAxes) {
      setBox(matrix * m_base, matrix * m_max);
      return;
    }
    setToBox(false);
  }
  m_base = matrix * m_base;
  for (KrGeVector3d& dir : m_dir) dir = matrix * dir;
}

bool KrBlock3d::isEqualTo(const KrBlock3d& other, const KrGeTol& tol) const {
  if (m_isEmpty || other.m_isEmpty) return m_isEmpty == other.m_isEmpty;
  if (m_isBox != other.m_isBox) return false;
  if (m_isBox) return m_base.isEqualTo(other.m_base, tol) && m_max.isEqualTo(other.m_max, tol);
  return m_base.isEqualTo(other.m_base, tol) && m_dir[0].isEqualTo(other.m_dir[0], tol) &&
         m_dir[1].isEqualTo(other.m_dir[1], tol) && m_dir[2].isEqualTo(other.m_dir[2], tol);
}
