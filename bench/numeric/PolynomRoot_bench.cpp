// methodDecart against a plain real-arithmetic Ferrari quartic written here, on fixed random
// quartics with four, two and no real roots. Accuracy and the double-root miss rate are reported
// as counters next to the time per call.
#include "KrGePolynomRoot.h"
#include "KrsDiagnostics.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int kSetSize = 1024;

struct Quartic {
  double c[5];                // constant term first
  std::vector<double> roots;  // its real roots, as generated
};

// c4 (x^2 + b1 x + c1)(x^2 + b2 x + c2), expanded.
Quartic fromFactors(double lead, double b1, double c1, double b2, double c2) {
  Quartic q;
  q.c[4] = lead;
  q.c[3] = lead * (b1 + b2);
  q.c[2] = lead * (c1 + c2 + b1 * b2);
  q.c[1] = lead * (b1 * c2 + b2 * c1);
  q.c[0] = lead * c1 * c2;
  return q;
}

// A set of quartics with `realCount` (4, 2 or 0) real roots in [-2, 2]; `doubleRoot` makes the
// first two real roots equal.
std::vector<Quartic> makeSet(int realCount, bool doubleRoot, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> unit(-2, 2);
  std::vector<Quartic> set;
  while (static_cast<int>(set.size()) < kSetSize) {
    std::vector<double> real;
    double b[2];
    double c[2];
    for (int f = 0; f < 2; ++f) {
      if (2 * f < realCount) {  // (x - r1)(x - r2)
        const double r1 = unit(engine);
        const double r2 = doubleRoot && f == 0 ? r1 : unit(engine);
        real.push_back(r1);
        real.push_back(r2);
        b[f] = -(r1 + r2);
        c[f] = r1 * r2;
      } else {  // (x - a)^2 + beta^2 with beta >= 0.1
        const double a = unit(engine);
        const double beta = 0.1 + std::fabs(unit(engine));
        b[f] = -2 * a;
        c[f] = a * a + beta * beta;
      }
    }
    Quartic q = fromFactors(0.5 + std::fabs(unit(engine)), b[0], c[0], b[1], c[1]);
    q.roots = real;
    set.push_back(q);
  }
  return set;
}

// Ferrari in real arithmetic: depress, take the largest root m of the resolvent
// m^3 + p m^2 + (p^2/4 - r) m - q^2/8 (trigonometric or Cardano form), split into two quadratics
// y^2 -+ sqrt(2m) y + (p/2 + m +- q / (2 sqrt(2m))) solved in the cancellation-free form.
int plainQuartic(const double* coefficient, double* roots) {
  const double a = coefficient[3] / coefficient[4];
  const double b = coefficient[2] / coefficient[4];
  const double c = coefficient[1] / coefficient[4];
  const double d = coefficient[0] / coefficient[4];
  const double a2 = a * a;
  const double p = b - 0.375 * a2;
  const double q = c - 0.5 * a * b + 0.125 * a2 * a;
  const double r = d - 0.25 * a * c + a2 * b / 16.0 - 3.0 * a2 * a2 / 256.0;
  const double shift = -0.25 * a;
  int count = 0;
  auto quadratic = [&](double qb, double qc) {
    const double disc = qb * qb - 4 * qc;
    if (disc < 0) return;
    const double t = -0.5 * (qb + std::copysign(std::sqrt(disc), qb));
    roots[count++] = t + shift;
    roots[count++] = (t != 0 ? qc / t : 0.0) + shift;
  };
  if (std::fabs(q) < 1e-14) {  // biquadratic: y^2 = z with z^2 + p z + r = 0
    const double disc = p * p - 4 * r;
    if (disc < 0) return 0;
    for (double z : {0.5 * (-p + std::sqrt(disc)), 0.5 * (-p - std::sqrt(disc))}) {
      if (z < 0) continue;
      roots[count++] = std::sqrt(z) + shift;
      roots[count++] = -std::sqrt(z) + shift;
    }
    return count;
  }
  const double ca = p;
  const double cb = 0.25 * p * p - r;
  const double cc = -0.125 * q * q;
  const double bigQ = (ca * ca - 3 * cb) / 9;
  const double bigR = (2 * ca * ca * ca - 9 * ca * cb + 27 * cc) / 54;
  double m;
  if (bigR * bigR < bigQ * bigQ * bigQ) {
    const double theta = std::acos(bigR / std::sqrt(bigQ * bigQ * bigQ));
    m = -2 * std::sqrt(bigQ) * std::cos((theta - 2 * M_PI) / 3) - ca / 3;
  } else {
    const double big = -std::copysign(std::cbrt(std::fabs(bigR) + std::sqrt(bigR * bigR - bigQ * bigQ * bigQ)), bigR);
    m = big + (big != 0 ? bigQ / big : 0.0) - ca / 3;
  }
  if (m <= 0) return 0;
  const double s = std::sqrt(2 * m);
  quadratic(-s, 0.5 * p + m + q / (2 * s));
  quadratic(s, 0.5 * p + m - q / (2 * s));
  return count;
}

