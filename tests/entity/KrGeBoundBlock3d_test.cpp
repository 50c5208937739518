#include "KrGeBoundBlock3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeMatrix3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "tests/entity/LinearTestKit.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();
const double kTol = 1e-10;  // KrGeContext::gTol.equalPoint() once the library is loaded

KrGeMatrix3d randomMotion(linear_test::Random& random) {
  return KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(50));
}

// A point of the parallelepiped at parameters (s1, s2, s3) of its directions.
KrGePoint3d at(const KrGeBoundBlock3d& block, double s1, double s2, double s3) {
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  block.get(base, d1, d2, d3);
  return base + d1 * s1 + d2 * s2 + d3 * s3;
}

}  // namespace

TEST(KrGeBoundBlock3d, Construct_DefaultIsEmptyAndTheFirstExtendMakesAPoint) {
  KrGeBoundBlock3d block;
  EXPECT_TRUE(block.isEmpty());
  EXPECT_TRUE(block.isBox());
  EXPECT_FALSE(block.contains(KrGePoint3d()));
  EXPECT_TRUE(block.isDisjoint(KrGeBoundBlock3d(KrGePoint3d(-1, -1, -1), KrGePoint3d(1, 1, 1))));
  KrGePoint3d low, high;
  block.getMinMaxPoints(low, high);
  EXPECT_GT(low.x, high.x);  // the inverted pair of an empty block
  block.swell(5.0).transformBy(KrGeMatrix3d::scaling(2.0));
  EXPECT_TRUE(block.isEmpty());

  block.extend(KrGePoint3d(1, 2, 3));
  EXPECT_FALSE(block.isEmpty());
  EXPECT_TRUE(block.contains(KrGePoint3d(1, 2, 3)));
  EXPECT_FALSE(block.contains(KrGePoint3d(1, 2, 3 + 2 * kTol)));
  block.getMinMaxPoints(low, high);
  EXPECT_EQ(low.z, 3.0);
  EXPECT_EQ(high.z, 3.0);
}

TEST(KrGeBoundBlock3d, Construct_TwoCornersInAnyOrderGiveTheSameBox) {
  const KrGeBoundBlock3d block(KrGePoint3d(4, -1, 2), KrGePoint3d(1, 3, -2));
  KrGePoint3d low, high, base;
  KrGeVector3d d1, d2, d3;
  block.getMinMaxPoints(low, high);
  EXPECT_EQ(low.x, 1.0);
  EXPECT_EQ(low.y, -1.0);
  EXPECT_EQ(low.z, -2.0);
  EXPECT_EQ(high.x, 4.0);
  EXPECT_EQ(high.y, 3.0);
  EXPECT_EQ(high.z, 2.0);
  block.get(base, d1, d2, d3);
  EXPECT_EQ(base.x, 1.0);
  EXPECT_EQ(d1.x, 3.0);
  EXPECT_EQ(d2.y, 4.0);
  EXPECT_EQ(d3.z, 4.0);
  EXPECT_EQ(d1.y + d1.z + d2.x + d2.z + d3.x + d3.y, 0.0);
}

TEST(KrGeBoundBlock3d, Contains_BoxFacesCountTheToleranceAsInside) {
  const KrGeBoundBlock3d block(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 2, 3));
  const struct { KrGePoint3d point; bool inside; } rows[] = {
      {{0.5, 1, 1.5}, true},   {{1 + kTol, 1, 1}, true}, {{1 + 3 * kTol, 1, 1}, false},
      {{0, 0, -kTol}, true},   {{0, 0, -3 * kTol}, false}, {{kNaN, 1, 1}, false},
      {{kInf, 1, 1}, false},   {{1, 2, 3}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.point.x << " " << row.point.y << " " << row.point.z);
    EXPECT_EQ(block.contains(row.point), row.inside);
    EXPECT_EQ(block.isOn(row.point), row.inside);
  }
}

