// Local refinement of a closest pair between an arc and a line: the coordinate descent that the
// arc's closest-point operations run, and a Newton polish on both parameters after it.
#pragma once

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "entity/arc/arc_frame.h"
#include "entity/relation/line_arc_geometry.h"

// Alternating exact one-dimensional minimisations of |arc(theta) - (linePoint + t * lineDirection)|^2
// over the whole circle and the whole line, from (theta, t). The angle is that of the line point
// projected into the arc's plane (atan2; from the constant terms when the projection is exactly
// the centre), then theta + pi where that is strictly nearer; t is the foot of the perpendicular
// from the arc point. Stops when the length of the change of (theta, t) is <= tolerance, when it
// equals the previous one exactly (cycling), or is not a number; after 1000 rounds it stops with
// the warning "cp_cl_LocalMin_CoordDescent_optimized, more than 1000 iterations!, terminating"
// (source KrCircArc3dImpl, line 398). Answers the number of rounds. lineDirection must not be zero.
// `turn`, when given, receives theta with its cosine and sine.
int krArcLineCoordDescent(const KrArcFrame& arc, const KrGePoint3d& linePoint, const KrGeVector3d& lineDirection,
                          double& theta, double& t, double tolerance, KrTurn* turn = nullptr);

// The step length at which the descent from (theta, t) should stop: the rounding of its two
// parameters (an angle from a projection at in-plane distance rho carries eps |L - C| / rho, the
// line parameter eps |L - C| / |d|), and the resolution of the minimum itself: along the flattest
// direction of the Hessian, with least eigenvalue lambda, the distance cannot tell apart
// parameters closer than sqrt(noise / lambda), noise being the rounding of the squared distance.
// Near a tangency lambda vanishes and so the descent, which would crawl there, stops at once;
// an exact seed is then left to the Newton polish.
double krArcLineDescentTolerance(const KrCircle& circle, const KrGePoint3d& linePoint,
                                 const KrGeVector3d& lineDirection, const KrTurn& theta, double t);

// At most three Newton steps on the same squared distance, each taken only where the Hessian is
// positive definite and the distance does not grow: quadratic convergence where the descent,
// which only converges linearly along a valley, has brought the pair near a minimum.
void krPolishArcLine(const KrCircle& circle, const KrGePoint3d& linePoint, const KrGeVector3d& lineDirection,
                     KrTurn& theta, double& t);
