// Elliptical arcs under hostile input: every setter, the ellipse's own queries, the generic curve
// interface against another ellipse, a circular arc and a segment, and the curve-curve
// intersection of them.
#include "tests/fuzz/FuzzCurve.h"

KRGEL_FUZZ_SANITIZER_OPTIONS

namespace {

using fuzz::keep;

struct State {
  KrGeEllipArc3d ellipse[2];
  KrGeCircArc3d arc;
  KrGeLineSeg3d segment;
  KrGeCurveCurveInt3d intersection;  // after the curves: destroyed first
};

void step(fuzz::Input& in, State& s) {
  KrGeEllipArc3d& ellipse = s.ellipse[in.below(2)];
  const KrGeEllipArc3d& other = s.ellipse[in.below(2)];
  const KrGeTol tol = in.tol();
  KrGePoint3d p, q, r, t;
  int count = 0;
  switch (in.below(13)) {
    case 0: {
      const KrGePoint3d center = in.point();
      const KrGeVector3d major = in.vector(), minor = in.vector();
      const double majorRadius = in.real();
      ellipse.set(center, major, minor, majorRadius, in.real());
      break;
    }
    case 1: {
      const KrGePoint3d center = in.point();
      const KrGeVector3d major = in.vector(), minor = in.vector();
      const double majorRadius = in.real(), minorRadius = in.real(), start = in.real();
      ellipse.set(center, major, minor, majorRadius, minorRadius, start, in.real());
      break;
    }
    case 2: {
      const KrGeVector3d major = in.vector(), minor = in.vector();
      const double majorRadius = in.real(), minorRadius = in.real(), start = in.real();
      ellipse.setCenter(in.point()).setMajorRadius(majorRadius).setMinorRadius(minorRadius);
      ellipse.setAxes(major, minor).setAngles(start, in.real());
      break;
    }
    case 3: {
      const KrGePoint3d center = in.point();
      const KrGeVector3d normal = in.vector(), reference = in.vector();
      const double radius = in.real(), start = in.real();
      s.arc.set(center, normal, reference, radius, start, in.real());
      if (in.flag()) ellipse.set(s.arc);
      break;
    }
    case 4: s.segment.set(in.point(), in.point()); break;
    case 5: keep(ellipse.intersectWith(s.segment, count, p, q, tol) + count); break;
    case 6: keep(ellipse.intersectWith(KrGePlane(in.point(), in.vector()), count, p, q, tol)), keep(p); break;
    case 7: keep(ellipse.closestPointToPlane(KrGePlane(in.point(), in.vector()), p, tol)), keep(p); break;
    case 8: keep(ellipse.projIntersectWith(s.segment, in.vector(), count, p, q, r, t, tol) + count); break;
    case 9: {
      KrGePlane plane;
      ellipse.getPlane(plane);
      keep(ellipse.isCircular(tol) + ellipse.isInside(in.point(), tol) + ellipse.majorRadius() + ellipse.minorRadius());
      keep(ellipse.startPoint()), keep(ellipse.endPoint()), keep(ellipse.normal()), keep(ellipse.center());
      break;
    }
    case 10: fuzz::curveStep(in, ellipse, in.flag() ? static_cast<const KrGeCurve3d&>(s.arc) : s.segment); break;
    case 11: {
      const KrGeVector3d normal = in.vector();
      const KrGeCurve3d& second = in.flag() ? static_cast<const KrGeCurve3d&>(other) : s.arc;
      s.intersection.set(ellipse, second, normal, in.tol());
      keep(s.intersection.numIntPoints() + s.intersection.overlapCount());
      if (s.intersection.numIntPoints() > 0) keep(s.intersection.intPoint(in.integer()));
      break;
    }
    default: fuzz::curveStep(in, ellipse, other);
  }
}

}  // namespace

KRGEL_FUZZ_STEPS(State, step)
