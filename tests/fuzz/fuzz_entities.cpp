// Lines, segments, planes, bounding blocks and point entities under hostile input: each input is
// a program of construction, query and transformation steps over a few entities of each kind.
#include "tests/fuzz/FuzzCurve.h"

KRGEL_FUZZ_SANITIZER_OPTIONS

namespace {

using fuzz::keep;

struct State {
  KrGeLineSeg3d segment[2];
  KrGeLine3d line[2];
  KrGePlane plane[2];
  KrGeBoundBlock3d block[2];
  KrGePointEnt3d point;
  KrGePointOnCurve3d onCurve;
};

KrGeLinearEnt3d& linear(State& s, unsigned which) {
  return which & 2 ? static_cast<KrGeLinearEnt3d&>(s.line[which & 1]) : s.segment[which & 1];
}

void linearStep(fuzz::Input& in, State& s) {
  KrGeLinearEnt3d& self = linear(s, in.below(4));
  const KrGeLinearEnt3d& other = linear(s, in.below(4));
  KrGeLineSeg3d& segment = s.segment[in.below(2)];
  const KrGeTol tol = in.tol();
  KrGePoint3d p, q;
  switch (in.below(12)) {
    case 0: segment.set(in.point(), in.point()); break;
    case 1: segment.set(in.point(), in.vector()), s.line[in.below(2)].set(in.point(), in.vector()); break;
    case 2: s.line[in.below(2)].set(in.point(), in.point()); break;
    case 3: keep(self.intersectWith(other, p, tol) + self.intersectWith(s.plane[in.below(2)], q, tol)); break;
    case 4: {
      KrGeLinearEnt3d* common = nullptr;
      keep(self.overlap(other, common, tol));
      fuzz::own(common);
      break;
    }
    case 5: keep(self.isParallelTo(other, tol) + self.isColinearTo(other, tol) + self.isPerpendicularTo(other, tol) +
                 self.isOn(s.plane[0], tol) + self.isParallelTo(s.plane[1], tol) + self.isPerpendicularTo(s.plane[0], tol));
            break;
    case 6: self.getPerpPlane(in.point(), s.plane[in.below(2)]), self.getLine(s.line[in.below(2)]); break;
    case 7: keep(self.projIntersectWith(other, in.vector(), p, q, tol)), keep(p), keep(q); break;
    case 8: keep(segment.baryComb(in.real())), keep(segment.length()), segment.getBisector(s.plane[in.below(2)]); break;
    case 9: {
      double param1 = in.real(), param2 = in.real();
      bool success = false;
      segment.set(other, in.point(), param1, success);
      segment.set(self, other, param1, param2, success);
      keep(param1 + param2 + success);
      break;
    }
    default: fuzz::curveStep(in, self, other);
  }
}

void planeStep(fuzz::Input& in, State& s) {
  KrGePlane& plane = s.plane[in.below(2)];
  const KrGePlane& other = s.plane[in.below(2)];
  const KrGeTol tol = in.tol();
  KrGePoint3d p, q;
  KrGeVector3d u, v;
  switch (in.below(12)) {
    case 0: plane.set(in.point(), in.vector()); break;
    case 1: plane.set(in.point(), in.vector(), in.vector()); break;
    case 2: plane.set(in.point(), in.point(), in.point()); break;
    case 3: plane.set(in.real(), in.real(), in.real(), in.real()); break;
    case 4: {
      KrGeLine3d line;
      keep(plane.intersectWith(s.segment[in.below(2)], p, tol) + plane.intersectWith(other, line, tol));
      keep(plane.closestPointToLinearEnt(s.line[in.below(2)], q, tol)), keep(plane.closestPointToPlanarEnt(other, q, tol));
      break;
    }
    case 5: keep(plane.isParallelTo(other, tol) + plane.isPerpendicularTo(other, tol) + plane.isCoplanarTo(other, tol) +
                 plane.isParallelTo(s.segment[0], tol) + plane.isPerpendicularTo(s.line[1], tol));
            break;
    case 6: {
      KrGePoint2d uv = in.point2d();
      keep(plane.signedDistanceTo(in.point()) + plane.isOn(in.point(), uv, tol) + plane.isInside(uv, tol) + uv.x);
      keep(plane.closestPointTo(in.point(), tol)), keep(plane.distanceTo(in.point(), tol));
      break;
    }
    case 7: {
      KrsArray<KrGeVector3d> derivatives;
      fuzz::mayRunOutOfMemory([&] { keep(plane.evalPoint(in.point2d(), in.integer(), derivatives, u)); });
      keep(plane.paramOf(in.point(), tol).x);
      break;
    }
    case 8: {
      double a, b, c, d;
      KrGeInterval rangeU, rangeV;
      plane.getCoefficients(a, b, c, d), plane.getEnvelope(rangeU, rangeV), plane.get(p, u, v), plane.get(p, q, p);
      keep(a + b + c + d + plane.isClosedInU(tol) + plane.isClosedInV(tol));
      break;
    }
    case 9: plane.reverseNormal(), keep(plane.isNormalReversed()); break;
    default: fuzz::entityStep(in, plane, other);
  }
}

void blockAndPointStep(fuzz::Input& in, State& s) {
  KrGeBoundBlock3d& block = s.block[in.below(2)];
  const KrGeBoundBlock3d& other = s.block[in.below(2)];
  KrGePoint3d p, q;
  KrGeVector3d u, v, w;
  switch (in.below(12)) {
    case 0: block.set(in.point(), in.point()); break;
    case 1: block.set(in.point(), in.vector(), in.vector(), in.vector()); break;
    case 2: block.extend(in.point()).swell(in.real()).setToBox(in.flag()); break;
    case 3: keep(block.contains(in.point()) + block.isDisjoint(other) + block.isBox() + block.isEmpty()); break;
    case 4: block.getMinMaxPoints(p, q), block.get(p, u, v, w), keep(p), keep(w); break;
    case 5: fuzz::entityStep(in, block, other); break;
    case 6: s.point.set(in.point()), fuzz::entityStep(in, s.point, s.onCurve); break;
    case 7: s.onCurve.setCurve(linear(s, in.below(4))).setParameter(in.real()); break;
    case 8: keep(s.onCurve.point()), keep(s.onCurve.deriv(in.integer())); break;
    case 9: keep(s.onCurve.deriv(in.integer(), in.real())), keep(s.onCurve.point(s.plane[0] == s.plane[1] ? s.line[0] : s.line[1], in.real())); break;
    case 10: s.onCurve.set(in.point()), keep(s.onCurve.parameter()); break;
    default: fuzz::entityStep(in, s.onCurve, s.point);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input in(data, size);
  State state;
  for (int steps = 0; in.more() && steps < 128; ++steps) {
    switch (in.below(3)) {
      case 0: linearStep(in, state); break;
      case 1: planeStep(in, state); break;
      default: blockAndPointStep(in, state);
    }
  }
  return 0;
}
