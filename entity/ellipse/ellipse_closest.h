// Nearest points of an ellipse to a point of its plane. The ellipse is (a cos t, b sin t) with
// a >= b >= 0 in its own plane coordinates; a point off the plane has the same nearest points as
// its foot on the plane.
#pragma once

// A point of the ellipse where the distance from the query point has a local minimum.
struct KrEllipseFoot {
  double x = 0.0;
  double y = 0.0;
  // tan(phi / 2) of the parameter phi in [-pi/2, pi/2] that the foot has once the query point is
  // reflected into the first quadrant; the flips undo that reflection.
  double halfTangent = 0.0;
  bool flipX = false;
  bool flipY = false;
  // Every point of the ellipse is as near (the centre of a circle).
  bool everywhere = false;

  // The parameter of the foot, in (-pi, pi].
  double angle() const;
};

// The nearest point of the whole ellipse to (x, y). Reflected into the first quadrant (x, y >= 0)
// the nearest point is the one root in [0, 1] of the quartic in the half-angle tangent
//   p(t) = (b/a) y' t^4 + 2 (x' + g) t^3 + 2 (x' - g) t - (b/a) y',  x' = x/a, y' = y/a,
//   g = 1 - b^2/a^2,
// (the derivative of the squared distance times (1 + t^2)^2 / 2a^2), with p(0) <= 0 <= p(1);
// it is found by Newton's method safeguarded by bisection inside that bracket, so it is right
// where the quartic has double or triple roots (on the evolute, at its cusps) and on the axes
// (closed forms). At most 100 steps; the result is within a few ulps of a where the minimum is
// simple. The centre of a non-circular ellipse answers the minor vertex (0, +b) side of y.
KrEllipseFoot krEllipseNearest(double a, double b, double x, double y);

// The second local minimum of the distance, which exists when (x, y) lies strictly inside the
// evolute (|a x|^(2/3) + |b y|^(2/3) < (a^2 - b^2)^(2/3)); it lies across the major axis from the
// point. With r = (b |y| / (a |x|))^(1/3) the angle -atan(r) separates it from the local maximum
// in that quadrant: when p is positive there the minimum is bracketed in [-1, -tan(atan(r)/2)]
// and refined as above from the quartic solver's root in that bracket (methodDecart) as first
// guess. Otherwise (outside the evolute, or so near it that the pair of extrema has merged within
// rounding) the separating point itself is answered: it is then as near as the shallow minimum
// up to rounding. On the major axis the mirror of the nearest point is answered, on the minor
// axis the far minor vertex. Callers use it as one more candidate of a bounded arc.
KrEllipseFoot krEllipseOtherFoot(double a, double b, double x, double y);

// The point of the arc [startAng, startAng + sweep] nearest to (x, y): the whole ellipse's
// nearest point when the arc holds it, else the nearest of the arc's ends and, for a point inside
// the evolute, the other local minimum when the arc holds that. Writes the point to (footX, footY)
// and answers its parameter (as krArcParamOf places it). The centre of a circle answers the start.
double krEllipseArcNearest(double a, double b, double startAng, double sweep, double x, double y, double& footX,
                           double& footY);
