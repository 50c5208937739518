// The bounded line segment: origin + t * direction over a bounded interval, [0, 1] by default.
#pragma once

#include "KrGeLinearEnt3d.h"

class KrLinearEnt3dImpl;

// type() is kLineSeg3d; isKindOf is true for kLineSeg3d, kLinearEnt3d, kCurve3d and kEntity3d.
// Built from two points it runs from the first (parameter 0) to the second (parameter 1).
// reverseParam() swaps the ends without touching the interval: on [0, 1] the segment from p to
// q becomes the one from q to p, on another interval the parameter t of a point becomes 1 - t.
class KRGEL_API KrGeLineSeg3d : public KrGeLinearEnt3d {
public:
  // From the origin to (1, 0, 0).
  KrGeLineSeg3d();
  KrGeLineSeg3d(const KrGeLineSeg3d& line);
  // From pnt to pnt + vec.
  KrGeLineSeg3d(const KrGePoint3d& pnt, const KrGeVector3d& vec);
  // From pnt1 to pnt2.
  KrGeLineSeg3d(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2);

  using KrGeLinearEnt3d::operator=;
  KrGeLineSeg3d& operator=(const KrGeLineSeg3d& line);

  using KrGeCurve3d::length;
  // Distance from the start to the end point.
  double length() const;
  // The plane through midPoint() with the unit direction as normal: every point of it is as far
  // from the start as from the end.
  void getBisector(KrGePlane& plane) const;
  // evalPoint(blendCoeff): 0 gives origin, 1 gives origin + direction.
  KrGePoint3d baryComb(double blendCoeff) const;
  // The points at the lower bound, the middle of the interval and the upper bound.
  KrGePoint3d startPoint() const;
  KrGePoint3d midPoint() const;
  KrGePoint3d endPoint() const;

  // From pnt1 to pnt2 on [0, 1].
  KrGeLineSeg3d& set(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2);
  // From pnt to pnt + vec on [0, 1].
  KrGeLineSeg3d& set(const KrGePoint3d& pnt, const KrGeVector3d& vec);
  // The segment from `point` to the point of `curve` where the segment's line touches the curve
  // (param: that point's parameter on the curve). Decisions use KrGeContext::gTol.
  //   Linear curve: its own line is its only tangent, so a solution exists only when `point` lies
  //     on that line and the curve is bounded; the segment runs from `point` to the curve's end
  //     farther from it.
  //   Circular arc: `point` must lie in the arc's plane and outside its circle; of the two touch
  //     points of the tangents from it, those inside the arc's range qualify and the one with the
  //     smaller angle is taken.
  // Otherwise success is false and the segment and param are unchanged. Curve kinds without a
  // tangent construction report "(((HRESULT)0x80004001L))" and answer false.
  KrGeLineSeg3d& set(const KrGeCurve3d& curve, const KrGePoint3d& point, double& param, bool& success);
  // The segment of a line touching both curves, from its point on curve1 (param1) to its point on
  // curve2 (param2). Decisions use KrGeContext::gTol.
  //   Two linear curves: bounded and colinear; the segment bridges them from the end of curve1
  //     nearest to curve2 to the end of curve2 nearest to curve1.
  //   A linear curve and an arc (either order): the bounded linear curve's line must touch the
  //     arc's circle, in its plane, inside the arc's range; the segment runs between the touch
  //     point and the linear curve's end nearest to it.
  //   Two arcs: coplanar, neither concentric nor nested; of their outer and inner common tangents
  //     those with distinct touch points inside both ranges qualify, and the shortest is taken
  //     (outer before inner on a tie).
  // Otherwise success is false and the segment and parameters are unchanged. Curve kinds
  // without a tangent construction report "(((HRESULT)0x80004001L))" and answer false.
  KrGeLineSeg3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, double& param1, double& param2,
                     bool& success);

private:
  KrLinearEnt3dImpl* impl() const;
};
