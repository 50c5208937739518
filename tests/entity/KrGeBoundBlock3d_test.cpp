// Bounding blocks: boxes and parallelepipeds, containment on both sides of the tolerance, growth,
// disjointness, transformation and the switch between the two kinds.
#include "tests/entity/LinearTestKit.h"

using linear_test::kInf;
using linear_test::kNaN;
using linear_test::within;

namespace {

const double kTol = 1e-10;  // KrGeContext::gTol.equalPoint()

// The point of the parallelepiped at parameters (s1, s2, s3) of its directions.
KrGePoint3d at(const KrGeBoundBlock3d& block, double s1, double s2, double s3) {
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  block.get(base, d1, d2, d3);
  return base + d1 * s1 + d2 * s2 + d3 * s3;
}

// The unit normal of the face spanned by a and b, on the side of `out`.
KrGeVector3d faceNormal(const KrGeVector3d& a, const KrGeVector3d& b, const KrGeVector3d& out) {
  const KrGeVector3d n = a.crossProduct(b) / a.crossProduct(b).length();
  return n.dotProduct(out) < 0 ? -n : n;
}

bool sameMinMax(const KrGeBoundBlock3d& block, const KrGePoint3d& low, const KrGePoint3d& high, double tol = 0.0) {
  KrGePoint3d blockLow, blockHigh;
  block.getMinMaxPoints(blockLow, blockHigh);
  return within(blockLow, low, tol) && within(blockHigh, high, tol);
}

}  // namespace

// An empty block holds nothing and stays empty under swell and transformation; the first extend
// makes it a point. Two corners in any order give the same box.
TEST(KrGeBoundBlock3d, Construct_EmptyBlockAndCornersInAnyOrder) {
  KrGeBoundBlock3d block;
  EXPECT_TRUE(block.isEmpty() && block.isBox() && !block.contains(KrGePoint3d()));
  EXPECT_TRUE(block.isDisjoint(KrGeBoundBlock3d(KrGePoint3d(-1, -1, -1), KrGePoint3d(1, 1, 1))));
  KrGePoint3d low, high;
  block.getMinMaxPoints(low, high);
  EXPECT_GT(low.x, high.x);
  block.swell(5.0).transformBy(KrGeMatrix3d::scaling(2.0));
  EXPECT_TRUE(block.isEmpty());
  block.extend(KrGePoint3d(1, 2, 3));
  EXPECT_TRUE(block.contains(KrGePoint3d(1, 2, 3)) && !block.contains(KrGePoint3d(1, 2, 3 + 2 * kTol)));
  const KrGeBoundBlock3d box(KrGePoint3d(4, -1, 2), KrGePoint3d(1, 3, -2));
  EXPECT_TRUE(sameMinMax(box, KrGePoint3d(1, -1, -2), KrGePoint3d(4, 3, 2)));
  KrGeVector3d d1, d2, d3;
  box.get(low, d1, d2, d3);
  EXPECT_TRUE(d1 == KrGeVector3d(3, 0, 0) && d2 == KrGeVector3d(0, 4, 0) && d3 == KrGeVector3d(0, 0, 4));
}

TEST(KrGeBoundBlock3d, Contains_BoxFacesCountTheToleranceAsInside) {
  const KrGeBoundBlock3d block(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 2, 3));
  const struct {
    KrGePoint3d point;
    bool inside;
  } rows[] = {{{0.5, 1, 1.5}, true}, {{1 + kTol, 1, 1}, true},   {{1 + 3 * kTol, 1, 1}, false},
              {{0, 0, -kTol}, true}, {{0, 0, -3 * kTol}, false}, {{kNaN, 1, 1}, false},
              {{kInf, 1, 1}, false}, {{1, 2, 3}, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.point.x << " " << row.point.y << " " << row.point.z);
    EXPECT_TRUE(block.contains(row.point) == row.inside && block.isOn(row.point) == row.inside);
  }
}

