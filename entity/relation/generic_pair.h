// The generic row of the relation layer: closest pair and intersection points of any two curves
// that can evaluate themselves and bound a parameter range (every curve kind can), for pairs of
// kinds without a closed-form solver. Plain free functions so that any kind (composite curves
// included) can call them directly.
//
// Method: each curve's range is cut into pieces (a NURBS curve's knot spans, else eight) bounded
// by a block (orthoBoundBlock of the range; the Bezier control hull for a NURBS curve) and by a
// chord with a deviation bound; piece pairs are taken in order of their lower bound (block gap,
// or chord distance less both deviations) and halved until no pair can beat the best distance
// by more than tol.equalPoint(); pairs of small or nearly straight pieces are refined by Newton
// on the pair of parameters held inside them, and the end-point pairs (each end's nearest
// point on the other curve) are compared as well. An unbounded range (a line) is cut to the part
// that faces the other curve's block. At most 20000 pairs are examined per call.
#pragma once

#include "KrGeInterval.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"
#include "KrsArray.h"

class KrGeCurve3dImpl;
struct KrCurveIntersections;

// The closest pair over the given ranges (the curves' own ranges when null); the parameters and
// points of both. Distances are measured across `direction` when it is not null (the pair that
// looks closest when seen along it). False when a range is empty or cannot be bounded.
bool krGenericClosestParams(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                            const KrGeInterval* rangeFirst, const KrGeInterval* rangeSecond,
                            const KrGeVector3d* direction, const KrGeTol& tol, double& paramFirst,
                            double& paramSecond);
// Every point where the curves meet within tol.equalPoint() over the given ranges (own ranges
// when null): parameters on both, in the order found, one per touching; a coincident stretch
// gives the points its subdivision reaches. At most 1024 points.
int krGenericIntersections(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                           const KrGeInterval* rangeFirst, const KrGeInterval* rangeSecond, const KrGeTol& tol,
                           KrsArray<double>& paramsFirst, KrsArray<double>& paramsSecond);

// The dispatcher's row (KrCurveRelation.h) built on the two above.
namespace krrelation {
bool closestGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                    KrGePoint3d& onSecond, const KrGeTol& tol);
bool projClosestGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeVector3d& direction,
                        KrGePoint3d& onFirst, KrGePoint3d& onSecond, const KrGeTol& tol);
bool localClosestGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                         const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                         double& paramSecond, const KrGeTol& tol);
// The first KrCurveIntersections::kMax points of krGenericIntersections.
bool intersectGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                      KrCurveIntersections& result);
}  // namespace krrelation
