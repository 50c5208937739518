// The provisional answers of the spline base: each reports the not-implemented assertion at its
// own line of source "krsent3d" (once per process) and gives the neutral value.
#pragma once

#include "KrGeKnotVector.h"
#include "KrGePoint3d.h"

namespace krspline {
// Reports the not-implemented assertion at `line` of "krsent3d" (one site per line).
void notImplemented(int line);
// The one shared empty knot vector (tolerance 1e-9), kept for the life of the process.
const KrGeKnotVector& emptyKnots();
}  // namespace krspline