// Inside at its own parameters and on its faces; out 1e-6 past a face along the face normal.
TEST(KrGeBoundBlock3d, Contains_ParallelepipedAgainstItsOwnParameters) {
  linear_test::repeat(61, 300, [&](linear_test::Random& random, int) {
    const KrGeVector3d d1 = random.unitVector() * random.magnitude(-2, 2);
    const KrGeVector3d d2 = random.tilted(d1 / d1.length(), random.uniform(0.2, 2.9)) * random.magnitude(-2, 2);
    const KrGeVector3d d3 = random.unitVector() * random.magnitude(-2, 2);
    if (std::fabs(d1.crossProduct(d2).dotProduct(d3)) < 1e-3 * d1.length() * d2.length() * d3.length()) return;
    const KrGeBoundBlock3d block(random.point(100), d1, d2, d3);
    const double s1 = random.uniform(0, 1), s2 = random.uniform(0, 1), s3 = random.uniform(0, 1);
    EXPECT_FALSE(block.isBox());
    EXPECT_TRUE(block.contains(at(block, s1, s2, s3)) && block.contains(at(block, 1, 0, 1)));
    EXPECT_TRUE(block.contains(at(block, 1, s2, s3) - d1 * 1e-6));
    EXPECT_FALSE(block.contains(at(block, 1, s2, s3) + faceNormal(d2, d3, d1) * 1e-6));
    EXPECT_FALSE(block.contains(at(block, s1, s2, s3) + d1 * 1.5));
  });
}

// A box grows to hold every point; a parallelepiped grows along its own directions (to hold the
// point at parameters (1.5, 1.5, 0.5), with a few ulps of allowance); non-finite points are ignored.
TEST(KrGeBoundBlock3d, Extend_HoldsEveryPointAndKeepsTheDirections) {
  linear_test::repeat(62, 100, [&](linear_test::Random& random, int) {
    const double scale = random.magnitude(-6, 12);
    const KrGePoint3d base = random.point(scale);
    const KrGeVector3d d1 = random.unitVector() * scale, d2 = random.unitVector() * scale;
    KrGeBoundBlock3d box, parallelepiped(base, d1, d2, random.unitVector() * scale);
    for (int k = 0; k < 20; ++k) {
      const KrGePoint3d point = random.point(scale * 3);
      box.extend(point);
      parallelepiped.extend(point);
      EXPECT_TRUE(box.isBox() && box.contains(point) && parallelepiped.contains(point));
    }
  });
  KrGeBoundBlock3d block(KrGePoint3d(), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 0), KrGeVector3d(0, 0, 1));
  block.extend(KrGePoint3d(0, 3, 0.5));
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  block.get(base, d1, d2, d3);
  EXPECT_TRUE(within(d1, KrGeVector3d(1.5, 1.5, 0), 1e-13) && within(d2, KrGeVector3d(-1.5, 1.5, 0), 1e-13));
  EXPECT_TRUE(within(d3, KrGeVector3d(0, 0, 1), 0.0) && within(base, KrGePoint3d(), 0.0));
  EXPECT_FALSE(block.contains(KrGePoint3d(3, 0.1, 0)));  // inside its axis-aligned box, outside itself
  const KrGeBoundBlock3d before(block);
  EXPECT_TRUE(block.extend(KrGePoint3d(kNaN, 0, 0)).extend(KrGePoint3d(0, kInf, 0)).isEqualTo(before, KrGeTol()));
}

