// Principal axes of an ellipse given by two conjugate semi-diameters, as affine maps produce it.
#pragma once

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"

// The principal form of center + cos t p + sin t q (p, q conjugate semi-diameters, any angle
// between them): with shift s = atan2(2 p.q, |p|^2 - |q|^2) / 2 the rotated pair
// p' = cos s p + sin s q, q' = -sin s p + cos s q is perpendicular, p' the longer, and
//   center + cos t p + sin t q = center + cos(t - s) p' + sin(t - s) q',
// so the same points sit at parameters shifted by -s. The major radius is |p'|, the minor one
// |p x q| / |p'| (the area is invariant, and this form does not cancel for flat ellipses); the
// minor axis is n x majorAxis with n = (p x q) / |p x q|, so the sense of travel is kept. When the
// pair is a circle to within rounding (| |p|^2 - |q|^2 | and |p.q| below 1e-12 of |p|^2 + |q|^2)
// the shift is 0 and p keeps its direction. Answers false when p x q vanishes (the image is a
// segment or a point): minorRadius is then 0 and minorAxis the direction of q', or 0 when it
// has none; majorAxis is 0 when both vanish.
struct KrPrincipalAxes {
  KrGeVector3d majorAxis;
  KrGeVector3d minorAxis;
  double majorRadius = 0.0;
  double minorRadius = 0.0;
  double shift = 0.0;
};
bool krPrincipalAxes(const KrGeVector3d& p, const KrGeVector3d& q, KrPrincipalAxes& axes);

struct KrEllipseFrame;

// The arc as seen along `unitDirection`: projected orthogonally onto the plane through `base`
// perpendicular to it, in principal form. The image holds the point of parameter t at
// t - shift; its range moves likewise. An arc seen edge-on is flat (minor radius 0, the minor
// axis unitDirection x majorAxis); one seen as a point has zero radii and keeps its axes.
KrEllipseFrame krEllipseSeenAlong(const KrEllipseFrame& frame, const KrGeVector3d& unitDirection,
                                  const KrGePoint3d& base, double& shift);
