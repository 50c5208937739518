// Constructions: queries whose answers are new curves. Each new curve gets a scene name (so later
// lines can query it) and is drawn as a result, in the result colour.
#include <cmath>

#include "KrGeCircArc3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrsArray.h"
#include "SceneHandlers.h"
#include "SceneOutput.h"

namespace krgescene {

namespace {

void markCurve(Result& result, const std::string& name) {
  Mark mark;
  mark.type = Mark::kCurve;
  mark.curveName = name;
  mark.label = name;
  result.marks.push_back(mark);
}

void markPoint(Result& result, const KrGePoint3d& point) {
  Mark mark;
  mark.type = Mark::kPoint;
  mark.a = point;
  result.marks.push_back(mark);
}

// Names and draws one curve the caller built.
void adoptCurve(Scene& scene, const std::string& name, std::unique_ptr<KrGeCurve3d> curve, Kind kind,
                Result& result) {
  Named& named = scene.define(name, kind, result.line);
  named.entity = std::move(curve);
  named.constructed = true;
  result.defines.push_back(name);
  markCurve(result, name);
}

// Names and draws the curves the library made; takes ownership of every one of them.
void adoptCurves(Scene& scene, const std::string& prefix, KrsArray<void*>& curves, Result& result) {
  std::vector<std::unique_ptr<KrGeEntity3d>> owned;
  for (int i = 0; i < curves.GetSize(); ++i)
    owned.emplace_back(static_cast<KrGeEntity3d*>(static_cast<KrGeCurve3d*>(curves[i])));
  if (owned.empty()) throw SceneError("the library made no curve");
  std::vector<std::string> names;
  for (std::size_t i = 0; i < owned.size(); ++i) {
    names.push_back(owned.size() == 1 ? prefix : prefix + "." + std::to_string(i + 1));
    scene.checkNewName(names.back());
  }
  for (std::size_t i = 0; i < owned.size(); ++i) {
    Kind kind = kSegmentKind;
    if (!kindOfEntity(*owned[i], kind))
      throw SceneError(std::string("the library made a ") + entityTypeName(owned[i]->type()) +
                       ", which a scene cannot hold yet");
  }
  for (std::size_t i = 0; i < owned.size(); ++i) {
    Kind kind = kSegmentKind;
    kindOfEntity(*owned[i], kind);
    Named& named = scene.define(names[i], kind, result.line);
    named.entity = std::move(owned[i]);
    named.constructed = true;
    result.defines.push_back(names[i]);
    result.text("curve " + std::to_string(i + 1), names[i] + " (" + kindName(kind) + ")");
    markCurve(result, names[i]);
  }
}

KrGe::OffsetCrvExtType extensionType(const Arg& arg) {
  if (!arg.present || arg.name == "fillet") return KrGe::kFillet;
  return arg.name == "chamfer" ? KrGe::kChamfer : KrGe::kExtend;
}

}  // namespace

void constructOffset(Scene& scene, const std::vector<Arg>& args, Result& result) {
  KrsArray<void*> curves;
  args[1].named->curve().getTrimmedOffset(args[2].number, args[3].vector, curves, extensionType(args[4]));
  adoptCurves(scene, args[0].name, curves, result);
}

}  // namespace krgescene

namespace krgescene {

void constructTangentAt(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto line = std::make_unique<KrGeLine3d>();
  KrGe::ErrorCondition status = KrGe::kOk;
  const auto& arc = static_cast<const KrGeCircArc3d&>(args[1].named->curve());
  if (!arc.tangent(args[2].point, *line, KrGeContext::gTol, status)) {
    const char* why = status == KrGe::kNonCoplanarGeometry ? "P is off the arc's plane"
                      : status == KrGe::kArg1InsideThis    ? "P is inside the circle"
                      : status == KrGe::kDegenerateGeometry ? "the arc is degenerate"
                                                            : "P is not on the arc";
    throw SceneError(std::string("no tangent: ") + why);
  }
  result.point("through", line->pointOnLine());
  result.vector("direction", line->direction());
  const KrGePoint3d touch = line->pointOnLine();
  adoptCurve(scene, args[0].name, std::move(line), kLineKind, result);
  markPoint(result, touch);
}

void constructFillet(Scene& scene, const std::vector<Arg>& args, Result& result) {
  const double radius = args[3].number;
  if (!(radius > 0.0)) throw SceneError("RADIUS must be positive, got " + formatNumber(radius));
  auto arc = std::make_unique<KrGeCircArc3d>();
  double param1 = 0.0, param2 = 0.0;
  bool success = false;
  arc->set(args[1].named->curve(), args[2].named->curve(), radius, param1, param2, success);
  if (!success)
    throw SceneError("no arc of radius " + formatNumber(radius) + " touches both " + args[1].name + " and " + args[2].name);
  result.point("center", arc->center());
  result.number("param on " + args[1].name, param1);
  result.number("param on " + args[2].name, param2);
  result.point("start", arc->startPoint());
  result.point("end", arc->endPoint());
  const KrGePoint3d touch1 = args[1].named->curve().evalPoint(param1);
  const KrGePoint3d touch2 = args[2].named->curve().evalPoint(param2);
  adoptCurve(scene, args[0].name, std::move(arc), kArcKind, result);
  markPoint(result, touch1);
  markPoint(result, touch2);
}

void constructTangent(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto segment = std::make_unique<KrGeLineSeg3d>();
  double param = 0.0;
  bool success = false;
  segment->set(args[1].named->curve(), args[2].point, param, success);
  if (!success) throw SceneError("no line from P touches " + args[1].name);
  result.number("param on " + args[1].name, param);
  result.point("start", segment->startPoint());
  result.point("end", segment->endPoint());
  const KrGePoint3d touch = args[1].named->curve().evalPoint(param);
  adoptCurve(scene, args[0].name, std::move(segment), kSegmentKind, result);
  markPoint(result, touch);
}

void constructCommonTangent(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto segment = std::make_unique<KrGeLineSeg3d>();
  double param1 = 0.0, param2 = 0.0;
  bool success = false;
  segment->set(args[1].named->curve(), args[2].named->curve(), param1, param2, success);
  if (!success) throw SceneError("no line touches both " + args[1].name + " and " + args[2].name);
  result.number("param on " + args[1].name, param1);
  result.number("param on " + args[2].name, param2);
  result.point("start", segment->startPoint());
  result.point("end", segment->endPoint());
  adoptCurve(scene, args[0].name, std::move(segment), kSegmentKind, result);
  markPoint(result, args[1].named->curve().evalPoint(param1));
  markPoint(result, args[2].named->curve().evalPoint(param2));
}

void constructIncircle(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto circle = std::make_unique<KrGeCircArc3d>();
  double params[3] = {0.0, 0.0, 0.0};
  bool success = false;
  circle->set(args[1].named->curve(), args[2].named->curve(), args[3].named->curve(), params[0], params[1], params[2],
              success);
  if (!success)
    throw SceneError("no circle touches " + args[1].name + ", " + args[2].name + " and " + args[3].name +
                     " (the lines must cross pairwise in one plane, not all through one point)");
  result.point("center", circle->center());
  result.number("radius", circle->radius());
  KrGePoint3d touches[3];
  for (int i = 0; i < 3; ++i) {
    result.number("param on " + args[1 + i].name, params[i]);
    touches[i] = args[1 + i].named->curve().evalPoint(params[i]);
  }
  adoptCurve(scene, args[0].name, std::move(circle), kArcKind, result);
  for (const KrGePoint3d& touch : touches) markPoint(result, touch);
}

}  // namespace krgescene
