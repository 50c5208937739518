#include "KrGeSplineEnt3d.h"

#include "entity/spline/spline_neutral.h"

KrGeSplineEnt3d::KrGeSplineEnt3d() = default;
KrGeSplineEnt3d::KrGeSplineEnt3d(const KrGeSplineEnt3d& spline) = default;

bool KrGeSplineEnt3d::isRational() const { krspline::notImplemented(12); return false; }
int KrGeSplineEnt3d::degree() const { krspline::notImplemented(18); return 0; }
int KrGeSplineEnt3d::order() const { krspline::notImplemented(24); return 0; }
int KrGeSplineEnt3d::numKnots() const { krspline::notImplemented(30); return 0; }
const KrGeKnotVector& KrGeSplineEnt3d::knots() const { krspline::notImplemented(36); return krspline::emptyKnots(); }
int KrGeSplineEnt3d::numControlPoints() const { krspline::notImplemented(43); return 0; }
int KrGeSplineEnt3d::continuityAtKnot(int, const KrGeTol&) const { krspline::notImplemented(49); return 0; }
double KrGeSplineEnt3d::startParam() const { krspline::notImplemented(55); return 0.0; }
double KrGeSplineEnt3d::endParam() const { krspline::notImplemented(61); return 0.0; }
KrGePoint3d KrGeSplineEnt3d::startPoint() const { krspline::notImplemented(67); return KrGePoint3d(); }
KrGePoint3d KrGeSplineEnt3d::endPoint() const { krspline::notImplemented(73); return KrGePoint3d(); }
bool KrGeSplineEnt3d::hasFitData() const { krspline::notImplemented(79); return false; }
double KrGeSplineEnt3d::knotAt(int) const { krspline::notImplemented(85); return 0.0; }
KrGeSplineEnt3d& KrGeSplineEnt3d::setKnotAt(int, double) { krspline::notImplemented(91); return *this; }
KrGePoint3d KrGeSplineEnt3d::controlPointAt(int) const { krspline::notImplemented(97); return KrGePoint3d(); }
KrGeSplineEnt3d& KrGeSplineEnt3d::setControlPointAt(int, const KrGePoint3d&) { krspline::notImplemented(103); return *this; }
KrGeSplineEnt3d& KrGeSplineEnt3d::operator=(const KrGeSplineEnt3d&) { krspline::notImplemented(109); return *this; }