// Every face moves by the distance along its own normal; a side that would invert collapses onto
// its middle; NaN and infinite distances are ignored; a flat block thickens along its normal.
TEST(KrGeBoundBlock3d, Swell_MovesEveryFaceByTheDistanceAndNeverInverts) {
  KrGeBoundBlock3d box(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 2, 1));
  box.swell(0.5).swell(-1.25).swell(kNaN).swell(kInf);
  EXPECT_TRUE(sameMinMax(box, KrGePoint3d(0.75, 0.75, 0.5), KrGePoint3d(3.25, 1.25, 0.5)));
  const KrGeVector3d d1(2, 0, 0), d2(1, 1.5, 0);
  linear_test::repeat(63, 100, [&](linear_test::Random& random, int) {
    const KrGeVector3d d3 = KrGeVector3d(0.3, -0.2, 1) * random.uniform(0.5, 2);
    const KrGeBoundBlock3d original(random.point(10), d1, d2, d3);
    KrGeBoundBlock3d block(original);
    const double distance = random.uniform(0.01, 0.3);
    block.swell(distance);
    const KrGePoint3d onTop = at(original, random.uniform(0, 1), random.uniform(0, 1), 1.0);
    EXPECT_TRUE(block.contains(onTop + faceNormal(d1, d2, d3) * (distance * 0.999)));
    EXPECT_FALSE(block.contains(onTop + faceNormal(d1, d2, d3) * (distance * 1.001)));
    EXPECT_TRUE(block.swell(-distance).isEqualTo(original, KrGeTol()));
  });
  const KrGeMatrix3d tilt = KrGeMatrix3d::rotation(0.7, KrGeVector3d(1, 1, 0));
  KrGeBoundBlock3d flat(KrGePoint3d(), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), KrGeVector3d());
  flat.transformBy(tilt);
  const KrGePoint3d middle = at(flat, 0.5, 0.5, 0);
  const KrGeVector3d normal = tilt * KrGeVector3d(0, 0, 1);
  EXPECT_FALSE(flat.contains(middle + normal * 1e-3));
  flat.swell(1e-3);
  EXPECT_TRUE(flat.contains(middle + normal * 0.999e-3) && flat.contains(middle - normal * 0.999e-3));
  EXPECT_FALSE(flat.contains(middle + normal * 1.001e-3));
}

// Unit boxes side by side, 1e-6 or half the tolerance apart, as boxes and moved rigidly.
TEST(KrGeBoundBlock3d, IsDisjoint_SeparatedOnlyByMoreThanTheTolerance) {
  const KrGeBoundBlock3d box(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  linear_test::repeat(64, 200, [&](linear_test::Random& random, int i) {
    const KrGeVector3d shift = random.unitVector();
    const bool apart = i % 2 == 0;
    const unsigned axis = shift.largestElement();
    KrGeVector3d offset;
    offset[axis] = (shift[axis] > 0 ? 1 : -1) * (1 + (apart ? 1e-6 : 0.5 * kTol));
    offset[(axis + 1) % 3] = shift[(axis + 1) % 3] * 0.5;
    const KrGeBoundBlock3d other(KrGePoint3d() + offset, KrGePoint3d(1, 1, 1) + offset);
    const double angle = random.uniform(-3, 3);
    const KrGeVector3d rotationAxis = random.unitVector();
    const KrGeMatrix3d motion = KrGeMatrix3d::rotation(angle, rotationAxis, random.point(50));
    KrGeBoundBlock3d movedBox(box), movedOther(other);
    movedBox.transformBy(motion);
    movedOther.transformBy(motion);
    ASSERT_FALSE(movedBox.isBox());
    EXPECT_TRUE(box.isDisjoint(other) == apart && other.isDisjoint(box) == apart);
    EXPECT_TRUE(movedBox.isDisjoint(movedOther) == apart && movedOther.isDisjoint(movedBox) == apart);
  });
}

// Thin blocks: slabs apart in depth, segments crossing in projection but apart in depth, parallel
// sticks and points.
TEST(KrGeBoundBlock3d, IsDisjoint_SlabsSticksAndPoints) {
  const KrGeVector3d none, thin(0, 0, 0.2), alongX(2, 0, 0), alongY(0, 2, 0), x(0.2, 0, 0), y(0, 0.2, 0);
  const double s = std::sqrt(0.5);
  const KrGeBoundBlock3d a(KrGePoint3d(-1, -0.1, -0.1), alongX, y, thin),
      b(KrGePoint3d(-0.1, -1, 0.15), alongY, x, thin), c(KrGePoint3d(-0.1, -1, 0.09), alongY, x, thin),
      stick1(KrGePoint3d(0, 0, 0), KrGeVector3d(s, s, 0), none, none),
      stick2(KrGePoint3d(s, 0, 1e-3), KrGeVector3d(-s, s, 0), none, none),
      stick3(KrGePoint3d(s, 0, 0.5 * kTol), KrGeVector3d(-s, s, 0), none, none),
      stick4(KrGePoint3d(0, 1e-3, 1e-3), KrGeVector3d(s, s, 0), none, none),
      point(KrGePoint3d(0.5 * s, 0.5 * s, 0), none, none, none);
  const struct {
    const char* name;
    const KrGeBoundBlock3d &first, &second;
    bool disjoint;
  } rows[] = {{"slabs 0.05 apart", a, b, true},
              {"slabs overlapping", a, c, false},
              {"sticks 1e-3 apart", stick1, stick2, true},
              {"sticks touching", stick1, stick3, false},
              {"parallel sticks", stick1, stick4, true},
              {"point on a stick", stick1, point, false},
              {"point beside a stick", stick4, point, true}};
  for (const auto& row : rows) EXPECT_EQ(row.first.isDisjoint(row.second), row.disjoint) << row.name;
}

// Rigid motions round-trip; a mirror in a coordinate plane, a scaling and an axis swap keep a box.
TEST(KrGeBoundBlock3d, TransformBy_RoundTripAndAxisPreservingMapsKeepABox) {
  linear_test::repeat(65, 100, [&](linear_test::Random& random, int) {
    const double scale = random.magnitude(-3, 6);
    const KrGePoint3d corner = random.point(scale);
    const KrGeBoundBlock3d original(corner, random.point(scale));
    const KrGeMatrix3d motion = KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(50));
    KrGeBoundBlock3d block(original);
    block.transformBy(motion);
    EXPECT_TRUE(!block.isBox() && block.contains(motion * at(original, 0.3, 0.6, 0.9)));
    KrGePoint3d low, high;
    original.getMinMaxPoints(low, high);
    block.transformBy(motion.inverse());
    EXPECT_TRUE(sameMinMax(block, low, high, 1e-12 * (scale + 100)));
  });
  KrGeMatrix3d swap;
  swap.entry[0][0] = swap.entry[1][1] = 0;
  swap.entry[0][1] = -2;
  swap.entry[1][0] = 1;
  KrGeBoundBlock3d box(KrGePoint3d(1, 2, 3), KrGePoint3d(4, 6, 8));
  box.transformBy(swap);
  ASSERT_TRUE(box.isBox());
  EXPECT_TRUE(sameMinMax(box, KrGePoint3d(-12, 1, 3), KrGePoint3d(-4, 4, 8)));
}

