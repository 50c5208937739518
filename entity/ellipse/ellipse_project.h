// Parallel projection of conic arcs onto a plane.
#pragma once

#include "KrGeEntity3d.h"
#include "KrGePlane.h"
#include "KrGeTol.h"
#include "entity/ellipse/ellipse_frame.h"

// The arc projected onto `plane` along `direction`. The projection is affine, so the image of
// center + cos t P + sin t Q is center' + cos t P' + sin t Q' and its principal form
// (krPrincipalAxes) holds the same points at parameters moved by -shift: the image is a new
// KrGeEllipArc3d over [startAng - shift, startAng - shift + sweep]; when its minor radius is
// within tol.equalPoint() it is the KrGeLineSeg3d that the arc covers on the major axis, and when
// its major radius is too a KrGePointEnt3d at the image of the centre. Null when the direction is
// of zero length or lies in the plane (|cos| <= tol.equalVector()). The caller owns the result.
KrGeEntity3d* krProjectEllipseArc(const KrEllipseFrame& frame, const KrGePlane& plane, const KrGeVector3d& direction,
                                  const KrGeTol& tol);
