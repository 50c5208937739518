// Chains owning their pieces, with lengths from the geometry (|b - a|, r * sweep), random or the slot.
#pragma once

#include <vector>

#include "testkit/TestKit.h"

namespace composite_test {

inline KrGeLineSeg3d* segment(const KrGePoint3d& from, const KrGePoint3d& to) { return new KrGeLineSeg3d(from, to); }

template <class T>
KrsArray<T> arrayOf(const std::vector<T>& items) {
  KrsArray<T> array;
  for (const T& item : items) array.Add(item);
  return array;
}
inline KrsArray<void*> listOf(const std::vector<void*>& curves) { return arrayOf(curves); }
inline KrsArray<int> flagsOf(const std::vector<int>& flags) { return arrayOf(flags); }

struct Chain {
  KrGeCompositeCurve3d curve;
  std::vector<double> lengths;

  static Chain of(const std::vector<KrGeCurve3d*>& pieces) {
    Chain chain;
    for (KrGeCurve3d* piece : pieces) {
      KrGeInterval range;
      piece->getInterval(range);
      const bool arc = piece->type() == KrGe::kCircArc3d, line = piece->type() == KrGe::kLineSeg3d;
      chain.lengths.push_back(arc    ? static_cast<KrGeCircArc3d*>(piece)->radius() * range.length()
                              : line ? piece->evalPoint(range.lowerBound()).distanceTo(piece->evalPoint(range.upperBound()))
                                     : range.upperBound());  // a nested chain
    }
    chain.curve.setCurveList(listOf({pieces.begin(), pieces.end()}), flagsOf(std::vector<int>(pieces.size(), 1)));
    return chain;
  }

  // `count` connected segments and arcs 1e-3 to 1e3 long; with `nested` one in ten is a chain too.
  static Chain random(testkit::Random& random, int count, bool nested = true) {
    std::vector<KrGeCurve3d*> pieces;
    KrGePoint3d at = random.point(10);
    for (int i = 0; i < count; ++i) {
      const double size = random.magnitude(-3, 3), kind = random.uniform(0, 1);
      const KrGeVector3d normal = random.unitVector(), ref = normal.perpVector();
      if (nested && kind < 0.1)
        pieces.push_back(new KrGeCompositeCurve3d(Chain::random(random, 1 + int(random.uniform(0, 4)), false).curve));
      else if (kind < 0.55)
        pieces.push_back(segment(at, at + normal * size));
      else
        pieces.push_back(new KrGeCircArc3d(at - ref * size, normal, ref, size, 0.0, random.uniform(0.1, 6.0)));
      pieces.back()->hasEndPoint(at);
    }
    return of(pieces);
  }

  const KrGeCurve3d& piece(int index) const {
    KrsArray<void*> list;
    curve.getCurveList(list);
    return *static_cast<const KrGeCurve3d*>(list[index]);
  }
  double total() const {
    KrGeInterval range;
    curve.getInterval(range);
    return range.upperBound();
  }
};

// Counter-clockwise in XY from (0, -2, 0): 10 long, 4 wide, half circles of radius 2.
inline Chain slot() {
  const double h = 1.5707963267948966;
  return Chain::of({segment({0, -2, 0}, {10, -2, 0}), new KrGeCircArc3d({10, 0, 0}, {0, 0, 1}, {1, 0, 0}, 2.0, -h, h),
                    segment({10, 2, 0}, {0, 2, 0}), new KrGeCircArc3d({0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 2.0, h, 3 * h)});
}

}  // namespace composite_test
