// The closest pair of the generic row: branch and bound over piece pairs, Newton on the pair of
// parameters, end-point pairs; and the dispatcher's rows.
#include "entity/relation/generic_pair.h"

#include <queue>

#include "entity/relation/KrCurveRelation.h"
#include "entity/relation/generic_pieces.h"

using namespace krgeneric;

namespace {

struct Best {
  double s = 0.0, t = 0.0, distance = HUGE_VAL;
  void offer(double s_, double t_, double d) {
    if (d < distance) {
      distance = d;
      s = s_;
      t = t_;
    }
  }
};

// Projected Newton on F(s, t) = |R|^2 / 2, R = C1(s) - C2(t) reduced by the metric, inside
// [sLo, sHi] x [tLo, tHi]: a variable at a bound whose gradient points outwards is held; a
// Hessian that is not positive definite gives a gradient step; a step that does not lower F is
// halved (backtracking), so F decreases monotonically.
struct PairState {
  int spanS = -1, spanT = -1;
  double s, t, f;
  KrGeVector3d r, a1, a2, b1, b2;
};

void evaluate(const Side& one, const Side& two, const Metric& metric, double s, double t, PairState& state) {
  KrGePoint3d p, q;
  KrGeVector3d p1, p2, q1, q2;
  one.eval2(s, p, p1, p2, state.spanS);
  two.eval2(t, q, q1, q2, state.spanT);
  state.s = s;
  state.t = t;
  state.r = metric.reduce(p - q);
  state.f = 0.5 * state.r.dotProduct(state.r);
  state.a1 = metric.reduce(p1);
  state.a2 = metric.reduce(p2);
  state.b1 = metric.reduce(q1);
  state.b2 = metric.reduce(q2);
}

void newtonClosest(const Side& one, const Side& two, const Metric& metric, double s, double t, double sLo, double sHi,
                   double tLo, double tHi, Best& best) {
  // Evaluations per refinement at most (backtracking included), so that no input can stall it.
  constexpr int kMaxEvaluations = 200;
  int evaluations = 0;
  PairState state;
  state.spanS = one.spanOf(sLo, sHi);
  state.spanT = two.spanOf(tLo, tHi);
  evaluate(one, two, metric, s, t, state);
  if (!std::isfinite(state.f)) return;
  best.offer(s, t, std::sqrt(2.0 * state.f));
  for (int step = 0; step < kNewtonSteps; ++step) {
    const KrGeVector3d& r = state.r;
    double gs = r.dotProduct(state.a1), gt = -r.dotProduct(state.b1);
    const double hss = state.a1.dotProduct(state.a1) + r.dotProduct(state.a2);
    const double htt = state.b1.dotProduct(state.b1) - r.dotProduct(state.b2);
    double hst = -state.a1.dotProduct(state.b1);
    const bool holdS = (state.s <= sLo && gs > 0.0) || (state.s >= sHi && gs < 0.0);
    const bool holdT = (state.t <= tLo && gt > 0.0) || (state.t >= tHi && gt < 0.0);
    if (holdS) gs = 0.0, hst = 0.0;
    if (holdT) gt = 0.0, hst = 0.0;
    double ds = 0.0, dt = 0.0;
    const double det = hss * htt - hst * hst;
    if (!holdS && !holdT && hss > 0.0 && htt > 0.0 && det > 1e-300) {
      ds = -(htt * gs - hst * gt) / det;
      dt = -(hss * gt - hst * gs) / det;
    } else if (holdS && !holdT && htt > 0.0) {
      dt = -gt / htt;
    } else if (holdT && !holdS && hss > 0.0) {
      ds = -gs / hss;
    } else {
      const double g2 = gs * gs + gt * gt;
      if (!(g2 > 0.0)) return;
      ds = -gs * (state.f / g2);
      dt = -gt * (state.f / g2);
    }
    bool accepted = false;
    PairState next = state;
    for (double lambda = 1.0; lambda > 1e-12 && evaluations < kMaxEvaluations; lambda *= 0.5, ++evaluations) {
      const double ns = std::max(sLo, std::min(sHi, state.s + lambda * ds));
      const double nt = std::max(tLo, std::min(tHi, state.t + lambda * dt));
      if (ns == state.s && nt == state.t) break;
      evaluate(one, two, metric, ns, nt, next);
      if (next.f < state.f) {
        accepted = true;
        break;
      }
    }
    if (!accepted) return;
    const bool still = std::fabs(next.s - state.s) <= 1e-15 * (std::fabs(state.s) + (sHi - sLo)) &&
                       std::fabs(next.t - state.t) <= 1e-15 * (std::fabs(state.t) + (tHi - tLo));
    state = next;
    best.offer(state.s, state.t, std::sqrt(2.0 * state.f));
    if (still) return;
  }
}

// The best pair among the root pieces' ends, refined by Newton over the whole ranges.
void seedFromGrid(const Side& one, const Side& two, const Metric& metric, Best& best) {
  KrsArray<double> ss, ts;
  KrsArray<KrGePoint3d> qs;
  for (const Node& node : one.nodes) ss.Add(node.a);
  ss.Add(one.hi);
  for (const Node& node : two.nodes) ts.Add(node.a);
  ts.Add(two.hi);
  for (int j = 0; j < ts.GetSize(); ++j) qs.Add(two.point(ts[j]));
  Best grid;
  for (int i = 0; i < ss.GetSize(); ++i) {
    const KrGePoint3d p = one.point(ss[i]);
    for (int j = 0; j < ts.GetSize(); ++j) grid.offer(ss[i], ts[j], metric.reduce(p - qs[j]).length());
  }
  best.offer(grid.s, grid.t, grid.distance);
  newtonClosest(one, two, metric, grid.s, grid.t, one.lo, one.hi, two.lo, two.hi, best);
}

// A pair of small pieces: their corner pairs, then Newton held inside both pieces (a minimum at
// a knot of a NURBS curve sits on a piece boundary, where the held variable keeps it).
void leafPair(const Side& one, const Side& two, const Metric& metric, const Node& m, const Node& n, Best& best) {
  for (double s : {m.a, m.b})
    for (double t : {n.a, n.b}) best.offer(s, t, metric.reduce(one.point(s) - two.point(t)).length());
  newtonClosest(one, two, metric, 0.5 * (m.a + m.b), 0.5 * (n.a + n.b), m.a, m.b, n.a, n.b, best);
}

}  // namespace

