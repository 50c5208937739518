// The angle rules shared by circular and elliptical arcs: the sweep of a pair of angles and the
// parameter of a direction.
#pragma once

constexpr double kKrTwoPi = 6.283185307179586;
constexpr double kKrPi = 3.141592653589793;

// The sweep from `start` to `end` for an arc of the given radius (the major radius of an
// ellipse): end - start, snapped to 0 or 2 pi within eps = KrGeContext::gTol.equalPoint() / radius
// (eps = 0 for a radius of exactly 0), otherwise reduced by fmod into (0, 2 pi); a remainder <= 0
// is kept when |start - end| <= 1e-10 and raised by 2 pi otherwise. So (0, 4 pi) is a full
// circle and (1, 0.5) sweeps 2 pi - 0.5. A difference that is not finite (non-finite or
// overflowing angles) answers 2 pi.
double krArcSweep(double start, double end, double radius);

// angle - start reduced into [0, 2 pi): how far counter-clockwise `angle` lies past `start`.
double krArcOffset(double angle, double start);

// The parameter of the direction at `angle` for the arc [start, start + sweep]: start + offset
// inside the sweep; within angleTol beyond the end, the end; within angleTol below the start
// (an offset within angleTol of 2 pi), the start, so that a full circle answers its start point
// with startAng and not with the end parameter. A direction in the gap gets the parameter
// outside the range on its nearer side: start + offset past the end, start + offset - 2 pi
// before the start (a tie goes before the start).
double krArcParamOfAngle(double angle, double start, double sweep, double angleTol);

// Whether the direction at `angle` lies on [start, start + sweep] within angleTol radians.
bool krArcContainsAngle(double angle, double start, double sweep, double angleTol);
