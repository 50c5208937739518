// NURBS curves under hostile input: definitions decoded from the bytes (any degree, knots in any
// order, weights of any sign), the stored-definition operations, the curve's own evaluation and
// measures, and the generic curve interface against another NURBS curve, a segment and an
// ellipse (the generic pair solver).
#include "tests/fuzz/FuzzCurve.h"

KRGEL_FUZZ_SANITIZER_OPTIONS

namespace {

using fuzz::keep;

struct State {
  KrGeNurbCurve3d curve[2];
  KrGeLineSeg3d segment;
  KrGeEllipArc3d ellipse;
};

// A definition of up to 40 knots, points and weights; the degree as decoded.
KrGeNurbCurve3d decode(fuzz::Input& in) {
  const int degree = in.below(3) == 0 ? in.integer() : static_cast<int>(in.below(6));
  const int numKnots = static_cast<int>(in.below(41)), numPoints = static_cast<int>(in.below(41));
  KrGeKnotVector knots;
  double knot = in.real();
  for (int i = 0; i < numKnots; ++i) knots.append(knot += (in.below(4) == 0 ? 0.0 : in.real()));
  KrsArray<KrGePoint3d> points;
  for (int i = 0; i < numPoints; ++i) points.Add(in.point());
  if (in.flag()) return KrGeNurbCurve3d(degree, knots, points);
  KrsArray<double> weights;
  const int numWeights = static_cast<int>(in.below(41));
  for (int i = 0; i < numWeights; ++i) weights.Add(in.below(4) == 0 ? in.real() : 0.5 + in.below(8));
  return KrGeNurbCurve3d(degree, knots, points, weights);
}

void step(fuzz::Input& in, State& s) {
  KrGeNurbCurve3d& curve = s.curve[in.below(2)];
  const KrGeNurbCurve3d& other = s.curve[in.below(2)];
  KrGePoint3d p;
  KrsArray<KrGeVector3d> derivs;
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  switch (in.below(14)) {
    case 0: curve = decode(in); break;
    case 1: curve.insertKnot(in.real()), curve.addKnot(in.real()); break;
    case 2: curve.elevateDegree(in.integer()); break;
    case 3: {
      const int index = in.integer();
      curve.setWeightAt(index, in.real()), keep(curve.weightAt(in.integer()) + curve.numWeights());
      break;
    }
    case 4: {
      for (int i = static_cast<int>(in.below(8)); i > 0; --i) points.Add(in.point());
      curve.setFitData(in.integer(), points);
      const int index = in.integer();
      keep(curve.addFitPointAt(index, in.point()) + curve.getFitPointAt(in.integer(), p) + curve.purgeFitData());
      break;
    }
    case 5: {
      const double u = in.real();
      const int index = in.integer();
      keep(curve.evaluatePoint(u)), keep(curve.basisValue(u, index, in.integer()));
      break;
    }
    case 6: {
      const double u = in.real();
      const int count = in.order();
      fuzz::mayRunOutOfMemory([&] { keep(curve.evalPoint(u, count, derivs)); });
      break;
    }
    case 7: {
      const double from = in.real(), to = in.real(), tol = in.real();
      const double length = curve.length(from, to, tol);
      keep(length + curve.paramAtLength(from, in.flag() ? length / 2 : in.real(), in.flag(), tol));
      break;
    }
    case 8: {
      const double from = in.real(), to = in.real(), eps = in.real();
      const int count = in.order();
      fuzz::mayRunOutOfMemory([&] { curve.getSamplePoints(from, to, eps, points, params); });
      fuzz::mayRunOutOfMemory([&] { curve.getSamplePoints(count, points); });
      break;
    }
    case 9: {
      KrGeCurve3d *first = nullptr, *second = nullptr;
      curve.getSplitCurves(in.real(), first, second);
      fuzz::own(first), fuzz::own(second);
      break;
    }
    case 10: s.segment.set(in.point(), in.point()), curve = KrGeNurbCurve3d(s.segment); break;
    case 11: {
      const KrGePoint3d center = in.point();
      const KrGeVector3d major = in.vector(), minor = in.vector();
      const double a = in.real(), b = in.real(), start = in.real();
      s.ellipse.set(center, major, minor, a, b, start, in.real());
      curve = KrGeNurbCurve3d(s.ellipse);
      break;
    }
    case 12: {
      const KrGeCurve3d* partners[] = {&other, &s.segment, &s.ellipse};
      fuzz::curveStep(in, curve, *partners[in.below(3)]);
      break;
    }
    default: fuzz::curveStep(in, curve, other);
  }
}

}  // namespace

KRGEL_FUZZ_STEPS(State, step)
