// Helpers of the composite-curve tests: chains owning their pieces, with the pieces' lengths from
// their geometry (|b - a|, r * sweep), random connected chains of log-uniform sizes, the slot.
#pragma once

#include <vector>

#include "tests/entity/LinearTestKit.h"

namespace composite_test {

inline KrGeLineSeg3d* segment(const KrGePoint3d& from, const KrGePoint3d& to) { return new KrGeLineSeg3d(from, to); }

inline KrsArray<void*> listOf(const std::vector<KrGeCurve3d*>& curves) {
  KrsArray<void*> list;
  for (KrGeCurve3d* curve : curves) list.Add(curve);
  return list;
}

inline KrsArray<int> flagsOf(const std::vector<int>& flags) {
  KrsArray<int> list;
  for (int flag : flags) list.Add(flag);
  return list;
}

// A segment's or an arc's length from its geometry; a nested chain's from its range.
inline double lengthOf(const KrGeCurve3d& piece) {
  KrGeInterval range;
  piece.getInterval(range);
  if (piece.type() == KrGe::kCompositeCrv3d) return range.upperBound();
  if (piece.type() == KrGe::kCircArc3d) return static_cast<const KrGeCircArc3d&>(piece).radius() * range.length();
  const auto& line = static_cast<const KrGeLineSeg3d&>(piece);
  return line.startPoint().distanceTo(line.endPoint());
}

struct Chain {
  KrGeCompositeCurve3d curve;
  std::vector<double> lengths;

  static Chain of(const std::vector<KrGeCurve3d*>& pieces) {
    Chain chain;
    for (KrGeCurve3d* piece : pieces) chain.lengths.push_back(lengthOf(*piece));
    chain.curve.setCurveList(listOf(pieces), flagsOf(std::vector<int>(pieces.size(), 1)));
    return chain;
  }

  // `count` connected segments and arcs, each 1e-3 to 1e3 long; with `nested`, one in ten is a
  // chain of such pieces itself.
  static Chain random(linear_test::Random& random, int count, bool nested = true) {
    std::vector<KrGeCurve3d*> pieces;
    KrGePoint3d at = random.point(10);
    for (int i = 0; i < count; ++i) {
      const double size = random.magnitude(-3, 3), kind = random.uniform(0, 1);
      if (nested && kind < 0.1) {
        pieces.push_back(new KrGeCompositeCurve3d(Chain::random(random, 1 + int(random.uniform(0, 4)), false).curve));
      } else if (kind < 0.55) {
        pieces.push_back(segment(at, at + random.unitVector() * size));
      } else {
        const KrGeVector3d normal = random.unitVector(), ref = normal.perpVector();
        pieces.push_back(new KrGeCircArc3d(at - ref * size, normal, ref, size, 0.0, random.uniform(0.1, 6.0)));
      }
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
  const double pi = 3.141592653589793;
  const KrGeVector3d up(0, 0, 1), right(1, 0, 0);
  return Chain::of({segment(KrGePoint3d(0, -2, 0), KrGePoint3d(10, -2, 0)),
                    new KrGeCircArc3d(KrGePoint3d(10, 0, 0), up, right, 2.0, -pi / 2, pi / 2),
                    segment(KrGePoint3d(10, 2, 0), KrGePoint3d(0, 2, 0)),
                    new KrGeCircArc3d(KrGePoint3d(0, 0, 0), up, right, 2.0, pi / 2, 3 * pi / 2)});
}

}  // namespace composite_test
