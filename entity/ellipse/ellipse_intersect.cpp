#include "entity/ellipse/ellipse_intersect.h"

#include <cmath>
#include <initializer_list>

#include "KrGePolynomRoot.h"
#include "KrsArray.h"
#include "entity/ellipse/ellipse_closest.h"

namespace {

constexpr double kPi = 3.141592653589793;

// The parameter of a point of the ellipse's plane (local x, y) lying on it or within tol of it:
// its eccentric angle, or for a flat ellipse the one of the two angles with cos t = x / a that
// the arc holds.
double angleOfLocal(const KrEllipseFrame& frame, double x, double y) {
  const double a = frame.majorRadius;
  const double b = frame.minorRadius;
  if (b > 0.0) return std::atan2(a * y, b * x);
  const double ratio = a > 0.0 ? x / a : 1.0;
  const double angle = std::acos(ratio < -1.0 ? -1.0 : (ratio > 1.0 ? 1.0 : ratio));
  return krArcHoldsAngle(frame.startAng, frame.sweep, angle, 0.0) ? angle : -angle;
}

// Appends a point unless it lies within tol of one already found; true when appended.
bool addDistinct(KrEllipseHit* hits, int& count, int capacity, const KrEllipseHit& hit, double tol) {
  for (int i = 0; i < count; ++i)
    if (hits[i].point.distanceTo(hit.point) <= tol) return false;
  if (count >= capacity) return false;
  hits[count++] = hit;
  return true;
}

// The arc holds the angle, or the point lies within tol of one of its ends (then the end's
// parameter is taken). Answers false when the point is off the arc.
bool placeOnArc(const KrEllipseFrame& frame, double angle, const KrGePoint3d& point, double tol, double& param) {
  if (frame.isFull() || krArcHoldsAngle(frame.startAng, frame.sweep, angle, 0.0)) {
    param = krArcParamOf(frame.startAng, frame.sweep, angle);
    return true;
  }
  if (point.distanceTo(frame.pointAt(frame.startAng)) <= tol) {
    param = frame.startAng;
    return true;
  }
  if (point.distanceTo(frame.pointAt(frame.endAng())) <= tol) {
    param = frame.endAng();
    return true;
  }
  return false;
}

// The trigonometric quadratic F(theta) = k0 + k1 cos + k2 sin + k3 cos^2 + k4 sin cos + k5 sin^2.
struct TrigQuadratic {
  double k[6];
  double at(double c, double s) const { return k[0] + k[1] * c + k[2] * s + k[3] * c * c + k[4] * s * c + k[5] * s * s; }
  // The same function of psi = theta - theta0: linear part R^T L, quadratic part R^T M R.
  TrigQuadratic shifted(double c0, double s0) const {
    TrigQuadratic r;
    r.k[0] = k[0];
    r.k[1] = c0 * k[1] + s0 * k[2];
    r.k[2] = -s0 * k[1] + c0 * k[2];
    const double m00 = k[3];
    const double m01 = 0.5 * k[4];
    const double m11 = k[5];
    r.k[3] = c0 * c0 * m00 + 2.0 * c0 * s0 * m01 + s0 * s0 * m11;
    r.k[5] = s0 * s0 * m00 - 2.0 * c0 * s0 * m01 + c0 * c0 * m11;
    r.k[4] = 2.0 * ((c0 * c0 - s0 * s0) * m01 + c0 * s0 * (m11 - m00));
    return r;
  }
};

// Real roots of the polynomial c[0..4] (constant first) by methodDecart, on coefficients divided
// by the largest so that its residual test is relative.
int quarticRoots(const double* c, double* roots) {
  double largest = 0.0;
  for (int i = 0; i < 5; ++i) largest = std::fmax(largest, std::fabs(c[i]));
  if (!(largest > 0.0) || !std::isfinite(largest)) return 0;
  KrsArray<double> coefficients;
  coefficients.SetSize(5);
  for (int i = 0; i < 5; ++i) coefficients[i] = c[i] / largest;
  KrsArray<double> found;
  const int count = methodDecart(coefficients, found);
  const int kept = count < 4 ? count : 4;
  for (int i = 0; i < kept; ++i) roots[i] = found[i];
  return kept;
}

// A flat ellipse (minor radius 0) as the segment its arc covers on the major axis.
KrLinearSpan flatSpan(const KrEllipseFrame& frame) {
  const double c0 = std::cos(frame.startAng) * frame.majorRadius;
  const double c1 = std::cos(frame.endAng()) * frame.majorRadius;
  double low = std::fmin(c0, c1);
  double high = std::fmax(c0, c1);
  if (krArcHoldsAngle(frame.startAng, frame.sweep, 0.0, 0.0)) high = frame.majorRadius;
  if (krArcHoldsAngle(frame.startAng, frame.sweep, kPi, 0.0)) low = -frame.majorRadius;
  KrLinearSpan span;
  span.origin = frame.center;
  span.direction = frame.majorAxis;
  span.lower = low;
  span.upper = high;
  return span;
}

int coplanarHits(const KrEllipseFrame& e1, const KrEllipseFrame& e2, double tol, KrEllipseHit hits[4]) {
  // The second ellipse's equation b2^2 u^2 + a2^2 v^2 - a2^2 b2^2 = 0 at the first one's points,
  // (u, v) the second's coordinates: u = cx + p1 cos + q1 sin, v = cy + p2 cos + q2 sin.
  const KrGeVector3d offset = e1.center - e2.center;
  const double cx = offset.dotProduct(e2.majorAxis);
  const double cy = offset.dotProduct(e2.minorAxis);
  const double p1 = e1.majorRadius * e1.majorAxis.dotProduct(e2.majorAxis);
  const double q1 = e1.minorRadius * e1.minorAxis.dotProduct(e2.majorAxis);
  const double p2 = e1.majorRadius * e1.majorAxis.dotProduct(e2.minorAxis);
  const double q2 = e1.minorRadius * e1.minorAxis.dotProduct(e2.minorAxis);
  const double wu = e2.minorRadius * e2.minorRadius;
  const double wv = e2.majorRadius * e2.majorRadius;
  TrigQuadratic f;
  f.k[0] = wu * cx * cx + wv * cy * cy - wu * wv;
  f.k[1] = 2.0 * (wu * cx * p1 + wv * cy * p2);
  f.k[2] = 2.0 * (wu * cx * q1 + wv * cy * q2);
  f.k[3] = wu * p1 * p1 + wv * p2 * p2;
  f.k[4] = 2.0 * (wu * p1 * q1 + wv * p2 * q2);
  f.k[5] = wu * q1 * q1 + wv * q2 * q2;
  const double scale = wu * (cx * cx + p1 * p1 + q1 * q1) + wv * (cy * cy + p2 * p2 + q2 * q2) + wu * wv;

  // theta0 puts the root-free side at t = infinity: the quarter turn whose opposite point has the
  // largest |F|.
  const double opposite[4] = {std::fabs(f.at(-1.0, 0.0)), std::fabs(f.at(0.0, -1.0)), std::fabs(f.at(1.0, 0.0)),
                              std::fabs(f.at(0.0, 1.0))};
  int quarter = 0;
  for (int i = 1; i < 4; ++i)
    if (opposite[i] > opposite[quarter]) quarter = i;
  const double c0s[4] = {1.0, 0.0, -1.0, 0.0};
  const double s0s[4] = {0.0, 1.0, 0.0, -1.0};
  const double theta0 = 0.5 * kPi * quarter;
  const TrigQuadratic g = f.shifted(c0s[quarter], s0s[quarter]);

  // (1 + t^2)^2 F with cos = (1 - t^2) / (1 + t^2), sin = 2t / (1 + t^2).
  double poly[5];
  poly[0] = g.k[0] + g.k[1] + g.k[3];
  poly[1] = 2.0 * (g.k[2] + g.k[4]);
  poly[2] = 2.0 * (g.k[0] - g.k[3]) + 4.0 * g.k[5];
  poly[3] = 2.0 * (g.k[2] - g.k[4]);
  poly[4] = g.k[0] - g.k[1] + g.k[3];
  double largest = 0.0;
  for (double c : poly) largest = std::fmax(largest, std::fabs(c));
  if (!(largest > 1e-13 * scale)) return 0;  // the same ellipse: coincident, no points

  double candidates[8];
  int candidateCount = quarticRoots(poly, candidates);
  const double slope[5] = {poly[1], 2.0 * poly[2], 3.0 * poly[3], 4.0 * poly[4], 0.0};
  candidateCount += quarticRoots(slope, candidates + candidateCount);

  // Candidates within tol of the second arc, in the order of their angle on the first (within
  // (theta0 - pi, theta0 + pi), whose ends are where F is largest).
  struct Candidate {
    double theta;
    double distance;
    KrEllipseHit hit;
  } kept[8];
  int keptCount = 0;
  for (int i = 0; i < candidateCount; ++i) {
    Candidate c;
    c.theta = theta0 + 2.0 * std::atan(candidates[i]);
    c.hit.point = e1.pointAt(c.theta);
    c.hit.s = krEllipseArcNearestParam(e2, c.hit.point, c.distance);
    if (!(c.distance <= tol)) continue;
    int at = keptCount++;
    for (; at > 0 && kept[at - 1].theta > c.theta; --at) kept[at] = kept[at - 1];
    kept[at] = c;
  }
  // Neighbours between which the curves stay within tol (checked at the middle) are one touching
  // (a high-order contact spreads over a stretch); the nearest candidate stands for it.
  int count = 0;
  for (int i = 0; i < keptCount;) {
    int best = i;
    int j = i + 1;
    for (; j < keptCount; ++j) {
      double between = 0.0;
      krEllipseArcNearestParam(e2, e1.pointAt(0.5 * (kept[j - 1].theta + kept[j].theta)), between);
      if (!(between <= tol)) break;
      if (kept[j].distance < kept[best].distance) best = j;
    }
    KrEllipseHit hit = kept[best].hit;
    if (placeOnArc(e1, kept[best].theta, hit.point, tol, hit.t)) addDistinct(hits, count, 4, hit, tol);
    i = j;
  }
  return count;
}

}  // namespace

