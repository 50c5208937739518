// The pieces of the generic pair solver (generic_pair.h): each curve's working range cut into
// pieces with a bounding block, a chord and the chord's deviation bound, halved on demand; the
// metric (the full space or the plane across a viewing direction) and the lower bound of the
// distance between two pieces. Internal to the relation layer.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "KrGeBoundBlock3d.h"
#include "KrGeInterval.h"
#include "KrGeTol.h"
#include "entity/curve/KrGeCurve3dImpl.h"
#include "entity/spline/KrGeNurbCurve3dImpl.h"

namespace krgeneric {

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

inline double segmentDistance(const KrGeVector3d& p0, const KrGeVector3d& p1, const KrGeVector3d& q0, const KrGeVector3d& q1) {
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
          const double* source = form.bezierOf(s);
          for (int i = 0; i < form.bezierStride(); ++i) m_bezier[at + static_cast<std::size_t>(i)] = source[i];
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
      for (std::size_t i = 0; i < stride; ++i) work[i] = source[i];
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
  KrDoubles m_bezier;  // per node, for NURBS sides
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
inline bool prepare(Side& one, Side& two, const KrGeTol& tol, double& scale) {
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
// A pair of pieces in the queue: nearest lower bound first, and among equal bounds the pair
// whose chords' middles are nearer.
struct PairItem {
  double gap;
  int i, j;
  double hint = 0.0;
  bool operator<(const PairItem& o) const { return gap > o.gap || (gap == o.gap && hint > o.hint); }
};

inline double hintOf(const Metric& metric, const Node& m, const Node& n) {
  return metric.reduce(0.5 * (m.p0.asVector() + m.p1.asVector()) - 0.5 * (n.p0.asVector() + n.p1.asVector())).length();
}


}  // namespace krgeneric
