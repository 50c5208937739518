// New entities made from arcs: pieces, concentric offsets and parallel projections.
#include <cmath>

#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "KrsDiagnostics.h"
#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/arc/arc_angles.h"
#include "entity/arc/arc_extent.h"
#include "entity/ellipse/ellipse_project.h"

namespace {

bool isFinite(const KrGeVector3d& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

// Parameters within this of an end of the range are at that end.
constexpr double kParamSlack = 1e-12;

}  // namespace

KrGeCircArc3d* KrCircArc3dImpl::makeArc(const KrArcFrame& frame) {
  KrGeCircArc3d* arc = new KrGeCircArc3d();
  if (!arc) return nullptr;
  if (auto* impl = static_cast<KrCircArc3dImpl*>(implOf(*arc))) impl->m_arc = frame;
  return arc;
}

// A full circle is split wherever the angle names a point of it (the angle is taken modulo 2 pi
// from the start); a partial arc only inside its range.
void KrCircArc3dImpl::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const {
  piece1 = nullptr;
  piece2 = nullptr;
  const double start = m_arc.startAng;
  const double end = m_arc.endAng();
  const bool full = m_arc.sweep >= kKrTwoPi;
  if (!std::isfinite(param) || (!full && (param < start - kParamSlack || param > end + kParamSlack))) return;
  const double at = full ? start + krArcOffset(param, start) : param;
  if (at - start <= kParamSlack || (full && end - at <= kParamSlack)) {
    piece2 = makeArc(m_arc);
    return;
  }
  if (end - at <= kParamSlack) {
    piece1 = makeArc(m_arc);
    return;
  }
  KrArcFrame first = m_arc;
  KrArcFrame second = m_arc;
  first.sweep = at - start;
  second.startAng = at;
  second.sweep = end - at;
  piece1 = makeArc(first);
  piece2 = makeArc(second);
}

// The tangent at angle t is -sin t X + cos t Y, and tangent x normal = cos t X + sin t Y points
// away from the centre: offsetting to the right of the direction of travel (as segments do) is
// outward for an arc counter-clockwise about planeNormal and inward for one clockwise about it.
void KrCircArc3dImpl::getTrimmedOffset(double distance, const KrGeVector3d& planeNormal,
                                       KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType,
                                       const KrGeTol& tol) const {
  if (extensionType == KrGe::kFillet || extensionType == KrGe::kChamfer)
    KRS_AUTOTEST("KrCircArc3dImpl::getTrimmedOffset - fillet/chamfer");
  const bool knownExtension = extensionType == KrGe::kFillet || extensionType == KrGe::kChamfer ||
                              extensionType == KrGe::kExtend;
  const bool planar = isFinite(planeNormal) && !planeNormal.isZeroLength(tol) &&
                      m_arc.normal.isParallelTo(planeNormal, tol);
  const double side = m_arc.normal.dotProduct(planeNormal) < 0.0 ? -1.0 : 1.0;
  const double radius = m_arc.radius + side * distance;
  const bool valid = knownExtension && planar && std::isfinite(distance) && radius > tol.equalPoint();
  KRS_CHECK_TEXT_AT(valid, KRS_E_INVALIDARG_TEXT, __FILE__, __LINE__);
  if (!valid) return;
  KrArcFrame offset = m_arc;
  offset.radius = radius;
  offsetCurveList.Add(makeArc(offset));
}

// Parallel projection p -> p - d ((p - o) . n) / (d . n) onto the plane (origin o, unit normal n)
// along the unit direction d. Between parallel planes it is a translation, so an arc facing the
// plane keeps its shape; an arc whose plane holds d collapses onto the image of its extent
// across d. Any other arc becomes an ellipse (krProjectEllipseArc).
KrGeEntity3d* KrCircArc3dImpl::project(const KrGePlane& projectionPlane, const KrGeVector3d& projectDirection,
                                       const KrGeTol& tol) const {
  KRS_AUTOTEST("KrGeEntity3d* KrCircArc3dImpl::project(projPlane, projDir, tol)");
  const KrGeVector3d normal = projectionPlane.normal();
  const KrGeVector3d along = projectDirection.normal(KrGeContext::gTol);
  const double cosine = along.dotProduct(normal);
  if (!isFinite(along) || along.isZeroLength(tol) || !(std::fabs(cosine) > tol.equalVector())) return nullptr;
  const KrGePoint3d origin = projectionPlane.pointOnPlane();
  const auto image = [&](const KrGePoint3d& p) { return p - along * ((p - origin).dotProduct(normal) / cosine); };
  const KrGePoint3d center = image(m_arc.center);

  KrGe::EntityId kind;
  if (isDegenerate(kind, tol)) {
    const bool point = m_arc.radius <= tol.equalPoint();
    return new KrGePointEnt3d(image(point ? m_arc.center : m_arc.pointAt(m_arc.startAng + 0.5 * m_arc.sweep)));
  }
  if (m_arc.normal.isParallelTo(normal, tol)) {
    KrArcFrame moved = m_arc;
    moved.center = center;
    moved.normal = m_arc.normal.dotProduct(normal) < 0.0 ? -normal : normal;
    moved.refVec = (m_arc.refVec - moved.normal * m_arc.refVec.dotProduct(moved.normal)).normal(KrGeContext::gTol);
    return makeArc(moved);
  }
  if (!(std::fabs(along.dotProduct(m_arc.normal)) <= tol.equalVector()))
    return krProjectEllipseArc(krEllipseFrameOf(m_arc), projectionPlane, projectDirection, tol);

  const KrGeVector3d across = m_arc.normal.crossProduct(along).normal(KrGeContext::gTol);
  const double first = (m_arc.pointAt(m_arc.startAng) - m_arc.center).dotProduct(across);
  const double last = (m_arc.pointAt(m_arc.endAng()) - m_arc.center).dotProduct(across);
  const KrArcExtent extent = krArcExtent(0.0, m_arc.radius * m_arc.refVec.dotProduct(across),
                                         m_arc.radius * m_arc.yAxis().dotProduct(across), m_arc.startAng,
                                         m_arc.endAng(), first, last);
  const KrGeVector3d step = across - along * (across.dotProduct(normal) / cosine);
  const KrGePoint3d low = center + step * extent.low;
  const KrGePoint3d high = center + step * extent.high;
  if (low.isEqualTo(high, tol)) return new KrGePointEnt3d(low);
  return new KrGeLineSeg3d(low, high);
}
