// A chain of curves (segments) parametrised by arc length: a contour of segments and arcs, a slot,
// a pocket outline.
#pragma once

#include "KrGe.h"
#include "KrGeCurve3d.h"

class KrCompositeCurve3dImpl;

// Representation: the segments in chain order (KrGeCurve3d pointers), one owned flag each, and a
// stored parameter interval, [0, L] after every list change (L the sum of the segment lengths).
// type() is kCompositeCrv3d; isKindOf is true for kCompositeCrv3d, kCurve3d and kEntity3d.
// Report source of the assertions and warnings below: "KrCompositeCurve3dImpl".
//
// Parameter: the global parameter s is arc length from the start of the first segment. The mapping
// to a segment (globalToLocalParam) picks the first segment i with s <= S(i+1) + g, S(i) the summed
// lengths of the segments before i and g = KrGeContext::gTol.equalPoint() (the last segment takes
// everything beyond), and answers that segment's paramAtLength(lower, s - S(i)); an unbounded
// segment counts as 1.7976931348623157e308 long and gets s itself; a segment that is itself a
// composite (parametrised by arc length too) gets lower + s - S(i). The stored interval takes no part
// in the mapping. Segment lengths are summed once per list change (setCurveList, the constructors,
// assignment, transformBy, reverseParam, setInterval()) and kept for a binary search, so evaluation
// costs O(log n) plus one segment evaluation. A segment changed in place through its own facade
// afterwards leaves the sums stale until setInterval() (or setCurveList) is called again.
//
// Ownership: an owned segment is deleted by the composite when its list is replaced or the composite
// is destroyed; the others are only used and must outlive the composite (or leave its list first).
// Each segment's implementation registers the composite with its flag. Release goes from the last
// segment to the first: the composite unregisters; when it owned the segment and no remaining owner
// owns it, the segment is deleted unless another container still uses it, in which case
// "(pC->m_pImpl->isReferenced())" (line 49) is reported and the segment is kept (its other users
// keep a valid pointer; the host deletes it once they are gone). A segment listed twice is released
// and deleted once, with the union of its flags; one that a new list holds again is not deleted
// but taken over with its new flag.
//
// Not implemented (report "(((HRESULT)0x80004001L))" once, then their notice; neutral results:
// the origin, false, null, 0, untouched outputs): both projClosestPointTo, getNormalPoint, project,
// paramAtLength, area, both isDegenerate, getSplitCurves, both getLocalClosestPoints, explode.
// The first call in the process of most operations sends "AUTOTEST not passed for \"<signature>\""
// once (these have not passed the library's self-checks): isCoplanarWith, the not-implemented ones,
// both closestPointTo, isLinear, length, evalPoint, globalToLocalParam, localToGlobalParam, boundBlock,
// orthoBoundBlock, both getSamplePoints and getTrimmedOffset. Operations that map parameters call
// globalToLocalParam (and paramOf localToGlobalParam) and so also send its notice and assertions.
//
// Curve operations, where they go beyond the generic contract:
//   evalPoint(s, n): the chosen segment's point and derivatives with respect to its own parameter
//     (not to arc length), n limited and reported as that segment's kind does; an empty composite
//     answers the origin.
//   length(from, to, tol): the ends exchanged when reversed; the segments' own lengths from the
//     mapped parameters, full segments in between. Empty: "(nCurves == 0)" (line 1199), 0.
//   getSamplePoints(n): n points at evenly spaced global parameters over the stored interval; n <= 1
//     reports the error "negative count" (line 1335, code 0x80070057) and gives none; above 1048576,
//     1048576 with "KrCompositeCurve3dImpl::getSamplePoints - numSample above 1048576, 1048576 used".
//   getSamplePoints(from, to, eps): every segment samples itself with these very (global) values;
//     points and the segments' own parameters are appended; the outputs are not emptied first.
//   closestPointTo(point): the nearest of the segments' nearest points (the earlier one on a tie);
//     stops at a distance below 1e-16; an empty composite answers the origin.
//   closestPointTo(curve2): the closest pair over all segments against curve2, each pair solved by
//     the curve-pair solvers (the earlier segment on a tie); an empty composite answers the origin.
//     Other curve kinds reach composites the same way in their own closestPointTo,
//     projClosestPointTo and getLocalClosestPoints (a neighbourhood on a composite is a range of its
//     arc length); when one segment's pair has no solver the whole query reports
//     "(((HRESULT)0x80004001L))" and answers as a kind without a solver does.
//   boundBlock(range), orthoBoundBlock(range): the segments covering the range each give their block
//     over their share of it, and the result is the axis-aligned box around all of them (a single
//     segment's block is returned as it is). An open side of the range stands for a value next to
//     zero (-2.2250738585072014e-308 below, 2.2250738585072014e-308 above), not for infinity.
//   setInterval(): [0, L], L summed over the segments' own bounded ranges; an unbounded segment
//     reports "(!curveInterval.isBounded())" (line 196) and adds nothing. setInterval(range): a
//     bounded range with lower <= upper is stored (true), anything else changes nothing (false);
//     the segments are not re-parametrised.
//   isOn(s, tol): true when a segment answers isOn(s, tol) for the same number s: s is handed to the
//     segments as it is, not mapped. isOn(point, param, tol): param is the answering segment's own
//     parameter. paramOf(point): not implemented (line 634) yet answers the global parameter of the
//     point on the first segment holding it within tol.equalPoint(), or of the nearest point of the
//     chain when none does; 0 for an empty composite.
//   isClosed: start and end points within tol.equalPoint(). isPeriodic: false (the parameter never
//     wraps, closed chains included).
//   isLinear(line): every segment is linear and has both end points on the first segment's line
//     (tol.equalPoint()). isPlanar(plane): the plane of the first non-linear planar segment, or of
//     the end points of linear chains, holding every segment within tol; a single line's plane as
//     the line kind gives it. isCoplanarWith(curve2): both lie in one plane, that plane returned.
//   transformBy: every distinct segment once (shared ones too: they are the same curves), then the
//     interval is recomputed. reverseParam: the order of the segments and each segment reversed,
//     then the interval is recomputed.
//   getTrimmedOffset: each segment's own offset (to the right of its direction for a positive
//     distance, seen from the side planeNormal points to), appended in chain order and joined at the corners: two
//     neighbouring pieces that cross are cut back to their crossing nearest the corner; a gap is
//     bridged by kFillet with the arc of radius |distance| about the corner, by kChamfer with the
//     straight segment between the ends, by kExtend by running both pieces on along their lines or
//     circles to their crossing nearest the corner (as kFillet where they never cross). A closed
//     chain is joined across its start too. Crossings between pieces that are not neighbours are
//     left as they are.
//   isEqualTo: the same number of segments, pairwise isEqualTo in order.
//   Copies (copy constructor, copy(), assignment): owned segments are copied and the copies owned;
//     the others are shared, unowned, and registered with the new composite as well.
class KRGEL_API KrGeCompositeCurve3d : public KrGeCurve3d {
public:
  // No segments; interval [0, 0].
  KrGeCompositeCurve3d();
  KrGeCompositeCurve3d(const KrGeCompositeCurve3d& curve);
  // setCurveList(curveList): nothing owned.
  explicit KrGeCompositeCurve3d(const KrsArray<void*>& curveList);
  // setCurveList(curveList, isOwnerOfCurves).
  KrGeCompositeCurve3d(const KrsArray<void*>& curveList, const KrsArray<int>& isOwnerOfCurves);