// setToBox(true) encloses the parallelepiped with the same min-max points; back to a
// parallelepiped the solid stays; the two kinds never compare equal.
TEST(KrGeBoundBlock3d, SetToBox_EnclosesTheParallelepipedAndBackKeepsTheSolid) {
  const KrGeBoundBlock3d block(KrGePoint3d(1, 1, 1), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 2, 0),
                               KrGeVector3d(0, -1, 3));
  KrGeBoundBlock3d box(block);
  ASSERT_TRUE(box.setToBox(true).isBox());
  for (int k = 0; k < 8; ++k) EXPECT_TRUE(box.contains(at(block, k & 1, (k >> 1) & 1, (k >> 2) & 1))) << k;
  EXPECT_TRUE(sameMinMax(box, KrGePoint3d(0, 0, 1), KrGePoint3d(2, 4, 4)) &&
              sameMinMax(block, KrGePoint3d(0, 0, 1), KrGePoint3d(2, 4, 4)));
  const KrGeBoundBlock3d asBox(box);
  EXPECT_TRUE(!box.setToBox(false).isBox() && !(box == asBox));
  EXPECT_TRUE(sameMinMax(box, KrGePoint3d(0, 0, 1), KrGePoint3d(2, 4, 4)));
}

TEST(KrGeBoundBlock3d, Value_CopiesAreIndependentAndEqualityComparesTheBlocks) {
  const KrGeBoundBlock3d block(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  std::unique_ptr<KrGeEntity3d> copy(block.copy());
  EXPECT_TRUE(*copy == block && copy->scaleBy(2.0) != block);
  KrGeBoundBlock3d assigned;
  assigned = block;
  EXPECT_TRUE(assigned == block && assigned.swell(1.0) != block);
  EXPECT_TRUE(KrGeBoundBlock3d() == KrGeBoundBlock3d() && KrGeBoundBlock3d() != block);
  EXPECT_FALSE(block.isEqualTo(KrGeLineSeg3d()));
}
