// Exact bounding blocks of arcs.
#include <cmath>
#include <utility>

#include "KrGeBoundBlock3d.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_extent.h"

namespace {

// The span a block covers: the range itself (in increasing order), or the whole circle from the
// start angle when a side is open.
void spanOf(const KrArcFrame& arc, const KrGeInterval& range, double& from, double& to) {
  from = arc.startAng;
  to = arc.startAng + kKrTwoPi;
  if (!range.isBounded()) return;
  from = range.lowerBound();
  to = range.upperBound();
  if (to < from) std::swap(from, to);
}

}  // namespace

// In the frame of the span's middle direction M and its perpendicular P = normal x M the span
// covers angles [-h, h] (h half the span): the coordinate along M runs over [r cos h, r] (down to
// -r once h reaches pi) and the one along P over +-r sin h (+-r once h reaches pi/2). That
// rectangle touches the arc on all four sides; its height r (1 - cos h) = 2 r sin^2(h / 2) is
// taken in the half-angle form so that flat arcs keep it.
KrGeBoundBlock3d KrCircArc3dImpl::boundBlock(const KrGeInterval& range) const {
  double from = 0.0, to = 0.0;
  spanOf(m_arc, range, from, to);
  const double middle = 0.5 * (from + to);
  const double half = 0.5 * (to - from);
  const double alongHalf = half < kKrPi ? half : kKrPi;
  const double acrossHalf = half < 0.5 * kKrPi ? half : 0.5 * kKrPi;
  const KrGeVector3d yAxis = m_arc.yAxis();
  const KrGeVector3d mid = m_arc.refVec * std::cos(middle) + yAxis * std::sin(middle);
  const KrGeVector3d across = m_arc.normal.crossProduct(mid);
  const double r = m_arc.radius;
  const double sine = std::sin(0.5 * alongHalf);
  const double height = 2.0 * r * sine * sine;
  const double width = r * std::sin(acrossHalf);
  const KrGePoint3d base = m_arc.center + mid * (r - height) - across * width;
  return KrGeBoundBlock3d(base, mid * height, across * (2.0 * width), KrGeVector3d());
}

KrGeBoundBlock3d KrCircArc3dImpl::orthoBoundBlock(const KrGeInterval& range) const {
  double from = 0.0, to = 0.0;
  spanOf(m_arc, range, from, to);
  const KrGePoint3d first = m_arc.pointAt(from);
  const KrGePoint3d last = m_arc.pointAt(to);
  const KrGeVector3d x = m_arc.refVec * m_arc.radius;
  const KrGeVector3d y = m_arc.yAxis() * m_arc.radius;
  KrGePoint3d low, high;
  for (unsigned k = 0; k < 3; ++k) {
    const KrArcExtent extent = krArcExtent(m_arc.center[k], x[k], y[k], from, to, first[k], last[k]);
    low[k] = extent.low;
    high[k] = extent.high;
  }
  return KrGeBoundBlock3d(low, high);
}
