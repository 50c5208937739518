#include "entity/ellipse/ellipse_length.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kPi = 3.141592653589793;
// pi = kPiA + kPiB + kPiC: kPiA keeps 25 significant bits, so k * kPiA is exact for |k| < 2^28.
constexpr double kPiA = 3.1415926218032837;
constexpr double kPiB = 3.1786509424591713e-08;
constexpr double kPiC = 1.2246467991473532e-16;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Positive nodes and weights of 10-point Gauss-Legendre on [-1, 1].
constexpr double kNode[5] = {0.14887433898163121088, 0.43339539412924719080, 0.67940956829902440623,
                             0.86506336668898451073, 0.97390652851717172008};
constexpr double kWeight[5] = {0.29552422471475287017, 0.26926671930999635509, 0.21908636251598204400,
                               0.14945134915058059315, 0.066671344308688137594};

// sin and cos of |x| <= 0.5 by their Taylor polynomials in x^2: the first omitted terms are below
// 1e-19 relative, and no argument reduction is needed.
void smallSinCos(double x, double& s, double& c) {
  const double x2 = x * x;
  s = x * (1.0 + x2 * (-1.0 / 6 + x2 * (1.0 / 120 + x2 * (-1.0 / 5040 + x2 * (1.0 / 362880 + x2 * (-1.0 / 39916800 +
      x2 * (1.0 / 6227020800.0 + x2 * (-1.0 / 1307674368000.0))))))));
  c = 1.0 + x2 * (-0.5 + x2 * (1.0 / 24 + x2 * (-1.0 / 720 + x2 * (1.0 / 40320 + x2 * (-1.0 / 3628800 +
      x2 * (1.0 / 479001600.0 + x2 * (-1.0 / 87178291200.0 + x2 * (1.0 / 20922789888000.0))))))));
}

// The ellipse with a = 1: b = beta, gamma = 1 - beta^2 = (1 - beta)(1 + beta).
struct Shape {
  double beta;
  double beta2;
  double gamma;
};

// Length from the major vertex (t = 0) to the point at angle d in [0, pi/2], whose sine and
// cosine are s, c (a = 1). With X = beta^2 c^2, Y = X + s^2,
//   L0 = beta^2 s RF(X, Y, beta^2) + gamma beta^2 s^3 RD(X, Y, beta^2) / 3,
// Legendre's E(d | -gamma / beta^2) scaled by beta: both terms are positive, so nothing cancels
// however flat the ellipse. b = 0 is the segment: 1 - c = s^2 / (1 + c).
double fromMajorVertex(const Shape& shape, double s, double c) {
  if (shape.beta2 == 0.0) return s * s / (1.0 + c);
  const double x = shape.beta2 * c * c;
  double rf = 0.0;
  double rd = 0.0;
  krCarlsonRfRd(x, x + s * s, shape.beta2, rf, rd);
  return shape.beta2 * s * (rf + shape.gamma * s * s * rd / 3.0);
}

// The quarter length (a = 1): from the major vertex to the minor one.
double quarter(const Shape& shape) { return fromMajorVertex(shape, 1.0, 0.0); }

// t = k pi + d with d in [-pi/2, pi/2], reduced with pi in three parts so that d keeps its
// relative accuracy next to a major vertex; answers k and the signed length sign(d) L0(|d|) from
// the major vertex k pi.
double fromNearestMajorVertex(const Shape& shape, double t, double& k) {
  k = std::nearbyint(t / kPi);
  const double d = ((t - k * kPiA) - k * kPiB) - k * kPiC;
  const double half = fromMajorVertex(shape, std::sin(std::fabs(d)), std::cos(d));
  return d < 0.0 ? -half : half;
}

