#include "entity/ellipse/ellipse_project.h"

#include <cmath>

#include "KrGeEllipArc3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePointEnt3d.h"
#include "entity/ellipse/KrEllipticArc3dImpl.h"
#include "entity/ellipse/ellipse_affine.h"

namespace {

constexpr double kPi = 3.141592653589793;

// The extent of a cos t over [lower, lower + sweep].
void cosineRange(double a, double lower, double sweep, double& low, double& high) {
  const double c0 = a * std::cos(lower);
  const double c1 = a * std::cos(lower + sweep);
  low = std::fmin(c0, c1);
  high = std::fmax(c0, c1);
  if (krArcHoldsAngle(lower, sweep, 0.0, 0.0)) high = a;
  if (krArcHoldsAngle(lower, sweep, kPi, 0.0)) low = -a;
}

}  // namespace

KrGeEntity3d* krProjectEllipseArc(const KrEllipseFrame& frame, const KrGePlane& plane, const KrGeVector3d& direction,
                                  const KrGeTol& tol) {
  const KrGeVector3d normal = plane.normal();
  if (direction.isZeroLength(tol) || !std::isfinite(direction.length())) return nullptr;
  const KrGeVector3d along = direction / direction.length();
  const double cosine = along.dotProduct(normal);
  if (!(std::fabs(cosine) > tol.equalVector())) return nullptr;
  const auto mapVector = [&](const KrGeVector3d& v) { return v - along * (v.dotProduct(normal) / cosine); };
  const double height = (frame.center - plane.pointOnPlane()).dotProduct(normal);
  const KrGePoint3d center = frame.center - along * (height / cosine);

  KrPrincipalAxes axes;
  const bool proper = krPrincipalAxes(mapVector(frame.majorAxis * frame.majorRadius),
                                      mapVector(frame.minorAxis * frame.minorRadius), axes);
  const double start = frame.startAng - axes.shift;
  if (!(axes.majorRadius > tol.equalPoint())) return new KrGePointEnt3d(center);
  if (!proper || !(axes.minorRadius > tol.equalPoint())) {
    double low = 0.0;
    double high = 0.0;
    cosineRange(axes.majorRadius, start, frame.sweep, low, high);
    return new KrGeLineSeg3d(center + axes.majorAxis * low, center + axes.majorAxis * high);
  }
  KrEllipseFrame image;
  image.center = center;
  image.majorAxis = axes.majorAxis;
  image.minorAxis = axes.minorAxis;
  image.majorRadius = axes.majorRadius;
  image.minorRadius = axes.minorRadius;
  image.startAng = start;
  image.sweep = frame.sweep;
  KrGeEllipArc3d* result = new KrGeEllipArc3d();
  if (result && KrEnt3dImpl::implOf(*result))
    static_cast<KrEllipticArc3dImpl*>(KrEnt3dImpl::implOf(*result))->setFrame(image);
  return result;
}
