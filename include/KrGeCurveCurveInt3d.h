// The intersections of two curves, each restricted to a parameter range, found at once when the
// object is set and read back afterwards, together with the plane normal and the tolerance used.
#pragma once

#include "KrGeEntity3d.h"
#include "KrGeInterval.h"

class KrCurveCurveInt3dImpl;

// type() is kCurveCurveInt3d; isKindOf is true for kCurveCurveInt3d and kEntity3d only.
//
// The curves are borrowed, never copied or owned: the caller keeps them alive (and unchanged)
// while the result is read. Copies and assignments copy every field, the curve pointers included,
// so both objects then refer to the same curves.
//
// Computation (on every set): lines and segments (kinds of kLinearEnt3d), circular arcs and
// elliptical arcs are understood; any other kind gives no points and reports
// "(((HRESULT)0x80004001L))" once per process for the first curve and once for the second. The
// candidates come from the pairwise solvers of the two kinds (a tangency is one point; a
// coincident stretch gives no points; a pair of kinds without a solver gives none). A candidate
// is kept, in the order found, when it passes for both curves: a curve that is not degenerate
// (isDegenerate with the stored tolerance) must contain paramOf(candidate) in its range (the
// range's own tolerance, "<=" within); a degenerate one (a zero-length segment, an arc of zero
// radius) must have the candidate on it within tol.equalPoint(). At most four points.
//
// Indexes: intPoint, getPointOnCurve1/2 and getIntConfigs accept 0 to 4 and report "(intNum <
// 0 || intNum > 4)" (intPoint) or "(intNum<0 || intNum>4)" (the others) once otherwise. Only
// four points are stored: an index without a stored slot (4, negative, or reaching past the
// start in reversed order) reads the origin. Index i is point i as found, or point
// (numIntPoints() - 1 - i) while the order is reversed (changeCurveOrder, orderWrt1/2).
class KRGEL_API KrGeCurveCurveInt3d : public KrGeEntity3d {
public:
  // No curves, no points, normal +Z, ranges unbounded, tolerance KrGeContext::gTol.
  KrGeCurveCurveInt3d();
  KrGeCurveCurveInt3d(const KrGeCurveCurveInt3d& src);
  // set(curve1, curve2, planeNormal, tol).
  KrGeCurveCurveInt3d(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                      const KrGeVector3d& planeNormal = KrGeVector3d::kZAxis,
                      const KrGeTol& tol = KrGeContext::gTol);
  // set(curve1, curve2, range1, range2, planeNormal, tol).
  KrGeCurveCurveInt3d(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeInterval& range1,
                      const KrGeInterval& range2, const KrGeVector3d& planeNormal = KrGeVector3d::kZAxis,
                      const KrGeTol& tol = KrGeContext::gTol);

  using KrGeEntity3d::operator=;
  // In-place copy of every field; self-assignment does nothing.
  KrGeCurveCurveInt3d& operator=(const KrGeCurveCurveInt3d& src);

  // The borrowed curves (null before the first set).
  const KrGeCurve3d* curve1() const;
  const KrGeCurve3d* curve2() const;
  // The ranges the points were restricted to.
  void getIntRanges(KrGeInterval& range1, KrGeInterval& range2) const;
  // The normal and the tolerance given to set, as given.
  KrGeVector3d planeNormal() const;
  KrGeTol tolerance() const;

  int numIntPoints() const;
  // The point of index intNum (see Indexes above).
  KrGePoint3d intPoint(int intNum) const;
  // Not provided: reports "(((HRESULT)0x80004001L))" once per process; param1 and param2 are left
  // as they were (read the parameters through getPointOnCurve1/2).
  void getIntParams(int intNum, double& param1, double& param2) const;
  // The point of index intNum as a point on curve 1 (curve 2): that curve and the parameter
  // paramOf(intPoint(intNum), KrGeContext::gTol). Without curves the argument is left as it was.
  void getPointOnCurve1(int intNum, KrGePointOnCurve3d& intPnt) const;
  void getPointOnCurve2(int intNum, KrGePointOnCurve3d& intPnt) const;

