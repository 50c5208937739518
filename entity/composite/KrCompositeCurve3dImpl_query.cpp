// Point and plane queries of the composite, answered segment by segment: closest points, blocks,
// membership, closedness, linearity and planarity.
#include "KrGeLineSeg3d.h"
#include "KrsDiagnostics.h"
#include "entity/composite/KrCompositeCurve3dImpl.h"
#include "entity/composite/composite_offset.h"
#include "entity/relation/KrCurveRelation.h"

namespace {

const char* const kSource = KrCompositeCurve3dImpl::kReportSource;
constexpr double kLargest = 1.7976931348623157e308;
constexpr double kSmallest = 2.2250738585072014e-308;

// Grows `box` by the eight corners of `block`.
void takeIn(KrGeBoundBlock3d& box, const KrGeBoundBlock3d& block) {
  if (block.isEmpty()) return;
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  block.get(base, d1, d2, d3);
  for (int corner = 0; corner < 8; ++corner)
    box.extend(base + d1 * double(corner & 1) + d2 * double((corner >> 1) & 1) + d3 * double((corner >> 2) & 1));
}

// Points that a linear chain passes through: the ends of its segments, or two points of the line
// of an unbounded one.
void pointsOfLinear(const KrGeCurve3d& curve, const KrGeLine3d& line, KrsArray<KrGePoint3d>& points) {
  KrGePoint3d start, end;
  const bool hasStart = curve.hasStartPoint(start), hasEnd = curve.hasEndPoint(end);
  points.Add(hasStart ? start : line.pointOnLine());
  points.Add(hasEnd ? end : line.pointOnLine() + line.direction());
}

// The plane through the three points spanning the widest triangle found greedily: the first
// point, the farthest from it, the farthest from their line. False when they are all on a line.
bool planeThrough(const KrsArray<KrGePoint3d>& points, KrGePlane& plane, const KrGeTol& tol) {
  if (points.GetCount() < 3) return false;
  const KrGePoint3d origin = points[0];
  KrGeVector3d along;
  for (int i = 1; i < points.GetCount(); ++i)
    if ((points[i] - origin).length() > along.length()) along = points[i] - origin;
  KrGeVector3d normal;
  for (int i = 1; i < points.GetCount(); ++i) {
    const KrGeVector3d candidate = along.crossProduct(points[i] - origin);
    if (candidate.length() > normal.length()) normal = candidate;
  }
  if (!(normal.length() > tol.equalPoint() * along.length())) return false;
  plane.set(origin, normal);
  return true;
}

}  // namespace

KrGePoint3d KrCompositeCurve3dImpl::closestPointTo(const KrGePoint3d& point, const KrGeTol& tol) const {
  KRS_AUTOTEST("KrGePoint3d KrCompositeCurve3dImpl::closestPointTo(const KrGePoint3d& pnt, const KrGeTol& tol) const");
  KrGePoint3d result = KrGePoint3d::kOrigin;
  double best = kLargest;
  for (int i = 0; i < count() && !(best < 1e-16); ++i) {
    const KrGePoint3d candidate = segment(i).closestPointTo(point, tol);
    const double distance = candidate.distanceTo(point);
    if (distance < best) {
      best = distance;
      result = candidate;
    }
  }
  return result;
}

KrGePoint3d KrCompositeCurve3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv,
                                                   const KrGeTol& tol) const {
  KRS_AUTOTEST("KrGePoint3d KrCompositeCurve3dImpl::closestPointTo(const KrGeCurve3d& curve2, KrGePoint3d& pntOnOtherCrv, const KrGeTol& tol) const");
  KrGePoint3d onThis = KrGePoint3d::kOrigin;
  krrelation::closestPair(*this, *curveImplOf(curve2), onThis, pntOnOtherCrv, tol);
  return onThis;
}

// One procedure for both kinds of block: the range's open sides stand for values next to zero,
// the covered segments give their blocks over their shares, and several blocks are boxed together.
KrGeBoundBlock3d KrCompositeCurve3dImpl::blockOver(const KrGeInterval& range, bool ortho) const {
  if (count() == 0) return KrGeBoundBlock3d();
  double from = range.isBoundedBelow() ? range.lowerBound() : -kSmallest;
  double to = range.isBoundedAbove() ? range.upperBound() : kSmallest;
  if (to < from) {
    const double lower = to;
    to = from;
    from = lower;
  }
  int idxStartCurve = 0, idxLastCurve = 0;
  const double local0 = globalToLocalParam(from, idxStartCurve);
  const double local1 = globalToLocalParam(to, idxLastCurve);
  KRS_CHECK_TEXT_AT(idxLastCurve >= idxStartCurve, "(idxLastCurve>=idxStartCurve)", kSource, 558);
  if (idxLastCurve < idxStartCurve) return KrGeBoundBlock3d();
  KrGeBoundBlock3d result;
  for (int i = idxStartCurve; i <= idxLastCurve; ++i) {
    KrGeInterval own(1e-12);
    segment(i).getInterval(own);
    const double a = i == idxStartCurve ? local0 : own.lowerBound();
    const double b = i == idxLastCurve ? local1 : own.upperBound();
    const KrGeInterval share(a, b, 1e-12);
    const KrGeBoundBlock3d block = ortho ? segment(i).orthoBoundBlock(share) : segment(i).boundBlock(share);
    if (idxStartCurve == idxLastCurve) return block;
    takeIn(result, block);
  }
  return result;
}

KrGeBoundBlock3d KrCompositeCurve3dImpl::boundBlock(const KrGeInterval& range) const {
  KRS_AUTOTEST("KrGeBoundBlock3d KrCompositeCurve3dImpl::boundBlock(const KrGeInterval& range) const");
  return blockOver(range, false);
}

