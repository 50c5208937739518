// Evenly spaced samples of circular and elliptical arcs by the rotation recurrence.
#pragma once

#include "KrGePoint3d.h"
#include "KrGeVector3d.h"
#include "KrsArray.h"

// Fills `points` (resized to count) with center + cos t_i * xAxis + sin t_i * yAxis at
// t_i = from + i * (to - from) / (count - 1), and `params` (when given, resized likewise) with
// t_i. cos and sin are advanced by the angle-addition rule with the cosine and sine of the step,
// so a call costs four trigonometric evaluations whatever the count; the recurrence drifts by
// about count * 1e-16 relative, far below any chord tolerance. A count of 1 gives the point at
// `from`; a count of 0 or less empties the arrays.
void krSampleArc(double from, double to, int count, const KrGePoint3d& center, const KrGeVector3d& xAxis,
                 const KrGeVector3d& yAxis, KrsArray<KrGePoint3d>& points, KrsArray<double>* params);

// The sample count for a chord height of at most approxEps on a circle of the given radius over
// |to - from| radians: 1501 for approxEps <= 0 (or any non-finite input), 34 when the radius is
// below approxEps, otherwise ceil(|to - from| / (2 acos(1 - approxEps / radius))) + 1 clamped to
// [34, 1501].
int krArcSampleCount(double from, double to, double approxEps, double radius);
