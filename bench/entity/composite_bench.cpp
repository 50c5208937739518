// Evaluation of a 100-piece chain of segments and arcs by arc length, beside what a mapping that
// asked every piece for its length would pay, and beside a plain evaluator of the same chain
// (sums, bisection, closed forms) written here.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "KrGeCircArc3d.h"
#include "KrGeCompositeCurve3d.h"
#include "KrGeLineSeg3d.h"

namespace {

constexpr int kPieces = 100;
constexpr int kInputs = 1024;

// A planar zig-zag: straight pieces alternating with quarter-turn arcs of radius 1 to 3.
struct Chain {
  KrsArray<void*> pieces;
  KrGeCompositeCurve3d composite;
  std::vector<double> sums{0.0};
  std::vector<double> params;
  struct Piece { bool arc; KrGePoint3d a; KrGeVector3d d; double r, start; };
  std::vector<Piece> plain;

  Chain() {
    std::mt19937_64 engine(7);
    std::uniform_real_distribution<double> size(1.0, 3.0);
    KrGePoint3d at(0, 0, 0);
    double heading = 0.0;
    KrsArray<int> owned;
    for (int i = 0; i < kPieces; ++i) {
      const KrGeVector3d dir(std::cos(heading), std::sin(heading), 0);
      if (i % 2 == 0) {
        const KrGePoint3d end = at + dir * size(engine);
        pieces.Add(new KrGeLineSeg3d(at, end));
        plain.push_back({false, at, end - at, 0, 0});
        sums.push_back(sums.back() + (end - at).length());
        at = end;
      } else {
        const double r = size(engine);
        const KrGePoint3d center = at + KrGeVector3d(-dir.y, dir.x, 0) * r;
        const double start = heading - 1.5707963267948966;
        pieces.Add(new KrGeCircArc3d(center, KrGeVector3d(0, 0, 1), KrGeVector3d(1, 0, 0), r, start,
                                     start + 1.5707963267948966));
        plain.push_back({true, center, KrGeVector3d(), r, start});
        sums.push_back(sums.back() + r * 1.5707963267948966);
        heading += 1.5707963267948966;
        at = center + KrGeVector3d(std::cos(heading - 1.5707963267948966), std::sin(heading - 1.5707963267948966), 0) * r;
      }
      owned.Add(1);
    }
    composite.setCurveList(pieces, owned);
    std::uniform_real_distribution<double> along(0.0, sums.back());
    for (int i = 0; i < kInputs; ++i) params.push_back(along(engine));
  }
};

const Chain& chain() {
  static const Chain data;
  return data;
}

void BM_CompositeEvalPoint_100(benchmark::State& state) {
  const Chain& c = chain();
  const KrGeCurve3d& curve = c.composite;
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(curve.evalPoint(c.params[i]));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_CompositeEvalPoint_100);

// What a walk over the pieces' own lengths costs per evaluation.
void BM_PieceLengths_100(benchmark::State& state) {
  const Chain& c = chain();
  for (auto _ : state) {
    double total = 0.0;
    for (int k = 0; k < kPieces; ++k) {
      const KrGeCurve3d& piece = *static_cast<const KrGeCurve3d*>(c.pieces[k]);
      KrGeInterval range;
      piece.getInterval(range);
      total += piece.length(range.lowerBound(), range.upperBound());
    }
    benchmark::DoNotOptimize(total);
  }
}
BENCHMARK(BM_PieceLengths_100);

// The same chain in plain data: bisection over the sums, then the closed form of the piece.
void BM_PlainChainEval_100(benchmark::State& state) {
  const Chain& c = chain();
  int i = 0;
  for (auto _ : state) {
    const double s = c.params[i];
    const int k = std::min<int>(kPieces - 1, int(std::lower_bound(c.sums.begin() + 1, c.sums.end(), s) - c.sums.begin()) - 1);
    const Chain::Piece& p = c.plain[std::max(k, 0)];
    const double t = s - c.sums[std::max(k, 0)];
    KrGePoint3d q;
    if (p.arc) {
      const double angle = p.start + t / p.r;
      q = p.a + KrGeVector3d(std::cos(angle), std::sin(angle), 0) * p.r;
    } else {
      q = p.a + p.d * (t / p.d.length());
    }
    benchmark::DoNotOptimize(q);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PlainChainEval_100);

// length(0, s) sums the pieces' own lengths up to s: linear in the pieces it spans.
void BM_CompositeLength_100(benchmark::State& state) {
  const Chain& c = chain();
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(c.composite.length(0.0, c.params[i]));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_CompositeLength_100);

// The nearest point of the chain to points around it: one nearest point per piece.
void BM_CompositeClosestPoint_100(benchmark::State& state) {
  const Chain& c = chain();
  int i = 0;
  for (auto _ : state) {
    const KrGePoint3d near = c.composite.evalPoint(c.params[i]) + KrGeVector3d(0.3, -0.2, 0.5);
    benchmark::DoNotOptimize(c.composite.closestPointTo(near));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_CompositeClosestPoint_100);

}  // namespace
