#include "entity/relation/generic_pair.h"

#include <algorithm>
#include <cmath>
#include <queue>
#include <vector>

#include "KrGeBoundBlock3d.h"
#include "entity/relation/KrCurveRelation.h"
#include "entity/spline/KrGeNurbCurve3dImpl.h"

namespace {

constexpr int kRootPieces = 8;
constexpr int kMaxPairs = 20000;
constexpr int kMaxPoints = 1024;
constexpr int kNewtonSteps = 50;
// Pieces whose blocks are below this share of the curves' size are refined by Newton instead of
// being halved further: there the distance is a smooth, nearly quadratic function.
constexpr double kLeafShare = 1e-3;

struct Node {
  double a, b;
  double low[3], high[3];
  int child;
  double size() const {
    const double dx = high[0] - low[0], dy = high[1] - low[1], dz = high[2] - low[2];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
  }
};

// One curve of the pair over its working range, with the cheap paths of NURBS curves.
class Side {
public:
  Side(const KrGeCurve3dImpl& curve, const KrGeInterval* range) : m_curve(curve) {
    if (curve.type() == KrGe::kNurbCurve3d) {
      const auto& nurbs = static_cast<const KrGeNurbCurve3dImpl&>(curve);
      if (nurbs.valid()) m_nurbs = &nurbs.form();
    }
    KrGeInterval own;
    curve.getInterval(own);
    KrGeInterval use;
    if (!range || !own.intersectWith(*range, use)) use = own;
    m_boundedLo = use.isBoundedBelow();
    m_boundedHi = use.isBoundedAbove();
    lo = m_boundedLo ? use.lowerBound() : -HUGE_VAL;
    hi = m_boundedHi ? use.upperBound() : HUGE_VAL;
  }

  bool bounded() const { return m_boundedLo && m_boundedHi; }
  // Cuts an open side to the parameters whose points face the block [low, high]: the nearest
  // point of every block corner bounds them (a line's parameter is monotone along it).
  void clipTo(const double* low, const double* high, const KrGeTol& tol) {
    double from = HUGE_VAL, to = -HUGE_VAL;
    for (int corner = 0; corner < 8; ++corner) {
      const KrGePoint3d p(corner & 1 ? high[0] : low[0], corner & 2 ? high[1] : low[1], corner & 4 ? high[2] : low[2]);
      const double t = m_curve.paramOf(p, tol);
      from = std::min(from, t);
      to = std::max(to, t);
    }
    const double margin = 1e-3 * (to - from) + 1e-9 * (std::fabs(from) + std::fabs(to));
    if (!m_boundedLo) lo = from - margin;
    if (!m_boundedHi) hi = to + margin;
  }

  KrGePoint3d point(double t) const {
    if (m_nurbs) return krNurbsPoint(*m_nurbs, t);
    return m_curve.evalPoint(t);
  }
  void eval2(double t, KrGePoint3d& p, KrGeVector3d& d1, KrGeVector3d& d2) const {
    if (m_nurbs) {
      krNurbsPoint2(*m_nurbs, t, p, d1, d2);
      return;
    }
    p = m_curve.evalPoint(t, 2, m_derivs);
    d1 = m_derivs[0];
    d2 = m_derivs[1];
  }
  bool box(double a, double b, double* low, double* high) const {
    KrGePoint3d l, h;
    if (m_nurbs) {
      krNurbsPieceHull(*m_nurbs, a, b, l, h);
    } else {
      const KrGeBoundBlock3d block = m_curve.orthoBoundBlock(KrGeInterval(a, b));
      if (block.isEmpty()) return false;
      block.getMinMaxPoints(l, h);
    }
    for (int c = 0; c < 3; ++c) {
      low[c] = std::min(l[c], h[c]);
      high[c] = std::max(l[c], h[c]);
      if (!std::isfinite(low[c]) || !std::isfinite(high[c])) return false;
    }
    return true;
  }
  const KrGeCurve3dImpl& curve() const { return m_curve; }
  // Where the root pieces are cut: the knots of a NURBS curve inside the range (its smooth
  // pieces), else evenly.
  void rootCuts(std::vector<double>& cuts) const {
    cuts.clear();
    cuts.push_back(lo);
    if (m_nurbs) {
      std::vector<double> breaks;
      krNurbsBreaks(*m_nurbs, breaks);
      for (double k : breaks)
        if (k > lo && k < hi) cuts.push_back(k);
    } else {
      for (int i = 1; i < kRootPieces; ++i) cuts.push_back(lo + (hi - lo) * i / kRootPieces);
    }
    cuts.push_back(hi);
  }

