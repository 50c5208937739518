// Arc length of an ellipse and its inverse. The ellipse is (a cos t, b sin t) with a >= b >= 0;
// t is the eccentric angle (the curve parameter).
#pragma once

// Carlson's symmetric integrals RF(x, y, z) and RD(x, y, z) from one duplication loop (both
// transform their arguments the same way). x, y >= 0 with at most one of them 0, z > 0; the
// Taylor expansion is entered once the spread of the arguments is below 4^-n of the bound for
// a truncation error of 1e-16 (Carlson 1995), so both are correct to a few ulps.
void krCarlsonRfRd(double x, double y, double z, double& rf, double& rd);

// The length of the ellipse from `from` to `to`, negative when to < from; any number of turns.
// Short arcs (half-width h at most 0.5 and at most a fifth of the distance from the arc's middle
// to the nearest complex singularity k pi +- i atanh(b/a) of the integrand) use 10-point
// Gauss-Legendre: the integrand is analytic in the Bernstein ellipse of parameter >= 9.9, so the
// error is below 1e-18 relative. Longer arcs take the difference of the lengths measured from the
// nearest major vertices, each a sum of positive Carlson terms; splitting there and the
// short-arc rule bound the cancellation to a factor of 3. Relative error about 1e-15 for every
// b/a (b = 0 is the segment traversed back and forth). Non-finite input answers NaN.
double krEllipseArcLength(double a, double b, double from, double to);

// The parameter at arc length `length` from `datum` (backwards when negative): safeguarded
// Newton on krEllipseArcLength(datum, t) - length within the bracket that whole half-turns
// (each of length 2 * quarter) and the slowest speed b give; at most 60 steps. A zero-size
// ellipse answers datum.
double krEllipseParamAtLength(double a, double b, double datum, double length);

// The speed |d point / dt| at t: sqrt(a^2 sin^2 t + b^2 cos^2 t).
double krEllipseSpeed(double a, double b, double t);
