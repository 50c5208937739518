// Queries: each asks the library one question about named entities and records the answer as
// values (printed) and marks (drawn).
#include <cmath>

#include "KrGeBoundBlock3d.h"
#include "KrGeCircArc3d.h"
#include "KrGeInterval.h"
#include "KrGeLine3d.h"
#include "KrGeLinearEnt3d.h"
#include "KrGePlane.h"
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

// SceneError unless the library answers `query` for this pair of kinds (`kinds` for each).
void requirePair(const char* query, const Named& a, const Named& b, unsigned kindsA, unsigned kindsB) {
  if ((a.kind & kindsA) && (b.kind & kindsB)) return;
  throw SceneError(std::string(query) + " of " + kindName(a.kind) + " and " + kindName(b.kind) +
                   " is not available in the library yet");
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
  const char* query = along ? "projclosest" : "closest";
  const unsigned curveKinds = along ? kProjKinds : kPointCurveKinds;
  const unsigned pairKinds = along ? kProjKinds : kCurvePairKinds;
  if (!isCurve(a)) requirePair(query, a, b, kPointKind, curveKinds);
  else if (!isCurve(b)) requirePair(query, a, b, curveKinds, kPointKind);
  else requirePair(query, a, b, pairKinds, pairKinds);
  KrGePoint3d onA, onB;
  if (!isCurve(a)) {
    onA = a.point();
    onB = along ? b.curve().projClosestPointTo(onA, *along) : b.curve().closestPointTo(onA);
  } else if (!isCurve(b)) {
    onB = b.point();
    onA = along ? a.curve().projClosestPointTo(onB, *along) : a.curve().closestPointTo(onB);
  } else {
    onA = along ? a.curve().projClosestPointTo(b.curve(), *along, onB) : a.curve().closestPointTo(b.curve(), onB);
  }
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

void queryIntersect(Scene&, const std::vector<Arg>& args, Result& result) {
  const Named& a = *args[0].named;
  const Named& b = *args[1].named;
  if (isCurve(a) && isCurve(b)) {
    requirePair("intersect", a, b, kCurvePairKinds, kCurvePairKinds);
    KrGePoint3d hit;
    const bool found = static_cast<const KrGeLinearEnt3d&>(a.curve())
                           .intersectWith(static_cast<const KrGeLinearEnt3d&>(b.curve()), hit);
    result.number("count", found ? 1 : 0);
    if (found) {
      result.point("point", hit);
      markPoint(result, hit);
    }
  } else if (isCurve(a) || isCurve(b)) {
    const Arg& curve = isCurve(a) ? args[0] : args[1];
    const Arg& plane = isCurve(a) ? args[1] : args[0];
    requirePair("intersect", *curve.named, *plane.named, kCurvePlaneKinds, kPlaneKind);
    if (curve.named->kind == kArcKind) intersectArcPlane(curve, plane, result);
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

void queryBound(Scene&, const std::vector<Arg>& args, Result& result) {
  const KrGeBoundBlock3d block = args[0].named->curve().orthoBoundBlock();
  KrGePoint3d low, high;
  block.getMinMaxPoints(low, high);
  result.point("min", low);
  result.point("max", high);
  Mark mark;
  mark.type = Mark::kBox;
  mark.a = low;
  mark.b = high;
  result.marks.push_back(mark);
}

void queryDegenerate(Scene&, const std::vector<Arg>& args, Result& result) {
  KrGe::EntityId type = KrGe::kEntity3d;
  const bool degenerate = args[0].named->curve().isDegenerate(type);
  result.flag("degenerate", degenerate);
  if (degenerate) result.text("into", entityTypeName(type));
}

}  // namespace krgescene
