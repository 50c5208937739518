#include "SceneOutput.h"

#include <cmath>

#include <nlohmann/json.hpp>

namespace krgescene {

namespace {

using Json = nlohmann::ordered_json;

Json triple(double x, double y, double z) { return Json::array({x, y, z}); }
Json triple(const KrGePoint3d& p) { return triple(p.x, p.y, p.z); }
Json triple(const KrGeVector3d& v) { return triple(v.x, v.y, v.z); }

std::string formatValue(const Value& value) {
  switch (value.type) {
    case Value::kNumber: return formatNumber(value.number);
    case Value::kPoint: return formatPoint(value.point);
    case Value::kVector: return formatVector(value.vector);
    case Value::kText: return value.text;
    case Value::kFlag: return value.flag ? "yes" : "no";
  }
  return "";
}

Json jsonValue(const Value& value) {
  switch (value.type) {
    case Value::kNumber: return value.number;
    case Value::kPoint: return triple(value.point);
    case Value::kVector: return triple(value.vector);
    case Value::kText: return value.text;
    case Value::kFlag: return value.flag;
  }
  return nullptr;
}

Json jsonMark(const Mark& mark) {
  Json json;
  switch (mark.type) {
    case Mark::kPoint:
      json["type"] = "point";
      json["at"] = triple(mark.a);
      break;
    case Mark::kPair:
      json["type"] = "pair";
      json["from"] = triple(mark.a);
      json["to"] = triple(mark.b);
      break;
    case Mark::kBox:
      json["type"] = "box";
      json["min"] = triple(mark.a);
      json["max"] = triple(mark.b);
      break;
    case Mark::kBlock:
      json["type"] = "block";
      json["base"] = triple(mark.a);
      json["sides"] = Json::array({triple(mark.sides[0]), triple(mark.sides[1]), triple(mark.sides[2])});
      break;
    case Mark::kLine:
      json["type"] = "line";
      json["through"] = triple(mark.a);
      json["direction"] = triple(mark.b - mark.a);
      break;
    case Mark::kCurve:
      json["type"] = "curve";
      json["name"] = mark.curveName;
      break;
  }
  return json;
}

std::string heading(const Result& result) {
  std::string text = "[" + std::to_string(result.line) + "] " + result.command;
  for (const std::string& arg : result.args) text += " " + arg;
  return text;
}

}  // namespace

std::string formatNumber(double value) {
  if (value == 0.0) value = 0.0;  // no "-0"
  char text[64];
  std::snprintf(text, sizeof text, "%.12g", value);
  return text;
}

namespace {

// Three coordinates for reading: a coordinate below 1e-13 of the largest one is rounding noise
// at the twelve digits shown and reads as 0 (JSON keeps every bit).
std::string formatTriple(double x, double y, double z) {
  const double largest = std::fmax(std::fabs(x), std::fmax(std::fabs(y), std::fabs(z)));
  const auto shown = [largest](double value) { return std::fabs(value) <= 1e-13 * largest ? 0.0 : value; };
  return formatNumber(shown(x)) + ", " + formatNumber(shown(y)) + ", " + formatNumber(shown(z));
}

}  // namespace

std::string formatPoint(const KrGePoint3d& point) { return "(" + formatTriple(point.x, point.y, point.z) + ")"; }

std::string formatVector(const KrGeVector3d& vector) {
  return "<" + formatTriple(vector.x, vector.y, vector.z) + ">";
}

void printText(std::FILE* out, const Result& result) {
  if (result.values.empty() && result.diagnostics.empty()) return;
  std::fprintf(out, "%s\n", heading(result).c_str());
  std::size_t width = 0;
  for (const Value& value : result.values) width = value.key.size() > width ? value.key.size() : width;
  for (const Value& value : result.values)
    std::fprintf(out, "    %-*s  %s\n", static_cast<int>(width), value.key.c_str(), formatValue(value).c_str());
  for (const std::string& report : result.diagnostics) std::fprintf(out, "    library: %s\n", report.c_str());
}

void printError(std::FILE* out, const std::string& sceneName, const Result& result) {
  std::fprintf(out, "%s:%d: %s\n", sceneName.c_str(), result.line, result.error.c_str());
  for (const std::string& report : result.diagnostics)
    std::fprintf(out, "%s:%d:   library: %s\n", sceneName.c_str(), result.line, report.c_str());
}

void printJson(std::FILE* out, const Result& result) {
  Json json;
  json["line"] = result.line;
  json["command"] = result.command;
  json["args"] = result.args;
  if (!result.error.empty()) json["error"] = result.error;
  if (!result.defines.empty()) json["defines"] = result.defines;
  if (!result.values.empty()) {
    Json values = Json::object();
    for (const Value& value : result.values) values[value.key] = jsonValue(value);
    json["values"] = values;
  }
  if (!result.marks.empty()) {
    Json marks = Json::array();
    for (const Mark& mark : result.marks) marks.push_back(jsonMark(mark));
    json["marks"] = marks;
  }
  if (!result.diagnostics.empty()) json["diagnostics"] = result.diagnostics;
  std::fprintf(out, "%s\n", json.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

void printJsonSummary(std::FILE* out, const Scene& scene, int lines, int errors) {
  Json summary;
  summary["lines"] = lines;
  summary["errors"] = errors;
  summary["entities"] = drawnEntityCount(scene);
  summary["marks"] = markCount(scene);
  summary["view"] = scene.viewName();
  Json json;
  json["summary"] = summary;
  std::fprintf(out, "%s\n", json.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

int drawnEntityCount(const Scene& scene) {
  int count = 0;
  for (const std::string& name : scene.order()) {
    const Named& named = scene.at(name);
    if (named.kind != kVectorKind && !named.constructed) ++count;
  }
  return count;
}

int markCount(const Scene& scene) {
  int count = 0;
  for (const Result& result : scene.results()) count += static_cast<int>(result.marks.size());
  return count;
}

}  // namespace krgescene