bool krGenericClosestParams(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                            const KrGeInterval* rangeFirst, const KrGeInterval* rangeSecond,
                            const KrGeVector3d* direction, const KrGeTol& tol, double& paramFirst,
                            double& paramSecond) {
  Side one(first, rangeFirst), two(second, rangeSecond);
  double scale = 0.0;
  if (!prepare(one, two, tol, scale)) return false;
  Metric metric;
  if (direction) {
    KrGeVector3d n = *direction;
    if (n.isZeroLength(tol) || !std::isfinite(n.length())) return false;
    n.normalize();
    metric.numAxes = 2;
    metric.axes[0] = n.perpVector();
    metric.axes[1] = n.crossProduct(metric.axes[0]).normalize();
  }
  const double slack = std::max(tol.equalPoint(), 0.0);
  Best best;
  seedFromGrid(one, two, metric, best);
  // End-point pairs: each bounded end against its nearest point on the other curve.
  if (!direction) {
    const Side* sides[2] = {&one, &two};
    for (int k = 0; k < 2; ++k) {
      const Side& side = *sides[k];
      const Side& other = *sides[1 - k];
      for (double end : {side.lo, side.hi}) {
        const KrGePoint3d p = side.point(end);
        const KrGePoint3d q = other.curve().closestPointTo(p, tol);
        const double tq = std::max(other.lo, std::min(other.hi, other.curve().paramOf(q, tol)));
        const double d = (p - other.point(tq)).length();
        if (k == 0) best.offer(end, tq, d); else best.offer(tq, end, d);
      }
    }
  }
  std::priority_queue<PairItem> queue;
  const int roots1 = static_cast<int>(one.nodes.size()), roots2 = static_cast<int>(two.nodes.size());
  for (int i = 0; i < roots1; ++i)
    for (int j = 0; j < roots2; ++j)
      queue.push(PairItem{metric.pairGap(one.nodes[static_cast<std::size_t>(i)], two.nodes[static_cast<std::size_t>(j)]), i, j,
                          hintOf(metric, one.nodes[static_cast<std::size_t>(i)], two.nodes[static_cast<std::size_t>(j)])});
  for (int examined = 0; !queue.empty() && examined < kMaxPairs; ++examined) {
    const PairItem item = queue.top();
    queue.pop();
    if (item.gap >= best.distance - slack) break;
    const Node m = one.nodes[static_cast<std::size_t>(item.i)];
    const Node n = two.nodes[static_cast<std::size_t>(item.j)];
    // The pieces' end points are curve points: their pairs bound the answer from above.
    best.offer(m.a, n.a, metric.reduce(m.p0 - n.p0).length());
    best.offer(m.a, n.b, metric.reduce(m.p0 - n.p1).length());
    best.offer(m.b, n.a, metric.reduce(m.p1 - n.p0).length());
    best.offer(m.b, n.b, metric.reduce(m.p1 - n.p1).length());
    if (m.leafy && n.leafy) {
      leafPair(one, two, metric, m, n, best);
      continue;
    }
    const bool splitFirst = n.leafy || (!m.leafy && m.size() >= n.size());
    Side& side = splitFirst ? one : two;
    const int index = splitFirst ? item.i : item.j;
    if (!side.split(index)) {
      leafPair(one, two, metric, m, n, best);
      continue;
    }
    const int child = side.nodes[static_cast<std::size_t>(index)].child;
    for (int c = child; c < child + 2; ++c) {
      const Node& piece = side.nodes[static_cast<std::size_t>(c)];
      const double gap = splitFirst ? metric.pairGap(piece, n) : metric.pairGap(m, piece);
      if (gap < best.distance - slack)
        queue.push(PairItem{gap, splitFirst ? c : item.i, splitFirst ? item.j : c,
                            splitFirst ? hintOf(metric, piece, n) : hintOf(metric, m, piece)});
    }
  }
  paramFirst = best.s;
  paramSecond = best.t;
  return std::isfinite(best.distance);
}

