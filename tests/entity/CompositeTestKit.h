// Helpers of the composite-curve tests: chains that own their pieces, with the pieces' lengths
// computed here from their geometry (|b - a| for segments, r * sweep for arcs), random connected
// chains of log-uniform sizes, the slot outline, and distances by dense sampling.
#pragma once

#include <algorithm>
#include <vector>

#include "tests/entity/LinearTestKit.h"

namespace composite_test {

inline KrGeLineSeg3d* segment(const KrGePoint3d& from, const KrGePoint3d& to) { return new KrGeLineSeg3d(from, to); }

// The length of a segment or an arc from its geometry, not from its length().
inline double lengthOf(const KrGeCurve3d& piece) {
  if (piece.type() == KrGe::kCompositeCrv3d) {
    KrGeInterval range;
    piece.getInterval(range);
    return range.upperBound();
  }
  if (piece.type() == KrGe::kCircArc3d) {
    const auto& arc = static_cast<const KrGeCircArc3d&>(piece);
    return arc.radius() * (arc.endAng() - arc.startAng());
  }
  const auto& line = static_cast<const KrGeLineSeg3d&>(piece);
  return line.startPoint().distanceTo(line.endPoint());
}

struct Chain {
  KrGeCompositeCurve3d curve;
  std::vector<double> lengths;

  // A chain owning `pieces`.
  static Chain of(const std::vector<KrGeCurve3d*>& pieces) {
    KrsArray<void*> list;
    KrsArray<int> owned;
    Chain chain;
    for (KrGeCurve3d* piece : pieces) {
      list.Add(piece);
      owned.Add(1);
      chain.lengths.push_back(lengthOf(*piece));
    }
    chain.curve.setCurveList(list, owned);
    return chain;
  }

  // `count` connected pieces, segments and arcs at random, each 1e-3 to 1e3 long; with `nested`,
  // one in ten is a composite of such pieces itself.
  static Chain random(linear_test::Random& random, int count, bool nested = true) {
    std::vector<KrGeCurve3d*> pieces;
    KrGePoint3d at = random.point(10);
    for (int i = 0; i < count; ++i) {
      const double size = random.magnitude(-3, 3);
      const double kind = random.uniform(0, 1);
      if (nested && kind < 0.1) {
        const Chain inner = Chain::random(random, 1 + int(random.uniform(0, 4)), false);
        pieces.push_back(new KrGeCompositeCurve3d(inner.curve));
        at = pieces.back()->evalPoint(inner.total());
      } else if (kind < 0.55) {
        pieces.push_back(segment(at, at + random.unitVector() * size));
        at = pieces.back()->evalPoint(1.0);
      } else {
        const KrGeVector3d normal = random.unitVector();
        const KrGeVector3d ref = normal.perpVector();
        auto* arc = new KrGeCircArc3d(at - ref * size, normal, ref, size, 0.0, random.uniform(0.1, 6.0));
        pieces.push_back(arc);
        at = arc->endPoint();
      }
    }
    return of(pieces);
  }

  // A deep copy: owned pieces are copied.
  Chain clone() const {
    Chain copy;
    copy.curve = curve;
    copy.lengths = lengths;
    return copy;
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

// The slot: 10 long, 4 wide, two straight sides and two half circles of radius 2, from (0, -2, 0).
inline Chain slot() {
  const double pi = 3.141592653589793;
  const KrGeVector3d up(0, 0, 1), right(1, 0, 0);
  return Chain::of({segment(KrGePoint3d(0, -2, 0), KrGePoint3d(10, -2, 0)),
                    new KrGeCircArc3d(KrGePoint3d(10, 0, 0), up, right, 2.0, -pi / 2, pi / 2),
                    segment(KrGePoint3d(10, 2, 0), KrGePoint3d(0, 2, 0)),
                    new KrGeCircArc3d(KrGePoint3d(0, 0, 0), up, right, 2.0, pi / 2, 3 * pi / 2)});
}

// The least distance from `point` to `count` points of the chain evenly spread in arc length.
inline double distanceToSamples(const KrGeCompositeCurve3d& curve, const KrGePoint3d& point, int count) {
  KrGeInterval range;
  curve.getInterval(range);
  double best = 1e300;
  for (int k = 0; k < count; ++k)
    best = std::min(best, curve.evalPoint(range.upperBound() * k / (count - 1)).distanceTo(point));
  return best;
}

}  // namespace composite_test
