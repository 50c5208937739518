// Queries: each asks the library one question about named entities and records the answer as
// values (printed) and marks (drawn).
#include <cmath>

#include "KrGeBoundBlock3d.h"
#include "KrGeCircArc3d.h"
#include "KrGeCurveCurveInt3d.h"
#include "KrGeEllipArc3d.h"
#include "KrGeInterval.h"
#include "KrGeLine3d.h"
#include "KrGeLinearEnt3d.h"
#include "KrGePlane.h"
#include "KrGePointOnCurve3d.h"
#include "KrsArray.h"
#include "SceneHandlers.h"
#include "SceneReach.h"

namespace krgescene {

namespace {

void markPoint(Result& result, const KrGePoint3d& point, const std::string& label = "") {
  Mark mark;
  mark.type = Mark::kPoint;
  mark.a = point;
  mark.label = label;
  result.marks.push_back(mark);
}

void markPair(Result& result, const KrGePoint3d& a, const KrGePoint3d& b) {
  Mark mark;
  mark.type = Mark::kPair;
  mark.a = a;
  mark.b = b;
  result.marks.push_back(mark);
}

bool isCurve(const Named& named) { return (named.kind & kCurveKinds) != 0; }

// SceneError unless the library answers `query` for this pair of kinds.
template <std::size_t N>
void requirePair(const char* query, const KindPair (&pairs)[N], const Named& a, const Named& b) {
  if (reaches(pairs, a.kind, b.kind)) return;
  throw SceneError(std::string(query) + " of " + withArticle(kindName(a.kind)) + " and " +
                   withArticle(kindName(b.kind)) + " is not available in the library yet");
}

// The whole parameter range of a curve, or SceneError when it is unbounded.
void boundedRange(const Arg& arg, double& from, double& to) {
  KrGeInterval range;
  arg.named->curve().getInterval(range);
  if (!range.isBounded()) throw SceneError("'" + arg.name + "' is unbounded: give T0 and T1");
  from = range.lowerBound();
  to = range.upperBound();
}

// Closest pairs, plain or seen along a direction: `along` null for the plain ones.
void closestPair(const std::vector<Arg>& args, const KrGeVector3d* along, Result& result) {
  const Named& a = *args[0].named;
  const Named& b = *args[1].named;
  if (!isCurve(a) && !isCurve(b)) throw SceneError("closest needs at least one curve");
  if (along) requirePair("projclosest", kProjClosestPairs, a, b);
  else requirePair("closest", kClosestPairs, a, b);
  // The curve that asks: A unless it is a point, or an arc seen along a direction (an arc does
  // not answer that question; the ellipse or line it is paired with does).
  const bool swapped = !isCurve(a) || (along && a.kind == kArcKind);
  const Named& asker = swapped ? b : a;
  const Named& other = swapped ? a : b;
  KrGePoint3d onAsker, onOther;
  if (!isCurve(other)) {
    onOther = other.point();
    onAsker = along ? asker.curve().projClosestPointTo(onOther, *along) : asker.curve().closestPointTo(onOther);
  } else {
    onAsker = along ? asker.curve().projClosestPointTo(other.curve(), *along, onOther)
                    : asker.curve().closestPointTo(other.curve(), onOther);
  }
  const KrGePoint3d onA = swapped ? onOther : onAsker;
  const KrGePoint3d onB = swapped ? onAsker : onOther;
  result.point("on " + args[0].name, onA);
  result.point("on " + args[1].name, onB);
  if (along) {
    // The distance as seen along the direction: the part of the gap across it.
    const KrGeVector3d unit = along->normal();
    const KrGeVector3d gap = onB - onA;
    result.number("distance across", (gap - unit * gap.dotProduct(unit)).length());
  } else {
    result.number("distance", onA.distanceTo(onB));
  }
  markPair(result, onA, onB);
}

const char* configName(KrGe::KrGeXConfig config) {
  switch (config) {
    case KrGe::kNotDefined: return "not defined";
    case KrGe::kUnknown: return "unknown";
    case KrGe::kLeftRight: return "left to right";
    case KrGe::kRightLeft: return "right to left";
    case KrGe::kLeftLeft: return "touches from the left";
    case KrGe::kRightRight: return "touches from the right";
    case KrGe::kPointLeft: return "ends, on the left";
    case KrGe::kPointRight: return "ends, on the right";
    case KrGe::kLeftOverlap: return "from the left into an overlap";
    case KrGe::kOverlapLeft: return "out of an overlap to the left";
    case KrGe::kRightOverlap: return "from the right into an overlap";
    case KrGe::kOverlapRight: return "out of an overlap to the right";
    case KrGe::kOverlapStart: return "overlap starts";
    case KrGe::kOverlapEnd: return "overlap ends";
    case KrGe::kOverlapOverlap: return "overlaps on both sides";
  }
  return "unknown";
}

// The normal the crossings are read against: the view's, or the curves' common plane's when they
// share one (turned towards the viewer), so that "left" is what the picture shows as left.
KrGeVector3d readingNormal(const Scene& scene, const KrGeCurve3d& first, const KrGeCurve3d& second) {
  const KrGeVector3d view = scene.view().normal();
  KrGePlane common;
  if (!first.isCoplanarWith(second, common)) return view;
  const KrGeVector3d normal = common.normal();
  const double facing = normal.dotProduct(view);
  if (std::fabs(facing) <= KrGeContext::gTol.equalVector()) return normal;  // seen edge-on
  return facing < 0.0 ? -normal : normal;
}

// Two curves meet where the library's intersection object finds them: each point with its
// parameter on both curves and how each curve passes the other there.
void intersectCurves(const Scene& scene, const Arg& a, const Arg& b, Result& result) {
  const KrGeCurve3d& first = a.named->curve();
  const KrGeCurve3d& second = b.named->curve();
  const KrGeCurveCurveInt3d found(first, second, readingNormal(scene, first, second));
  const int count = found.numIntPoints();
  result.number("count", count);
  for (int i = 0; i < count; ++i) {
    const std::string n = count == 1 ? "" : " " + std::to_string(i + 1);
    KrGePointOnCurve3d on1, on2;
    found.getPointOnCurve1(i, on1);
    found.getPointOnCurve2(i, on2);
    KrGe::KrGeXConfig config1 = KrGe::kNotDefined, config2 = KrGe::kNotDefined;
    found.getIntConfigs(i, config1, config2);
    result.point("point" + n, found.intPoint(i));
    result.number("param on " + a.name + n, on1.parameter());
    result.number("param on " + b.name + n, on2.parameter());
    result.text(a.name + " passes" + n, configName(config1));
    result.flag("tangential" + n, found.isTangential(i));
    markPoint(result, found.intPoint(i));
  }
}

// The points where an arc meets a plane (at most two).
void intersectArcPlane(const Arg& arc, const Arg& plane, Result& result) {
  int count = 0;
  KrGePoint3d first, second;
  static_cast<const KrGeCircArc3d&>(arc.named->curve()).intersectWith(plane.named->plane(), count, first, second);
  result.number("count", count);
  const KrGePoint3d points[2] = {first, second};
  for (int i = 0; i < count && i < 2; ++i) {
    result.point("point " + std::to_string(i + 1), points[i]);
    markPoint(result, points[i]);
  }
}

void intersectEllipsePlane(const Arg& ellipse, const Arg& plane, Result& result) {
  int count = 0;
  KrGePoint3d first, second;
  static_cast<const KrGeEllipArc3d&>(ellipse.named->curve()).intersectWith(plane.named->plane(), count, first, second);
  result.number("count", count);
  const KrGePoint3d points[2] = {first, second};
  for (int i = 0; i < count && i < 2; ++i) {
    result.point("point " + std::to_string(i + 1), points[i]);
    markPoint(result, points[i]);
  }
}

void intersectLinearPlane(const Arg& linear, const Arg& plane, Result& result) {
  KrGePoint3d hit;
  const auto& line = static_cast<const KrGeLinearEnt3d&>(linear.named->curve());
  const bool found = plane.named->plane().intersectWith(line, hit);
  result.number("count", found ? 1 : 0);
  if (found) {
    result.point("point", hit);
    markPoint(result, hit);
  }
}

}  // namespace

void queryEval(Scene&, const std::vector<Arg>& args, Result& result) {
  KrsArray<KrGeVector3d> derivatives;
  const KrGePoint3d point = args[0].named->curve().evalPoint(args[1].number, 1, derivatives);
  result.point("point", point);
  if (derivatives.GetSize() > 0) result.vector("derivative", derivatives[0]);
  markPoint(result, point);
}

void querySample(Scene&, const std::vector<Arg>& args, Result& result) {
  KrsArray<KrGePoint3d> points;
  args[0].named->curve().getSamplePoints(args[1].count, points);
  for (int i = 0; i < points.GetSize(); ++i) {
    result.point("p" + std::to_string(i + 1), points[i]);
    markPoint(result, points[i]);
  }
}

void queryLength(Scene&, const std::vector<Arg>& args, Result& result) {
  double from = 0.0, to = 0.0;
  if (args[1].present) {
    from = args[1].number;
    to = args[2].number;
  } else {
    boundedRange(args[0], from, to);
  }
  result.number("length", args[0].named->curve().length(from, to));
}

void queryParamAtLength(Scene&, const std::vector<Arg>& args, Result& result) {
  const KrGeCurve3d& curve = args[0].named->curve();
  const double length = args[2].number;
  const double param = curve.paramAtLength(args[1].number, std::fabs(length), length >= 0.0);
  const KrGePoint3d point = curve.evalPoint(param);
  result.number("param", param);
  result.point("point", point);
  markPoint(result, point);
}

void queryParamOf(Scene&, const std::vector<Arg>& args, Result& result) {
  const KrGeCurve3d& curve = args[0].named->curve();
  const bool on = curve.isOn(args[1].point);
  const double param = curve.paramOf(args[1].point);
  result.flag("on curve", on);
  result.number("param", param);
  result.point("point", curve.evalPoint(param));
  markPoint(result, curve.evalPoint(param));
}

void queryClosest(Scene&, const std::vector<Arg>& args, Result& result) { closestPair(args, nullptr, result); }

void queryProjClosest(Scene&, const std::vector<Arg>& args, Result& result) {
  closestPair(args, &args[2].vector, result);
}

void queryIntersect(Scene& scene, const std::vector<Arg>& args, Result& result) {
  const Named& a = *args[0].named;
  const Named& b = *args[1].named;
  requirePair("intersect", kIntersectPairs, a, b);
  if (isCurve(a) && isCurve(b)) {
    intersectCurves(scene, args[0], args[1], result);
  } else if (isCurve(a) || isCurve(b)) {
    const Arg& curve = isCurve(a) ? args[0] : args[1];
    const Arg& plane = isCurve(a) ? args[1] : args[0];
    if (curve.named->kind == kArcKind) intersectArcPlane(curve, plane, result);
    else if (curve.named->kind == kEllipseKind) intersectEllipsePlane(curve, plane, result);
    else intersectLinearPlane(curve, plane, result);
  } else {
    KrGeLine3d common;
    const bool found = a.plane().intersectWith(b.plane(), common);
    result.number("count", found ? 1 : 0);
    if (found) {
      result.point("line through", common.pointOnLine());
      result.vector("line direction", common.direction());
      Mark mark;
      mark.type = Mark::kLine;
      mark.a = common.pointOnLine();
      mark.b = mark.a + common.direction();
      result.marks.push_back(mark);
    }
  }
}

// An unbounded curve's block reaches a fixed far distance along it: printed, but not drawn (the
// picture would shrink everything else to a dot).
bool drawsBlock(const Arg& arg, Result& result) {
  KrGeInterval range;
  arg.named->curve().getInterval(range);
  if (range.isBounded()) return true;
  result.flag("unbounded, not drawn", true);
  return false;
}

void queryBound(Scene&, const std::vector<Arg>& args, Result& result) {
  const KrGeBoundBlock3d block = args[0].named->curve().orthoBoundBlock();
  Mark mark;
  mark.type = Mark::kBox;
  block.getMinMaxPoints(mark.a, mark.b);
  result.point("min", mark.a);
  result.point("max", mark.b);
  if (drawsBlock(args[0], result)) result.marks.push_back(mark);
}

void queryBox(Scene&, const std::vector<Arg>& args, Result& result) {
  const KrGeBoundBlock3d block = args[0].named->curve().boundBlock();
  Mark mark;
  mark.type = Mark::kBlock;
  block.get(mark.a, mark.sides[0], mark.sides[1], mark.sides[2]);
  result.point("base", mark.a);
  for (int i = 0; i < 3; ++i) result.vector("side " + std::to_string(i + 1), mark.sides[i]);
  if (drawsBlock(args[0], result)) result.marks.push_back(mark);
}

void queryDegenerate(Scene&, const std::vector<Arg>& args, Result& result) {
  KrGe::EntityId type = KrGe::kEntity3d;
  const bool degenerate = args[0].named->curve().isDegenerate(type);
  result.flag("degenerate", degenerate);
  if (degenerate) result.text("into", entityTypeName(type));
}

}  // namespace krgescene
