#include "SceneView.h"

#include <algorithm>
#include <cmath>

namespace krgescene {

namespace {

// Coordinates beyond this are treated as "far away" and do not widen the viewport: a bounding box
// of an unbounded line must not shrink everything else to a dot.
constexpr double kFitLimit = 1e12;

bool usable(const Point2& p) {
  return std::isfinite(p.u) && std::isfinite(p.v) && std::fabs(p.u) <= kFitLimit && std::fabs(p.v) <= kFitLimit;
}

double cross(const Point2& o, const Point2& a, const Point2& b) {
  return (a.u - o.u) * (b.v - o.v) - (a.v - o.v) * (b.u - o.u);
}

}  // namespace

ViewFrame::ViewFrame(const KrGePlane& plane) { plane.getCoordSystem(m_origin, m_axis1, m_axis2); }

Point2 ViewFrame::project(const KrGePoint3d& point) const {
  const KrGeVector3d offset = point - m_origin;
  return {offset.dotProduct(m_axis1), offset.dotProduct(m_axis2)};
}

Point2 ViewFrame::projectDirection(const KrGeVector3d& vector) const {
  return {vector.dotProduct(m_axis1), vector.dotProduct(m_axis2)};
}

void Viewport::include(const Point2& point) {
  if (!usable(point)) return;
  if (m_empty) {
    m_lowU = m_highU = point.u;
    m_lowV = m_highV = point.v;
    m_empty = false;
    return;
  }
  m_lowU = std::min(m_lowU, point.u);
  m_highU = std::max(m_highU, point.u);
  m_lowV = std::min(m_lowV, point.v);
  m_highV = std::max(m_highV, point.v);
}

void Viewport::fit(double width, double height, double margin) {
  double lowU = m_empty ? -1.0 : m_lowU, highU = m_empty ? 1.0 : m_highU;
  double lowV = m_empty ? -1.0 : m_lowV, highV = m_empty ? 1.0 : m_highV;
  // A flat or point-like content still gets an area: a tenth of its size or of its distance from
  // the origin, at least one unit.
  const double extent = std::max({highU - lowU, highV - lowV});
  const double floor = std::max({extent * 0.1, 1e-3 * std::max({std::fabs(lowU), std::fabs(highU), std::fabs(lowV),
                                                                  std::fabs(highV)}),
                                 extent > 0.0 ? 0.0 : 1.0});
  if (highU - lowU < floor) {
    const double middle = 0.5 * (lowU + highU);
    lowU = middle - 0.5 * floor;
    highU = middle + 0.5 * floor;
  }
  if (highV - lowV < floor) {
    const double middle = 0.5 * (lowV + highV);
    lowV = middle - 0.5 * floor;
    highV = middle + 0.5 * floor;
  }
  m_scale = std::min((width - 2.0 * margin) / (highU - lowU), (height - 2.0 * margin) / (highV - lowV));
  const double middleU = 0.5 * (lowU + highU), middleV = 0.5 * (lowV + highV);
  m_minU = middleU - 0.5 * width / m_scale;
  m_maxU = middleU + 0.5 * width / m_scale;
  m_minV = middleV - 0.5 * height / m_scale;
  m_maxV = middleV + 0.5 * height / m_scale;
  m_height = height;
}

Point2 Viewport::toPixels(const Point2& point) const {
  // Far-away points are pulled in to a large but finite pixel range so that the SVG stays valid.
  const auto clamp = [](double value) { return std::isfinite(value) ? std::clamp(value, -1e6, 1e6) : 0.0; };
  return {clamp((point.u - m_minU) * m_scale), clamp(m_height - (point.v - m_minV) * m_scale)};
}

// Liang-Barsky: the parameter range of anchor + t * direction inside each pair of slabs.
bool clipLine(const Viewport& viewport, const Point2& anchor, const Point2& direction, Point2& from, Point2& to) {
  if (!usable(anchor) || !std::isfinite(direction.u) || !std::isfinite(direction.v)) return false;
  const double length = std::hypot(direction.u, direction.v);
  if (!(length > 0.0)) return false;
  const Point2 unit{direction.u / length, direction.v / length};
  double low = -HUGE_VAL, high = HUGE_VAL;
  const double starts[2] = {anchor.u, anchor.v};
  const double steps[2] = {unit.u, unit.v};
  const double mins[2] = {viewport.minU(), viewport.minV()};
  const double maxs[2] = {viewport.maxU(), viewport.maxV()};
  for (int axis = 0; axis < 2; ++axis) {
    if (steps[axis] == 0.0) {
      if (starts[axis] < mins[axis] || starts[axis] > maxs[axis]) return false;
      continue;
    }
    double t1 = (mins[axis] - starts[axis]) / steps[axis];
    double t2 = (maxs[axis] - starts[axis]) / steps[axis];
    if (t1 > t2) std::swap(t1, t2);
    low = std::max(low, t1);
    high = std::min(high, t2);
  }
  if (!(low < high)) return false;
  from = {anchor.u + low * unit.u, anchor.v + low * unit.v};
  to = {anchor.u + high * unit.u, anchor.v + high * unit.v};
  return true;
}

std::vector<Point2> boxOutline(const ViewFrame& frame, const KrGePoint3d& low, const KrGePoint3d& high) {
  const KrGeVector3d edges = high - low;
  return blockOutline(frame, low, KrGeVector3d(edges.x, 0, 0), KrGeVector3d(0, edges.y, 0),
                      KrGeVector3d(0, 0, edges.z));
}

// Andrew's monotone chain over the eight corners.
std::vector<Point2> blockOutline(const ViewFrame& frame, const KrGePoint3d& base, const KrGeVector3d& side1,
                                 const KrGeVector3d& side2, const KrGeVector3d& side3) {
  std::vector<Point2> corners;
  for (int i = 0; i < 8; ++i)
    corners.push_back(frame.project(base + (i & 1 ? side1 : KrGeVector3d()) + (i & 2 ? side2 : KrGeVector3d()) +
                                    (i & 4 ? side3 : KrGeVector3d())));
  std::sort(corners.begin(), corners.end(),
            [](const Point2& a, const Point2& b) { return a.u < b.u || (a.u == b.u && a.v < b.v); });
  std::vector<Point2> hull(16);
  std::size_t k = 0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    while (k >= 2 && cross(hull[k - 2], hull[k - 1], corners[i]) <= 0.0) --k;
    hull[k++] = corners[i];
  }
  for (std::size_t i = corners.size() - 1, lower = k + 1; i > 0; --i) {
    while (k >= lower && cross(hull[k - 2], hull[k - 1], corners[i - 1]) <= 0.0) --k;
    hull[k++] = corners[i - 1];
  }
  hull.resize(k > 1 ? k - 1 : k);
  return hull;
}

double niceLength(double limit) {
  const double power = std::pow(10.0, std::floor(std::log10(limit)));
  for (const double step : {5.0, 2.0, 1.0})
    if (step * power <= limit) return step * power;
  return power;
}

}  // namespace krgescene
