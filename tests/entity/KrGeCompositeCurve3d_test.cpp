// Composite curves: mapping, reversal and transformation on random chains, the worked case of
// segments 3 and 4 long, pairs with other kinds, the deliberate oddities, offsets, blocks, planes.
#include "tests/entity/CompositeTestKit.h"

using composite_test::Chain;
using composite_test::segment;
using testkit::within;

using testkit::kPi;

// Every global parameter maps to the piece a walk over the lengths chooses, lands on it, maps
// back and measures itself, on chains of 1 to 30 pieces 1e-3 to 1e3 long (nested ones too);
// reversed, point(s) comes at L - s; scaled by 2.5, at 2.5 s.
TEST(KrGeCompositeCurve3d, Mapping_RoundTripsOnRandomChainsReversedAndMoved) {
  testkit::repeat(1313, 200, [](testkit::Random& random, int) {
    const Chain chain = Chain::random(random, 1 + int(random.uniform(0, 30)));
    const double total = chain.total();
    KrGeCompositeCurve3d reversed(chain.curve), moved(chain.curve);
    reversed.reverseParam();
    const KrGeMatrix3d map = KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(5)) *
                             KrGeMatrix3d::scaling(2.5, random.point(5));
    moved.transformBy(map);
    for (int k = 0; k < 20; ++k) {
      const double s = random.uniform(0, total);
      int expected = 0;
      for (double cum = 0; expected + 1 < int(chain.lengths.size()); cum += chain.lengths[expected++])
        if (s <= cum + chain.lengths[expected] + KrGeContext::gTol.equalPoint()) break;
      int seg = -1;
      const double local = chain.curve.globalToLocalParam(s, seg);
      ASSERT_EQ(seg, expected) << s;
      EXPECT_NEAR(chain.curve.localToGlobalParam(local, seg), s, 1e-9 * total);
      EXPECT_LE(chain.piece(seg).distanceTo(chain.curve.evalPoint(s)), 1e-9 * total);
      EXPECT_NEAR(chain.curve.length(0, s), s, 1e-9 * total);
      EXPECT_LE(reversed.evalPoint(total - s).distanceTo(chain.curve.evalPoint(s)), 1e-9 * total);
      EXPECT_LE(moved.evalPoint(2.5 * s).distanceTo(map * chain.curve.evalPoint(s)), 1e-9 * total);
    }
  });
}

TEST(KrGeCompositeCurve3d, Mapping_TwoSegmentsOfLengthsThreeAndFour) {
  Chain chain = Chain::of({segment({0, 0, 0}, {3, 0, 0}), segment({3, 0, 0}, {3, 4, 0})});
  EXPECT_EQ(chain.total(), 7.0);
  int seg = -1;
  EXPECT_TRUE(within(chain.piece(1).evalPoint(chain.curve.globalToLocalParam(5, seg)), KrGePoint3d(3, 2, 0), 1e-15));
  EXPECT_EQ(seg, 1);
  EXPECT_EQ(chain.curve.localToGlobalParam(1.0, 1), 7.0);
  for (const double s : {3 + 0.5 * KrGeContext::gTol.equalPoint(), 3 + 2 * KrGeContext::gTol.equalPoint()}) {
    chain.curve.globalToLocalParam(s, seg);
    EXPECT_EQ(seg, s < 3 + KrGeContext::gTol.equalPoint() ? 0 : 1);
  }
  EXPECT_TRUE(within(chain.piece(1).evalPoint(chain.curve.globalToLocalParam(100, seg)), KrGePoint3d(3, 97, 0), 1e-12));
  EXPECT_EQ(chain.curve.length(5, 1), chain.curve.length(1, 5));
  EXPECT_DOUBLE_EQ(chain.curve.length(1, 5), 4.0);
  KrGeInterval range;
  EXPECT_FALSE(chain.curve.setInterval(KrGeInterval(5, 2, 1e-12)));
  EXPECT_TRUE(chain.curve.setInterval(KrGeInterval(1, 2, 1e-12)));
  chain.curve.getInterval(range);
  EXPECT_EQ(range.lowerBound(), 1.0);
  EXPECT_EQ(chain.curve.evalPoint(5).y, 2.0);  // the stored range takes no part in the mapping
}

// Nearest points to a circle against sampling; to an ellipse within the slot's top side.
TEST(KrGeCompositeCurve3d, Relations_ClosestAndLocalPairs) {
  const Chain slot = composite_test::slot();
  const KrGeCircArc3d circle(KrGePoint3d(13, 4, 1), KrGeVector3d(1, 1, 1), 1.5);
  KrGePoint3d onCircle;
  const KrGePoint3d near = slot.curve.closestPointTo(circle, onCircle);
  double sampled = 1e300;
  for (int i = 0; i < 600; ++i)
    for (int j = 0; j < 600; ++j)
      sampled = std::min(sampled, circle.evalPoint(kPi * i / 300).distanceTo(slot.curve.evalPoint(slot.total() * j / 599)));
  EXPECT_LE(near.distanceTo(onCircle), sampled + 1e-12);
  const KrGeEllipArc3d oval(KrGePoint3d(5, 6, 3), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 0.6, 0.8), 3, 1);
  const KrGeInterval top(10 + 2 * kPi, 20 + 2 * kPi);
  KrGePointOnCurve3d a, b;
  oval.getLocalClosestPoints(slot.curve, a, b, nullptr, &top);
  EXPECT_EQ(slot.curve.evalPoint(b.parameter()).y, 2.0);
}

