// The entity frame: ownership and copying of implementations, assignment across kinds,
// kinship, equality, derived transformations and allocation.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <vector>

#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"
#include "entity/core/KrEnt3dImpl.h"
#include "tests/entity/LinearTestKit.h"

using testkit::MonitorCapture;

namespace {

const KrGePoint3d kP(1, 2, 3);
const KrGePoint3d kQ(4, -2, 7);

TEST(KrGeEntity3d, CopyConstructor_IsDeepAndIndependent) {
  KrGeLineSeg3d original(kP, kQ);
  KrGeLineSeg3d copy(original);
  EXPECT_NE(KrEnt3dImpl::implOf(copy), KrEnt3dImpl::implOf(original));
  copy.translateBy(KrGeVector3d(10, 0, 0));
  EXPECT_EQ(original.startPoint(), kP);
  EXPECT_EQ(copy.startPoint(), kP + KrGeVector3d(10, 0, 0));
}

TEST(KrGeEntity3d, Copy_MakesTheConcreteClassOfTheKind) {
  const KrGeLine3d line(kP, kQ);
  const KrGeLineSeg3d segment(kP, kQ);
  KrGeEntity3d* lineCopy = line.copy();
  KrGeEntity3d* segmentCopy = segment.copy();
  ASSERT_NE(dynamic_cast<KrGeLine3d*>(lineCopy), nullptr);
  ASSERT_NE(dynamic_cast<KrGeLineSeg3d*>(segmentCopy), nullptr);
  EXPECT_EQ(lineCopy->type(), KrGe::kLine3d);
  EXPECT_EQ(segmentCopy->type(), KrGe::kLineSeg3d);
  EXPECT_TRUE(lineCopy->isEqualTo(line));
  EXPECT_TRUE(segmentCopy->isEqualTo(segment));
  segmentCopy->translateBy(KrGeVector3d(0, 1, 0));
  EXPECT_FALSE(segmentCopy->isEqualTo(segment));
  delete lineCopy;
  delete segmentCopy;
}

TEST(KrGeEntity3d, EntityAssignment_DeepCopiesAndDetaches) {
  KrGeLineSeg3d target(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 1, 1));
  KrGeLineSeg3d source(kP, kQ);
  source.setInterval(KrGeInterval(-2.0, 3.0));
  KrGeEntity3d& targetRef = target;
  targetRef = static_cast<const KrGeEntity3d&>(source);
  EXPECT_TRUE(target.isEqualTo(source));
  EXPECT_NE(KrEnt3dImpl::implOf(target), KrEnt3dImpl::implOf(source));
  EXPECT_NE(KrEnt3dImpl::implOf(target), nullptr);
  source.rotateBy(1.0, KrGeVector3d::kZAxis);
  EXPECT_EQ(target.startPoint(), KrGePoint3d(kP.x, kP.y, kP.z) + (kQ - kP) * -2.0);
}

TEST(KrGeEntity3d, EntityAssignmentAcrossTypes_ChangesNothingAndReports) {
  ASSERT_TRUE(MonitorCapture::active());
  KrGeLineSeg3d segment(kP, kQ);
  const KrGeLineSeg3d before(segment);
  const KrGeLine3d line(KrGePoint3d(5, 5, 5), KrGeVector3d(0, 1, 0));
  MonitorCapture::clear();
  static_cast<KrGeEntity3d&>(segment) = static_cast<const KrGeEntity3d&>(line);
  const auto records = MonitorCapture::drain();
  EXPECT_TRUE(segment.isEqualTo(before));
  EXPECT_EQ(segment.type(), KrGe::kLineSeg3d);
  EXPECT_EQ(testkit::countMessage(records, testkit::assertionText("(type() != entity.type())", "krend3d", 37)), 1);
}

TEST(KrGeEntity3d, ClassTypedAssignmentAcrossTypes_ChangesNothingAndReports) {
  KrGeLineSeg3d segment(kP, kQ);
  const KrGeLineSeg3d before(segment);
  const KrGeLine3d line(KrGePoint3d(5, 5, 5), KrGeVector3d(0, 1, 0));
  MonitorCapture::clear();
  static_cast<KrGeLinearEnt3d&>(segment) = static_cast<const KrGeLinearEnt3d&>(line);
  const auto records = MonitorCapture::drain();
  EXPECT_TRUE(segment.isEqualTo(before));
  EXPECT_EQ(testkit::countMessage(records, testkit::assertionText("(type() != entImpl.type())", "KrLinearEnt3dImpl", 73)), 1);
}

TEST(KrGeEntity3d, ConcreteAssignment_CopiesInPlace) {
  KrGeLine3d target;
  KrGeLine3d source(kP, kQ);
  const KrEnt3dImpl* impl = KrEnt3dImpl::implOf(target);
  target = source;
  EXPECT_EQ(KrEnt3dImpl::implOf(target), impl);  // the implementation is assigned, not replaced
  EXPECT_TRUE(target.isEqualTo(source));
  source.translateBy(KrGeVector3d(1, 0, 0));
  EXPECT_FALSE(target.isEqualTo(source));
}

