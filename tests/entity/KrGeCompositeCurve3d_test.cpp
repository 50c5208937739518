// Composite curves: the arc-length mapping on random chains against a walk over lengths computed
// here, the worked cases of two segments of lengths 3 and 4, nearest points and blocks against
// dense sampling, linearity and planarity, reversal and transformation, and the deliberate
// oddities (the global number handed to the segments, sampling that only appends).
#include "tests/entity/CompositeTestKit.h"

using composite_test::Chain;
using composite_test::distanceToSamples;
using linear_test::within;

namespace {

const double kPi = 3.141592653589793;

}  // namespace

// On random chains of segments and arcs (sizes 1e-3 to 1e3), every global parameter maps to the
// segment a plain walk over the lengths chooses, lands on it, maps back, and measures itself.
TEST(KrGeCompositeCurve3d, Mapping_RoundTripsOnRandomChains) {
  linear_test::repeat(1313, 200, [](linear_test::Random& random, int) {
    const Chain chain = Chain::random(random, 1 + int(random.uniform(0, 30)));
    const double total = chain.total();
    const double g = KrGeContext::gTol.equalPoint();
    for (int k = 0; k < 20; ++k) {
      const double s = random.uniform(0, total);
      int expected = 0;
      for (double cum = 0; expected < int(chain.lengths.size()) - 1; ++expected) {
        if (s <= cum + chain.lengths[expected] + g) break;
        cum += chain.lengths[expected];
      }
      int seg = -1;
      const double local = chain.curve.globalToLocalParam(s, seg);
      ASSERT_EQ(seg, expected) << s;
      EXPECT_NEAR(chain.curve.localToGlobalParam(local, seg), s, 1e-9 * total);
      EXPECT_LE(chain.piece(seg).distanceTo(chain.curve.evalPoint(s)), 1e-9 * total);
      EXPECT_NEAR(chain.curve.length(0, s), s, 1e-9 * total);
    }
  });
}

// Two segments of lengths 3 and 4 along X.
TEST(KrGeCompositeCurve3d, Mapping_TwoSegmentsOfLengthsThreeAndFour) {
  const Chain chain = Chain::of({new KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(3, 0, 0)),
                                 new KrGeLineSeg3d(KrGePoint3d(3, 0, 0), KrGePoint3d(3, 4, 0))});
  KrGeInterval range;
  chain.curve.getInterval(range);
  EXPECT_EQ(range.lowerBound(), 0.0);
  EXPECT_EQ(range.upperBound(), 7.0);
  int seg = -1;
  const double at5 = chain.curve.globalToLocalParam(5, seg);
  EXPECT_EQ(seg, 1);
  EXPECT_TRUE(within(chain.piece(1).evalPoint(at5), KrGePoint3d(3, 2, 0), 1e-15));
  KrGeInterval second;
  chain.piece(1).getInterval(second);
  EXPECT_EQ(chain.curve.localToGlobalParam(second.upperBound(), 1), 7.0);
  chain.curve.globalToLocalParam(3 + 0.5 * KrGeContext::gTol.equalPoint(), seg);
  EXPECT_EQ(seg, 0);
  chain.curve.globalToLocalParam(3 + 2 * KrGeContext::gTol.equalPoint(), seg);
  EXPECT_EQ(seg, 1);
  const double at100 = chain.curve.globalToLocalParam(100, seg);
  EXPECT_EQ(seg, 1);
  EXPECT_TRUE(within(chain.piece(1).evalPoint(at100), KrGePoint3d(3, 97, 0), 1e-12));
  EXPECT_EQ(chain.curve.length(5, 1), chain.curve.length(1, 5));
  EXPECT_DOUBLE_EQ(chain.curve.length(1, 5), 4.0);
  KrGeCompositeCurve3d& curve = const_cast<KrGeCompositeCurve3d&>(chain.curve);
  EXPECT_FALSE(curve.setInterval(KrGeInterval(5, 2, 1e-12)));
  curve.getInterval(range);
  EXPECT_EQ(range.upperBound(), 7.0);
  EXPECT_TRUE(curve.setInterval(KrGeInterval(1, 2, 1e-12)));
  curve.getInterval(range);
  EXPECT_EQ(range.lowerBound(), 1.0);
  EXPECT_EQ(chain.curve.evalPoint(5).y, 2.0);  // the stored range takes no part in the mapping
}