double relativeMiss(const Quartic& q, const double* found, int count) {
  double worst = 0;
  for (double x : q.roots) {
    double nearest = HUGE_VAL;
    for (int i = 0; i < count; ++i) nearest = std::min(nearest, std::fabs(found[i] - x));
    worst = std::max(worst, nearest / std::max(1.0, std::fabs(x)));
  }
  return worst;
}

// Accuracy counters: worst relative miss on the set, and the share of double roots not found
// within 1e-6.
template <class Solve>
void accuracyCounters(benchmark::State& state, int realCount, Solve solve) {
  double worst = 0;
  for (const Quartic& q : makeSet(realCount, false, 11)) {
    double found[4];
    const int count = solve(q, found);
    if (realCount > 0) worst = std::max(worst, relativeMiss(q, found, count));
  }
  int missed = 0;
  for (const Quartic& q : makeSet(std::max(realCount, 2), true, 12)) {
    double found[4];
    const int count = solve(q, found);
    bool hit = false;
    for (int i = 0; i < count; ++i) hit = hit || std::fabs(found[i] - q.roots[0]) <= 1e-6;
    missed += !hit;
  }
  state.counters["worstRelErr"] = worst;
  state.counters["doubleRootMiss"] = static_cast<double>(missed) / kSetSize;
}

int decart(const Quartic& q, double* found) {
  static KrsArray<double> input;
  static KrsArray<double> output;
  input.SetSize(5);
  for (int i = 0; i < 5; ++i) input[i] = q.c[i];
  const int count = methodDecart(input, output);
  for (int i = 0; i < count && i < 4; ++i) found[i] = output[i];
  return std::min(count, 4);
}

void BM_methodDecart(benchmark::State& state) {
  KrsSetWarningsEnabled(false);  // residual warnings of double roots are not what is timed
  const int realCount = static_cast<int>(state.range(0));
  const std::vector<Quartic> set = makeSet(realCount, false, 7);
  std::vector<KrsArray<double>> inputs(set.size());
  for (size_t k = 0; k < set.size(); ++k)
    for (double c : set[k].c) inputs[k].Add(c);
  KrsArray<double> roots;
  size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(methodDecart(inputs[k], roots));
    benchmark::DoNotOptimize(roots.GetData());
    k = (k + 1) % inputs.size();
  }
  accuracyCounters(state, realCount, decart);
  KrsSetWarningsEnabled(true);
}
BENCHMARK(BM_methodDecart)->Arg(4)->Arg(2)->Arg(0);

void BM_plainQuartic(benchmark::State& state) {
  const int realCount = static_cast<int>(state.range(0));
  const std::vector<Quartic> set = makeSet(realCount, false, 7);
  double roots[4];
  size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(plainQuartic(set[k].c, roots));
    benchmark::DoNotOptimize(roots);
    k = (k + 1) % set.size();
  }
  accuracyCounters(state, realCount, [](const Quartic& q, double* found) { return plainQuartic(q.c, found); });
}
BENCHMARK(BM_plainQuartic)->Arg(4)->Arg(2)->Arg(0);

void BM_methodFindAllRoot_Degree10(benchmark::State& state) {
  std::mt19937_64 engine(3);
  std::uniform_real_distribution<double> unit(-3, 3);
  KrsArray<double> coefficients;
  coefficients.Add(1.0);
  for (int k = 0; k < 10; ++k) {  // multiply by (x - r)
    const double r = unit(engine);
    coefficients.Add(0.0);
    for (int i = coefficients.GetSize() - 1; i > 0; --i) coefficients[i] = coefficients[i - 1] - r * coefficients[i];
    coefficients[0] *= -r;
  }
  KrsArray<double> roots;
  for (auto _ : state) benchmark::DoNotOptimize(methodFindAllRoot(coefficients, roots, false));
}
BENCHMARK(BM_methodFindAllRoot_Degree10);

}  // namespace
