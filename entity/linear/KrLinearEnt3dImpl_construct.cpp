// New entities made from lines and segments: pieces, overlaps, explosions, and the tangent
// constructions of segments (entity/relation/tangent_construction).
#include <algorithm>
#include <cmath>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrsDiagnostics.h"
#include "entity/linear/KrLinearEnt3dImpl.h"
#include "entity/relation/tangent_construction.h"

KrGeLinearEnt3d* KrLinearEnt3dImpl::makeLike(const KrGePoint3d& origin, const KrGeVector3d& direction,
                                             const KrGeInterval& interval) const {
  KrGeLinearEnt3d* entity = m_unbounded && !interval.isBounded() ? static_cast<KrGeLinearEnt3d*>(new KrGeLine3d())
                                                                 : static_cast<KrGeLinearEnt3d*>(new KrGeLineSeg3d());
  if (!entity) return nullptr;
  auto* impl = static_cast<KrLinearEnt3dImpl*>(implOf(*entity));
  if (!impl) return entity;
  impl->m_origin = origin;
  impl->m_direction = direction;
  if (!impl->m_unbounded) impl->m_interval = interval;
  impl->refreshBounds();
  return entity;
}

// Pieces keep this entity's parametrisation: the point at parameter t is the same point on the
// piece that holds it. A parameter at an end (within the interval's tolerance) leaves the piece
// on that side null and the other piece the whole segment; outside the interval both are null.
void KrLinearEnt3dImpl::getSplitCurves(double param, KrGeCurve3d*& piece1, KrGeCurve3d*& piece2) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::getSplitCurves");
  using KrGe::kLineSeg3d;
  piece1 = nullptr;
  piece2 = nullptr;
  KrGeEntity3d* pLine1 = copy();
  if (!pLine1) return;
  KRS_ASSERT(pLine1->type()==kLineSeg3d);
  if (pLine1->type() != KrGe::kLineSeg3d) {
    // A line would split into two rays, and no ray kind exists.
    KRS_NOT_IMPLEMENTED();
    delete pLine1;
    return;
  }
  const double lower = m_interval.lowerBound();
  const double upper = m_interval.upperBound();
  const double slack = m_interval.tolerance();
  if (!m_interval.contains(param)) {
    delete pLine1;
    return;
  }
  if (std::fabs(param - lower) <= slack) {
    piece2 = static_cast<KrGeCurve3d*>(pLine1);
    return;
  }
  if (std::fabs(param - upper) <= slack) {
    piece1 = static_cast<KrGeCurve3d*>(pLine1);
    return;
  }
  delete pLine1;
  piece1 = makeLike(m_origin, m_direction, KrGeInterval(lower, param));
  piece2 = makeLike(m_origin, m_direction, KrGeInterval(param, upper));
}

// A linear entity is its own single piece: without an interval (or with one covering it) the
// list receives this curve itself, flagged 0; a bounded interval within it gives a new segment
// over the common range, flagged 1. A half-open restriction of a line would be a ray and is not
// supported; a range that misses the entity gives nothing.
bool KrLinearEnt3dImpl::explode(const KrGeCurve3d& self, KrsArray<void*>& explodedCurves,
                                KrsArray<int>& newExplodedCurve, const KrGeInterval* intrvl) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::explode");
  if (!intrvl || intrvl->contains(m_interval)) {
    explodedCurves.Add(const_cast<KrGeCurve3d*>(&self));
    newExplodedCurve.Add(0);
    return true;
  }
  KrGeInterval common(1e-12);
  if (!m_interval.intersectWith(*intrvl, common) || common.lowerBound() > common.upperBound()) return false;
  if (!common.isBounded()) {
    KRS_NOT_IMPLEMENTED();
    return false;
  }
  KrGeLinearEnt3d* piece = makeLike(m_origin, m_direction, common);
  if (!piece) return false;
  explodedCurves.Add(piece);
  newExplodedCurve.Add(1);
  return true;
}

// The other entity's extent is mapped onto this entity's parameter (its end points' parameters,
// or the whole axis for a line) and intersected with this entity's own range; the common range
// must be longer than tol.equalPoint() in model space.
bool KrLinearEnt3dImpl::overlap(const KrGeLinearEnt3d& line, KrGeLinearEnt3d*& overlap, const KrGeTol& tol) const {
  KRS_AUTOTEST("KrLinearEnt3dImpl::overlap");
  overlap = nullptr;
  const KrLinearEnt3dImpl& other = of(line);
  if (!isParallelTo(line, tol, true)) return false;
  const double scale = m_direction.length();
  if (!(scale > 0.0) || !std::isfinite(scale)) return false;
  const KrLinearSpan mine = span();
  double lower = mine.lower;
  double upper = mine.upper;
  if (!other.m_unbounded) {
    const double a = paramOf(other.startPoint(), tol);
    const double b = paramOf(other.endPoint(), tol);
    lower = std::max(lower, std::min(a, b));
    upper = std::min(upper, std::max(a, b));
  }
  if (!((upper - lower) * scale > tol.equalPoint())) return false;
  if (m_unbounded && other.m_unbounded) {
    overlap = makeLike(m_origin, m_direction, m_interval);
    return overlap != nullptr;
  }
  KrLinearEnt3dImpl piece(evalPoint(lower), evalPoint(upper), false);
  auto* segment = new KrGeLineSeg3d();
  if (segment && implOf(*segment)) *implOf(*segment) = piece;
  overlap = segment;
  return overlap != nullptr;
}

// The tangent constructions are dispatched on the kinds of the given curves.
KrLinearEnt3dImpl& KrLinearEnt3dImpl::set(const KrGeCurve3d& curve, const KrGePoint3d& point, double& param,
                                          bool& success) {
  KRS_AUTOTEST("KrLinearEnt3dImpl::set(curve, pt, param, bool)");
  krrelation::tangentSegmentThroughPoint(*this, curve, point, param, success);
  return *this;
}

KrLinearEnt3dImpl& KrLinearEnt3dImpl::set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double& param1,
                                          double& param2, bool& success) {
  KRS_AUTOTEST("KrLinearEnt3dImpl::set(curve, curve, p1, pt2, bool)");
  krrelation::commonTangentSegment(*this, curve1, curve2, param1, param2, success);
  return *this;
}
