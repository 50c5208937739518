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
  KrGePoint3d p0, p1;  // the piece's end points: its chord
  double dev;          // every point of the piece lies within dev of the chord segment
  bool leafy;          // small or nearly straight: refined by Newton rather than halved
  double size() const {
    const double dx = high[0] - low[0], dy = high[1] - low[1], dz = high[2] - low[2];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
  }
};

constexpr double kFlatShare = 0.05;

double segmentDistance(const KrGeVector3d& p0, const KrGeVector3d& p1, const KrGeVector3d& q0, const KrGeVector3d& q1) {
  // Closest points of two segments: minimise over the clamped parameters (s, t) of p0 + s d1 and
  // q0 + t d2, clamping one and re-solving the other.
  const KrGeVector3d d1 = p1 - p0, d2 = q1 - q0, r = p0 - q0;
  const double a = d1.dotProduct(d1), e = d2.dotProduct(d2), f = d2.dotProduct(r);
  double sParam = 0.0, tParam = 0.0;
  if (a <= 0.0 && e <= 0.0) return r.length();
  if (a <= 0.0) {
    tParam = std::max(0.0, std::min(1.0, f / e));
  } else {
    const double c = d1.dotProduct(r);
    if (e <= 0.0) {
      sParam = std::max(0.0, std::min(1.0, -c / a));
    } else {
      const double b = d1.dotProduct(d2), denom = a * e - b * b;
      sParam = denom > 0.0 ? std::max(0.0, std::min(1.0, (b * f - c * e) / denom)) : 0.0;
      tParam = (b * sParam + f) / e;
      if (tParam < 0.0) {
        tParam = 0.0;
        sParam = std::max(0.0, std::min(1.0, -c / a));
      } else if (tParam > 1.0) {
        tParam = 1.0;
        sParam = std::max(0.0, std::min(1.0, (b - c) / a));
      }
    }
  }
  return (r + sParam * d1 - tParam * d2).length();
}

// One curve of the pair over its working range, with the cheap paths of NURBS curves: their
// pieces carry Bezier control points (halved by de Casteljau), which give tight blocks, chords
// and flatness.
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
  // The whole side's block.
  bool wholeBox(double* low, double* high) const {
    if (m_nurbs) {
      KrGePoint3d l, h;
      krNurbsPieceHull(*m_nurbs, lo, hi, l, h);
      for (int c = 0; c < 3; ++c) low[c] = l[static_cast<unsigned>(c)], high[c] = h[static_cast<unsigned>(c)];
      return true;
    }
    return genericBox(lo, hi, low, high);
  }

  KrGePoint3d point(double t) const {
    if (m_nurbs) return krNurbsPoint(*m_nurbs, t);
    return m_curve.evalPoint(t);
  }
  // `span` (a NURBS span, or -1) keeps the evaluation on one side of a knot.
  void eval2(double t, KrGePoint3d& p, KrGeVector3d& d1, KrGeVector3d& d2, int span = -1) const {
    if (m_nurbs) {
      krNurbsPoint2(*m_nurbs, t, p, d1, d2, span);
      return;
    }
    p = m_curve.evalPoint(t, 2, m_derivs);
    d1 = m_derivs[0];
    d2 = m_derivs[1];
  }
  const KrGeCurve3dImpl& curve() const { return m_curve; }
  // The NURBS span holding [a, b] (a piece of one span), -1 otherwise.
  int spanOf(double a, double b) const {
    if (!m_nurbs) return -1;
    const int span = m_nurbs->spanOf(0.5 * (a + b));
    return a >= m_nurbs->knots[span] && b <= m_nurbs->knots[span + 1] ? span : -1;
  }

  // The root pieces: the knot spans of a NURBS curve inside the range, else eight even ones.
  bool makeRoots(double leaf) {
    nodes.clear();
    m_bezier.clear();
    m_leaf = leaf;
    if (!(lo <= hi) || !std::isfinite(lo) || !std::isfinite(hi)) return false;
    if (m_nurbs) {
      const KrNurbsForm& form = *m_nurbs;
      const int first = form.spanOf(lo), last = form.spanOf(hi);
      double args[kKrNurbsMaxDegree] = {};
      for (int s = first; s <= last; ++s) {
        const double from = std::max(lo, form.knots[s]), to = std::min(hi, form.knots[s + 1]);
        if (!(from < to) && !(s == first && lo == hi)) continue;
        const std::size_t at = m_bezier.size();
        m_bezier.resize(at + static_cast<std::size_t>(form.bezierStride()));
        if (from == form.knots[s] && to == form.knots[s + 1]) {
          std::copy(form.bezierOf(s), form.bezierOf(s) + form.bezierStride(), m_bezier.begin() + static_cast<long>(at));
        } else {
          for (int j = 0; j <= form.degree; ++j) {
            for (int i = 0; i < form.degree; ++i) args[i] = i < form.degree - j ? from : to;
            krNurbsBlossom(form, s, args, &m_bezier[at + 4 * static_cast<std::size_t>(j)]);
          }
        }
        nodes.push_back(bezierNode(from, to, nodes.size()));
      }
      return !nodes.empty();
    }
    for (int i = 0; i < kRootPieces; ++i) {
      Node node;
      if (!genericNode(lo + (hi - lo) * i / kRootPieces, i == kRootPieces - 1 ? hi : lo + (hi - lo) * (i + 1) / kRootPieces,
                       node))
        return false;
      nodes.push_back(node);
    }
    return true;
  }

  // Halves node `index` (once); false when it cannot be halved.
  bool split(int index) {
    const std::size_t at = static_cast<std::size_t>(index);
    if (nodes[at].child >= 0) return true;
    const double a = nodes[at].a, b = nodes[at].b, mid = 0.5 * (a + b);
    if (!(mid > a && mid < b)) return false;
    if (m_nurbs) {
      const int p = m_nurbs->degree;
      const std::size_t stride = static_cast<std::size_t>(m_nurbs->bezierStride());
      const std::size_t first = m_bezier.size();
      m_bezier.resize(first + 2 * stride);
      double* left = &m_bezier[first];
      double* right = left + stride;
      const double* source = &m_bezier[stride * at];
      double work[(kKrNurbsMaxDegree + 1) * 4];
      std::copy(source, source + stride, work);
      for (int c = 0; c < 4; ++c) {
        left[c] = work[c];
        right[4 * p + c] = work[4 * p + c];
      }
      for (int r = 1; r <= p; ++r) {
        for (int j = 0; j <= p - r; ++j)
          for (int c = 0; c < 4; ++c) work[4 * j + c] = 0.5 * (work[4 * j + c] + work[4 * (j + 1) + c]);
        for (int c = 0; c < 4; ++c) {
          left[4 * r + c] = work[c];
          right[4 * (p - r) + c] = work[4 * (p - r) + c];
        }
      }
      nodes[at].child = static_cast<int>(nodes.size());
      const std::size_t count = nodes.size();
      nodes.push_back(bezierNode(a, mid, count));
      nodes.push_back(bezierNode(mid, b, count + 1));
      return true;
    }
    Node left, right;
    if (!genericNode(a, mid, left) || !genericNode(mid, b, right)) return false;
    nodes[at].child = static_cast<int>(nodes.size());
    nodes.push_back(left);
    nodes.push_back(right);
    return true;
  }

  double lo = 0.0, hi = 0.0;
  std::vector<Node> nodes;