  double lo = 0.0, hi = 0.0;
  std::vector<Node> nodes;

private:
  const KrGeCurve3dImpl& m_curve;
  const KrNurbsForm* m_nurbs = nullptr;
  bool m_boundedLo = false, m_boundedHi = false;
  mutable KrsArray<KrGeVector3d> m_derivs;
};

// The metric: the full space, or the plane across a viewing direction (two unit axes).
struct Metric {
  int numAxes = 3;
  KrGeVector3d axes[3] = {KrGeVector3d::kXAxis, KrGeVector3d::kYAxis, KrGeVector3d::kZAxis};

  KrGeVector3d reduce(const KrGeVector3d& v) const {
    if (numAxes == 3) return v;
    return axes[0].dotProduct(v) * axes[0] + axes[1].dotProduct(v) * axes[1];
  }
  // Distance between two blocks along the axes: each block's extent on an axis is its centre's
  // projection plus or minus the half sizes weighted by |axis|.
  double blockGap(const Node& m, const Node& n) const {
    double sum = 0.0;
    for (int k = 0; k < numAxes; ++k) {
      double cm = 0.0, rm = 0.0, cn = 0.0, rn = 0.0;
      for (int c = 0; c < 3; ++c) {
        const double e = axes[k][c];
        cm += e * 0.5 * (m.low[c] + m.high[c]);
        rm += std::fabs(e) * 0.5 * (m.high[c] - m.low[c]);
        cn += e * 0.5 * (n.low[c] + n.high[c]);
        rn += std::fabs(e) * 0.5 * (n.high[c] - n.low[c]);
      }
      const double gap = std::fabs(cm - cn) - rm - rn;
      if (gap > 0.0) sum += gap * gap;
    }
    return std::sqrt(sum);
  }
};

bool split(Side& side, int index) {
  if (side.nodes[static_cast<std::size_t>(index)].child >= 0) return true;
  const double a = side.nodes[static_cast<std::size_t>(index)].a, b = side.nodes[static_cast<std::size_t>(index)].b;
  const double mid = 0.5 * (a + b);
  if (!(mid > a && mid < b)) return false;
  Node left{a, mid, {}, {}, -1}, right{mid, b, {}, {}, -1};
  if (!side.box(a, mid, left.low, left.high) || !side.box(mid, b, right.low, right.high)) return false;
  side.nodes[static_cast<std::size_t>(index)].child = static_cast<int>(side.nodes.size());
  side.nodes.push_back(left);
  side.nodes.push_back(right);
  return true;
}

bool makeRoots(Side& side) {
  side.nodes.clear();
  if (!(side.lo <= side.hi) || !std::isfinite(side.lo) || !std::isfinite(side.hi)) return false;
  std::vector<double> cuts;
  side.rootCuts(cuts);
  for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
    Node node{cuts[i], cuts[i + 1], {}, {}, -1};
    if (!side.box(node.a, node.b, node.low, node.high)) return false;
    side.nodes.push_back(node);
  }
  return true;
}

// Both sides bounded, open ones cut to what faces the other; false when that is impossible.
bool prepare(Side& one, Side& two, const KrGeTol& tol) {
  if (!one.bounded() && !two.bounded()) return false;
  Side* open[2] = {&one, &two};
  for (int i = 0; i < 2; ++i) {
    Side& side = *open[i];
    Side& other = *open[1 - i];
    if (side.bounded()) continue;
    double low[3], high[3];
    if (!other.box(other.lo, other.hi, low, high)) return false;
    side.clipTo(low, high, tol);
  }
  return makeRoots(one) && makeRoots(two);
}

// The larger of the two curves' block diagonals.
double scaleOf(const Side& one, const Side& two) {
  double size = 0.0;
  for (const Side* side : {&one, &two}) {
    Node all{0.0, 0.0, {HUGE_VAL, HUGE_VAL, HUGE_VAL}, {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL}, -1};
    for (const Node& node : side->nodes)
      for (int c = 0; c < 3; ++c) {
        all.low[c] = std::min(all.low[c], node.low[c]);
        all.high[c] = std::max(all.high[c], node.high[c]);
      }
    size = std::max(size, all.size());
  }
  return size;
}

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