double krEllipseArcNearestParam(const KrEllipseFrame& frame, const KrGePoint3d& point, double& distance) {
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  frame.toLocal(point, x, y, height);
  double footX = 0.0;
  double footY = 0.0;
  const double param = krEllipseArcNearest(frame.majorRadius, frame.minorRadius, frame.startAng, frame.sweep, x, y,
                                           footX, footY);
  distance = std::sqrt((footX - x) * (footX - x) + (footY - y) * (footY - y) + height * height);
  return param;
}

int krEllipseLineHits(const KrEllipseFrame& frame, const KrLinearSpan& line, double tol, bool withParams,
                      KrEllipseHit hits[2]) {
  const double a = frame.majorRadius;
  const double b = frame.minorRadius;
  const KrGeVector3d normal = frame.normal();
  const KrGeVector3d r = line.origin - frame.center;
  const KrGeVector3d& d = line.direction;
  const double dx = d.dotProduct(frame.majorAxis);
  const double dy = d.dotProduct(frame.minorAxis);
  const double dz = d.dotProduct(normal);
  const double planar = dx * dx + dy * dy;
  double shift = 0.0;  // the line is rebased at its point nearest to the centre in the plane
  if (planar > 0.0) shift = -(r.dotProduct(frame.majorAxis) * dx + r.dotProduct(frame.minorAxis) * dy) / planar;
  const double x0 = r.dotProduct(frame.majorAxis) + shift * dx;
  const double y0 = r.dotProduct(frame.minorAxis) + shift * dy;
  const double z0 = r.dotProduct(normal) + shift * dz;
  const double length = d.length();
  const double slack = length > 0.0 ? tol / length : 0.0;

  int count = 0;
  const auto consider = [&](double sigma, double ex, double ey) {
    const double s = shift + sigma;
    if (!(s >= line.lower - slack && s <= line.upper + slack)) return;
    KrEllipseHit hit;
    hit.point = line.origin + d * s;
    hit.s = s;
    if (withParams || !frame.isFull()) {
      if (!placeOnArc(frame, angleOfLocal(frame, ex, ey), hit.point, tol, hit.t)) return;
    }
    addDistinct(hits, count, 2, hit, tol);
  };

  if (planar > 0.0) {
    const double big = b * b * dx * dx + a * a * dy * dy;
    const double half = b * b * x0 * dx + a * a * y0 * dy;
    const double constant = b * b * x0 * x0 + a * a * y0 * y0 - a * a * b * b;
    const double moment = x0 * dy - y0 * dx;
    const double inPlane = std::sqrt(planar);
    const double gap = (std::fabs(moment) - std::sqrt(big)) / inPlane;
    if (gap < -tol) {
      const double root = a * b * std::sqrt((std::sqrt(big) - moment) * (std::sqrt(big) + moment));
      const double q = -(half + std::copysign(root, half));
      const double sigma1 = q / big;
      const double sigma2 = q != 0.0 ? constant / q : -sigma1;
      for (double sigma : {sigma1, sigma2})
        if (std::fabs(z0 + sigma * dz) <= tol) consider(sigma, x0 + sigma * dx, y0 + sigma * dy);
    } else if (gap <= tol) {
      // Touching within tol (missing, or cutting no deeper than tol): the support point S of the
      // normal n towards the line, and the line's point facing it.
      const double side = moment < 0.0 ? -1.0 : 1.0;
      const double nx = side * dy / inPlane;
      const double ny = -side * dx / inPlane;
      const double support = std::hypot(a * nx, b * ny);
      const double sx = support > 0.0 ? a * a * nx / support : 0.0;
      const double sy = support > 0.0 ? b * b * ny / support : 0.0;
      const double sigma = (sx * dx + sy * dy) / planar;
      if (std::hypot(gap, z0 + sigma * dz) <= tol) consider(sigma, sx, sy);
    }
  }
  if (dz != 0.0) {
    // Where the line crosses the plane: a meeting point when within tol of the ellipse. Outside
    // the ellipse's box grown by tol it cannot be; and the ellipse scaled by rho through the point
    // stays at least |rho - 1| b away from it (the least gap of nested ellipses is at the minor
    // vertices).
    const double sigma = -z0 / dz;
    const double px = x0 + sigma * dx;
    const double py = y0 + sigma * dy;
    if (std::fabs(px) <= a + tol && std::fabs(py) <= b + tol) {
      bool near = true;
      if (b > tol) {
        const double u = px / a;
        const double v = py / b;
        near = std::fabs(std::sqrt(u * u + v * v) - 1.0) * b <= tol;
      }
      if (near) {
        const KrEllipseFoot foot = krEllipseNearest(a, b, px, py);
        if (std::hypot(foot.x - px, foot.y - py) <= tol) consider(sigma, foot.x, foot.y);
      }
    }
  }
  return count;
}

