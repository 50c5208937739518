// Where elliptical arcs meet lines, planes and other conic arcs (circular arcs are ellipses with
// equal radii). Every routine answers the points within `tol` (model space, "<=") of both
// curves and within both parameter ranges, at most one point per touching, in the order found.
#pragma once

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "entity/ellipse/ellipse_frame.h"
#include "entity/linear/linear_closest.h"

// A meeting point with its parameter on the ellipse (t) and on the other curve (s).
struct KrEllipseHit {
  KrGePoint3d point;
  double t = 0.0;
  double s = 0.0;
};

// The line origin + s direction, s within its span's bounds. In the ellipse's local frame the
// line is rebased at its point nearest to the centre and, where it runs in the plane, solved as
//   A s^2 + 2 B s + C = 0,  A = b^2 dx^2 + a^2 dy^2,  B^2 - A C = a^2 b^2 (A - w^2),
// w = x dy - y dx the moment of the line about the centre: the discriminant is formed without
// cancelling, and |w| - sqrt(A) (over |d|) is the gap by which the line misses the ellipse (its
// depth into it when negative): a line missing it, or cutting it no deeper than tol, touches it at
// one point (the support point facing it); deeper, both roots count. A root counts when the line's height
// above the plane there is within tol. A line crossing the plane also meets the ellipse at its
// crossing point when that lies within tol of it (in-plane distance by the nearest-point
// routine). Points closer than tol merge. The line's range is kept with tol of model-space slack,
// the arc's with tol at its ends. `withParams` false skips the ellipse parameters of a full
// ellipse (t is then 0). Answers the count, at most 2.
int krEllipseLineHits(const KrEllipseFrame& frame, const KrLinearSpan& line, double tol, bool withParams,
                      KrEllipseHit hits[2]);

// The plane through `origin` with unit `normal`: the height of the ellipse above it is
// h0 + A cos t + B sin t = h0 + R cos(t - phi), so the crossings are phi +- acos(-h0 / R). A
// height range within tol of 0 everywhere (the arc lies in the plane) gives none; an ellipse
// reaching through the plane by at most tol (or missing it by at most tol) touches it at its
// extreme point. s is 0. Answers the count, at most 2.
int krEllipsePlaneHits(const KrEllipseFrame& frame, const KrGePoint3d& origin, const KrGeVector3d& normal, double tol,
                       KrEllipseHit hits[2]);

// Two elliptical arcs (circular ones included). Coplanar within tol: the second ellipse's
// equation along the first, in t = tan((theta - theta0) / 2) with theta0 chosen so that no root
// lies near t = infinity, is a quartic solved by methodDecart; the roots of its derivative where
// the quartic is small are added, so that tangencies (double roots) that the solver reports as
// complex are not lost; every candidate is kept only when the true distance to the second arc is
// within tol, and neighbouring candidates between which the curves stay within tol (a contact of
// high order) are one point, the nearest of them. Coincident ellipses give no points. Crossing planes: the first ellipse meets their
// common line (krEllipseLineHits) and those points within tol of the second arc count. Parallel
// planes apart give none. Answers the count, at most 4.
int krEllipseEllipseHits(const KrEllipseFrame& first, const KrEllipseFrame& second, double tol, KrEllipseHit hits[4]);

// The parameter of the point of the arc `frame` nearest to `point` and that point's distance.
double krEllipseArcNearestParam(const KrEllipseFrame& frame, const KrGePoint3d& point, double& distance);