// Projected Newton on F(s, t) = |R|^2 / 2, R = C1(s) - C2(t) reduced by the metric: a variable at
// a bound whose gradient points outwards is held; a step that does not lower F is halved; a
// Hessian that is not positive definite gives a gradient step.
void newtonClosest(const Side& one, const Side& two, const Metric& metric, double s, double t, double sLo, double sHi,
                   double tLo, double tHi, Best& best) {
  double value = HUGE_VAL;
  for (int step = 0; step < kNewtonSteps; ++step) {
    KrGePoint3d p, q;
    KrGeVector3d p1, p2, q1, q2;
    one.eval2(s, p, p1, p2);
    two.eval2(t, q, q1, q2);
    const KrGeVector3d r = metric.reduce(p - q);
    const double f = 0.5 * r.dotProduct(r);
    best.offer(s, t, std::sqrt(2.0 * f));
    if (!(f < value)) break;
    value = f;
    const KrGeVector3d a1 = metric.reduce(p1), b1 = metric.reduce(q1);
    double gs = r.dotProduct(a1), gt = -r.dotProduct(b1);
    double hss = a1.dotProduct(a1) + r.dotProduct(metric.reduce(p2));
    double htt = b1.dotProduct(b1) - r.dotProduct(metric.reduce(q2));
    double hst = -a1.dotProduct(b1);
    const bool holdS = (s <= sLo && gs > 0.0) || (s >= sHi && gs < 0.0);
    const bool holdT = (t <= tLo && gt > 0.0) || (t >= tHi && gt < 0.0);
    if (holdS) gs = 0.0, hst = 0.0;
    if (holdT) gt = 0.0, hst = 0.0;
    double ds = 0.0, dt = 0.0;
    const double det = hss * htt - hst * hst;
    if (hss > 0.0 && htt > 0.0 && det > 1e-300) {
      ds = -(htt * gs - hst * gt) / det;
      dt = -(hss * gt - hst * gs) / det;
    } else {
      const double g2 = gs * gs + gt * gt;
      if (!(g2 > 0.0)) break;
      const double scale = f / g2;
      ds = -gs * scale;
      dt = -gt * scale;
    }
    if (holdS) ds = 0.0;
    if (holdT) dt = 0.0;
    const double ns = std::max(sLo, std::min(sHi, s + ds));
    const double nt = std::max(tLo, std::min(tHi, t + dt));
    if (std::fabs(ns - s) <= 1e-16 * (std::fabs(s) + (sHi - sLo)) &&
        std::fabs(nt - t) <= 1e-16 * (std::fabs(t) + (tHi - tLo)))
      break;
    s = ns;
    t = nt;
  }
}

struct PairItem {
  double gap;
  int i, j;
  bool operator<(const PairItem& o) const { return gap > o.gap; }
};