private:
  bool genericBox(double a, double b, double* low, double* high) const {
    const KrGeBoundBlock3d block = m_curve.orthoBoundBlock(KrGeInterval(a, b));
    if (block.isEmpty()) return false;
    KrGePoint3d l, h;
    block.getMinMaxPoints(l, h);
    for (unsigned c = 0; c < 3; ++c) {
      low[c] = std::min(l[c], h[c]);
      high[c] = std::max(l[c], h[c]);
      if (!std::isfinite(low[c]) || !std::isfinite(high[c])) return false;
    }
    return true;
  }
  bool genericNode(double a, double b, Node& node) const {
    node.a = a;
    node.b = b;
    node.child = -1;
    if (!genericBox(a, b, node.low, node.high)) return false;
    node.p0 = point(a);
    node.p1 = point(b);
    // A linear piece is its own chord; other kinds are only known to stay in their block.
    const bool straight = m_curve.isKindOf(KrGe::kLinearEnt3d);
    node.dev = straight ? 0.0 : node.size();
    node.leafy = straight || node.size() <= m_leaf;
    return true;
  }
  // The node of the Bezier points stored at slot `slot`.
  Node bezierNode(double a, double b, std::size_t slot) const {
    const int p = m_nurbs->degree;
    const double* h = &m_bezier[slot * static_cast<std::size_t>(m_nurbs->bezierStride())];
    Node node;
    node.a = a;
    node.b = b;
    node.child = -1;
    KrGePoint3d pts[kKrNurbsMaxDegree + 1];
    for (int c = 0; c < 3; ++c) node.low[c] = HUGE_VAL, node.high[c] = -HUGE_VAL;
    for (int j = 0; j <= p; ++j) {
      const double w = h[4 * j + 3];
      pts[j] = KrGePoint3d(h[4 * j] / w, h[4 * j + 1] / w, h[4 * j + 2] / w);
      for (int c = 0; c < 3; ++c) {
        node.low[c] = std::min(node.low[c], pts[j][static_cast<unsigned>(c)]);
        node.high[c] = std::max(node.high[c], pts[j][static_cast<unsigned>(c)]);
      }
    }
    node.p0 = pts[0];
    node.p1 = pts[p];
    const KrGeVector3d chord = pts[p] - pts[0];
    double dev = 0.0, previous = 0.0;
    bool forward = true;
    for (int j = 1; j < p; ++j) {
      dev = std::max(dev, segmentDistance(pts[j].asVector(), pts[j].asVector(), pts[0].asVector(), pts[p].asVector()));
      const double along = (pts[j] - pts[0]).dotProduct(chord);
      forward = forward && along >= previous;
      previous = along;
    }
    node.dev = dev;
    node.leafy = (forward && dev <= kFlatShare * chord.length()) || node.size() <= m_leaf;
    return node;
  }

  const KrGeCurve3dImpl& m_curve;
  const KrNurbsForm* m_nurbs = nullptr;
  bool m_boundedLo = false, m_boundedHi = false;
  double m_leaf = 0.0;
  std::vector<double> m_bezier;  // per node, for NURBS sides
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
  // A lower bound of the distance between two pieces: the block gap, or the chords' distance
  // less both deviations (the reduction is a projection, so it keeps both bounds).
  double pairGap(const Node& m, const Node& n) const {
    const double chords = segmentDistance(reduce(m.p0.asVector()), reduce(m.p1.asVector()), reduce(n.p0.asVector()),
                                          reduce(n.p1.asVector())) -
                          m.dev - n.dev;
    return std::max(blockGap(m, n), chords);
  }
};

