#include "entity/ellipse/ellipse_closest.h"

#include <cmath>
#include <limits>

#include "KrGePolynomRoot.h"
#include "KrsArray.h"
#include "entity/ellipse/ellipse_frame.h"

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// p(t) = c4 t^4 + c3 t^3 + c1 t - c4: the critical-point quartic of the reflected problem (its
// t^2 coefficient is 0 and its constant term -c4).
struct CriticalQuartic {
  double c4;
  double c3;
  double c1;

  double value(double t) const { return ((c4 * t + c3) * t * t + c1) * t - c4; }
  // A bound on the rounding error of value(t): the residual cannot be resolved below it.
  double noise(double t) const {
    const double m = std::fabs(t);
    return 8.9e-16 * ((std::fabs(c4) * m + std::fabs(c3)) * m * m * m + std::fabs(c1) * m + std::fabs(c4));
  }
  double slope(double t) const { return (4.0 * c4 * t + 3.0 * c3) * t * t + c1; }
  double curvature(double t) const { return (12.0 * c4 * t + 6.0 * c3) * t; }
};

// The quartic of the point (u, v) = (|x| / a, |y| / a), all coefficients divided by the largest
// of 1, u and beta v so that far points neither overflow nor lose the g terms' scale.
CriticalQuartic criticalQuartic(double beta, double gamma, double u, double v) {
  const double scale = std::fmax(1.0, std::fmax(u, beta * v));
  CriticalQuartic q;
  q.c4 = beta * (v / scale);
  q.c3 = 2.0 * (u / scale + gamma / scale);
  q.c1 = 2.0 * (u / scale - gamma / scale);
  return q;
}

// The root of p in [low, high], p(low) <= 0 <= p(high), from `guess`: Halley steps while they stay
// inside the shrinking bracket and at least halve the previous step, bisection otherwise. Stops
// at a residual within rounding, once a step is below 2 ulps, or after 100 steps (bisection alone
// needs ~60).
double rootInBracket(const CriticalQuartic& q, double low, double high, double guess) {
  double t = guess > low && guess < high ? guess : 0.5 * (low + high);
  double previousStep = high - low;
  for (int iteration = 0; iteration < 100; ++iteration) {
    const double value = q.value(t);
    if (std::fabs(value) <= q.noise(t)) return t;
    if (value < 0.0)
      low = t;
    else
      high = t;
    // Halley's step: cubic convergence for the price of p''.
    const double slope = q.slope(t);
    const double step = value * slope / (slope * slope - 0.5 * value * q.curvature(t));
    const double newton = t - step;
    double next;
    if (newton > low && newton < high && 2.0 * std::fabs(step) <= std::fabs(previousStep)) {
      next = newton;
      previousStep = step;
    } else {
      next = 0.5 * (low + high);
      previousStep = high - low;
    }
    if (std::fabs(next - t) <= 4.4e-16 * std::fabs(next) || !(high - low > 0.0)) return next;
    t = next;
  }
  return t;
}

// The foot of the half-angle tangent t in the reflected quadrant.
void setFoot(KrEllipseFoot& foot, double a, double b, double t) {
  const double t2 = t * t;
  foot.halfTangent = t;
  foot.x = a * ((1.0 - t) * (1.0 + t) / (1.0 + t2));
  foot.y = b * (2.0 * t / (1.0 + t2));
  if (foot.flipX) foot.x = -foot.x;
  if (foot.flipY) foot.y = -foot.y;
}

// Shared preamble: NaN, a point-sized ellipse, a circle. Answers true when the foot is settled.
bool settleSpecial(KrEllipseFoot& foot, double a, double b, double x, double y) {
  foot.flipX = x < 0.0;
  foot.flipY = y < 0.0;
  if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(x) || !std::isfinite(y)) {
    foot.x = foot.y = foot.halfTangent = kNaN;
    return true;
  }
  if (!(a > 0.0)) {
    foot.everywhere = true;
    return true;
  }
  if (b < a) return false;
  // A circle: the nearest point lies on the ray from the centre; the centre sees them all.
  const double u = std::fabs(x);
  const double v = std::fabs(y);
  const double r = std::hypot(u, v);
  if (r == 0.0) {
    foot.everywhere = true;
    setFoot(foot, a, a, 0.0);
    return true;
  }
  setFoot(foot, a, a, v / (u + r));
  return true;
}

