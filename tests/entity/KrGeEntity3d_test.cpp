// The entity frame: one implementation per facade, assignment across kinds, kinship, equality on
// the global tolerance and the transformations derived from transformBy.
#include "entity/core/KrEnt3dImpl.h"
#include "tests/entity/EntityKit.h"

namespace {

const KrGePoint3d kP(1, 2, 3), kQ(4, -2, 7);

}  // namespace

// The class operator assigns in place, the entity operator replaces the implementation; across
// types nothing changes and both operators report.
TEST(KrGeEntity3d, EveryFacadeOwnsItsImplementationAndAssignmentKeepsTheType) {
  const KrGeLineSeg3d original(kP, kQ), copied(original);
  KrGeLineSeg3d inPlace, replaced;
  const KrEnt3dImpl* before = KrEnt3dImpl::implOf(inPlace);
  inPlace = original;
  static_cast<KrGeEntity3d&>(replaced) = original;
  EXPECT_EQ(KrEnt3dImpl::implOf(inPlace), before);
  for (const KrGeLineSeg3d* other : {&copied, static_cast<const KrGeLineSeg3d*>(&inPlace), static_cast<const KrGeLineSeg3d*>(&replaced)}) {
    EXPECT_NE(KrEnt3dImpl::implOf(*other), KrEnt3dImpl::implOf(original));
    EXPECT_TRUE(other->isEqualTo(original));
  }
  const auto records = recordsOf([&] {
    static_cast<KrGeEntity3d&>(inPlace) = static_cast<const KrGeEntity3d&>(KrGeLine3d::kYAxis);
    static_cast<KrGeLinearEnt3d&>(inPlace) = static_cast<const KrGeLinearEnt3d&>(KrGeLine3d::kYAxis);
  });
  EXPECT_TRUE(inPlace.isEqualTo(original));
  EXPECT_EQ(countMessage(records, assertionText("(type() != entity.type())", "krend3d", 37)), 1);
  EXPECT_EQ(countMessage(records, assertionText("(type() != entImpl.type())", "KrLinearEnt3dImpl", 73)), 1);
}

// A fixed list per class, not a walk of the class tree: a point on a curve is a kind of 3 but not
// of 5, and a plane is a kind of both abstract surface kinds.
TEST(KrGeEntity3d, KindOf_IsTheFixedListOfEachClass) {
  const KrGeLine3d line;
  const KrGeLineSeg3d segment;
  const KrGePlane plane;
  const KrGeBoundBlock3d block;
  const KrGePointEnt3d point;
  const KrGePointOnCurve3d onCurve;
  const KrGeCurveCurveInt3d intersection;
  const struct { const KrGeEntity3d* entity; std::vector<int> kinds; } rows[] = {  // own type first
      {&line, {19, 21, 15, 1}}, {&segment, {23, 21, 15, 1}}, {&plane, {25, 24, 28, 1}}, {&block, {62, 1}},
      {&point, {5, 1}}, {&onCurve, {7, 3, 1}}, {&intersection, {60, 1}}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.entity->type(), row.kinds[0]);
    for (int id : {1, 3, 5, 7, 11, 15, 17, 19, 21, 23, 24, 25, 28, 41, 42, 47, 60, 62})
      EXPECT_EQ(row.entity->isKindOf(KrGe::EntityId(id)), std::count(row.kinds.begin(), row.kinds.end(), id) == 1)
          << row.kinds[0] << " kind of " << id;
  }
}

// == and != are opposites on the global tolerance (equalPoint 1e-10); types and intervals count.
// The derived transformations equal transformBy with their matrix.
TEST(KrGeEntity3d, EqualityAndDerivedTransformations) {
  const KrGeLineSeg3d a(kP, kQ);
  const KrGeVector3d inside(5e-11, 0, 0), outside(3e-10, 0, 0);
  EXPECT_TRUE(a == KrGeLineSeg3d(kP + inside, kQ + inside));
  EXPECT_FALSE(a != KrGeLineSeg3d(kP + inside, kQ + inside));
  EXPECT_FALSE(a == KrGeLineSeg3d(kP + outside, kQ + outside));
  EXPECT_TRUE(a.isEqualTo(KrGeLineSeg3d(kP + outside, kQ + outside), KrGeTol()));  // 1e-9 by default
  KrGeLineSeg3d otherRange(kP, kQ);
  otherRange.setInterval(KrGeInterval(0.0, 2.0));
  EXPECT_TRUE(a != KrGeLine3d(kP, kQ));
  EXPECT_TRUE(a != otherRange);
  const KrGePlane mirrorPlane(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 1, 0));
  const KrGeVector3d v(1, 2, 3);
  const KrGeMatrix3d matrices[] = {KrGeMatrix3d::translation(v), KrGeMatrix3d::rotation(0.7, v, kQ),
                                   KrGeMatrix3d::scaling(2.5, kQ), KrGeMatrix3d::mirroring(mirrorPlane)};
  for (int i = 0; i < 4; ++i) {
    KrGeLineSeg3d derived(kP, kQ), direct(kP, kQ);
    KrGeEntity3d& entity = derived;
    i == 0 ? entity.translateBy(v) : i == 1 ? entity.rotateBy(0.7, v, kQ) : i == 2 ? entity.scaleBy(2.5, kQ) : entity.mirror(mirrorPlane);
    EXPECT_TRUE(derived.isEqualTo(direct.transformBy(matrices[i]), KrGeTol())) << i;
    EXPECT_FALSE(derived.isEqualTo(a, KrGeTol())) << i;
  }
  KrGeLineSeg3d* many = new KrGeLineSeg3d[4];  // the class allocation forms
  EXPECT_EQ(many[3].set(kP, kQ).endPoint(), kQ);
  delete[] many;
}
