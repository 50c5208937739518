#include "entity/ellipse/ellipse_affine.h"

#include <cmath>

#include "entity/ellipse/ellipse_frame.h"

bool krPrincipalAxes(const KrGeVector3d& p, const KrGeVector3d& q, KrPrincipalAxes& axes) {
  const double pp = p.dotProduct(p);
  const double qq = q.dotProduct(q);
  const double pq = p.dotProduct(q);
  const double difference = pp - qq;
  const double sum = pp + qq;
  const double spread = std::sqrt(difference * difference + 4.0 * pq * pq);
  axes.shift = spread <= 1e-12 * sum ? 0.0 : 0.5 * std::atan2(2.0 * pq, difference);
  const double c = std::cos(axes.shift);
  const double s = std::sin(axes.shift);
  const KrGeVector3d major = p * c + q * s;
  const KrGeVector3d minor = q * c - p * s;
  axes.majorRadius = major.length();
  axes.majorAxis = axes.majorRadius > 0.0 ? major / axes.majorRadius : KrGeVector3d();
  const KrGeVector3d cross = p.crossProduct(q);
  const double area = cross.length();
  if (area > 0.0 && axes.majorRadius > 0.0 && std::isfinite(area)) {
    axes.minorRadius = std::fmin(area / axes.majorRadius, axes.majorRadius);
    axes.minorAxis = (cross / area).crossProduct(axes.majorAxis);
    axes.minorAxis = axes.minorAxis / axes.minorAxis.length();
    return true;
  }
  axes.minorRadius = 0.0;
  const double minorLength = minor.length();
  axes.minorAxis = minorLength > 0.0 ? minor / minorLength : KrGeVector3d();
  return false;
}

KrEllipseFrame krEllipseSeenAlong(const KrEllipseFrame& frame, const KrGeVector3d& unitDirection,
                                  const KrGePoint3d& base, double& shift) {
  const auto flatten = [&unitDirection](const KrGeVector3d& v) { return v - unitDirection * v.dotProduct(unitDirection); };
  KrEllipseFrame image = frame;
  image.center = base + flatten(frame.center - base);
  KrPrincipalAxes axes;
  const bool proper = krPrincipalAxes(flatten(frame.majorAxis * frame.majorRadius),
                                      flatten(frame.minorAxis * frame.minorRadius), axes);
  shift = axes.shift;
  image.startAng = frame.startAng - shift;
  image.majorRadius = axes.majorRadius;
  image.minorRadius = axes.minorRadius;
  if (proper) {
    image.majorAxis = axes.majorAxis;
    image.minorAxis = axes.minorAxis;
    return image;
  }
  if (axes.majorRadius > 0.0) {
    image.majorAxis = axes.majorAxis;
    image.minorAxis = unitDirection.crossProduct(axes.majorAxis);
  }
  return image;
}
