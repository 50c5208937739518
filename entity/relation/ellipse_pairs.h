// Closest pairs of an elliptical arc with a line, segment or conic arc (elliptical or circular,
// as KrEllipseFrame), on plain data: the pair files of the ellipse call these.
#pragma once

#include "KrGeInterval.h"
#include "KrGeVector3d.h"
#include "entity/ellipse/ellipse_frame.h"
#include "entity/ellipse/ellipse_pair_min.h"
#include "entity/linear/linear_closest.h"

namespace krellipsepairs {

// The arc cut to a parameter neighbourhood; a missing neighbourhood, or one that misses the arc,
// leaves it whole.
KrEllipseFrame restricted(const KrEllipseFrame& frame, const KrGeInterval* nbhd);

// The global closest pair over both ranges (krEllipsePairMinimum along the ellipse).
KrPairMinimum closest(const KrEllipseFrame& ellipse, const KrLinearSpan& line);
KrPairMinimum closest(const KrEllipseFrame& ellipse, const KrEllipseFrame& other);

// The closest pair as seen along `direction`: both curves projected onto the plane through the
// ellipse's centre perpendicular to it (affine images, krEllipseSeenAlong and krSeenAlong), their
// closest pair found there, and its parameters (t on the ellipse, s on the other) taken back to
// the curves. False, nothing written, when the direction is zero (gTol) or not finite.
bool closestSeen(const KrEllipseFrame& ellipse, const KrLinearSpan& line, const KrGeVector3d& direction, double& t,
                 double& s);
bool closestSeen(const KrEllipseFrame& ellipse, const KrEllipseFrame& other, const KrGeVector3d& direction, double& t,
                 double& s);

}  // namespace krellipsepairs
