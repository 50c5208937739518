// Arc length, its inverse, the area against the chord and the exact bounding box of a NURBS
// curve (valid forms only; parameters are clamped into the form's range by the callers).
#pragma once

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "entity/spline/nurbs_form.h"

// Adaptive Gauss-Kronrod (7, 15) of f over [a, b]: a piece is accepted when |K15 - G7| is at
// most max(tol * its share of [a, b], 1e-15 |K15|), otherwise bisected (depth 48, 4096 pieces
// at most; beyond that the K15 values are taken as they are). *errorEstimate receives the sum
// of the accepted |K15 - G7|.
template <class F>
double krGaussKronrod(const F& f, double a, double b, double tol, double* errorEstimate = nullptr);

// Length of the curve over [a, b] (a <= b), integrated span by span.
double krNurbsLength(const KrNurbsForm& form, double a, double b, double tol);
// The parameter at arc length `length` >= 0 from datum, forwards or backwards; the range end
// when the curve is shorter.
double krNurbsParamAtLength(const KrNurbsForm& form, double datum, double length, bool forwards, double tol);
// Half the integral of ((C(t) - C(a)) x C'(t)) . normal over [a, b]: the signed area between the
// curve and its chord in a plane with that unit normal.
double krNurbsChordArea(const KrNurbsForm& form, double a, double b, const KrGeVector3d& normal, double tol);
// The exact axis-aligned box of the curve over [a, b] within `slack` (absolute).
void krNurbsExactBox(const KrNurbsForm& form, double a, double b, double slack, KrGePoint3d& low, KrGePoint3d& high);

#include "entity/spline/nurbs_quadrature.h"