// The nearest point to random points is no farther than any of 4000 samples of the outline and
// lies on it; the closest pair with another curve matches sampling both, from either side.
TEST(KrGeCompositeCurve3d, ClosestPoints_AgreeWithDenseSampling) {
  linear_test::repeat(77, 40, [](linear_test::Random& random, int) {
    const Chain chain = Chain::random(random, 2 + int(random.uniform(0, 8)));
    const double scale = chain.total();
    const KrGePoint3d point = chain.curve.evalPoint(random.uniform(0, scale)) + random.unitVector() * scale * 0.3;
    const KrGePoint3d nearest = chain.curve.closestPointTo(point);
    EXPECT_LE(nearest.distanceTo(point), distanceToSamples(chain.curve, point, 4000) + 1e-12 * scale);
    EXPECT_LE(chain.curve.distanceTo(nearest), 1e-9 * scale);
    const KrGeCircArc3d circle(point, random.unitVector(), scale * 0.1);
    KrGePoint3d onCircle, onChain;
    const KrGePoint3d onThis = chain.curve.closestPointTo(circle, onCircle);
    double sampled = 1e300;
    for (int k = 0; k <= 400; ++k)
      sampled = std::min(sampled, distanceToSamples(chain.curve, circle.evalPoint(2 * kPi * k / 400), 1000));
    EXPECT_LE(onThis.distanceTo(onCircle), sampled + 1e-12 * scale);
    EXPECT_LE(chain.curve.distanceTo(onThis), 1e-9 * scale);
    EXPECT_LE(circle.distanceTo(onCircle), 1e-9 * scale);
    const KrGePoint3d fromCircle = circle.closestPointTo(chain.curve, onChain);
    EXPECT_NEAR(fromCircle.distanceTo(onChain), onThis.distanceTo(onCircle), 1e-12 * scale);
  });
}

// The slot outline: 20 + 4 pi long, closed, planar in XY, its box exactly [-2, 12] x [-2, 2];
// the parallelepiped block and the box hold 2000 samples.
TEST(KrGeCompositeCurve3d, Slot_LengthBlocksAndPlane) {
  const Chain slot = composite_test::slot();
  EXPECT_NEAR(slot.total(), 20 + 4 * kPi, 1e-13);
  EXPECT_TRUE(slot.curve.isClosed());
  KrGePoint3d low, high;
  slot.curve.orthoBoundBlock().getMinMaxPoints(low, high);
  EXPECT_TRUE(within(low, KrGePoint3d(-2, -2, 0), 1e-12));
  EXPECT_TRUE(within(high, KrGePoint3d(12, 2, 0), 1e-12));
  const KrGeBoundBlock3d block = slot.curve.boundBlock();
  for (int k = 0; k < 2000; ++k) EXPECT_TRUE(block.contains(slot.curve.evalPoint(slot.total() * k / 1999)));
  KrGePlane plane;
  ASSERT_TRUE(slot.curve.isPlanar(plane));
  EXPECT_TRUE(plane.normal().isParallelTo(KrGeVector3d::kZAxis));
  KrGeLine3d line;
  EXPECT_FALSE(slot.curve.isLinear(line));
  const KrGeCircArc3d inPlane(KrGePoint3d(5, 0, 0), KrGeVector3d(0, 0, 1), 1.0);
  const KrGeCircArc3d tilted(KrGePoint3d(5, 0, 0), KrGeVector3d(0, 1, 1), 1.0);
  EXPECT_TRUE(slot.curve.isCoplanarWith(inPlane, plane));
  EXPECT_FALSE(slot.curve.isCoplanarWith(tilted, plane));
  // A range open on both sides stands for the values next to 0: the block of the start point.
  slot.curve.orthoBoundBlock(KrGeInterval()).getMinMaxPoints(low, high);
  EXPECT_TRUE(within(low, KrGePoint3d(0, -2, 0), 1e-12));
  EXPECT_TRUE(within(high, KrGePoint3d(0, -2, 0), 1e-12));
}