// The best pair among the root pieces' ends, refined by Newton over the whole ranges.
void seedFromGrid(const Side& one, const Side& two, const Metric& metric, Best& best) {
  std::vector<double> ss, ts;
  std::vector<KrGePoint3d> qs;
  for (const Node& node : one.nodes) ss.push_back(node.a);
  ss.push_back(one.hi);
  for (const Node& node : two.nodes) ts.push_back(node.a);
  ts.push_back(two.hi);
  for (double t : ts) qs.push_back(two.point(t));
  Best grid;
  for (double s : ss) {
    const KrGePoint3d p = one.point(s);
    for (std::size_t j = 0; j < ts.size(); ++j) grid.offer(s, ts[j], metric.reduce(p - qs[j]).length());
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
  if (!prepare(one, two, tol)) return false;
  Metric metric;
  if (direction) {
    KrGeVector3d n = *direction;
    if (n.isZeroLength(tol) || !std::isfinite(n.length())) return false;
    n.normalize();
    metric.numAxes = 2;
    metric.axes[0] = n.perpVector();
    metric.axes[1] = n.crossProduct(metric.axes[0]).normalize();
  }
  const double leaf = kLeafShare * scaleOf(one, two);
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
      queue.push(PairItem{metric.blockGap(one.nodes[static_cast<std::size_t>(i)], two.nodes[static_cast<std::size_t>(j)]), i, j});
  for (int examined = 0; !queue.empty() && examined < kMaxPairs; ++examined) {
    const PairItem item = queue.top();
    queue.pop();
    if (item.gap >= best.distance - slack) break;
    const Node m = one.nodes[static_cast<std::size_t>(item.i)];
    const Node n = two.nodes[static_cast<std::size_t>(item.j)];
    if (std::max(m.size(), n.size()) <= leaf) {
      leafPair(one, two, metric, m, n, best);
      continue;
    }
    const bool splitFirst = m.size() >= n.size();
    Side& side = splitFirst ? one : two;
    const int index = splitFirst ? item.i : item.j;
    if (!split(side, index)) {
      leafPair(one, two, metric, m, n, best);
      continue;
    }
    const int child = side.nodes[static_cast<std::size_t>(index)].child;
    for (int c = child; c < child + 2; ++c) {
      const Node& piece = side.nodes[static_cast<std::size_t>(c)];
      const double gap = splitFirst ? metric.blockGap(piece, n) : metric.blockGap(m, piece);
      if (gap < best.distance - slack) queue.push(PairItem{gap, splitFirst ? c : item.i, splitFirst ? item.j : c});
    }
  }
  paramFirst = best.s;
  paramSecond = best.t;
  return std::isfinite(best.distance);
}

namespace {

// Gauss-Newton on C1(s) = C2(t) from (s, t) within the ranges; true with the meeting parameters
// when the curves come within tol.
bool newtonMeet(const Side& one, const Side& two, double& s, double& t, double tol) {
  for (int step = 0; step < kNewtonSteps; ++step) {
    KrGePoint3d p, q;
    KrGeVector3d p1, p2, q1, q2;
    one.eval2(s, p, p1, p2);
    two.eval2(t, q, q1, q2);
    const KrGeVector3d r = p - q;
    const double a = p1.dotProduct(p1), b = -p1.dotProduct(q1), c = q1.dotProduct(q1);
    const double gs = p1.dotProduct(r), gt = -q1.dotProduct(r);
    const double det = a * c - b * b;
    if (!(det > 1e-30 * a * c) || !(a > 0.0) || !(c > 0.0)) {
      if (r.length() <= tol) return true;
      // Tangent curves: one Newton step along each curve separately.
      if (!(a > 0.0) || !(c > 0.0)) return false;
      s = std::max(one.lo, std::min(one.hi, s - gs / a));
      t = std::max(two.lo, std::min(two.hi, t - gt / c));
      continue;
    }
    const double ds = -(c * gs - b * gt) / det, dt = -(a * gt - b * gs) / det;
    const double ns = std::max(one.lo, std::min(one.hi, s + ds));
    const double nt = std::max(two.lo, std::min(two.hi, t + dt));
    const bool still = ns == s && nt == t;
    s = ns;
    t = nt;
    if (still) break;
  }
  return (one.point(s) - two.point(t)).length() <= tol;
}

}  // namespace

int krGenericIntersections(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second,
                           const KrGeInterval* rangeFirst, const KrGeInterval* rangeSecond, const KrGeTol& tol,
                           KrsArray<double>& paramsFirst, KrsArray<double>& paramsSecond) {
  paramsFirst.RemoveAll();
  paramsSecond.RemoveAll();
  Side one(first, rangeFirst), two(second, rangeSecond);
  if (!prepare(one, two, tol)) return 0;
  const Metric metric;
  const double scale = scaleOf(one, two);
  const double leaf = kLeafShare * scale;
  const double gapTol = std::max(tol.equalPoint(), 0.0);
  std::vector<KrGePoint3d> found;
  std::vector<PairItem> stack;
  const int roots1 = static_cast<int>(one.nodes.size()), roots2 = static_cast<int>(two.nodes.size());
  for (int i = 0; i < roots1; ++i)
    for (int j = 0; j < roots2; ++j) stack.push_back(PairItem{0.0, i, j});
  for (int examined = 0; !stack.empty() && examined < kMaxPairs; ++examined) {
    const PairItem item = stack.back();
    stack.pop_back();
    const Node m = one.nodes[static_cast<std::size_t>(item.i)];
    const Node n = two.nodes[static_cast<std::size_t>(item.j)];
    if (metric.blockGap(m, n) > gapTol) continue;
    const bool small = std::max(m.size(), n.size()) <= leaf;
    const bool splitFirst = m.size() >= n.size();
    Side& side = splitFirst ? one : two;
    const int index = splitFirst ? item.i : item.j;
    if (!small && split(side, index)) {
      const int child = side.nodes[static_cast<std::size_t>(index)].child;
      for (int c = child + 1; c >= child; --c) stack.push_back(PairItem{0.0, splitFirst ? c : item.i, splitFirst ? item.j : c});
      continue;
    }
    double s = 0.5 * (m.a + m.b), t = 0.5 * (n.a + n.b);
    if (!newtonMeet(one, two, s, t, gapTol)) continue;
    const KrGePoint3d point = one.point(s);
    bool known = false;
    for (const KrGePoint3d& other : found)
      if ((other - point).length() <= std::max(gapTol, 1e-12 * scale)) known = true;
    if (known || static_cast<int>(found.size()) >= kMaxPoints) continue;
    found.push_back(point);
    paramsFirst.Add(s);
    paramsSecond.Add(t);
  }
  return paramsFirst.GetSize();
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