TEST(KrGeBoundBlock3d, Contains_ParallelepipedAgainstItsOwnParameters) {
  linear_test::Random random(61);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 300; ++i) {
    const KrGeVector3d d1 = random.unitVector() * random.magnitude(-2, 2);
    const KrGeVector3d d2 = random.tilted(d1 / d1.length(), random.uniform(0.2, 2.9)) * random.magnitude(-2, 2);
    const KrGeVector3d d3 = random.unitVector() * random.magnitude(-2, 2);
    if (std::fabs(d1.crossProduct(d2).dotProduct(d3)) < 1e-3 * d1.length() * d2.length() * d3.length()) continue;
    const KrGeBoundBlock3d block(random.point(100), d1, d2, d3);
    EXPECT_FALSE(block.isBox());
    const double s1 = random.uniform(0, 1), s2 = random.uniform(0, 1), s3 = random.uniform(0, 1);
    EXPECT_TRUE(block.contains(at(block, s1, s2, s3)));
    EXPECT_TRUE(block.contains(at(block, 1, 0, 1)));
    // Just outside face 1 by 1e-6 along its normal: out; just inside: in.
    KrGeVector3d faceNormal = d2.crossProduct(d3);
    faceNormal = faceNormal / faceNormal.length();
    if (faceNormal.dotProduct(d1) < 0) faceNormal = -faceNormal;
    EXPECT_FALSE(block.contains(at(block, 1, s2, s3) + faceNormal * 1e-6));
    EXPECT_TRUE(block.contains(at(block, 1, s2, s3)));
    EXPECT_TRUE(block.contains(at(block, 1, s2, s3) - d1 * 1e-6));
    EXPECT_FALSE(block.contains(at(block, s1, s2, s3) + d1 * 1.5));
  }
}

TEST(KrGeBoundBlock3d, Extend_ContainsEveryPointItWasExtendedBy) {
  linear_test::Random random(62);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const double scale = random.magnitude(-6, 12);
    KrGeBoundBlock3d box;
    KrGeBoundBlock3d parallelepiped(random.point(scale), random.unitVector() * scale, random.unitVector() * scale,
                                    random.unitVector() * scale);
    std::vector<KrGePoint3d> points;
    for (int k = 0; k < 20; ++k) {
      points.push_back(random.point(scale * 3));
      box.extend(points.back());
      parallelepiped.extend(points.back());
    }
    EXPECT_TRUE(box.isBox());
    for (const KrGePoint3d& point : points) {
      EXPECT_TRUE(box.contains(point));
      EXPECT_TRUE(parallelepiped.contains(point));
    }
  }
}

TEST(KrGeBoundBlock3d, Extend_KeepsTheParallelepipedsDirectionsAndIgnoresNonFinitePoints) {
  KrGeBoundBlock3d block(KrGePoint3d(), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 0), KrGeVector3d(0, 0, 1));
  block.extend(KrGePoint3d(0, 3, 0.5));  // at parameters (1.5, 1.5, 0.5)
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  block.get(base, d1, d2, d3);
  EXPECT_NEAR(d1.x, 1.5, 1e-13);  // widened by a few ulps of rounding allowance
  EXPECT_NEAR(d1.y, 1.5, 1e-13);
  EXPECT_NEAR(d2.x, -1.5, 1e-13);
  EXPECT_EQ(d3.z, 1.0);
  EXPECT_EQ(base.asVector().length(), 0.0);
  EXPECT_FALSE(block.contains(KrGePoint3d(3, 0.1, 0)));  // inside its axis-aligned box, outside itself

  const KrGeBoundBlock3d before(block);
  block.extend(KrGePoint3d(kNaN, 0, 0)).extend(KrGePoint3d(0, kInf, 0));
  EXPECT_TRUE(block.isEqualTo(before, KrGeTol()));
}

