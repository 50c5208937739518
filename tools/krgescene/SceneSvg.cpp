#include "SceneSvg.h"

#include <cmath>
#include <cstdio>

#include "KrGeInterval.h"
#include "KrGeLine3d.h"
#include "KrGeLinearEnt3d.h"
#include "KrGePlane.h"
#include "KrsArray.h"
#include "SceneOutput.h"
#include "SceneView.h"

namespace krgescene {

namespace {

constexpr double kWidth = 900.0, kHeight = 640.0, kMargin = 60.0;
constexpr int kCurveSamples = 361;  // one per degree on a full circle

// What one element shows, in view coordinates, before the viewport is known.
struct Shape {
  enum Type { kPolyline, kDot, kCross, kUnbounded, kSymbol, kPolygon };
  Type type = kPolyline;
  std::vector<Point2> points;  // kUnbounded: anchor and direction
  std::string cssClass;
  std::string name;  // data-name, and the label when labelled
  bool labelled = false;
  int line = 0;  // data-line for marks
};

std::string escape(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

// A pixel coordinate with two decimals. Pictures of long scenes hold millions of them, so the
// usual range is written by hand (printf's exact decimal conversion dominated the run time).
void appendPx(std::string& out, double value) {
  if (!(std::fabs(value) < 1e12)) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", value);
    out += text;
    return;
  }
  const long long hundredths = std::llround(value * 100.0);
  unsigned long long magnitude = static_cast<unsigned long long>(hundredths < 0 ? -hundredths : hundredths);
  char text[32];
  char* end = text + sizeof text;
  char* at = end;
  *--at = static_cast<char>('0' + magnitude % 10);
  magnitude /= 10;
  *--at = static_cast<char>('0' + magnitude % 10);
  magnitude /= 10;
  *--at = '.';
  do {
    *--at = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude > 0);
  if (hundredths < 0) *--at = '-';
  out.append(at, end);
}

std::string px(double value) {
  std::string text;
  appendPx(text, value);
  return text;
}

void curveShape(const ViewFrame& frame, const KrGeCurve3d& curve, Shape& shape) {
  KrGeInterval range;
  curve.getInterval(range);
  if (!range.isBounded() && curve.isKindOf(KrGe::kLinearEnt3d)) {
    const auto& line = static_cast<const KrGeLinearEnt3d&>(curve);
    shape.type = Shape::kUnbounded;
    shape.points = {frame.project(line.pointOnLine()), frame.projectDirection(line.direction())};
    return;
  }
  KrsArray<KrGePoint3d> samples;
  curve.getSamplePoints(curve.isKindOf(KrGe::kLinearEnt3d) ? 2 : kCurveSamples, samples);
  shape.type = Shape::kPolyline;
  shape.points.reserve(static_cast<std::size_t>(samples.GetSize()));
  for (int i = 0; i < samples.GetSize(); ++i) shape.points.push_back(frame.project(samples[i]));
}

Shape entityShape(const ViewFrame& frame, const KrGePlane& view, const std::string& name, const Named& named) {
  Shape shape;
  shape.name = name;
  shape.labelled = true;
  shape.cssClass = std::string("entity ") + kindName(named.kind);
  if (named.kind == kPointKind) {
    shape.type = Shape::kDot;
    shape.points = {frame.project(named.point())};
  } else if (named.kind == kPlaneKind) {
    // A plane shows as its trace on the view plane, or as a symbol when it is parallel to it.
    KrGeLine3d trace;
    if (named.plane().intersectWith(view, trace)) {
      shape.type = Shape::kUnbounded;
      shape.points = {frame.project(trace.pointOnLine()), frame.projectDirection(trace.direction())};
    } else {
      shape.type = Shape::kSymbol;
      shape.points = {frame.project(named.plane().pointOnPlane())};
    }
  } else {
    curveShape(frame, named.curve(), shape);
  }
  return shape;
}

Shape markShape(const ViewFrame& frame, const Scene& scene, const Mark& mark, int line) {
  Shape shape;
  shape.line = line;
  switch (mark.type) {
    case Mark::kPoint:
      shape.type = Shape::kCross;
      shape.cssClass = "mark point";
      shape.points = {frame.project(mark.a)};
      break;
    case Mark::kPair:
      shape.type = Shape::kPolyline;
      shape.cssClass = "mark pair";
      shape.points = {frame.project(mark.a), frame.project(mark.b)};
      break;
    case Mark::kBox:
      shape.type = Shape::kPolygon;
      shape.cssClass = "mark box";
      shape.points = boxOutline(frame, mark.a, mark.b);
      break;
    case Mark::kBlock:
      shape.type = Shape::kPolygon;
      shape.cssClass = "mark box block";
      shape.points = blockOutline(frame, mark.a, mark.sides[0], mark.sides[1], mark.sides[2]);
      break;
    case Mark::kLine:
      shape.type = Shape::kUnbounded;
      shape.cssClass = "mark line";
      shape.points = {frame.project(mark.a), frame.projectDirection(mark.b - mark.a)};
      break;
    case Mark::kCurve:
      shape.cssClass = "mark curve";
      shape.name = mark.curveName;
      shape.labelled = true;
      curveShape(frame, scene.at(mark.curveName).curve(), shape);
      break;
  }
  return shape;
}

// Points closer than a quarter pixel to the last one written add nothing to the picture and are
// left out (the last point of the path is always written).
std::string pathData(const std::vector<Point2>& pixels, bool closed) {
  constexpr double kQuarterPixel = 0.25;
  std::string data;
  data.reserve(16 * pixels.size());
  Point2 last;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const bool final = i + 1 == pixels.size();
    if (i > 0 && !final && std::fabs(pixels[i].u - last.u) < kQuarterPixel &&
        std::fabs(pixels[i].v - last.v) < kQuarterPixel)
      continue;
    data += i == 0 ? "M" : " L";
    appendPx(data, pixels[i].u);
    data += ' ';
    appendPx(data, pixels[i].v);
    last = pixels[i];
  }
  if (closed) data += " Z";
  return data;
}

// The point halfway along a polyline (in pixels), where its label goes.
Point2 halfway(const std::vector<Point2>& pixels) {
  double total = 0.0;
  for (std::size_t i = 1; i < pixels.size(); ++i)
    total += std::hypot(pixels[i].u - pixels[i - 1].u, pixels[i].v - pixels[i - 1].v);
  double remaining = 0.5 * total;
  for (std::size_t i = 1; i < pixels.size(); ++i) {
    const double step = std::hypot(pixels[i].u - pixels[i - 1].u, pixels[i].v - pixels[i - 1].v);
    if (step >= remaining && step > 0.0) {
      const double t = remaining / step;
      return {pixels[i - 1].u + t * (pixels[i].u - pixels[i - 1].u), pixels[i - 1].v + t * (pixels[i].v - pixels[i - 1].v)};
    }
    remaining -= step;
  }
  return pixels.empty() ? Point2{} : pixels.front();
}

// Labels are placed greedily: the first of a few spots around the anchor that overlaps no label
// placed before.
class LabelPlacer {
public:
  Point2 place(const Point2& anchor, const std::string& text) {
    const double width = 7.5 * static_cast<double>(text.size()), height = 13.0;
    const Point2 offsets[] = {{6, -6}, {6, 16}, {-6 - width, -6}, {-6 - width, 16}, {6, -20}, {-width / 2, -12}};
    for (const Point2& offset : offsets) {
      const Box box{anchor.u + offset.u, anchor.v + offset.v - height, width, height};
      if (!overlaps(box)) {
        m_boxes.push_back(box);
        return {box.x, box.y + height};
      }
    }
    return {anchor.u + 6, anchor.v - 6};
  }

private:
  struct Box {
    double x, y, w, h;
  };
  bool overlaps(const Box& box) const {
    for (const Box& other : m_boxes)
      if (box.x < other.x + other.w && other.x < box.x + box.w && box.y < other.y + other.h && other.y < box.y + box.h)
        return true;
    return false;
  }
  std::vector<Box> m_boxes;
};

// One element for the shape; `labelAt` receives where its label goes (in pixels).
std::string element(const Viewport& viewport, const Shape& shape, Point2& labelAt) {
  std::string attributes = " class=\"" + shape.cssClass + "\"";
  if (!shape.name.empty()) attributes += " data-name=\"" + escape(shape.name) + "\"";
  if (shape.line > 0) attributes += " data-line=\"" + std::to_string(shape.line) + "\"";
  labelAt = shape.points.empty() ? Point2{} : viewport.toPixels(shape.points[0]);
  switch (shape.type) {
    case Shape::kPolyline:
    case Shape::kPolygon: {
      std::vector<Point2> pixels;
      pixels.reserve(shape.points.size());
      for (const Point2& point : shape.points) pixels.push_back(viewport.toPixels(point));
      labelAt = halfway(pixels);
      return "<path" + attributes + " d=\"" + pathData(pixels, shape.type == Shape::kPolygon) + "\"/>";
    }
    case Shape::kUnbounded: {
      Point2 from, to;
      if (!clipLine(viewport, shape.points[0], shape.points[1], from, to)) {
        // Outside the picture, or seen end-on: a dot where it crosses the view.
        return "<circle" + attributes + " cx=\"" + px(labelAt.u) + "\" cy=\"" + px(labelAt.v) + "\" r=\"3\"/>";
      }
      const Point2 a = viewport.toPixels(from), b = viewport.toPixels(to);
      labelAt = {a.u + 0.15 * (b.u - a.u), a.v + 0.15 * (b.v - a.v)};
      return "<path" + attributes + " d=\"M" + px(a.u) + " " + px(a.v) + " L" + px(b.u) + " " + px(b.v) + "\"/>";
    }
    case Shape::kDot:
      return "<circle" + attributes + " cx=\"" + px(labelAt.u) + "\" cy=\"" + px(labelAt.v) + "\" r=\"3.5\"/>";
    case Shape::kSymbol: {
      const Point2 c = labelAt;
      return "<path" + attributes + " d=\"M" + px(c.u - 8) + " " + px(c.v) + " L" + px(c.u) + " " + px(c.v - 8) + " L" +
             px(c.u + 8) + " " + px(c.v) + " L" + px(c.u) + " " + px(c.v + 8) + " Z\"/>";
    }
    case Shape::kCross: {
      const Point2 c = labelAt;
      return "<path" + attributes + " d=\"M" + px(c.u - 5) + " " + px(c.v - 5) + " L" + px(c.u + 5) + " " + px(c.v + 5) +
             " M" + px(c.u - 5) + " " + px(c.v + 5) + " L" + px(c.u + 5) + " " + px(c.v - 5) + "\"/>";
    }
  }
  return "";
}

void includeShape(Viewport& viewport, const Shape& shape) {
  if (shape.type == Shape::kUnbounded) {
    viewport.include(shape.points[0]);
    return;
  }
  for (const Point2& point : shape.points) viewport.include(point);
}

std::string scaleBar(const Viewport& viewport) {
  const double length = niceLength(0.25 * (viewport.maxU() - viewport.minU()));
  const double x0 = 20.0, y0 = kHeight - 22.0, x1 = x0 + length * viewport.scale();
  return "<g class=\"scalebar\"><path d=\"M" + px(x0) + " " + px(y0 - 5) + " L" + px(x0) + " " + px(y0) + " L" + px(x1) +
         " " + px(y0) + " L" + px(x1) + " " + px(y0 - 5) + "\"/><text x=\"" + px(0.5 * (x0 + x1)) + "\" y=\"" +
         px(y0 - 8) + "\" text-anchor=\"middle\">" + formatNumber(length) + "</text></g>\n";
}

constexpr const char* kStyle =
    "<style>\n"
    "  .entity { fill: none; stroke: #1d4f91; stroke-width: 2; }\n"
    "  .entity.point { fill: #1d4f91; stroke: none; }\n"
    "  .entity.plane { stroke: #7a8ca8; stroke-width: 1.2; stroke-dasharray: 10 4 2 4; }\n"
    "  .entity.line { stroke-width: 1.4; }\n"
    "  .mark { fill: none; stroke: #c8102e; stroke-width: 2; }\n"
    "  .mark.pair { stroke-dasharray: 6 4; stroke-width: 1.5; }\n"
    "  .mark.box { stroke: #2e8540; stroke-width: 1.2; stroke-dasharray: 3 3; }\n"
    "  .mark.box.block { stroke: #6b3fa0; }\n"
    "  .mark.curve, .mark.line { stroke: #e07b00; stroke-width: 2.5; }\n"
    "  .label { font: 13px sans-serif; fill: #1d4f91; }\n"
    "  .label.result { fill: #b35f00; }\n"
    "  .title { font: bold 14px sans-serif; fill: #333; }\n"
    "  .scalebar path { fill: none; stroke: #333; stroke-width: 1.5; }\n"
    "  .scalebar text { font: 12px sans-serif; fill: #333; }\n"
    "</style>\n";

}  // namespace