// Colinear pieces are linear; a bend leaves the line but not the plane; a bend out of the plane
// leaves both; a single line's chain is planar.
TEST(KrGeCompositeCurve3d, LinearAndPlanar_Table) {
  struct Row {
    const char* name;
    std::vector<KrGeCurve3d*> pieces;
    bool linear, planar;
  } rows[] = {
      {"colinear", {composite_test::segment({0, 0, 0}, {1, 1, 1}), composite_test::segment({1, 1, 1}, {3, 3, 3})}, true, true},
      {"bend", {composite_test::segment({0, 0, 0}, {1, 0, 0}), composite_test::segment({1, 0, 0}, {1, 1, 1})}, false, true},
      {"twisted", {composite_test::segment({0, 0, 0}, {1, 0, 0}), composite_test::segment({1, 0, 0}, {1, 1, 0}),
                   composite_test::segment({1, 1, 0}, {1, 1, 1})}, false, false},
      {"arc off plane", {composite_test::segment({0, 0, 0}, {1, 0, 0}),
                         new KrGeCircArc3d(KrGePoint3d{1, 0, 1}, {1, 0, 0}, {0, 0, -1}, 1, 0, kPi / 2)}, false, false},
      {"arc in plane", {composite_test::segment({0, 0, 0}, {1, 0, 0}),
                        new KrGeCircArc3d(KrGePoint3d{1, 1, 0}, {0, 0, 1}, {0, -1, 0}, 1, 0, kPi / 2)}, false, true},
  };
  for (Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Chain chain = Chain::of(row.pieces);
    KrGeLine3d line;
    KrGePlane plane;
    EXPECT_EQ(chain.curve.isLinear(line), row.linear);
    EXPECT_EQ(chain.curve.isPlanar(plane), row.planar);
    if (!row.planar) continue;
    for (int k = 0; k <= 50; ++k)
      EXPECT_NEAR(plane.signedDistanceTo(chain.curve.evalPoint(chain.total() * k / 50)), 0.0, 1e-12);
  }
}

// Reversal runs the chain backwards: point(L - s) before is point(s) after; reversing twice gives
// the chain back. A similarity scales the parameter with the curve.
TEST(KrGeCompositeCurve3d, ReverseAndTransform_FollowTheCurve) {
  linear_test::repeat(5, 30, [](linear_test::Random& random, int) {
    Chain chain = Chain::random(random, 1 + int(random.uniform(0, 12)));
    const Chain before = chain.clone();
    const double total = chain.total();
    chain.curve.reverseParam();
    for (int k = 0; k <= 20; ++k) {
      const double s = total * k / 20;
      EXPECT_LE(chain.curve.evalPoint(s).distanceTo(before.curve.evalPoint(total - s)), 1e-9 * total) << s;
    }
    chain.curve.reverseParam();
    EXPECT_TRUE(chain.curve.isEqualTo(before.curve));
    const KrGeMatrix3d map = KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(5)) *
                             KrGeMatrix3d::scaling(2.5, random.point(5));
    chain.curve.transformBy(map);
    EXPECT_NEAR(chain.total(), 2.5 * total, 1e-12 * total);
    for (int k = 0; k <= 20; ++k) {
      const double s = total * k / 20;
      EXPECT_LE(chain.curve.evalPoint(2.5 * s).distanceTo(map * before.curve.evalPoint(s)), 1e-9 * total);
    }
  });
}