TEST(KrGeBoundBlock3d, Swell_MovesEveryFaceByTheDistanceAndNeverInverts) {
  KrGeBoundBlock3d box(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 2, 1));
  box.swell(0.5);
  KrGePoint3d low, high;
  box.getMinMaxPoints(low, high);
  EXPECT_EQ(low.x, -0.5);
  EXPECT_EQ(high.z, 1.5);
  box.swell(-1.25);  // z would cross: it collapses onto its middle plane
  box.getMinMaxPoints(low, high);
  EXPECT_EQ(low.x, 0.75);
  EXPECT_EQ(high.x, 3.25);
  EXPECT_EQ(low.z, 0.5);
  EXPECT_EQ(high.z, 0.5);
  box.swell(kNaN).swell(kInf);
  box.getMinMaxPoints(low, high);
  EXPECT_EQ(low.x, 0.75);

  // A skew parallelepiped: every face moves by the distance along its own normal.
  linear_test::Random random(63);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const KrGeVector3d d1(2, 0, 0), d2(1, 1.5, 0), d3 = KrGeVector3d(0.3, -0.2, 1) * random.uniform(0.5, 2);
    KrGeBoundBlock3d block(random.point(10), d1, d2, d3);
    const KrGeBoundBlock3d original(block);
    const double distance = random.uniform(0.01, 0.3);
    block.swell(distance);
    const KrGePoint3d inside = at(original, random.uniform(0, 1), random.uniform(0, 1), 1.0);
    KrGeVector3d top = d1.crossProduct(d2);
    top = top / top.length();
    if (top.dotProduct(d3) < 0) top = -top;
    EXPECT_TRUE(block.contains(inside + top * (distance * 0.999)));
    EXPECT_FALSE(block.contains(inside + top * (distance * 1.001)));
    block.swell(-distance);
    EXPECT_TRUE(block.isEqualTo(original, KrGeTol()));
  }
}

TEST(KrGeBoundBlock3d, Swell_ThickensAFlatBlockAlongItsNormal) {
  KrGeBoundBlock3d flat(KrGePoint3d(), KrGeVector3d(1, 0, 0), KrGeVector3d(0, 1, 0), KrGeVector3d());
  flat.transformBy(KrGeMatrix3d::rotation(0.7, KrGeVector3d(1, 1, 0)));
  const KrGePoint3d middle = at(flat, 0.5, 0.5, 0);
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  flat.get(base, d1, d2, d3);
  KrGeVector3d normal = d1.crossProduct(d2);
  normal = normal / normal.length();
  EXPECT_TRUE(flat.contains(middle));
  EXPECT_FALSE(flat.contains(middle + normal * 1e-3));
  flat.swell(1e-3);
  EXPECT_TRUE(flat.contains(middle + normal * 0.999e-3));
  EXPECT_TRUE(flat.contains(middle - normal * 0.999e-3));
  EXPECT_FALSE(flat.contains(middle + normal * 1.001e-3));
}

TEST(KrGeBoundBlock3d, IsDisjoint_SeparatedOnlyByMoreThanTheTolerance) {
  const KrGeBoundBlock3d box(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  linear_test::Random random(64);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 200; ++i) {
    const KrGeVector3d shift = random.unitVector();
    const double gap = (i % 2) ? 0.5 * kTol : 1e-6;  // touching (within tolerance) or apart
    // A second unit box beside the first along the largest component of the shift.
    const unsigned axis = shift.largestElement();
    KrGeVector3d offset;
    offset[axis] = shift[axis] > 0 ? 1 + gap : -1 - gap;
    offset[(axis + 1) % 3] = shift[(axis + 1) % 3] * 0.5;
    const KrGeBoundBlock3d other(KrGePoint3d() + offset, KrGePoint3d(1, 1, 1) + offset);
    EXPECT_EQ(box.isDisjoint(other), gap > kTol);
    EXPECT_EQ(other.isDisjoint(box), gap > kTol);
    // The same pair moved rigidly (parallelepipeds now) keeps the answer when clearly apart, and
    // touching blocks stay touching.
    const KrGeMatrix3d motion = randomMotion(random);
    KrGeBoundBlock3d movedBox(box), movedOther(other);
    movedBox.transformBy(motion);
    movedOther.transformBy(motion);
    ASSERT_FALSE(movedBox.isBox());
    if (gap > kTol) {
      EXPECT_TRUE(movedBox.isDisjoint(movedOther));
    } else {
      EXPECT_FALSE(movedBox.isDisjoint(movedOther));
    }
    EXPECT_EQ(movedBox.isDisjoint(movedOther), movedOther.isDisjoint(movedBox));
  }
}

