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

// Carlson's duplication x <- (x + l) / 4 with l = sqrt(x y) + sqrt(y z) + sqrt(z x) shrinks the
// spread of the arguments fourfold per step and leaves RF invariant, RD up to the running sum of
// 3 * 4^-m / (sqrt(z) (z + l)). The stopping bounds are (3r)^(-1/6) and (r/4)^(-1/6) times the
// initial spread for r = 1e-16; then the fifth-order expansions in the normalised deviations.
// Lanes run side by side (their square roots overlap in the pipeline); a lane that has converged
// keeps stepping until all have, which only shrinks its expansion's error.
template <int N>
void carlsonLanes(const double* xs, const double* ys, const double* zs, double* rf, double* rd) {
  double x[N], y[N], z[N], meanF0[N], meanD0[N], meanF[N], meanD[N], spreadF[N], spreadD[N], sum[N];
  for (int i = 0; i < N; ++i) {
    x[i] = xs[i];
    y[i] = ys[i];
    z[i] = zs[i];
    meanF0[i] = meanF[i] = (x[i] + y[i] + z[i]) / 3.0;
    meanD0[i] = meanD[i] = (x[i] + y[i] + 3.0 * z[i]) / 5.0;
    const double deviationF = std::fmax(std::fabs(meanF0[i] - x[i]), std::fmax(std::fabs(meanF0[i] - y[i]), std::fabs(meanF0[i] - z[i])));
    const double deviationD = std::fmax(std::fabs(meanD0[i] - x[i]), std::fmax(std::fabs(meanD0[i] - y[i]), std::fabs(meanD0[i] - z[i])));
    spreadF[i] = 386.0 * deviationF;
    spreadD[i] = 585.0 * deviationD;
    sum[i] = 0.0;
  }
  double power = 1.0;  // 4^-n
  for (int n = 0; n < 60; ++n) {
    bool converged = true;
    for (int i = 0; i < N; ++i)
      converged = converged && spreadF[i] * power < std::fabs(meanF[i]) && spreadD[i] * power < std::fabs(meanD[i]);
    if (converged) break;
    for (int i = 0; i < N; ++i) {
      const double sx = std::sqrt(x[i]);
      const double sy = std::sqrt(y[i]);
      const double sz = std::sqrt(z[i]);
      const double lambda = sx * (sy + sz) + sy * sz;
      sum[i] += power / (sz * (z[i] + lambda));
      x[i] = (x[i] + lambda) * 0.25;
      y[i] = (y[i] + lambda) * 0.25;
      z[i] = (z[i] + lambda) * 0.25;
      meanF[i] = (meanF[i] + lambda) * 0.25;
      meanD[i] = (meanD[i] + lambda) * 0.25;
    }
    power *= 0.25;
  }
  for (int i = 0; i < N; ++i) {
    const double xf = (meanF0[i] - xs[i]) * power / meanF[i];
    const double yf = (meanF0[i] - ys[i]) * power / meanF[i];
    const double zf = -(xf + yf);
    const double f2 = xf * yf - zf * zf;
    const double f3 = xf * yf * zf;
    rf[i] = (1.0 - f2 / 10.0 + f3 / 14.0 + f2 * f2 / 24.0 - 3.0 * f2 * f3 / 44.0) / std::sqrt(meanF[i]);
    const double xd = (meanD0[i] - xs[i]) * power / meanD[i];
    const double yd = (meanD0[i] - ys[i]) * power / meanD[i];
    const double zd = -(xd + yd) / 3.0;
    const double xy = xd * yd;
    const double zz = zd * zd;
    const double e2 = xy - 6.0 * zz;
    const double e3 = (3.0 * xy - 8.0 * zz) * zd;
    const double e4 = 3.0 * (xy - zz) * zz;
    const double e5 = xy * zz * zd;
    const double series = 1.0 - 3.0 * e2 / 14.0 + e3 / 6.0 + 9.0 * e2 * e2 / 88.0 - 3.0 * e4 / 22.0 -
                          9.0 * e2 * e3 / 52.0 + 3.0 * e5 / 26.0;
    rd[i] = power * series / (meanD[i] * std::sqrt(meanD[i])) + 3.0 * sum[i];
  }
}

// The ellipse with a = 1: b = beta, gamma = 1 - beta^2 = (1 - beta)(1 + beta).
struct Shape {
  double beta;
  double beta2;
  double gamma;
};

// The length (a = 1) from the major vertex t = 0 to the angle d in [0, pi/2] of sine s and
// cosine c is, with X = beta^2 c^2 and Y = X + s^2,
//   L0 = beta^2 s RF(X, Y, beta^2) + gamma beta^2 s^3 RD(X, Y, beta^2) / 3,
// Legendre's E(d | -gamma / beta^2) scaled by beta: both terms are positive, so nothing cancels
// however flat the ellipse; d = pi/2 gives the quarter. b = 0 is the segment: 1 - c =
// s^2 / (1 + c). A long arc takes each end from its nearest major vertex k pi (t = k pi + d, d
// reduced with pi in three parts so that it keeps its relative accuracy there) and adds 2 quarter
// per half-turn between those vertices, kept apart so that they cancel exactly; the three Carlson
// integrals run side by side.
double longArc(const Shape& shape, double from, double to) {
  const double kFrom = std::nearbyint(from / kPi);
  const double kTo = std::nearbyint(to / kPi);
  const double dFrom = ((from - kFrom * kPiA) - kFrom * kPiB) - kFrom * kPiC;
  const double dTo = ((to - kTo * kPiA) - kTo * kPiB) - kTo * kPiC;
  const double s[3] = {std::sin(std::fabs(dTo)), std::sin(std::fabs(dFrom)), 1.0};
  const double c[3] = {std::cos(dTo), std::cos(dFrom), 0.0};
  double lengths[3];
  if (shape.beta2 == 0.0) {
    for (int i = 0; i < 3; ++i) lengths[i] = s[i] * s[i] / (1.0 + c[i]);
  } else {
    double x[3], y[3], z[3], rf[3], rd[3];
    for (int i = 0; i < 3; ++i) {
      x[i] = shape.beta2 * c[i] * c[i];
      y[i] = x[i] + s[i] * s[i];
      z[i] = shape.beta2;
    }
    carlsonLanes<3>(x, y, z, rf, rd);
    for (int i = 0; i < 3; ++i) lengths[i] = shape.beta2 * s[i] * (rf[i] + shape.gamma * s[i] * s[i] * rd[i] / 3.0);
  }
  const double ends = (dTo < 0.0 ? -lengths[0] : lengths[0]) - (dFrom < 0.0 ? -lengths[1] : lengths[1]);
  const double turns = kTo - kFrom;
  return turns == 0.0 ? ends : 2.0 * turns * lengths[2] + ends;
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

void krCarlsonRfRd(double x, double y, double z, double& rf, double& rd) { carlsonLanes<1>(&x, &y, &z, &rf, &rd); }

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
  return a * longArc(shape, from, to);
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