// The global number goes to the pieces as it is: 0.5 is on (a piece's own parameter), 5 is not,
// though the chain is 20 long. Sampling by eps appends the pieces' own parameters. A range open
// on both sides stands for values next to 0: the block of the start point.
TEST(KrGeCompositeCurve3d, Oddities_GlobalNumberHandedToPiecesAndSamplingAppends) {
  const Chain chain = Chain::of({segment({0, 0, 0}, {10, 0, 0}), segment({10, 0, 0}, {10, 10, 0})});
  EXPECT_TRUE(chain.curve.isOn(0.5));
  EXPECT_FALSE(chain.curve.isOn(5.0));
  double param = -1;
  EXPECT_TRUE(chain.curve.isOn(KrGePoint3d(10, 5, 0), param));
  EXPECT_DOUBLE_EQ(param, 0.5);
  EXPECT_DOUBLE_EQ(chain.curve.paramOf(KrGePoint3d(10, 5, 0)), 15.0);
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  params.Add(-1.0);
  chain.curve.getSamplePoints(0.0, 1.0, 0.1, points, params);
  EXPECT_EQ(params[0], -1.0);
  EXPECT_TRUE(within(points[points.GetCount() - 1], KrGePoint3d(10, 10, 0), 1e-15));
  KrGePoint3d low, high;
  chain.curve.orthoBoundBlock(KrGeInterval()).getMinMaxPoints(low, high);
  EXPECT_TRUE(within(high, KrGePoint3d(0, 0, 0), 1e-15));
}

// Offsets of a box, the slot and a half disc (counter-clockwise, so d > 0 goes outside) close up with
// the expected length; round or cut-back corners keep every point |d| from the original.
TEST(KrGeCompositeCurve3d, ClosedChains_OffsetsPlanesAndBox) {
  const KrGePoint3d p[] = {{0, 0, 0}, {10, 0, 0}, {10, 4, 0}, {0, 4, 0}};
  const Chain box = Chain::of({segment(p[0], p[1]), segment(p[1], p[2]), segment(p[2], p[3]), segment(p[3], p[0])});
  const Chain slot = composite_test::slot();
  const Chain disc = Chain::of({segment({-2, 0, 0}, {2, 0, 0}), new KrGeCircArc3d({0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 2, 0, kPi)});
  const struct { const char* name; const Chain& chain; double distance; KrGe::OffsetCrvExtType type; int pieces;
                 double length; bool atDistance; } rows[] = {
      {"box out, fillet", box, 1, KrGe::kFillet, 8, 28 + 2 * kPi, true},
      {"box out, extend", box, 1, KrGe::kExtend, 4, 36, false},
      {"slot out, chamfer", slot, 1, KrGe::kChamfer, 4, 20 + 6 * kPi, true},
      {"box in", box, -1, KrGe::kFillet, 4, 20, true},
      {"slot in", slot, -1.5, KrGe::kFillet, 4, 20 + kPi, true},
      {"half disc out, fillet", disc, 1, KrGe::kFillet, 4, 4 + 4 * kPi, true},
      {"half disc out, extend", disc, 1, KrGe::kExtend, 2, 2 * std::sqrt(8.0) + 3 * kPi + 6 * std::asin(1 / 3.0), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    KrsArray<void*> pieces;
    row.chain.curve.getTrimmedOffset(row.distance, KrGeVector3d(0, 0, 1), pieces, row.type);
    ASSERT_EQ(pieces.GetCount(), row.pieces);
    std::vector<KrGeCurve3d*> list;
    for (int i = 0; i < row.pieces; ++i) list.push_back(static_cast<KrGeCurve3d*>(pieces[i]));
    const Chain offset = Chain::of(list);
    EXPECT_NEAR(offset.total(), row.length, 1e-12 * row.length);
    EXPECT_TRUE(offset.curve.isClosed());
    for (int k = 0; k < 400 && row.atDistance; ++k)
      EXPECT_NEAR(row.chain.curve.distanceTo(offset.curve.evalPoint(offset.total() * k / 400)), std::fabs(row.distance), 1e-12);
    for (int i = 1; i < row.pieces; ++i) {
      KrGePoint3d start, end;
      offset.piece(i - 1).hasEndPoint(end);
      offset.piece(i).hasStartPoint(start);
      EXPECT_TRUE(within(end, start, 1e-12)) << i;
    }
  }
  // The slot lies in XY and its box is exactly [-2, 12] x [-2, 2].
  KrGePlane plane;
  EXPECT_TRUE(slot.curve.isPlanar(plane));
  EXPECT_TRUE(plane.normal().isParallelTo(KrGeVector3d(0, 0, 1)));
  KrGePoint3d low, high;
  slot.curve.orthoBoundBlock().getMinMaxPoints(low, high);
  EXPECT_TRUE(within(low, KrGePoint3d(-2, -2, 0), 1e-12));
  EXPECT_TRUE(within(high, KrGePoint3d(12, 2, 0), 1e-12));
}
