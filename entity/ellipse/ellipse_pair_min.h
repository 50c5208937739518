// The closest pair of an elliptical arc and another curve, as a global minimum over the ellipse's
// parameter of the distance to the other curve's nearest point.
#pragma once

#include "KrGePoint3d.h"
#include "entity/ellipse/ellipse_frame.h"
#include "entity/linear/linear_closest.h"

// The other curve of a pair: its nearest point (global, within its range) to any point, and
// that point's parameter.
class KrNearestOnCurve {
public:
  virtual KrGePoint3d nearest(const KrGePoint3d& point, double& param) const = 0;

protected:
  ~KrNearestOnCurve() = default;
};

struct KrPairMinimum {
  double t = 0.0;           // on the ellipse
  double otherParam = 0.0;  // on the other curve
  KrGePoint3d onEllipse;
  KrGePoint3d onOther;
  double distance = 0.0;
};

// D(t) = |point(t) - nearest(point(t))| is Lipschitz with constant majorRadius (the ellipse's
// largest speed), so on [t_i, t_i+1] it stays above (D_i + D_i+1 - a h) / 2. Starting from 32
// samples a turn, every interval whose bound is below the best sample by more than
// 1e-7 (a + best) is halved (branch and bound, at most 1024 samples), so no basin deeper than that
// margin is missed; then every sample that is a local minimum and could still hold the global one
// is refined on its two neighbouring intervals by a safeguarded secant iteration on
//   d/dt D^2 = 2 (point(t) - nearest) . point'(t)
// (the nearest point moves only along the other curve, orthogonally to the joining segment), or
// by golden section where that derivative does not change sign; a range end with an outward
// derivative is a minimum of its own. Each refinement stops at a step below 1e-15 or after 100
// steps. The pair minimises D among all refined points and samples. A range of [lower, upper]
// with upper < lower or NaN answers the point at lower.
KrPairMinimum krEllipsePairMinimum(const KrEllipseFrame& frame, double lower, double upper,
                                   const KrNearestOnCurve& other);

// A line, segment or point (KrLinearSpan): the clamped projection.
class KrNearestOnSpan final : public KrNearestOnCurve {
public:
  explicit KrNearestOnSpan(const KrLinearSpan& span) : m_span(span) {}
  KrGePoint3d nearest(const KrGePoint3d& point, double& param) const override;

private:
  KrLinearSpan m_span;
};

// An elliptical or circular arc: krEllipseArcNearest in its frame.
class KrNearestOnEllipse final : public KrNearestOnCurve {
public:
  explicit KrNearestOnEllipse(const KrEllipseFrame& frame) : m_frame(frame) {}
  KrGePoint3d nearest(const KrGePoint3d& point, double& param) const override;

private:
  KrEllipseFrame m_frame;
};
