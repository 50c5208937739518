// Bounding blocks: boxes and parallelepipeds, containment on both sides of the tolerance, growth,
// disjointness, transformation and the switch between the two kinds.
#include "tests/entity/EntityKit.h"

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

::testing::AssertionResult minMaxAre(const KrGeBoundBlock3d& block, const KrGePoint3d& low, const KrGePoint3d& high, double tol = 0.0) {
  KrGePoint3d blockLow, blockHigh;
  block.getMinMaxPoints(blockLow, blockHigh);
  const auto lowCheck = within(blockLow, low, tol);
  return lowCheck ? within(blockHigh, high, tol) : lowCheck;
}

}  // namespace

// An empty block holds nothing and stays empty under swell and transformation; the first extend
// makes it a point. Two corners in any order give the same box, whose faces count the tolerance
// as inside.
TEST(KrGeBoundBlock3d, EmptyBlockCornersAndBoxContainment) {
  KrGeBoundBlock3d block;
  EXPECT_TRUE(block.isEmpty());
  EXPECT_FALSE(block.contains(KrGePoint3d()));
  EXPECT_TRUE(block.isDisjoint(KrGeBoundBlock3d(KrGePoint3d(-1, -1, -1), KrGePoint3d(1, 1, 1))));
  block.swell(5.0).transformBy(KrGeMatrix3d::scaling(2.0));
  EXPECT_TRUE(block.isEmpty());
  block.extend(KrGePoint3d(1, 2, 3));
  EXPECT_TRUE(block.contains(KrGePoint3d(1, 2, 3)));
  EXPECT_FALSE(block.contains(KrGePoint3d(1, 2, 3 + 2 * kTol)));
  const KrGeBoundBlock3d box(KrGePoint3d(4, -1, 2), KrGePoint3d(1, 3, -2));
  EXPECT_TRUE(minMaxAre(box, KrGePoint3d(1, -1, -2), KrGePoint3d(4, 3, 2)));
  const KrGeBoundBlock3d unit(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 2, 3));
  const struct { KrGePoint3d point; bool inside; } rows[] = {
      {{0.5, 1, 1.5}, true}, {{1 + kTol, 1, 1}, true}, {{1 + 3 * kTol, 1, 1}, false}, {{0, 0, -kTol}, true},
      {{0, 0, -3 * kTol}, false}, {{kNaN, 1, 1}, false}, {{kInf, 1, 1}, false}, {{1, 2, 3}, true}};
  for (const auto& row : rows) EXPECT_EQ(unit.isOn(row.point), row.inside) << row.point.x << " " << row.point.z;  // isOn is contains
}

// Inside at its own parameters and on its faces; out 1e-6 past a face along the face normal. A
// box grows to hold every point, a parallelepiped along its own directions; non-finite points
// are ignored.
TEST(KrGeBoundBlock3d, ParallelepipedContainsItsParametersAndExtendKeepsTheDirections) {
  repeat(61, 300, [](Random& random, int) {
    const KrGeVector3d d1 = random.vector(-2, 2), side = d1.crossProduct(random.unitVector()).normal();
    const double angle = random.uniform(0.2, 2.9);  // between d1 and d2
    const KrGeVector3d d2 = (d1.normal() * std::cos(angle) + side * std::sin(angle)) * std::fabs(random.logUniform(-2, 2));
    const KrGeVector3d d3 = random.vector(-2, 2);
    if (std::fabs(d1.crossProduct(d2).dotProduct(d3)) < 1e-3 * d1.length() * d2.length() * d3.length()) return;
    const KrGeBoundBlock3d block(random.point(100), d1, d2, d3);
    const double s1 = random.uniform(0, 1), s2 = random.uniform(0, 1), s3 = random.uniform(0, 1);
    EXPECT_FALSE(block.isBox());
    EXPECT_TRUE(block.contains(at(block, s1, s2, s3)));
    EXPECT_TRUE(block.contains(at(block, 1, 0, 1)));
    EXPECT_TRUE(block.contains(at(block, 1, s2, s3) - d1 * 1e-6));
    EXPECT_FALSE(block.contains(at(block, 1, s2, s3) + faceNormal(d2, d3, d1) * 1e-6));
  });
  repeat(62, 100, [](Random& random, int) {
    const double scale = std::fabs(random.logUniform(-6, 12));
    KrGeBoundBlock3d box, parallelepiped(random.point(scale), random.unitVector() * scale, random.unitVector() * scale, random.unitVector() * scale);
    for (int k = 0; k < 20; ++k) {
      const KrGePoint3d point = random.point(scale * 3);
      EXPECT_TRUE(box.extend(point).contains(point));
      EXPECT_TRUE(parallelepiped.extend(point).contains(point));
    }
    EXPECT_TRUE(box.isBox());
  });
  KrGeBoundBlock3d block(KrGePoint3d(), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 1, 0), KrGeVector3d(0, 0, 1));
  block.extend(KrGePoint3d(0, 3, 0.5));  // to parameters (1.5, 1.5, 0.5)
  KrGePoint3d base;
  KrGeVector3d d1, d2, d3;
  block.get(base, d1, d2, d3);
  EXPECT_TRUE(within(d1, KrGeVector3d(1.5, 1.5, 0), 1e-13));
  EXPECT_TRUE(within(d2, KrGeVector3d(-1.5, 1.5, 0), 1e-13));
  EXPECT_TRUE(within(base, KrGePoint3d(), 0.0));
  EXPECT_FALSE(block.contains(KrGePoint3d(3, 0.1, 0)));  // inside its axis-aligned box, outside itself
  const KrGeBoundBlock3d before(block);
  EXPECT_TRUE(block.extend(KrGePoint3d(kNaN, 0, 0)).extend(KrGePoint3d(0, kInf, 0)).isEqualTo(before, KrGeTol()));
}

