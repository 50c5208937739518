// Circular arcs under hostile input: every setter, the arc's own queries, the generic curve
// interface against another arc and a segment, and the curve-curve intersection of them.
#include "tests/fuzz/FuzzCurve.h"

KRGEL_FUZZ_SANITIZER_OPTIONS

namespace {

using fuzz::keep;

struct State {
  KrGeCircArc3d arc[2];
  KrGeLineSeg3d segment;
  KrGeCurveCurveInt3d intersection;  // after the curves: destroyed first
};

void step(fuzz::Input& in, State& s) {
  KrGeCircArc3d& arc = s.arc[in.below(2)];
  const KrGeCircArc3d& other = s.arc[in.below(2)];
  const KrGeTol tol = in.tol();
  KrGePoint3d p, q;
  int count = 0;
  switch (in.below(14)) {
    case 0: arc.set(in.point(), in.vector(), in.real()); break;
    case 1: {
      const KrGePoint3d center = in.point();
      const KrGeVector3d normal = in.vector(), reference = in.vector();
      const double radius = in.real(), start = in.real();
      arc.set(center, normal, reference, radius, start, in.real());
      break;
    }
    case 2: {
      KrGe::ErrorCondition status;
      const KrGePoint3d first = in.point(), second = in.point();
      arc.set(first, second, in.point(), status);
      break;
    }
    case 3: arc.setCenter(in.point()).setRadius(in.real()).setAngles(in.real(), in.real()).setAxes(in.vector(), in.vector()); break;
    case 4: s.segment.set(in.point(), in.point()); break;
    case 5: keep(arc.intersectWith(s.segment, count, p, q, tol) + arc.intersectWith(other, count, p, q, tol) + count); break;
    case 6: keep(arc.intersectWith(KrGePlane(in.point(), in.vector()), count, p, q, tol)), keep(p); break;
    case 7: keep(arc.closestPointToPlane(KrGePlane(in.point(), in.vector()), p, tol)), keep(p); break;
    case 8: {
      KrGeLine3d line;
      keep(arc.tangent(in.point(), line, tol) + arc.isInside(in.point(), tol) + arc.radius() + arc.startAng() + arc.endAng());
      keep(arc.startPoint()), keep(arc.endPoint()), keep(arc.normal()), keep(arc.refVec());
      break;
    }
    case 9: {
      double param1 = in.real(), param2 = in.real(), param3 = 0;
      bool success = false;
      arc.set(s.segment, other, in.real(), param1, param2, success);
      arc.set(s.segment, other, s.arc[0], param1, param2, param3, success);
      break;
    }
    case 10: fuzz::curveStep(in, arc, s.segment); break;
    case 11: {
      const KrGeInterval range1 = in.interval(), range2 = in.interval();
      const KrGeVector3d normal = in.vector();
      if (in.flag())
        s.intersection.set(arc, in.flag() ? static_cast<const KrGeCurve3d&>(other) : s.segment, normal, in.tol());
      else
        s.intersection.set(s.segment, arc, range1, range2, normal, in.tol());
      break;
    }
    case 12: {
      const int index = in.integer();
      double param1 = 0, param2 = 0;
      KrGe::KrGeXConfig first, second;
      KrGeInterval range1, range2;
      KrGePointOnCurve3d onCurve;
      keep(s.intersection.intPoint(index)), s.intersection.getIntParams(index, param1, param2);
      s.intersection.getIntConfigs(index, first, second), s.intersection.getPointOnCurve2(index, onCurve);
      s.intersection.getOverlapRanges(in.integer(), range1, range2);
      keep(s.intersection.numIntPoints() + s.intersection.overlapCount() + s.intersection.isTangential(index) +
           s.intersection.intPointTol(index) + param1 + param2);
      s.intersection.orderWrt1().changeCurveOrder();
      break;
    }
    default: fuzz::curveStep(in, arc, other);
  }
}

}  // namespace

KRGEL_FUZZ_STEPS(State, step)
