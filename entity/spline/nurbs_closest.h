// The nearest point of a NURBS curve to a point, over a parameter range.
#pragma once

#include "KrGePoint3d.h"
#include "entity/spline/nurbs_form.h"

// The parameter in [lo, hi] (within the form's range) of the point of the curve nearest to
// `point`, and that distance in *distance when given. Global: spans are visited in order of
// their control-hull distance and skipped once that exceeds the best distance found; inside a
// span, Newton on C'(t).(C(t) - P) = 0 from the best of p + 2 samples, clamped to its
// bracket, keeping the best iterate. Non-finite points give lo.
double krNurbsNearestParam(const KrNurbsForm& form, const KrGePoint3d& point, double lo, double hi,
                           double* distance);
