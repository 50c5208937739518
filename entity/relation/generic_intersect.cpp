// The intersection points of the generic row: piece pairs whose blocks and chords come within
// the tolerance are halved until both are small or nearly straight, then Gauss-Newton on the pair
// of parameters; points closer than the tolerance to one found are the same point.
#include "entity/relation/generic_pair.h"
#include "entity/relation/generic_pieces.h"

using namespace krgeneric;

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
  KrsArray<KrGePoint3d> found;
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
    for (int i = 0; i < found.GetSize(); ++i)
      if ((found[i] - point).length() <= std::max(gapTol, 1e-12 * scale)) known = true;
    if (known || found.GetSize() >= kMaxPoints) continue;
    found.Add(point);
    paramsFirst.Add(s);
    paramsSecond.Add(t);
  }
  return paramsFirst.GetSize();
}