  // How each curve lies against the other around the point of index intNum, seen from the side
  // the plane normal points to (the normal towards the viewer, "left" is counter-clockwise of the
  // other curve's direction); both curves are projected along the normal first. Per curve:
  //   - at the start (end) of its range the side before (after) the point is missing: "Point";
  //     a range whose both ends are at the point counts as a closed loop through it;
  //   - tangents not parallel (sine of their angle > KrGeContext::gTol.equalVector(), the test of
  //     isTangential): it crosses, kLeftRight or kRightLeft;
  //   - tangents parallel: the sign of the second-order separation
  //       c1''.l2 - (t1.u2)^2 / |t2|^2 * c2''.l2   (u2, l2: unit tangent and left normal of curve 2)
  //     decides a touching from the left or the right (kLeftLeft, kRightRight); when it is zero
  //     within equalVector relative to its two terms (the same line, the same circle) the curves
  //     overlap on that side (kOverlap...). Exact for lines and circles.
  // kUnknown when the normal or a projected tangent has zero length (a curve seen end-on) or a
  // range is a single point; kNotDefined (both) for an index without a point or without curves,
  // reporting "(intNum<0 || intNum>4)" for one outside 0 to 4.
  void getIntConfigs(int intNum, KrGe::KrGeXConfig& config1wrt2, KrGe::KrGeXConfig& config2wrt1) const;
  // The first derivatives of both curves at the point (parameters by paramOf with
  // KrGeContext::gTol) are parallel by KrGeVector3d::isParallelTo(KrGeContext::gTol) (a zero
  // derivative counts as parallel). False for an index without a point.
  bool isTangential(int intNum) const;
  // A point of index intNum that is not tangential.
  bool isTransversal(int intNum) const;
  // Not provided: report "(((HRESULT)0x80004001L))" once per process each. intPointTol answers
  // 0, overlapCount 0; getOverlapRanges leaves its arguments as they were.
  double intPointTol(int intNum) const;
  int overlapCount() const;
  void getOverlapRanges(int overlapNum, KrGeInterval& range1, KrGeInterval& range2) const;
  // Whether both curves run the same way through the first two points found (their parameters
  // grow together, KrGeContext::gTol). With fewer than two points it reports
  // "(((HRESULT)0x80004001L))" once per process and answers false.
  bool overlapDirection() const;

  // Toggles the reversed reading order of the points.
  void changeCurveOrder();
  // Reverses the reading order when the second point comes before the first on curve 1
  // (paramOf with KrGeContext::gTol; only the first two points are looked at, nothing happens
  // with fewer), then reports "(((HRESULT)0x80004001L))" once per process: the ordering is
  // incomplete. orderWrt2 does exactly the same, reading curve 1 as well.
  KrGeCurveCurveInt3d& orderWrt1();
  KrGeCurveCurveInt3d& orderWrt2();

  // Stores the curves (each with its own interval as range), the normal and the tolerance, and
  // computes the points.
  KrGeCurveCurveInt3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2,
                           const KrGeVector3d& planeNormal = KrGeVector3d::kZAxis,
                           const KrGeTol& tol = KrGeContext::gTol);
  // The same with the given ranges.
  KrGeCurveCurveInt3d& set(const KrGeCurve3d& curve1, const KrGeCurve3d& curve2, const KrGeInterval& range1,
                           const KrGeInterval& range2, const KrGeVector3d& planeNormal = KrGeVector3d::kZAxis,
                           const KrGeTol& tol = KrGeContext::gTol);

  // Entity operations on the result (the curves are not the object's to move):
  //   transformBy maps the stored points and the normal; the curves stay where they are, so the
  //     caller transforms them alongside for the parameters and configurations to stay right;
  //   isEqualTo: the same two curve objects, equal ranges (operator==), normals equal within
  //     tol.equalVector(), the same count and each point intPoint(i) within tol.equalPoint();
  //   isOn: the point is one of the intersection points within tol.equalPoint().

private:
  KrCurveCurveInt3dImpl* impl() const;
};