  using KrGeCurve3d::operator=;
  KrGeCompositeCurve3d& operator=(const KrGeCompositeCurve3d& curve);

  // The segment pointers in chain order (output resized to the count; ownership stays).
  void getCurveList(KrsArray<void*>& curveList) const;
  // Replaces the segments: the old ones are released (see above), the pointers are taken over,
  // segment i owned when isOwnerOfCurves[i] != 0, each registered, the interval recomputed.
  // Refused, list unchanged: different counts ("(nC!=nI)", line 1376), a null pointer ("(pC==NULL)"),
  // an entity that is not a curve or has no implementation ("(!pC->isKindOf(kCurve3d))"), a curve
  // that is or holds this composite ("(pC->m_pImpl==this)"), or composites nested more than 256 deep
  // ("(nDepth > 256)"; each level costs stack in every evaluation).
  KrGeCompositeCurve3d& setCurveList(const KrsArray<void*>& curveList, const KrsArray<int>& isOwnerOfCurves);
  // The same with nothing owned.
  KrGeCompositeCurve3d& setCurveList(const KrsArray<void*>& curveList);

  // The segment number (segNum) and its own parameter at global parameter `param` (the mapping
  // above). Empty list: "(nCurves == 0)" (line 1405), segNum 0, answer 0.
  double globalToLocalParam(double param, int& segNum) const;
  // The global parameter of segment segNum's own parameter `param`: the lengths of segments 0 to
  // segNum - 1 plus its length from its lower bound to param. Out of range: "(segNum < 0 || segNum
  // >= mCurveList.GetCount())" (line 1442) and the chain's nearer end: 0 below, the total length
  // beyond.
  double localToGlobalParam(double param, int segNum) const;

private:
  KrCompositeCurve3dImpl* impl() const;
};
