// How two curves lie against each other around a common point, seen along a plane normal: the
// side words of KrGe::KrGeXConfig from the local expansions of both curves.
#pragma once

#include "KrGe.h"
#include "KrGePoint3d.h"
#include "KrGeVector3d.h"

// A curve near the common point: its first and second derivatives there, and whether its range
// begins or ends at the point (a range that both begins and ends there is a closed loop through
// it and passes both flags clear; a range collapsed to the point sets `collapsed`).
struct KrCurveJet {
  KrGeVector3d first;
  KrGeVector3d second;
  bool startsHere = false;
  bool endsHere = false;
  bool collapsed = false;
};

// The configuration of `curve` against `other` (the word pair "before, after" along `curve`).
// The expansion c(h) = P + h c' + h^2/2 c'' of `curve` is measured against the osculating
// parabola of `other` across its tangent: the separation is a h + b h^2 with
//   a = c'.l,  b = (c''.l - (c'.u)^2 / |o'|^2 * o''.l) / 2   (u, l: unit tangent and left
// normal of `other` in the plane). a decides a crossing; for parallel tangents (|sin| <=
// `parallelSine`) the sign of b decides the side of a touching, and b = 0 within `parallelSine`
// relative to its terms means both run together (overlap). Exact for lines and circles.
KrGe::KrGeXConfig krIntersectionConfig(const KrCurveJet& curve, const KrCurveJet& other,
                                       const KrGeVector3d& planeNormal, double parallelSine);
