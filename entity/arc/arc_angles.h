// The angle rule shared by circular and elliptical arcs.
#pragma once

constexpr double kKrTwoPi = 6.283185307179586;

// The sweep from `start` to `end` for an arc of the given radius (the major radius of an
// ellipse): end - start, snapped to 0 or 2 pi within eps = KrGeContext::gTol.equalPoint() / radius
// (eps = 0 for a radius of exactly 0), otherwise reduced by fmod into (0, 2 pi); a remainder <= 0
// is kept when |start - end| <= 1e-10 and raised by 2 pi otherwise. So (0, 4 pi) is a full
// circle and (1, 0.5) sweeps 2 pi - 0.5. Non-finite input answers NaN; the callers repair it.
double krArcSweep(double start, double end, double radius);