int krEllipsePlaneHits(const KrEllipseFrame& frame, const KrGePoint3d& origin, const KrGeVector3d& normal, double tol,
                       KrEllipseHit hits[2]) {
  const double h0 = (frame.center - origin).dotProduct(normal);
  const double ca = frame.majorRadius * frame.majorAxis.dotProduct(normal);
  const double cb = frame.minorRadius * frame.minorAxis.dotProduct(normal);
  const double amplitude = std::hypot(ca, cb);
  if (!(std::fabs(h0) + amplitude > tol) || !(std::fabs(h0) <= amplitude + tol)) return 0;
  const double phi = std::atan2(cb, ca);
  double angles[2];
  int angleCount = 0;
  if (std::fabs(h0) >= amplitude - tol) {  // touching, or cutting through the plane by at most tol
    angles[angleCount++] = h0 < 0.0 ? phi : phi + kPi;
  } else {
    const double alpha = std::atan2(std::sqrt((amplitude - h0) * (amplitude + h0)), -h0);
    angles[angleCount++] = phi - alpha;
    angles[angleCount++] = phi + alpha;
  }
  int count = 0;
  for (int i = 0; i < angleCount; ++i) {
    KrEllipseHit hit;
    hit.point = frame.pointAt(angles[i]);
    if (!placeOnArc(frame, angles[i], hit.point, tol, hit.t)) continue;
    addDistinct(hits, count, 2, hit, tol);
  }
  return count;
}