// Both sides bounded, open ones cut to what faces the other, and their root pieces made;
// `scale` receives the larger block diagonal. False when that is impossible.
bool prepare(Side& one, Side& two, const KrGeTol& tol, double& scale) {
  if (!one.bounded() && !two.bounded()) return false;
  Side* sides[2] = {&one, &two};
  double size = 0.0;
  for (int i = 0; i < 2; ++i) {
    Side& side = *sides[i];
    Side& other = *sides[1 - i];
    double low[3], high[3];
    if (side.bounded()) {
      if (!side.wholeBox(low, high)) return false;
    } else {
      if (!other.bounded() || !other.wholeBox(low, high)) return false;
      side.clipTo(low, high, tol);
      if (!side.wholeBox(low, high)) return false;
    }
    double d2 = 0.0;
    for (int c = 0; c < 3; ++c) d2 += (high[c] - low[c]) * (high[c] - low[c]);
    size = std::max(size, std::sqrt(d2));
  }
  scale = size;
  const double leaf = kLeafShare * size;
  return one.makeRoots(leaf) && two.makeRoots(leaf);
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
    for (double lambda = 1.0; lambda > 1e-12; lambda *= 0.5) {
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

// A pair of pieces in the queue: nearest lower bound first, and among equal bounds the pair
// whose chords' middles are nearer.
struct PairItem {
  double gap;
  int i, j;
  double hint = 0.0;
  bool operator<(const PairItem& o) const { return gap > o.gap || (gap == o.gap && hint > o.hint); }
};

double hintOf(const Metric& metric, const Node& m, const Node& n) {
  return metric.reduce(0.5 * (m.p0.asVector() + m.p1.asVector()) - 0.5 * (n.p0.asVector() + n.p1.asVector())).length();
}

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
  double scale = 0.0;
  if (!prepare(one, two, tol, scale)) return 0;
  const Metric metric;
  const double gapTol = std::max(tol.equalPoint(), 0.0);
  std::vector<KrGePoint3d> found;
  std::vector<PairItem> stack;
  const int roots1 = static_cast<int>(one.nodes.size()), roots2 = static_cast<int>(two.nodes.size());
  for (int i = 0; i < roots1; ++i)
    for (int j = 0; j < roots2; ++j) stack.push_back(PairItem{0.0, i, j, 0.0});
  for (int examined = 0; !stack.empty() && examined < kMaxPairs; ++examined) {
    const PairItem item = stack.back();
    stack.pop_back();
    const Node m = one.nodes[static_cast<std::size_t>(item.i)];
    const Node n = two.nodes[static_cast<std::size_t>(item.j)];
    if (metric.pairGap(m, n) > gapTol) continue;
    const bool small = m.leafy && n.leafy;
    const bool splitFirst = n.leafy || (!m.leafy && m.size() >= n.size());
    Side& side = splitFirst ? one : two;
    const int index = splitFirst ? item.i : item.j;
    if (!small && side.split(index)) {
      const int child = side.nodes[static_cast<std::size_t>(index)].child;
      for (int c = child + 1; c >= child; --c) stack.push_back(PairItem{0.0, splitFirst ? c : item.i, splitFirst ? item.j : c, 0.0});
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