KrGeBoundBlock3d KrCompositeCurve3dImpl::orthoBoundBlock(const KrGeInterval& range) const {
  KRS_AUTOTEST("KrGeBoundBlock3d KrCompositeCurve3dImpl::orthoBoundBlock(const KrGeInterval& range) const");
  return blockOver(range, true);
}

// The number is handed to every segment as it is: a segment answers for its own parameter.
bool KrCompositeCurve3dImpl::isOn(double param, const KrGeTol& tol) const {
  for (int i = 0; i < count(); ++i)
    if (segment(i).isOn(param, tol)) return true;
  return false;
}

bool KrCompositeCurve3dImpl::isOn(const KrGePoint3d& point, double& param, const KrGeTol& tol) const {
  param = 0.0;
  for (int i = 0; i < count(); ++i) {
    double own = 0.0;
    if (segment(i).isOn(point, own, tol)) {
      param = own;
      return true;
    }
  }
  return false;
}

double KrCompositeCurve3dImpl::paramOf(const KrGePoint3d& point, const KrGeTol& tol) const {
  KRS_NOT_IMPLEMENTED_AT(kSource, 634);
  if (count() == 0) return 0.0;
  int nearest = 0;
  double best = kLargest;
  for (int i = 0; i < count(); ++i) {
    double own = 0.0;
    if (segment(i).isOn(point, own, tol)) return localToGlobalParam(own, i);
    const double distance = segment(i).distanceTo(point, tol);
    if (distance < best) {
      best = distance;
      nearest = i;
    }
  }
  const KrGeCurve3d& curve = segment(nearest);
  return localToGlobalParam(curve.paramOf(curve.closestPointTo(point, tol), tol), nearest);
}

bool KrCompositeCurve3dImpl::isClosed(const KrGeTol& tol) const {
  KrGePoint3d start, end;
  if (!hasStartPoint(start) || !hasEndPoint(end)) return false;
  return start.distanceTo(end) <= tol.equalPoint();
}

bool KrCompositeCurve3dImpl::linearChain(KrGeLine3d& line, const KrGeTol& tol) const {
  if (count() == 0 || !segment(0).isLinear(line, tol)) return false;
  for (int i = 1; i < count(); ++i) {
    KrGeLine3d own;
    if (!segment(i).isLinear(own, tol) || !own.isColinearTo(line, tol)) return false;
  }
  return true;
}

bool KrCompositeCurve3dImpl::isLinear(KrGeLine3d& line, const KrGeTol& tol) const {
  KRS_AUTOTEST("bool KrCompositeCurve3dImpl::isLinear(KrGeLine3d& line, const KrGeTol& tol) const");
  KrGeLine3d found;
  if (!linearChain(found, tol)) return false;
  line = found;
  return true;
}

// The candidate plane comes from the first curved segment that is planar, or, for a chain of
// non-colinear linear segments, from the points they pass through; every segment must then lie
// in it.
bool KrCompositeCurve3dImpl::isPlanar(KrGePlane& plane, const KrGeTol& tol) const {
  if (count() == 0) return false;
  KrGeLine3d line;
  if (linearChain(line, tol)) return line.isPlanar(plane, tol);
  KrGePlane candidate;
  bool found = false;
  KrsArray<KrGePoint3d> points;
  for (int i = 0; i < count(); ++i) {
    KrGeLine3d own;
    KrGePlane ownPlane;
    if (segment(i).isLinear(own, tol)) {
      pointsOfLinear(segment(i), own, points);
    } else if (!segment(i).isPlanar(ownPlane, tol)) {
      return false;
    } else if (!found) {
      candidate = ownPlane;
      found = true;
    }
  }
  if (!found && !planeThrough(points, candidate, tol)) return false;
  for (int i = 0; i < count(); ++i) {
    KrGeLine3d own;
    KrGePlane ownPlane;
    if (segment(i).isLinear(own, tol)) {
      if (!own.isOn(candidate, tol)) return false;
    } else if (!segment(i).isPlanar(ownPlane, tol) || !ownPlane.isCoplanarTo(candidate, tol)) {
      return false;
    }
  }
  plane = candidate;
  return true;
}

// A linear chain leaves the choice of plane to the other curve (as a line does); otherwise the
// other curve must lie in this chain's plane.
bool KrCompositeCurve3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const {
  KRS_AUTOTEST("bool KrCompositeCurve3dImpl::isCoplanarWith(const KrGeCurve3d& curve2, KrGePlane& plane, const KrGeTol& tol) const");
  KrGeLine3d line;
  if (linearChain(line, tol)) return line.isCoplanarWith(curve2, plane, tol);
  KrGePlane own;
  if (!isPlanar(own, tol)) return false;
  KrGeLine3d otherLine;
  KrGePlane otherPlane;
  if (curve2.isLinear(otherLine, tol)) {
    if (!otherLine.isOn(own, tol)) return false;
  } else if (!curve2.isPlanar(otherPlane, tol) || !otherPlane.isCoplanarTo(own, tol)) {
    return false;
  }
  plane = own;
  return true;
}

// The joining of the pieces is in composite_offset.
void KrCompositeCurve3dImpl::getTrimmedOffset(double distance, const KrGeVector3d& planeNormal,
                                              KrsArray<void*>& offsetCurveList, KrGe::OffsetCrvExtType extensionType,
                                              const KrGeTol& tol) const {
  KRS_AUTOTEST("void KrCompositeCurve3dImpl::getTrimmedOffset(double distance, const KrGeVector3d& planeNormal, KrGeVoidPointerArray& offsetCurveList, KrGe::OffsetCrvExtType extensionType, const KrGeTol& tol) const");
  krOffsetChain(*this, distance, planeNormal, offsetCurveList, extensionType, tol);
}
