// What the library answers today, query by query: a kind joins a list once the library answers
// that query for it, and the command table and the queries read these lists only.
#pragma once

#include "SceneModel.h"

namespace krgescene {

constexpr unsigned kEvalKinds = kCurveKinds;         // eval, sample
constexpr unsigned kMeasureKinds = kCurveKinds;      // length, paramat, param
constexpr unsigned kPointCurveKinds = kCurveKinds;   // closest of a point and a curve
constexpr unsigned kCurvePairKinds = kLinearKinds;   // closest, intersect of two curves
constexpr unsigned kProjKinds = kLinearKinds;        // projclosest (with points or curves)
constexpr unsigned kCurvePlaneKinds = kCurveKinds;   // intersect of a curve and a plane
constexpr unsigned kBoundKinds = kCurveKinds;        // bound
constexpr unsigned kDegenerateKinds = kCurveKinds;   // degenerate
constexpr unsigned kOffsetKinds = kSegmentKind | kArcKind;  // offset
constexpr unsigned kTangentAtKinds = kArcKind;       // tangentat

constexpr unsigned kClosestKinds = kPointKind | kPointCurveKinds | kCurvePairKinds;
constexpr unsigned kProjClosestKinds = kPointKind | kProjKinds;
constexpr unsigned kIntersectKinds = kCurvePairKinds | kCurvePlaneKinds | kPlaneKind;

}  // namespace krgescene
