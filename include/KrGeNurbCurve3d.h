// A non-uniform rational B-spline curve in 3D space.
#pragma once

#include "KrGeSplineEnt3d.h"

class KrGeNurbCurve3dImpl;

// Definition: degree p, knots (a KrGeKnotVector with its own tolerance, 1e-9 unless a copied
// vector brings another), control points, weights and fit points, stored as given. The curve is
// rational when it holds at least as many weights as control points. Fit points are only stored.
// The NURBS data object is this curve's implementation and is released with it.
//
// type() is kNurbCurve3d (42); isKindOf is true for kNurbCurve3d, kSplineEnt3d (41), kCurve3d and
// kEntity3d. The spline-base queries (degree(), knots(), controlPointAt(), ...) keep the neutral
// answers of KrGeSplineEnt3d on a NURBS curve.
//
// Reports (source "KrNurbCurve3dImpl", each site once per process while assertions are on):
// "(((HRESULT)0x80004001L))" for an operation marked "not implemented" below, at the line given;
// the index checks "(index < 0 || index >= mFitPoints.GetCount())",
// "(index < 0 || index >= mWeights.GetCount())" and "(idx < 0 || idx >= mWeights.GetCount())".
// An index out of range is reported and then changes or copies nothing.
//
// Curve operations. They work on the evaluable definition: 1 <= p <= 32, knots finite and
// non-decreasing, n >= p + 1 control points in use, where n = min(stored points, knots - p - 1)
// (surplus points are ignored), finite points, weights finite and > 0 when rational, and
// knot[p] < knot[n]. The range is [knot[p], knot[n]] (the curve is not periodic); evaluation
// outside it continues the end spans' polynomials. A definition that is not evaluable answers
// neutrally: evalPoint gives the stored point evaluation described at evaluatePoint with zero
// derivatives, the range is [first knot, last knot] (or [0, 0] without knots), length 0,
// closest points and parameters at the range start, no samples, empty blocks, not closed,
// planar or linear, no split pieces; nothing is reported.
//   evalPoint(param, n): the point and derivatives 1..n (rational ones by the quotient rule);
//     the derivative at a knot is the one of the span to its right (left at the range end).
//     n < 0 gives none, n above 1048576 gives 1048576 with the warning
//     "KrNurbCurve3dImpl::evalPoint - numDeriv above 1048576, 1048576 used".
//   getSamplePoints(numSample): evenly in the parameter (at least 2 points; above 1048576,
//     1048576 with "KrNurbCurve3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used").
//   getSamplePoints(from, to, approxEps): every knot of the range is a sample; between knots the
//     step h keeps h^2 M / 8 below max(approxEps, 1e-12 |curve|), M twice the largest |C''| at
//     2p + 3 probes of the span (at most 1048576 points; non-finite ranges give none).
//   length(from, to, tol): Gauss-Kronrod (7, 15) per knot span, spans bisected until the
//     estimate |K15 - G7| is below max(tol, 1e-15 length) for the piece; paramAtLength inverts it
//     by safeguarded Newton to the same accuracy and stops at the range ends.
//   closestPointTo(point), paramOf, isOn, distanceTo: the global nearest point: spans in order of
//     their Bezier hull's distance, each searched by branch and bound on halved Bezier pieces
//     (hulls farther than the best point so far are dropped); nearly straight pieces get Newton
//     safeguarded by bisection. Exact to rounding.
//   closestPointTo(curve), distanceTo(curve), intersections: the generic pair solver (hull
//     subdivision, Newton on the parameter pair, end-point pairs).
//   boundBlock(range): the exact axis-aligned box of the curve over the range within
//     1e-12 of its size (Bezier pieces subdivided until their control hull stops growing it);
//     orthoBoundBlock(range): the box of the range's Bezier control polygons (contains the curve,
//     cheaper, not tight).
//   transformBy: maps the control points (exact for every affine map); a non-finite matrix
//     changes nothing. project(plane, dir): the NURBS curve of the projected control points.
//   isClosed: end points within tol.equalPoint(). isPlanar / isLinear: every control point in use
//     within tol.equalPoint() of the plane / line (exact: the curve lies in an affine subspace
//     exactly when its control points do). isDegenerate: a point entity (kPosition3d) when all
//     control points coincide within tol.equalPoint().
//   setInterval(range): trims the curve to a bounded range inside the current one by knot
//     insertion (false, nothing changed, otherwise); setInterval(): no change. reverseParam:
//     knots u -> a + b - u, control points and weights reversed. getSplitCurves(param): two
//     NURBS curves by knot insertion to full multiplicity; a parameter at or beyond an end gives
//     a copy and a null piece. explode: the curve itself (flag 0), or with a bounded interval a new
//     trimmed copy (flag 1). isPeriodic: false. area: the (unsigned) area between a planar curve
//     and its chord, by the same quadrature; false for a curve that is not planar.
//   getTrimmedOffset: not implemented (line 760; the offset of a NURBS curve is no NURBS curve).
class KRGEL_API KrGeNurbCurve3d : public KrGeSplineEnt3d {
public:
  // Degree 1, knots [0, 0, 1, 1], control points (0,0,0) and (1,0,0), no weights.
  KrGeNurbCurve3d();
  KrGeNurbCurve3d(const KrGeNurbCurve3d& src);
  // Stores degree, knots and points (isPeriodic is dropped); not implemented (line 275).
  KrGeNurbCurve3d(int degree, const KrGeKnotVector& knots, const KrsArray<KrGePoint3d>& controlPoints,
                  bool isPeriodic = false);
  // Stores degree, knots, points and weights (isPeriodic is dropped); no report.
  KrGeNurbCurve3d(int degree, const KrGeKnotVector& knots, const KrsArray<KrGePoint3d>& controlPoints,
                  const KrsArray<double>& weights, bool isPeriodic = false);
  // Degree 1 over [0, L], L the segment's length, from its start to its end point.
  explicit KrGeNurbCurve3d(const KrGeLineSeg3d& linSeg);
  // A placeholder that keeps only the arc's end points: degree 2, knots [0,0,0,L,L,L] with
  // L = endAng() - startAng(), points startPoint(), center() + majorRadius() majorAxis() +
  // minorRadius() minorAxis(), endPoint(), no weights. It does not follow the ellipse.
  explicit KrGeNurbCurve3d(const KrGeEllipArc3d& ellipse);
  // Fit-point constructors: an empty definition (degree 0, no knots, no points); not
  // implemented (lines 370, 398 and 364 respectively).
  KrGeNurbCurve3d(const KrsArray<KrGePoint3d>& fitPoints, const KrGeTol& fitTolerance);
  KrGeNurbCurve3d(const KrsArray<KrGePoint3d>& fitPoints, const KrsArray<KrGeVector3d>& fitTangents,
                  const KrGeTol& fitTolerance, bool isPeriodic = false);
  KrGeNurbCurve3d(const KrsArray<KrGePoint3d>& fitPoints, const KrGeVector3d& startTangent,
                  const KrGeVector3d& endTangent, bool startTangentDefined, bool endTangentDefined,
                  const KrGeTol& fitTolerance);