std::string renderSvg(const Scene& scene, const std::string& title) {
  const ViewFrame frame(scene.view());
  std::vector<Shape> shapes;
  for (const std::string& name : scene.order()) {
    const Named& named = scene.at(name);
    if (named.kind == kVectorKind || named.constructed) continue;
    shapes.push_back(entityShape(frame, scene.view(), name, named));
  }
  const std::size_t entityCount = shapes.size();
  for (const Result& result : scene.results())
    for (const Mark& mark : result.marks) shapes.push_back(markShape(frame, scene, mark, result.line));

  Viewport viewport;
  for (const Shape& shape : shapes) includeShape(viewport, shape);
  viewport.fit(kWidth, kHeight, kMargin);

  std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                    px(kWidth) + "\" height=\"" + px(kHeight) + "\" viewBox=\"0 0 " + px(kWidth) + " " + px(kHeight) +
                    "\">\n" + kStyle + "<rect class=\"background\" width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
  std::string labels;
  LabelPlacer placer;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    Point2 labelAt;
    svg += element(viewport, shapes[i], labelAt) + "\n";
    if (shapes[i].labelled) {
      const Point2 at = placer.place(labelAt, shapes[i].name);
      labels += "<text class=\"label" + std::string(i >= entityCount ? " result" : "") + "\" x=\"" + px(at.u) +
                "\" y=\"" + px(at.v) + "\">" + escape(shapes[i].name) + "</text>\n";
    }
  }
  svg += labels;
  svg += "<text class=\"title\" x=\"12\" y=\"22\">" + escape(title) + " (view " + escape(scene.viewName()) +
         ")</text>\n";
  svg += scaleBar(viewport);
  svg += "</svg>\n";
  return svg;
}

}  // namespace krgescene