namespace krrelation {

bool closestGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                    KrGePoint3d& onSecond, const KrGeTol& tol) {
  double s = 0.0, t = 0.0;
  if (!krGenericClosestParams(first, second, nullptr, nullptr, nullptr, tol, s, t)) return false;
  onFirst = first.evalPoint(s);
  onSecond = second.evalPoint(t);
  return true;
}

bool projClosestGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeVector3d& direction,
                        KrGePoint3d& onFirst, KrGePoint3d& onSecond, const KrGeTol& tol) {
  double s = 0.0, t = 0.0;
  if (!krGenericClosestParams(first, second, nullptr, nullptr, &direction, tol, s, t)) return false;
  onFirst = first.evalPoint(s);
  onSecond = second.evalPoint(t);
  return true;
}

bool localClosestGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                         const KrGeInterval* nbhdFirst, const KrGeInterval* nbhdSecond, double& paramFirst,
                         double& paramSecond, const KrGeTol& tol) {
  return krGenericClosestParams(first, second, nbhdFirst, nbhdSecond, nullptr, tol, paramFirst, paramSecond);
}

bool intersectGeneric(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, const KrGeTol& tol,
                      KrCurveIntersections& result) {
  KrsArray<double> s, t;
  const int count = krGenericIntersections(first, second, nullptr, nullptr, tol, s, t);
  for (int i = 0; i < count; ++i) result.add(first.evalPoint(s[i]), s[i], t[i]);
  return true;
}

}  // namespace krrelation