// The global number goes to the segments as it is: 0.5 is on (a segment's own parameter), 5 is
// not, though the chain is 20 long. Sampling by eps appends the segments' own parameters.
TEST(KrGeCompositeCurve3d, Oddities_GlobalNumberHandedToSegmentsAndSamplingAppends) {
  const Chain chain = Chain::of({new KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(10, 0, 0)),
                                 new KrGeLineSeg3d(KrGePoint3d(10, 0, 0), KrGePoint3d(10, 10, 0))});
  EXPECT_TRUE(chain.curve.isOn(0.5));
  EXPECT_FALSE(chain.curve.isOn(5.0));
  double param = -1;
  EXPECT_TRUE(chain.curve.isOn(KrGePoint3d(10, 5, 0), param));
  EXPECT_DOUBLE_EQ(param, 0.5);
  EXPECT_DOUBLE_EQ(chain.curve.paramOf(KrGePoint3d(10, 5, 0)), 15.0);
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  points.Add(KrGePoint3d(7, 7, 7));
  params.Add(-1.0);
  chain.curve.getSamplePoints(0.0, 1.0, 0.1, points, params);
  ASSERT_GE(points.GetCount(), 5);
  EXPECT_EQ(points[0].z, 7.0);
  EXPECT_EQ(params[0], -1.0);
  for (int i = 1; i < params.GetCount(); ++i) EXPECT_LE(params[i], 1.0);
  EXPECT_TRUE(within(points[points.GetCount() - 1], KrGePoint3d(10, 10, 0), 1e-15));
  KrsArray<KrGePoint3d> even;
  chain.curve.getSamplePoints(5, even);
  ASSERT_EQ(even.GetCount(), 5);
  EXPECT_TRUE(within(even[3], KrGePoint3d(10, 5, 0), 1e-15));
}

// Offsets of a closed 10 x 4 rectangle and of the slot (both counter-clockwise, so a positive
// distance goes outside): the pieces join end to end into a closed chain of the expected length,
// and, where the corners are round or cut back, every point is |d| from the original.
TEST(KrGeCompositeCurve3d, TrimmedOffset_JoinsCornersOfClosedChains) {
  const KrGePoint3d p[] = {{0, 0, 0}, {10, 0, 0}, {10, 4, 0}, {0, 4, 0}};
  const Chain box = Chain::of({composite_test::segment(p[0], p[1]), composite_test::segment(p[1], p[2]),
                               composite_test::segment(p[2], p[3]), composite_test::segment(p[3], p[0])});
  const Chain slot = composite_test::slot();
  const struct {
    const char* name;
    const Chain& chain;
    double distance;
    KrGe::OffsetCrvExtType type;
    int pieces;
    double length;
    bool atDistance;
  } rows[] = {
      {"box out, fillet", box, 1, KrGe::kFillet, 8, 28 + 2 * kPi, true},
      {"box out, chamfer", box, 1, KrGe::kChamfer, 8, 28 + 4 * std::sqrt(2.0), false},
      {"box out, extend", box, 1, KrGe::kExtend, 4, 36, false},
      {"box in", box, -1, KrGe::kFillet, 4, 20, true},
      {"slot out", slot, 1, KrGe::kExtend, 4, 20 + 6 * kPi, true},
      {"slot in", slot, -1.5, KrGe::kFillet, 4, 20 + kPi, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrsArray<void*> pieces;
    row.chain.curve.getTrimmedOffset(row.distance, KrGeVector3d(0, 0, 1), pieces, row.type);
    ASSERT_EQ(pieces.GetCount(), row.pieces);
    std::vector<KrGeCurve3d*> list;
    for (int i = 0; i < pieces.GetCount(); ++i) list.push_back(static_cast<KrGeCurve3d*>(pieces[i]));
    const Chain offset = Chain::of(list);
    EXPECT_NEAR(offset.total(), row.length, 1e-12 * row.length);
    for (int k = 0; k < 400 && row.atDistance; ++k)
      EXPECT_NEAR(row.chain.curve.distanceTo(offset.curve.evalPoint(offset.total() * k / 400)),
                  std::fabs(row.distance), 1e-12);
    KrGePoint3d start, end;
    for (int i = 0; i < row.pieces; ++i) {
      offset.piece(i).hasEndPoint(end);
      offset.piece((i + 1) % row.pieces).hasStartPoint(start);
      EXPECT_TRUE(within(end, start, 1e-12)) << i;
    }
  }
}
