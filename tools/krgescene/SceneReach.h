// What the library answers today, query by query: a kind joins a list once the library answers
// that query for it, and the command table and the queries read these lists only.
#pragma once

#include "SceneModel.h"

namespace krgescene {

constexpr unsigned kEvalKinds = kCurveKinds;          // eval, sample
constexpr unsigned kMeasureKinds = kLinearKinds;      // length, paramat, param
constexpr unsigned kPointCurveKinds = kLinearKinds;   // closest, projclosest of a point and a curve
constexpr unsigned kCurvePairKinds = kLinearKinds;    // closest, projclosest, intersect of two curves
constexpr unsigned kCurvePlaneKinds = kLinearKinds;   // intersect of a curve and a plane
constexpr unsigned kBoundKinds = kLinearKinds;        // bound
constexpr unsigned kDegenerateKinds = kLinearKinds;   // degenerate
constexpr unsigned kOffsetKinds = kSegmentKind;       // offset

constexpr unsigned kClosestKinds = kPointKind | kPointCurveKinds | kCurvePairKinds;
constexpr unsigned kIntersectKinds = kCurvePairKinds | kCurvePlaneKinds | kPlaneKind;

}  // namespace krgescene
