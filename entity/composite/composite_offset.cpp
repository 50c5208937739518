#include "entity/composite/composite_offset.h"

#include <cmath>
#include <vector>

#include "KrGeCircArc3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "entity/composite/KrCompositeCurve3dImpl.h"
#include "entity/relation/KrCurveRelation.h"

namespace {

struct Piece {
  KrGeCurve3d* curve;
  KrGePoint3d corner;             // the original chain's point where this piece's segment ends
  KrGeCurve3d* bridge = nullptr;  // what closes the gap after this piece, if anything
};

KrGePoint3d startOf(const KrGeCurve3d& curve) {
  KrGePoint3d point;
  curve.hasStartPoint(point);
  return point;
}

KrGePoint3d endOf(const KrGeCurve3d& curve) {
  KrGePoint3d point;
  curve.hasEndPoint(point);
  return point;
}

// Cuts `curve` to the part before (keepStart) or after the parameter of `point`.
void cutAt(KrGeCurve3d& curve, const KrGePoint3d& point, bool keepStart, const KrGeTol& tol) {
  KrGeInterval range;
  curve.getInterval(range);
  const double param = curve.paramOf(point, tol);
  if (keepStart)
    curve.setInterval(KrGeInterval(range.lowerBound(), param, range.tolerance()));
  else
    curve.setInterval(KrGeInterval(param, range.upperBound(), range.tolerance()));
}

// The crossing of `first` and `second` nearest to `corner`, when they cross elsewhere than at the
// start of `first` or the end of `second` (where they may already be joined at their other ends).
bool crossingNear(const KrGeCurve3d& first, const KrGeCurve3d& second, const KrGePoint3d& corner,
                  KrGePoint3d& crossing, const KrGeTol& tol) {
  KrCurveIntersections found;
  const KrGeCurve3dImpl* a = KrGeCurve3dImpl::curveImplOf(first);
  const KrGeCurve3dImpl* b = KrGeCurve3dImpl::curveImplOf(second);
  if (!a || !b || !krrelation::intersect(*a, *b, tol, found)) return false;
  const KrGePoint3d farStart = startOf(first), farEnd = endOf(second);
  bool any = false;
  for (int i = 0; i < found.count; ++i) {
    const KrGePoint3d& point = found.points[i];
    if (point.isEqualTo(farStart, tol) || point.isEqualTo(farEnd, tol)) continue;
    if (any && !(point.distanceTo(corner) < crossing.distanceTo(corner))) continue;
    crossing = point;
    any = true;
  }
  return any;
}

// The arc about `corner` from `from` to `to` the short way round, in the plane with normal `normal`.
KrGeCurve3d* filletArc(const KrGePoint3d& corner, const KrGePoint3d& from, const KrGePoint3d& to,
                       const KrGeVector3d& normal) {
  const KrGeVector3d u = from - corner, v = to - corner;
  const double radius = u.length();
  const KrGeVector3d axis = u.crossProduct(v).dotProduct(normal) < 0.0 ? -normal : normal;
  const double sweep = std::atan2(u.crossProduct(v).length(), u.dotProduct(v));
  return new KrGeCircArc3d(corner, axis, u, radius, 0.0, sweep);
}

// The curve a piece continues as beyond its ends (new, the caller deletes it): a straight piece's
// line, an arc's whole circle; null for another kind.
KrGeCurve3d* continuationOf(const KrGeCurve3d& piece, const KrGeTol& tol) {
  if (piece.type() == KrGe::kCircArc3d) {
    KrGeCurve3d* circle = static_cast<KrGeCurve3d*>(piece.copy());
    if (circle) circle->setInterval();
    return circle;
  }
  KrGeLine3d line;
  if (piece.type() != KrGe::kLineSeg3d || !piece.isLinear(line, tol)) return nullptr;
  return new KrGeLine3d(line);
}

// Where the continuations of two pieces meet, nearest to the corner.
bool continuationsMeet(const KrGeCurve3d& first, const KrGeCurve3d& second, const KrGePoint3d& corner,
                       KrGePoint3d& point, const KrGeTol& tol) {
  KrGeCurve3d* a = continuationOf(first, tol);
  KrGeCurve3d* b = continuationOf(second, tol);
  const bool meet = a && b && crossingNear(*a, *b, corner, point, tol);
  delete a;
  delete b;
  return meet;
}

// Joins the end of `first` to the start of `second` around the original corner: a crossing
// trims both; a gap gets the bridging piece, or with kExtend both pieces run on to meet.
void join(Piece& first, Piece& second, double distance, const KrGeVector3d& normal,
          KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) {
  const KrGePoint3d end = endOf(*first.curve), start = startOf(*second.curve);
  if (end.distanceTo(start) <= tol.equalPoint()) return;
  KrGePoint3d meet;
  if (crossingNear(*first.curve, *second.curve, first.corner, meet, tol)) {
    cutAt(*first.curve, meet, true, tol);
    cutAt(*second.curve, meet, false, tol);
    return;
  }
  if (extensionType == KrGe::kExtend && continuationsMeet(*first.curve, *second.curve, first.corner, meet, tol)) {
    cutAt(*first.curve, meet, true, tol);
    cutAt(*second.curve, meet, false, tol);
    return;
  }
  const bool roundCorner = extensionType != KrGe::kChamfer &&
                           std::fabs(end.distanceTo(first.corner) - std::fabs(distance)) <= tol.equalPoint() &&
                           std::fabs(start.distanceTo(first.corner) - std::fabs(distance)) <= tol.equalPoint();
  first.bridge = roundCorner ? filletArc(first.corner, end, start, normal)
                             : static_cast<KrGeCurve3d*>(new KrGeLineSeg3d(end, start));
}

}  // namespace

void krOffsetChain(const KrCompositeCurve3dImpl& chain, double distance, const KrGeVector3d& planeNormal,
                   KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) {
  KrsArray<void*> made;
  std::vector<Piece> pieces;
  for (int i = 0; i < chain.count(); ++i) {
    made.RemoveAll();
    chain.segment(i).getTrimmedOffset(distance, planeNormal, made, extensionType, tol);
    for (int k = 0; k < made.GetCount(); ++k)
      pieces.push_back(Piece{static_cast<KrGeCurve3d*>(made[k]), endOf(chain.segment(i))});
  }
  const int count = int(pieces.size());
  const KrGeVector3d normal = planeNormal.normal(KrGeContext::gTol);
  const bool closed = count > 1 && chain.isClosed(tol);
  for (int k = 0; k + 1 < count || (closed && k < count); ++k)
    join(pieces[k], pieces[(k + 1) % count], distance, normal, extensionType, tol);
  for (int k = 0; k < count; ++k) {
    offsetCurveList.Add(pieces[k].curve);
    if (pieces[k].bridge) offsetCurveList.Add(pieces[k].bridge);
  }
}