TEST(KrGeBoundBlock3d, IsDisjoint_SlabsSticksAndPoints) {
  // Two crossing slabs apart along Z.
  const KrGeBoundBlock3d a(KrGePoint3d(-1, -0.1, -0.1), KrGeVector3d(2, 0, 0), KrGeVector3d(0, 0.2, 0),
                           KrGeVector3d(0, 0, 0.2));
  const double s = std::sqrt(0.5);
  const KrGeBoundBlock3d b(KrGePoint3d(-0.1, -1, 0.15), KrGeVector3d(0, 2, 0), KrGeVector3d(0.2, 0, 0),
                           KrGeVector3d(0, 0, 0.2));
  EXPECT_TRUE(a.isDisjoint(b));  // a gap of 0.05 along Z
  KrGeBoundBlock3d c(b);
  c.transformBy(KrGeMatrix3d::translation(KrGeVector3d(0, 0, -0.06)));
  EXPECT_FALSE(a.isDisjoint(c));
  // Segments (flat and thin blocks) crossing in projection but apart in depth.
  const KrGeBoundBlock3d stick1(KrGePoint3d(0, 0, 0), KrGeVector3d(s, s, 0), KrGeVector3d(), KrGeVector3d());
  const KrGeBoundBlock3d stick2(KrGePoint3d(s, 0, 1e-3), KrGeVector3d(-s, s, 0), KrGeVector3d(), KrGeVector3d());
  EXPECT_TRUE(stick1.isDisjoint(stick2));
  const KrGeBoundBlock3d stick3(KrGePoint3d(s, 0, 0.5 * kTol), KrGeVector3d(-s, s, 0), KrGeVector3d(), KrGeVector3d());
  EXPECT_FALSE(stick1.isDisjoint(stick3));
  // Parallel sticks apart sideways, and points.
  const KrGeBoundBlock3d stick4(KrGePoint3d(0, 1e-3, 1e-3), KrGeVector3d(s, s, 0), KrGeVector3d(), KrGeVector3d());
  EXPECT_TRUE(stick1.isDisjoint(stick4));
  const KrGeBoundBlock3d point(KrGePoint3d(0.5 * s, 0.5 * s, 0), KrGeVector3d(), KrGeVector3d(), KrGeVector3d());
  EXPECT_FALSE(stick1.isDisjoint(point));
  EXPECT_TRUE(stick4.isDisjoint(point));
}

TEST(KrGeBoundBlock3d, TransformBy_RoundTripAndAxisPreservingMapsKeepABox) {
  linear_test::Random random(65);
  SCOPED_TRACE(random.trace());
  for (int i = 0; i < 100; ++i) {
    const double scale = random.magnitude(-3, 6);
    const KrGeBoundBlock3d original(random.point(scale), random.point(scale));
    KrGeBoundBlock3d block(original);
    const KrGeMatrix3d motion = randomMotion(random);
    block.transformBy(motion);
    EXPECT_FALSE(block.isBox());
    EXPECT_TRUE(block.contains(motion * at(original, 0.3, 0.6, 0.9)));
    block.transformBy(motion.inverse());
    KrGePoint3d low1, high1, low2, high2;
    original.getMinMaxPoints(low1, high1);
    block.getMinMaxPoints(low2, high2);
    EXPECT_LE(low1.distanceTo(low2), 1e-12 * (scale + 100));
    EXPECT_LE(high1.distanceTo(high2), 1e-12 * (scale + 100));
  }
  // A mirror in a coordinate plane, a scaling and an axis swap keep a box, exactly.
  KrGeMatrix3d swap;
  swap.entry[0][0] = swap.entry[1][1] = 0;
  swap.entry[0][1] = -2;
  swap.entry[1][0] = 1;
  KrGeBoundBlock3d box(KrGePoint3d(1, 2, 3), KrGePoint3d(4, 6, 8));
  box.transformBy(swap);
  ASSERT_TRUE(box.isBox());
  KrGePoint3d low, high;
  box.getMinMaxPoints(low, high);
  EXPECT_EQ(low.x, -12.0);
  EXPECT_EQ(high.x, -4.0);
  EXPECT_EQ(low.y, 1.0);
  EXPECT_EQ(high.y, 4.0);
}