// The quartic solver's root in (low, high) nearest to their middle, as a first guess; the middle
// itself when it reports none there.
double quarticGuess(const CriticalQuartic& q, double low, double high) {
  const double largest = std::fmax(std::fabs(q.c4), std::fmax(std::fabs(q.c3), std::fabs(q.c1)));
  KrsArray<double> coefficients;
  coefficients.SetSize(5);
  coefficients[0] = -q.c4 / largest;
  coefficients[1] = q.c1 / largest;
  coefficients[2] = 0.0;
  coefficients[3] = q.c3 / largest;
  coefficients[4] = q.c4 / largest;
  KrsArray<double> roots;
  const int count = methodDecart(coefficients, roots);
  const double middle = 0.5 * (low + high);
  double guess = middle;
  for (int i = 0; i < count; ++i) {
    const double root = roots[i];
    if (root > low && root < high && (guess == middle || std::fabs(root - middle) < std::fabs(guess - middle)))
      guess = root;
  }
  return guess;
}

}  // namespace

double KrEllipseFoot::angle() const {
  double phi = 2.0 * std::atan(halfTangent);
  if (flipX) phi = kPi - phi;
  if (flipY) phi = -phi;
  return phi > kPi ? phi - 2.0 * kPi : phi;
}

// The guess is the eccentric angle of the point itself, exact for points on the ellipse; the
// first step then tightens the bracket on its side.
KrEllipseFoot krEllipseNearest(double a, double b, double x, double y) {
  KrEllipseFoot foot;
  if (settleSpecial(foot, a, b, x, y)) return foot;
  const double u = std::fabs(x) / a;
  const double v = std::fabs(y) / a;
  const double beta = b / a;
  const double gamma = (1.0 - beta) * (1.0 + beta);
  double t = 0.0;
  if (v == 0.0) {
    // On the major axis: the vertex, or the two mirrored feet cos t = u / g inside the cusp.
    t = u < gamma ? std::sqrt((gamma - u) / (gamma + u)) : 0.0;
  } else if (u == 0.0) {
    t = 1.0;
  } else {
    const CriticalQuartic q = criticalQuartic(beta, gamma, u, v);
    const double scaledU = beta * u;
    const double guess = v / (scaledU + std::sqrt(scaledU * scaledU + v * v));
    t = rootInBracket(q, 0.0, 1.0, guess);
  }
  setFoot(foot, a, b, t);
  return foot;
}

KrEllipseFoot krEllipseOtherFoot(double a, double b, double x, double y) {
  KrEllipseFoot foot;
  if (settleSpecial(foot, a, b, x, y)) return foot;
  const double u = std::fabs(x) / a;
  const double v = std::fabs(y) / a;
  const double beta = b / a;
  const double gamma = (1.0 - beta) * (1.0 + beta);
  double t = -1.0;
  if (v == 0.0) {
    t = u < gamma ? -std::sqrt((gamma - u) / (gamma + u)) : 0.0;
  } else if (u > 0.0) {
    const CriticalQuartic q = criticalQuartic(beta, gamma, u, v);
    const double ratio = std::cbrt(beta * v / u);
    const double separator = -ratio / (1.0 + std::sqrt(1.0 + ratio * ratio));
    t = q.value(separator) > 0.0 ? rootInBracket(q, -1.0, separator, quarticGuess(q, -1.0, separator)) : separator;
  }
  setFoot(foot, a, b, t);
  return foot;
}

double krEllipseArcNearest(double a, double b, double startAng, double sweep, double x, double y, double& footX,
                           double& footY) {
  const KrEllipseFoot nearest = krEllipseNearest(a, b, x, y);
  footX = nearest.x;
  footY = nearest.y;
  if (nearest.everywhere) {
    footX = a * std::cos(startAng);
    footY = b * std::sin(startAng);
    return startAng;
  }
  const double angle = nearest.angle();
  if (!(angle == angle)) return angle;
  if (krArcHoldsAngle(startAng, sweep, angle, 0.0)) return krArcParamOf(startAng, sweep, angle);

  // The ends, and the other local minimum when the arc holds it.
  double bestParam = startAng;
  double bestX = a * std::cos(startAng);
  double bestY = b * std::sin(startAng);
  double best = (bestX - x) * (bestX - x) + (bestY - y) * (bestY - y);
  const auto consider = [&](double param, double px, double py) {
    const double d2 = (px - x) * (px - x) + (py - y) * (py - y);
    if (d2 < best) {
      best = d2;
      bestParam = param;
      bestX = px;
      bestY = py;
    }
  };
  const double endAng = startAng + sweep;
  consider(endAng, a * std::cos(endAng), b * std::sin(endAng));
  const KrEllipseFoot other = krEllipseOtherFoot(a, b, x, y);
  const double otherAngle = other.angle();
  if (krArcHoldsAngle(startAng, sweep, otherAngle, 0.0))
    consider(krArcParamOf(startAng, sweep, otherAngle), other.x, other.y);
  footX = bestX;
  footY = bestY;
  return bestParam;
}