// Every face moves by the distance along its own normal; a side that would invert collapses onto
// its middle; NaN and infinite distances are ignored; a flat block thickens along its normal.
TEST(KrGeBoundBlock3d, Swell_MovesEveryFaceByTheDistanceAndNeverInverts) {
  KrGeBoundBlock3d box(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 2, 1));
  box.swell(0.5).swell(-1.25).swell(kNaN).swell(kInf);
  EXPECT_TRUE(minMaxAre(box, KrGePoint3d(0.75, 0.75, 0.5), KrGePoint3d(3.25, 1.25, 0.5)));
  const KrGeVector3d d1(2, 0, 0), d2(1, 1.5, 0);
  repeat(63, 100, [&](Random& random, int) {
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
  EXPECT_TRUE(flat.contains(middle - normal * 0.999e-3));
  EXPECT_FALSE(flat.contains(middle + normal * 1.001e-3));
}

// Unit boxes side by side, 1e-6 or half the tolerance apart, as boxes and moved rigidly; thin
// slabs, sticks and points.
TEST(KrGeBoundBlock3d, IsDisjoint_SeparatedOnlyByMoreThanTheTolerance) {
  const KrGeBoundBlock3d box(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  repeat(64, 200, [&](Random& random, int i) {
    const KrGeVector3d shift = random.unitVector();
    const bool apart = i % 2 == 0;
    const unsigned axis = shift.largestElement();
    KrGeVector3d offset;
    offset[axis] = (shift[axis] > 0 ? 1 : -1) * (1 + (apart ? 1e-6 : 0.5 * kTol));
    offset[(axis + 1) % 3] = shift[(axis + 1) % 3] * 0.5;
    const KrGeBoundBlock3d other(KrGePoint3d() + offset, KrGePoint3d(1, 1, 1) + offset);
    const KrGeMatrix3d motion = KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(50));
    KrGeBoundBlock3d movedBox(box), movedOther(other);
    movedBox.transformBy(motion);
    movedOther.transformBy(motion);
    ASSERT_FALSE(movedBox.isBox());
    EXPECT_EQ(box.isDisjoint(other), apart);
    EXPECT_EQ(other.isDisjoint(box), apart);
    EXPECT_EQ(movedBox.isDisjoint(movedOther), apart);
    EXPECT_EQ(movedOther.isDisjoint(movedBox), apart);
  });
  const KrGeVector3d none, thin(0, 0, 0.2), alongX(2, 0, 0), alongY(0, 2, 0), x(0.2, 0, 0), y(0, 0.2, 0);
  const double s = std::sqrt(0.5);
  const KrGeBoundBlock3d a(KrGePoint3d(-1, -0.1, -0.1), alongX, y, thin), b(KrGePoint3d(-0.1, -1, 0.15), alongY, x, thin),
      c(KrGePoint3d(-0.1, -1, 0.09), alongY, x, thin), stick1(KrGePoint3d(0, 0, 0), KrGeVector3d(s, s, 0), none, none),
      stick2(KrGePoint3d(s, 0, 1e-3), KrGeVector3d(-s, s, 0), none, none),
      stick3(KrGePoint3d(s, 0, 0.5 * kTol), KrGeVector3d(-s, s, 0), none, none),
      stick4(KrGePoint3d(0, 1e-3, 1e-3), KrGeVector3d(s, s, 0), none, none), point(KrGePoint3d(0.5 * s, 0.5 * s, 0), none, none, none);
  const struct { const char* name; const KrGeBoundBlock3d &first, &second; bool disjoint; } rows[] = {
      {"slabs 0.05 apart", a, b, true}, {"slabs overlapping", a, c, false}, {"sticks 1e-3 apart", stick1, stick2, true},
      {"sticks touching", stick1, stick3, false}, {"parallel sticks", stick1, stick4, true},
      {"point on a stick", stick1, point, false}, {"point beside a stick", stick4, point, true}};
  for (const auto& row : rows) EXPECT_EQ(row.first.isDisjoint(row.second), row.disjoint) << row.name;
}

// Rigid motions round-trip; an axis swap keeps a box; setToBox(true) encloses the parallelepiped
// with the same min-max points and back the solid stays; copies are independent.
TEST(KrGeBoundBlock3d, TransformSetToBoxAndCopies) {
  repeat(65, 100, [](Random& random, int) {
    const double scale = std::fabs(random.logUniform(-3, 6));
    const KrGeBoundBlock3d original(random.point(scale), random.point(scale));
    const KrGeMatrix3d motion = KrGeMatrix3d::rotation(random.uniform(-3, 3), random.unitVector(), random.point(50));
    KrGeBoundBlock3d block(original);
    block.transformBy(motion);
    EXPECT_TRUE(block.contains(motion * at(original, 0.3, 0.6, 0.9)));
    KrGePoint3d low, high;
    original.getMinMaxPoints(low, high);
    block.transformBy(motion.inverse());
    EXPECT_TRUE(minMaxAre(block, low, high, 1e-12 * (scale + 100)));
  });
  KrGeMatrix3d swap;
  swap(0, 0) = swap(1, 1) = 0;
  swap(0, 1) = -2;
  swap(1, 0) = 1;
  KrGeBoundBlock3d box(KrGePoint3d(1, 2, 3), KrGePoint3d(4, 6, 8));
  box.transformBy(swap);
  ASSERT_TRUE(box.isBox());
  EXPECT_TRUE(minMaxAre(box, KrGePoint3d(-12, 1, 3), KrGePoint3d(-4, 4, 8)));
  const KrGeBoundBlock3d block(KrGePoint3d(1, 1, 1), KrGeVector3d(1, 1, 0), KrGeVector3d(-1, 2, 0), KrGeVector3d(0, -1, 3));
  KrGeBoundBlock3d enclosing(block);
  ASSERT_TRUE(enclosing.setToBox(true).isBox());
  for (int k = 0; k < 8; ++k) EXPECT_TRUE(enclosing.contains(at(block, k & 1, (k >> 1) & 1, (k >> 2) & 1))) << k;
  EXPECT_TRUE(minMaxAre(enclosing, KrGePoint3d(0, 0, 1), KrGePoint3d(2, 4, 4)));
  EXPECT_TRUE(minMaxAre(block, KrGePoint3d(0, 0, 1), KrGePoint3d(2, 4, 4)));
  const KrGeBoundBlock3d asBox(enclosing);
  EXPECT_FALSE(enclosing.setToBox(false).isBox());
  EXPECT_TRUE(enclosing != asBox);  // the kinds never compare equal
  std::unique_ptr<KrGeEntity3d> copy(block.copy());
  EXPECT_TRUE(*copy == block);
  EXPECT_TRUE(copy->scaleBy(2.0) != block);
  EXPECT_FALSE(block.isEqualTo(KrGeLineSeg3d()));
}