TEST(KrGeBoundBlock3d, SetToBox_EnclosesTheParallelepipedAndBackKeepsTheSolid) {
  KrGeBoundBlock3d block(KrGePoint3d(1, 1, 1), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 2, 0), KrGeVector3d(0, -1, 3));
  std::vector<KrGePoint3d> corners;
  for (int k = 0; k < 8; ++k) corners.push_back(at(block, k & 1, (k >> 1) & 1, (k >> 2) & 1));
  KrGeBoundBlock3d box(block);
  box.setToBox(true);
  ASSERT_TRUE(box.isBox());
  for (const KrGePoint3d& corner : corners) EXPECT_TRUE(box.contains(corner));
  KrGePoint3d low, high, low2, high2;
  box.getMinMaxPoints(low, high);
  block.getMinMaxPoints(low2, high2);
  EXPECT_EQ(low.distanceTo(low2) + high.distanceTo(high2), 0.0);
  EXPECT_EQ(low.x, 0.0);
  EXPECT_EQ(high.y, 4.0);

  box.setToBox(false);
  EXPECT_FALSE(box.isBox());
  box.getMinMaxPoints(low2, high2);
  EXPECT_EQ(low.distanceTo(low2) + high.distanceTo(high2), 0.0);
}

TEST(KrGeBoundBlock3d, Identity_KinshipCopiesAndEquality) {
  const KrGeBoundBlock3d block(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  EXPECT_EQ(block.type(), KrGe::kBoundBlock3d);
  EXPECT_TRUE(block.isKindOf(KrGe::kBoundBlock3d));
  EXPECT_TRUE(block.isKindOf(KrGe::kEntity3d));
  EXPECT_FALSE(block.isKindOf(KrGe::kCurve3d));
  std::unique_ptr<KrGeEntity3d> copy(block.copy());
  ASSERT_EQ(copy->type(), KrGe::kBoundBlock3d);
  EXPECT_TRUE(*copy == block);
  copy->scaleBy(2.0);
  EXPECT_TRUE(*copy != block);
  KrGeBoundBlock3d assigned;
  assigned = block;
  EXPECT_TRUE(assigned == block);
  assigned.swell(1.0);
  EXPECT_FALSE(assigned == block);
  EXPECT_TRUE(KrGeBoundBlock3d() == KrGeBoundBlock3d());
  EXPECT_FALSE(KrGeBoundBlock3d() == block);
  KrGeBoundBlock3d parallelepiped(block);
  parallelepiped.setToBox(false);
  EXPECT_FALSE(parallelepiped == block);  // another kind of block, though the same solid
  EXPECT_FALSE(block.isEqualTo(KrGeLineSeg3d()));
}

TEST(KrGeBoundBlock3d, CurveBlocks_ContainTheirCurve) {
  const KrGeLineSeg3d segment(KrGePoint3d(1e6, -3, 2), KrGePoint3d(-4, 5e5, 9));
  const KrGeBoundBlock3d block = segment.boundBlock();
  const KrGeBoundBlock3d box = segment.orthoBoundBlock();
  EXPECT_TRUE(box.isBox());
  for (int k = 0; k <= 10; ++k) {
    EXPECT_TRUE(block.contains(segment.evalPoint(k / 10.0)));
    EXPECT_TRUE(box.contains(segment.evalPoint(k / 10.0)));
  }
}
