// Local refinement of a closest pair between two arcs: the coordinate descent that the arcs'
// closest-point operations run, and a Newton polish on both angles after it.
#pragma once

#include "entity/arc/arc_frame.h"
#include "entity/relation/line_arc_geometry.h"

// Alternating exact one-dimensional minimisations of |arc1(theta1) - arc2(theta2)|^2 over both
// whole circles, from (theta1, theta2): theta1 is the angle of the point of arc 2 projected into
// the plane of arc 1 (atan2; from the constant terms, the centres' offset, when the projection is
// exactly the centre), then theta1 + pi where that is strictly nearer; theta2 likewise from the
// new point of arc 1. Stops when the length of the change of (theta1, theta2) is <= tolerance,
// equals the previous one exactly (cycling), or is not a number; after 1000 rounds it stops with
// the warning "cp_cc_LocalMin_CoordDescent_optimized, more than 1000 iterations!, terminating"
// (source KrCircArc3dImpl, line 673). Answers the number of rounds. `turn1` and `turn2`, when
// given, receive the angles with their cosines and sines.
int krArcArcCoordDescent(const KrArcFrame& arc1, const KrArcFrame& arc2, double& theta1, double& theta2,
                         double tolerance, KrTurn* turn1 = nullptr, KrTurn* turn2 = nullptr);

// The step length at which the descent from (theta1, theta2) should stop: the rounding of the
// two angles (each from a projection at in-plane distance rho, eps |w| / rho) and the resolution
// of the minimum along the flattest direction of the Hessian (see krArcLineDescentTolerance).
double krArcArcDescentTolerance(const KrCircle& circle1, const KrCircle& circle2, const KrTurn& theta1,
                                const KrTurn& theta2);

// At most three Newton steps on the same squared distance, each taken only where the Hessian is
// positive definite and the distance does not grow.
void krPolishArcArc(const KrCircle& circle1, const KrCircle& circle2, KrTurn& theta1, KrTurn& theta2);