int krEllipseEllipseHits(const KrEllipseFrame& first, const KrEllipseFrame& second, double tol,
                         KrEllipseHit hits[4]) {
  // A flat ellipse is a segment: the other one meets it as a line.
  if (second.minorRadius == 0.0 || first.minorRadius == 0.0) {
    const bool firstFlat = first.minorRadius == 0.0;
    const KrEllipseFrame& round = firstFlat ? second : first;
    const KrEllipseFrame& flat = firstFlat ? first : second;
    KrEllipseHit found[2];
    const int n = krEllipseLineHits(round, flatSpan(flat), tol, true, found);
    int count = 0;
    for (int i = 0; i < n; ++i) {
      double distance = 0.0;
      const double flatParam = krEllipseArcNearestParam(flat, found[i].point, distance);
      KrEllipseHit hit = found[i];
      hit.t = firstFlat ? flatParam : found[i].t;
      hit.s = firstFlat ? found[i].t : flatParam;
      if (distance <= tol) addDistinct(hits, count, 4, hit, tol);
    }
    return count;
  }
  const KrGeVector3d n1 = first.normal();
  const KrGeVector3d n2 = second.normal();
  const double h0 = (second.center - first.center).dotProduct(n1);
  const double lift = std::hypot(second.majorRadius * second.majorAxis.dotProduct(n1),
                                 second.minorRadius * second.minorAxis.dotProduct(n1));
  if (std::fabs(h0) + lift <= tol) return coplanarHits(first, second, tol, hits);

  // Crossing planes meet in the line through C1 + y, n1 . y = 0, n2 . y = n2 . (C2 - C1).
  const KrGeVector3d axis = n1.crossProduct(n2);
  const double sine2 = axis.dotProduct(axis);
  if (!(sine2 > 1e-30)) return 0;
  const double k = n1.dotProduct(n2);
  const double delta = n2.dotProduct(second.center - first.center);
  KrLinearSpan line;
  line.origin = first.center + (n2 - n1 * k) * (delta / sine2);
  line.direction = axis / std::sqrt(sine2);
  KrEllipseHit found[2];
  const int n = krEllipseLineHits(first, line, tol, true, found);
  int count = 0;
  for (int i = 0; i < n; ++i) {
    double distance = 0.0;
    found[i].s = krEllipseArcNearestParam(second, found[i].point, distance);
    if (distance <= tol) addDistinct(hits, count, 4, found[i], tol);
  }
  return count;
}