// Gauss-Legendre over [from, from + 2h], h <= 0.5, of sqrt(beta^2 + gamma sin^2 t) (a = 1). The
// middle from + h is carried as a rounded sum and its error: where the integrand is small and
// steep (next to a major vertex) a last-bit shift of the middle would otherwise move the result
// by more than the quadrature error. The sines at the nodes come from sin and cos of the middle
// and the Taylor forms of the node offsets.
double gaussLegendre(const Shape& shape, double from, double h) {
  const double middle = from + h;
  const double shifted = middle - from;
  const double middleError = (from - (middle - shifted)) + (h - shifted);
  const double sinMiddle = std::sin(middle);
  const double cosMiddle = std::cos(middle);
  const double sm = sinMiddle + cosMiddle * middleError;
  const double cm = cosMiddle - sinMiddle * middleError;
  double sum = 0.0;
  for (int i = 0; i < 5; ++i) {
    double so = 0.0;
    double co = 0.0;
    smallSinCos(h * kNode[i], so, co);
    const double right = sm * co + cm * so;
    const double left = sm * co - cm * so;
    sum += kWeight[i] * (std::sqrt(shape.beta2 + shape.gamma * right * right) +
                         std::sqrt(shape.beta2 + shape.gamma * left * left));
  }
  return sum * h;
}

}  // namespace

// Carlson's duplication x <- (x + l) / 4 with l = sqrt(x y) + sqrt(y z) + sqrt(z x) shrinks the
// spread of the arguments fourfold per step and leaves RF invariant, RD up to the running sum of
// 3 * 4^-m / (sqrt(z) (z + l)). The stopping bounds are (3r)^(-1/6) and (r/4)^(-1/6) times the
// initial spread for r = 1e-16; then the fifth-order expansions in the normalised deviations.
void krCarlsonRfRd(double x, double y, double z, double& rf, double& rd) {
  const double meanF0 = (x + y + z) / 3.0;
  const double meanD0 = (x + y + 3.0 * z) / 5.0;
  const double spreadF = 386.0 * std::fmax(std::fabs(meanF0 - x), std::fmax(std::fabs(meanF0 - y), std::fabs(meanF0 - z)));
  const double spreadD = 585.0 * std::fmax(std::fabs(meanD0 - x), std::fmax(std::fabs(meanD0 - y), std::fabs(meanD0 - z)));
  const double x0 = x;
  const double y0 = y;
  double meanF = meanF0;
  double meanD = meanD0;
  double power = 1.0;  // 4^-n
  double sum = 0.0;
  for (int n = 0; n < 60; ++n) {
    if (spreadF * power < std::fabs(meanF) && spreadD * power < std::fabs(meanD)) break;
    const double sx = std::sqrt(x);
    const double sy = std::sqrt(y);
    const double sz = std::sqrt(z);
    const double lambda = sx * (sy + sz) + sy * sz;
    sum += power / (sz * (z + lambda));
    power *= 0.25;
    x = (x + lambda) * 0.25;
    y = (y + lambda) * 0.25;
    z = (z + lambda) * 0.25;
    meanF = (meanF + lambda) * 0.25;
    meanD = (meanD + lambda) * 0.25;
  }
  {
    const double xf = (meanF0 - x0) * power / meanF;
    const double yf = (meanF0 - y0) * power / meanF;
    const double zf = -(xf + yf);
    const double e2 = xf * yf - zf * zf;
    const double e3 = xf * yf * zf;
    rf = (1.0 - e2 / 10.0 + e3 / 14.0 + e2 * e2 / 24.0 - 3.0 * e2 * e3 / 44.0) / std::sqrt(meanF);
  }
  const double xd = (meanD0 - x0) * power / meanD;
  const double yd = (meanD0 - y0) * power / meanD;
  const double zd = -(xd + yd) / 3.0;
  const double xy = xd * yd;
  const double zz = zd * zd;
  const double e2 = xy - 6.0 * zz;
  const double e3 = (3.0 * xy - 8.0 * zz) * zd;
  const double e4 = 3.0 * (xy - zz) * zz;
  const double e5 = xy * zz * zd;
  const double series = 1.0 - 3.0 * e2 / 14.0 + e3 / 6.0 + 9.0 * e2 * e2 / 88.0 - 3.0 * e4 / 22.0 -
                        9.0 * e2 * e3 / 52.0 + 3.0 * e5 / 26.0;
  rd = power * series / (meanD * std::sqrt(meanD)) + 3.0 * sum;
}

