// The nearest point of a NURBS curve to a point, over a parameter range.
#pragma once

#include "KrGePoint3d.h"
#include "entity/spline/nurbs_form.h"

// The parameter in [lo, hi] (within the form's range) of the point of the curve nearest to
// `point`, and that distance in *distance when given. Global: spans are visited in order of
// their control-hull distance and skipped once that exceeds the best distance found; each span
// is searched as a Bezier piece by branch and bound on its control boxes (nearly straight pieces
// get one Newton refinement safeguarded by bisection). Non-finite points give lo.
double krNurbsNearestParam(const KrNurbsForm& form, const KrGePoint3d& point, double lo, double hi,
                           double* distance);
