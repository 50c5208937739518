// The plane geometry of the picture: projection into the view plane, the fitted viewport, line
// clipping, box outlines and the scale bar's length.
#pragma once

#include <vector>

#include "KrGePlane.h"
#include "KrGePoint3d.h"

namespace krgescene {

struct Point2 {
  double u = 0.0, v = 0.0;
};

// Orthogonal projection onto the view plane, in its orthonormal frame.
class ViewFrame {
public:
  explicit ViewFrame(const KrGePlane& plane);
  Point2 project(const KrGePoint3d& point) const;
  // The projected direction of a vector (zero when the vector is along the view normal).
  Point2 projectDirection(const KrGeVector3d& vector) const;

private:
  KrGePoint3d m_origin;
  KrGeVector3d m_axis1, m_axis2;
};

// The region of the view plane the picture shows, and the map to pixels (y grows downwards).
class Viewport {
public:
  // Grows the content box by a finite point; other points are ignored.
  void include(const Point2& point);
  // Fixes the map: the content box with a margin, centred in a width x height canvas.
  void fit(double width, double height, double margin);

  Point2 toPixels(const Point2& point) const;
  double scale() const { return m_scale; }  // pixels per model unit
  // The visible rectangle in view coordinates.
  double minU() const { return m_minU; }
  double minV() const { return m_minV; }
  double maxU() const { return m_maxU; }
  double maxV() const { return m_maxV; }

private:
  bool m_empty = true;
  double m_lowU = 0.0, m_lowV = 0.0, m_highU = 0.0, m_highV = 0.0;  // content
  double m_minU = -1.0, m_minV = -1.0, m_maxU = 1.0, m_maxV = 1.0;  // visible
  double m_scale = 1.0;
  double m_height = 0.0;
};

// The part of the line through `anchor` along `direction` inside the visible rectangle; false
// when it misses it (or the direction is zero).
bool clipLine(const Viewport& viewport, const Point2& anchor, const Point2& direction, Point2& from, Point2& to);

// The outline of the projection of the box with corners `low` and `high`: the convex hull of its
// eight projected corners, counter-clockwise.
std::vector<Point2> boxOutline(const ViewFrame& frame, const KrGePoint3d& low, const KrGePoint3d& high);
// The same for the parallelepiped at `base` spanned by the three sides.
std::vector<Point2> blockOutline(const ViewFrame& frame, const KrGePoint3d& base, const KrGeVector3d& side1,
                                 const KrGeVector3d& side2, const KrGeVector3d& side3);

// The largest 1, 2 or 5 times a power of ten not above `limit` (limit > 0).
double niceLength(double limit);

}  // namespace krgescene