  // The number of control points (not of fit points).
  int numFitPoints() const;
  // Copies fit point `index` into `point` (index checked, line 447); false in every case.
  bool getFitPointAt(int index, KrGePoint3d& point) const;
  // Not implemented, false, outputs untouched: lines 454, 460 (two tangents), 470 (four
  // arguments), 481, 493.
  bool getFitTolerance(KrGeTol& fitTolerance) const;
  bool getFitTangents(KrGeVector3d& startTangent, KrGeVector3d& endTangent) const;
  bool getFitTangents(KrGeVector3d& startTangent, KrGeVector3d& endTangent, bool& startTangentDefined,
                      bool& endTangentDefined) const;
  bool getFitData(KrsArray<KrGePoint3d>& fitPoints, KrGeTol& fitTolerance, bool& tangentsExist,
                  KrGeVector3d& startTangent, KrGeVector3d& endTangent) const;
  bool getDefinitionData(int& degree, bool& rational, bool& periodic, KrGeKnotVector& knots,
                         KrsArray<KrGePoint3d>& controlPoints, KrsArray<double>& weights) const;
  // The number of weights; weight idx (checked, line 503; 0 when out of range).
  int numWeights() const;
  double weightAt(int idx) const;
  // Not implemented, false: lines 509, 515, 521.
  bool evalMode() const;
  bool getParamsOfC1Discontinuity(KrsArray<double>& params, const KrGeTol& tol = KrGeContext::gTol) const;
  bool getParamsOfG1Discontinuity(KrsArray<double>& params, const KrGeTol& tol = KrGeContext::gTol) const;