TEST(KrGeEntity3d, SelfAssignment_ThroughEveryOperatorLeavesTheObject) {
  KrGeLineSeg3d segment(kP, kQ);
  const KrGeLineSeg3d before(segment);
  const KrEnt3dImpl* impl = KrEnt3dImpl::implOf(segment);
  KrGeLineSeg3d& alias = segment;
  segment = alias;
  static_cast<KrGeLinearEnt3d&>(segment) = static_cast<const KrGeLinearEnt3d&>(alias);
  static_cast<KrGeCurve3d&>(segment) = static_cast<const KrGeCurve3d&>(alias);
  static_cast<KrGeEntity3d&>(segment) = static_cast<const KrGeEntity3d&>(alias);
  EXPECT_EQ(KrEnt3dImpl::implOf(segment), impl);
  EXPECT_TRUE(segment.isEqualTo(before));
}

TEST(KrGeEntity3d, KindOf_IsTheFixedListOfEachClass) {
  const int ids[] = {1, 3, 5, 7, 11, 15, 17, 19, 21, 23, 24, 25, 28, 41, 42, 47, 60, 62};
  const KrGeLine3d line;
  const KrGeLineSeg3d segment;
  const KrGePlane plane;
  struct Row {
    const char* name;
    const KrGeEntity3d* entity;
    std::vector<int> kinds;
  } rows[] = {{"line", &line, {19, 21, 15, 1}}, {"segment", &segment, {23, 21, 15, 1}}, {"plane", &plane, {25, 24, 28, 1}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_TRUE(row.entity->isKindOf(row.entity->type()));
    for (int id : ids) {
      const bool expected = std::find(row.kinds.begin(), row.kinds.end(), id) != row.kinds.end();
      EXPECT_EQ(row.entity->isKindOf(static_cast<KrGe::EntityId>(id)), expected) << "id " << id;
    }
  }
}

TEST(KrGeEntity3d, Equality_UsesTheGlobalToleranceAndNeverCrossesTypes) {
  const KrGeLineSeg3d a(kP, kQ);
  const KrGeLineSeg3d near(kP + KrGeVector3d(5e-11, 0, 0), kQ + KrGeVector3d(5e-11, 0, 0));
  const KrGeLineSeg3d apart(kP + KrGeVector3d(3e-10, 0, 0), kQ + KrGeVector3d(3e-10, 0, 0));
  EXPECT_TRUE(a == near);
  EXPECT_FALSE(a != near);
  EXPECT_FALSE(a == apart);
  EXPECT_TRUE(a != apart);
  EXPECT_TRUE(a.isEqualTo(apart, KrGeTol()));  // 1e-9 default tolerance
  const KrGeLine3d line(kP, kQ);
  EXPECT_FALSE(a == line);
  EXPECT_TRUE(a != line);
  KrGeLineSeg3d otherRange(kP, kQ);
  otherRange.setInterval(KrGeInterval(0.0, 2.0));
  EXPECT_FALSE(a == otherRange);
}

TEST(KrGeEntity3d, DerivedTransformations_EqualTransformByTheirMatrix) {
  const KrGePlane mirrorPlane(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 1, 0));
  struct Row {
    const char* name;
    void (*apply)(KrGeEntity3d&);
    KrGeMatrix3d matrix;
  } rows[] = {
      {"translate", [](KrGeEntity3d& e) { e.translateBy(KrGeVector3d(1, 2, 3)); },
       KrGeMatrix3d::translation(KrGeVector3d(1, 2, 3))},
      {"rotate", [](KrGeEntity3d& e) { e.rotateBy(0.7, KrGeVector3d(1, 1, 0), KrGePoint3d(1, 0, 0)); },
       KrGeMatrix3d::rotation(0.7, KrGeVector3d(1, 1, 0), KrGePoint3d(1, 0, 0))},
      {"scale", [](KrGeEntity3d& e) { e.scaleBy(2.5, KrGePoint3d(0, 1, 0)); },
       KrGeMatrix3d::scaling(2.5, KrGePoint3d(0, 1, 0))},
      {"mirror", [](KrGeEntity3d& e) { e.mirror(KrGePlane(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 1, 0))); },
       KrGeMatrix3d::mirroring(mirrorPlane)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    KrGeLineSeg3d derived(kP, kQ);
    KrGeLineSeg3d direct(kP, kQ);
    row.apply(derived);
    direct.transformBy(row.matrix);
    EXPECT_TRUE(derived.isEqualTo(direct, KrGeTol()));
    EXPECT_FALSE(derived.isEqualTo(KrGeLineSeg3d(kP, kQ), KrGeTol()));
  }
}

TEST(KrGeEntity3d, ClassAllocation_ArraysAndPlacementWork) {
  KrGeLineSeg3d* many = new KrGeLineSeg3d[4];
  ASSERT_NE(many, nullptr);
  for (int i = 0; i < 4; ++i) many[i].set(KrGePoint3d(i, 0, 0), KrGePoint3d(i, 1, 0));
  EXPECT_EQ(many[3].endPoint(), KrGePoint3d(3, 1, 0));
  delete[] many;

  alignas(KrGeLine3d) unsigned char storage[sizeof(KrGeLine3d)];
  KrGeLine3d* placed = new (storage) KrGeLine3d(kP, kQ);
  EXPECT_EQ(placed->pointOnLine(), kP);
  placed->~KrGeLine3d();

  KrGeEntity3d* debugForm = new (__FILE__, __LINE__) KrGeLineSeg3d(kP, kQ);
  EXPECT_EQ(debugForm->type(), KrGe::kLineSeg3d);
  delete debugForm;
}

}  // namespace
