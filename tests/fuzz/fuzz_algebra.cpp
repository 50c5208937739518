// Algebra and numerics under hostile input: vectors, points and matrices in 3D and 2D,
// tolerances, intervals, knot vectors and the polynomial root finders. Each input is a program:
// every step picks an operation and decodes its arguments.
#include "tests/fuzz/FuzzInput.h"

KRGEL_FUZZ_SANITIZER_OPTIONS

namespace {

using fuzz::keep;

struct State {
  KrGeVector3d vector[2];
  KrGePoint3d point[2];
  KrGeMatrix3d matrix[2];
  KrGeVector2d vector2d;
  KrGePoint2d point2d;
  KrGeMatrix2d matrix2d;
  KrGeInterval interval[2];
  KrGeKnotVector knots[2];
  KrsArray<double> coefficients, roots;
};

void step(fuzz::Input& in, State& s) {
  const unsigned a = in.below(2), b = in.below(2);
  KrGeVector3d& v = s.vector[a];
  KrGeMatrix3d& m = s.matrix[a];
  KrGeInterval& interval = s.interval[a];
  KrGeKnotVector& knots = s.knots[a];
  KrGe::ErrorCondition status;
  switch (in.below(42)) {
    case 0: v = in.vector(); break;
    case 1: s.point[a] = in.point(); break;
    case 2: m = in.matrix(); break;
    case 3: keep(v.normal(in.tol())), v.normalize(in.tol(), status); break;
    case 4: keep(v.angleTo(s.vector[b]) + v.angleTo(s.vector[b], in.vector())); break;
    case 5: v.rotateBy(in.real(), in.vector()).mirror(in.vector()); break;
    case 6: keep(v.rotateTo(s.vector[b], in.vector()) * s.point[b]); break;
    case 7: keep(v.orthoProject(in.vector(), in.tol(), status) + v.project(in.vector(), in.vector())); break;
    case 8: keep(v.perpVector()), keep(v.isParallelTo(s.vector[b], in.tol()) + v.isCodirectionalTo(s.vector[b])); break;
    case 9: keep(v.isPerpendicularTo(s.vector[b], in.tol(), status) + v.isUnitLength(in.tol()) + v.largestElement()); break;
    case 10: s.point[a].rotateBy(in.real(), in.vector(), in.point()).scaleBy(in.real(), in.point()); break;
    case 11: keep(s.point[a].distanceTo(s.point[b]) + s.point[a].isEqualTo(s.point[b], in.tol())); break;
    case 12: m.setToRotation(in.real(), in.vector(), in.point()); break;
    case 13: m.setToMirroring(in.point()).postMultBy(KrGeMatrix3d::mirroring(KrGeLine3d(in.point(), in.vector()))); break;
    case 14: m = KrGeMatrix3d::mirroring(KrGePlane(in.point(), in.vector())); break;
    case 15: m.setToProjection(KrGePlane(in.point(), in.vector()), in.vector()); break;
    case 16: {
      const KrGePoint3d from = in.point(), to = in.point();
      const KrGeVector3d x1 = in.vector(), y1 = in.vector(), z1 = in.vector();
      const KrGeVector3d x2 = in.vector(), y2 = in.vector();
      m.setToAlignCoordSys(from, x1, y1, z1, to, x2, y2, in.vector());
      break;
    }
    case 17: m.inverse(s.matrix[b], in.tol()), m.invert(); break;
    case 18: m.setToPlaneToWorld(in.vector()), s.matrix[b].setToWorldToPlane(in.vector()); break;
    case 19: m.setToScaling(in.real(), in.point()).preMultBy(s.matrix[b]).transposeIt(); break;
    case 20: keep(m.det() + m.norm() + m.scale() + m.isSingular(in.tol()) + m.isScaledOrtho(in.tol()) + m.isUniScaledOrtho(in.tol())); break;
    case 21: {
      KrGePoint3d origin;
      KrGeVector3d x, y, z;
      m.getCoordSystem(origin, x, y, z);
      m.setCoordSystem(origin, y, z, x);
      keep(m * s.point[b]), keep(m * s.vector[b]), keep(m.isEqualTo(s.matrix[b], in.tol()));
      break;
    }
    case 22: s.vector2d = in.vector2d(), s.point2d = in.point2d(); break;
    case 23: s.vector2d.rotateBy(in.real()).mirror(in.vector2d()).normalize(in.tol(), status); break;
    case 24: keep(s.vector2d.angle() + s.vector2d.angleTo(in.vector2d()) + s.vector2d.isParallelTo(in.vector2d(), in.tol())); break;
    case 25: s.point2d.rotateBy(in.real(), in.point2d()).mirror(KrGeLine2d(in.point2d(), in.vector2d())); break;
    case 26: {
      const KrGePoint2d from = in.point2d(), to = in.point2d();
      const KrGeVector2d x1 = in.vector2d(), y1 = in.vector2d(), x2 = in.vector2d();
      s.matrix2d.setToAlignCoordSys(from, x1, y1, to, x2, in.vector2d());
      break;
    }
    case 27: {
      double scale = 0, angle = 0;
      bool mirror = false;
      KrGeVector2d axis;
      s.matrix2d.setToRotation(in.real(), in.point2d()).invert();
      keep(s.matrix2d.isConformal(scale, angle, mirror, axis) + scale + angle + s.matrix2d.det());
      s.matrix2d.setToMirroring(KrGeLine2d(in.point2d(), in.vector2d()));
      break;
    }
    case 28: interval = in.interval(); break;
    case 29: interval.set(in.real(), in.real()).setTolerance(in.real()); break;
    case 30: {
      KrGeInterval left, right;
      double param = in.real();
      keep(interval.subtract(s.interval[b], left, right) + interval.isPeriodicallyOn(in.real(), param) + param);
      interval.getMerge(s.interval[b], left);
      keep(interval.intersectWith(s.interval[b], right) + interval.isOverlapAtUpper(s.interval[b], left));
      keep(interval.isDisjoint(s.interval[b]) + interval.contains(s.interval[b]) + interval.isContinuousAtUpper(s.interval[b]));
      keep(interval.length() + interval.element() + interval.contains(in.real()) + interval.isEqualAtLower(in.real()));
      break;
    }
    // A knot vector's storage is its array: operations that grow it may run out of memory.
    case 31: fuzz::mayRunOutOfMemory([&] { knots = KrGeKnotVector(in.length(), in.length(), in.real()); }); break;
    case 32: fuzz::mayRunOutOfMemory([&] { knots.insertAt(in.length(), in.real(), in.integer()); }); break;
    case 33: fuzz::mayRunOutOfMemory([&] { knots.insert(in.real()), knots.append(in.real()); }); break;
    case 34: knots.removeAt(in.integer()), knots.removeSubVector(in.integer(), in.integer()); break;
    case 35: {
      const int index = in.integer();
      keep(knots[index] + knots.multiplicityAt(index) + knots.numIntervals() + knots.isOn(in.real()) + knots.contains(in.real()));
      KrsArray<double> distinct;
      fuzz::mayRunOutOfMemory([&] { keep(knots.getDistinctKnots(distinct)); });
      break;
    }
    case 36: fuzz::mayRunOutOfMemory([&] {
        knots.reverse().setRange(in.real(), in.real());
        knots.setPhysicalLength(in.length()).setLogicalLength(in.length()).setGrowLength(in.length());
      });
      break;
    case 37: fuzz::mayRunOutOfMemory([&] {
        KrGeKnotVector& other = s.knots[b];
        const double param = in.real();
        const int multLast = in.integer();
        knots.split(param, &other, multLast, in.flag() ? &knots : nullptr, in.integer());
        knots = KrGeKnotVector(in.integer(), other);
      });
      break;
    case 38: fuzz::mayRunOutOfMemory([&] { s.coefficients.Add(in.real()); }); break;
    case 40: fuzz::mayRunOutOfMemory([&] {  // the host's own array, with hostile indices and counts
        s.coefficients.SetAtGrow(in.length(), in.real());
        s.coefficients.InsertAt(in.length(), in.real(), in.length());
      });
      break;
    case 41: fuzz::mayRunOutOfMemory([&] {
        s.coefficients.RemoveAt(in.integer(), in.integer());
        s.coefficients.Append(s.roots.GetData(), in.integer() % (s.roots.GetSize() + 1));
        s.coefficients.SetSize(in.length(), in.integer());
      });
      break;
    case 39: {
      if (s.coefficients.GetSize() > 64) s.coefficients.RemoveAll();
      keep(methodDecart(s.coefficients, s.roots) + methodFindAllRoot(s.coefficients, s.roots, in.flag()));
      break;
    }
  }
}

}  // namespace

KRGEL_FUZZ_STEPS(State, step)