double krEllipseSpeed(double a, double b, double t) {
  const double s = std::sin(t) * a;
  const double c = std::cos(t) * b;
  return std::sqrt(s * s + c * c);
}

double krEllipseArcLength(double a, double b, double from, double to) {
  if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(from) || !std::isfinite(to)) return kNaN;
  if (a == 0.0 || from == to) return 0.0;
  const double ratio = b / a;
  Shape shape;
  shape.beta = ratio;
  shape.beta2 = ratio * ratio;
  shape.gamma = (1.0 - ratio) * (1.0 + ratio);
  if (shape.gamma <= 0.0) return a * (to - from);  // a circle

  const double middle = 0.5 * (from + to);
  const double half = 0.5 * std::fabs(to - from);
  if (half <= 0.5) {
    // The singularities of sqrt(sin^2 t + beta^2 cos^2 t) are at k pi +- i atanh(beta).
    const double offset = middle - std::nearbyint(middle / kPi) * kPi;
    const double imaginary = std::atanh(ratio);
    if (25.0 * half * half <= offset * offset + imaginary * imaginary) {
      const double length = a * gaussLegendre(shape, std::fmin(from, to), half);
      return to < from ? -length : length;
    }
  }
  // Each end is measured from its nearest major vertex; whole half-turns between those vertices
  // add 2 quarter each, kept apart from the ends so that they cancel exactly.
  double kFrom = 0.0;
  double kTo = 0.0;
  const double ends = fromNearestMajorVertex(shape, to, kTo) - fromNearestMajorVertex(shape, from, kFrom);
  const double turns = kTo - kFrom;
  return a * (turns == 0.0 ? ends : 2.0 * turns * quarter(shape) + ends);
}

// Newton's step length / speed may leave the bracket where the speed is small (next to a major
// vertex of a flat ellipse); such steps, and steps that do not halve the residual, are replaced
// by bisection.
double krEllipseParamAtLength(double a, double b, double datum, double length) {
  if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(datum) || !std::isfinite(length)) return kNaN;
  if (a == 0.0 || length == 0.0) return datum;
  const double direction = length < 0.0 ? -1.0 : 1.0;
  double remaining = std::fabs(length);
  const double halfTurn = 2.0 * krEllipseArcLength(a, b, 0.0, 0.5 * kPi);
  double base = datum;
  const double turns = std::floor(remaining / halfTurn);
  if (turns >= 9007199254740992.0) return datum + direction * kPi * (remaining / halfTurn);
  if (turns > 0.0) {
    base = datum + direction * turns * kPi;
    remaining -= turns * halfTurn;
    if (remaining <= 0.0) return base;
  }
  double low = 0.0;
  double high = kPi;
  if (b > 0.0 && remaining / b < high) high = remaining / b;
  double step = remaining / krEllipseSpeed(a, b, base);
  double delta = step >= low && step <= high ? step : 0.5 * (low + high);
  double previous = remaining;
  for (int iteration = 0; iteration < 60; ++iteration) {
    const double residual = std::fabs(krEllipseArcLength(a, b, base, base + direction * delta)) - remaining;
    if (residual == 0.0) break;
    if (residual < 0.0)
      low = delta;
    else
      high = delta;
    const double speed = krEllipseSpeed(a, b, base + direction * delta);
    const double newton = delta - residual / speed;
    const double next = newton > low && newton < high && std::fabs(residual) <= 0.5 * previous ? newton
                                                                                              : 0.5 * (low + high);
    previous = std::fabs(residual);
    if (std::fabs(next - delta) <= 2e-16 * std::fabs(delta) || !(high - low > 2e-16 * high)) {
      delta = next;
      break;
    }
    delta = next;
  }
  return base + direction * delta;
}