  // Checks index against the weights (line 527), stores the fit point when index is a fit point,
  // then not implemented (line 529); false.
  bool setFitPointAt(int index, const KrGePoint3d& point);
  // Inserts the fit point at index (0 <= index <= count, else nothing), then not implemented
  // (line 536); false.
  bool addFitPointAt(int index, const KrGePoint3d& point);
  // Not implemented (line 543), false, nothing removed.
  bool deleteFitPointAt(int index);
  // Not implemented, false: lines 549, 558 (two tangents), 568 (four arguments).
  bool setFitTolerance(const KrGeTol& fitTol = KrGeContext::gTol);
  bool setFitTangents(const KrGeVector3d& startTangent, const KrGeVector3d& endTangent);
  bool setFitTangents(const KrGeVector3d& startTangent, const KrGeVector3d& endTangent, bool startTangentDefined,
                      bool endTangentDefined);
  // Stores the fit points only, then not implemented (line 600).
  KrGeNurbCurve3d& setFitData(int degree, const KrsArray<KrGePoint3d>& fitPoints,
                              const KrGeTol& fitTol = KrGeContext::gTol);
  // Not implemented, curve unchanged: lines 590 and 578.
  KrGeNurbCurve3d& setFitData(const KrGeKnotVector& fitKnots, const KrsArray<KrGePoint3d>& fitPoints,
                              const KrGeVector3d& startTangent, const KrGeVector3d& endTangent,
                              const KrGeTol& fitTol = KrGeContext::gTol, bool isPeriodic = false);
  KrGeNurbCurve3d& setFitData(const KrsArray<KrGePoint3d>& fitPoints, const KrGeVector3d& startTangent,
                              const KrGeVector3d& endTangent, const KrGeTol& fitTol = KrGeContext::gTol);
  // False without fit points; otherwise removes them all and answers true.
  bool purgeFitData();

  // Adds newKnot to the knots (knots.insert) unless knots.isOn(newKnot); control points and
  // weights are not touched, so the curve changes.
  KrGeNurbCurve3d& addKnot(double newKnot);
  // Inserts newKnot once at k, the index of the first knot >= newKnot, and rebuilds the control
  // points with coefficients a[j] read from the new knots: 1 for j <= k - p,
  // (u - knot[j]) / (knot[j + p] - knot[j]) for k - p < j <= k (1 when that span is empty), 1 for
  // j > k. New point j is old j - 1 when a[j] = 0, old j when a[j] = 1, otherwise
  // a[j] old[j] + (1 - a[j]) old[j - 1]; there are as many new points as knots, and a point
  // whose old source lies outside the old points stays at the origin. Weights are unchanged.
  // Unlike textbook insertion the tail keeps old[j] rather than old[j - 1], so in general the
  // curve changes; inserting the end parameter leaves a non-rational curve unchanged. Weights
  // are not added, so a rational curve stops counting as rational.
  KrGeNurbCurve3d& insertKnot(double newKnot);
  // Stores the weight (index checked, line 665; nothing stored when out of range).
  KrGeNurbCurve3d& setWeightAt(int idx, double weight);
  // Not implemented, curve unchanged: lines 672, 678, 684, 690, 696, 702, 708, 714.
  KrGeNurbCurve3d& setEvalMode(bool evalMode = false);
  KrGeNurbCurve3d& joinWith(const KrGeNurbCurve3d& curve);
  KrGeNurbCurve3d& hardTrimByParams(double newStartParam, double newEndParam);
  KrGeNurbCurve3d& makeRational(double weight = 1.0);
  KrGeNurbCurve3d& makeClosed();
  KrGeNurbCurve3d& makePeriodic();
  KrGeNurbCurve3d& makeNonPeriodic();
  KrGeNurbCurve3d& makeOpen();
  // Adds plusDegree to the degree (also when negative, after reporting "(plusDegree < 0)",
  // line 720); knots and control points stay, so the curve changes.
  KrGeNurbCurve3d& elevateDegree(int plusDegree);

  // The point at u by the stored definition, evaluated as stored even when it is not
  // evaluable. With p <= n (n stored points): span s = (index of the first knot >= u) - 1 clamped
  // to [p, n - 1], the triangular Cox-de Boor scheme on it, weights used when rational; knots
  // read beyond either end of the vector are the end knot, points before the first are skipped,
  // a zero denominator contributes 0, and without knots the answer is the origin. With p > n: the
  // sum of basisValue(u, i, p + 1) P[i] without weights (the origin without points). A negative
  // degree or one above 32 with p <= n answers the origin.
  KrGePoint3d evaluatePoint(double u) const;
  // The B-spline basis function of index i and order q (degree q - 1) at u over the stored
  // knots: right-continuous, with the last non-empty span closed at the end knot. Order q <= 0
  // reports "(nDegree <= 0)" (line 780) and answers 0; an index whose knots lie outside the
  // vector or an order above 33 reports "(((HRESULT)0x80004005L))" (line 784) and answers 0.
  double basisValue(double u, int i, int q) const;

  // Copies degree, knots (with tolerance), points, weights and fit points.
  KrGeNurbCurve3d& operator=(const KrGeNurbCurve3d& spline);
  using KrGeSplineEnt3d::operator=;

private:
  KrGeNurbCurve3dImpl* impl() const;
};
