// What the library answers today, query by query: a kind joins a list once the library answers
// that query for it, and the command table and the queries read these lists only. Queries of
// one entity list kinds; queries of two list the pairs of kinds they answer (either way round).
#pragma once

#include <cstddef>

#include "SceneModel.h"

namespace krgescene {

constexpr unsigned kEvalKinds = kCurveKinds;         // eval, sample
constexpr unsigned kMeasureKinds = kCurveKinds;      // length, paramat, param
constexpr unsigned kBoundKinds = kCurveKinds;        // bound, box
constexpr unsigned kDegenerateKinds = kCurveKinds;   // degenerate
constexpr unsigned kOffsetKinds = kSegmentKind | kArcKind;  // offset
constexpr unsigned kTangentAtKinds = kArcKind;       // tangentat
constexpr unsigned kTangentKinds = kLinearKinds | kArcKind;  // tangent, commontangent, fillet
constexpr unsigned kIncircleKinds = kLinearKinds;    // incircle

struct KindPair {
  unsigned first, second;
};

// closest: a point and any curve, two curves of any kinds.
constexpr KindPair kClosestPairs[] = {{kPointKind, kCurveKinds}, {kCurveKinds, kCurveKinds}};
// projclosest: arcs are reached only through an ellipse, which then asks.
constexpr KindPair kProjClosestPairs[] = {{kPointKind, kLinearKinds | kEllipseKind},
                                          {kLinearKinds | kEllipseKind, kLinearKinds | kEllipseKind},
                                          {kArcKind, kEllipseKind}};
// intersect: two curves (through the intersection object), a curve and a plane, two planes.
constexpr KindPair kIntersectPairs[] = {
    {kCurveKinds, kCurveKinds}, {kCurveKinds, kPlaneKind}, {kPlaneKind, kPlaneKind}};
// commontangent, fillet.
constexpr KindPair kTangentPairs[] = {{kTangentKinds, kTangentKinds}};

template <std::size_t N>
constexpr bool reaches(const KindPair (&pairs)[N], Kind a, Kind b) {
  for (const KindPair& pair : pairs)
    if (((pair.first & a) && (pair.second & b)) || ((pair.first & b) && (pair.second & a))) return true;
  return false;
}

// Every kind that takes part in some pair: what the command's name slots accept.
template <std::size_t N>
constexpr unsigned kindsOf(const KindPair (&pairs)[N]) {
  unsigned kinds = 0;
  for (const KindPair& pair : pairs) kinds |= pair.first | pair.second;
  return kinds;
}

}  // namespace krgescene
