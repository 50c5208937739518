// The owner registry of implementations: registration, ownership, never copied, the report when
// an owned implementation is destroyed, and thousands of owners.
#include <gtest/gtest.h>

#include <vector>

#include "KrGeLineSeg3d.h"
#include "entity/core/KrEnt3dImpl.h"
#include "entity/core/KrOwnerRegistry.h"
#include "testkit/MonitorCapture.h"

using testkit::MonitorCapture;

namespace {

const KrGePoint3d kP(1, 2, 3);
const KrGePoint3d kQ(4, -2, 7);

TEST(KrEnt3dImpl, Registry_TracksReferencesAndOwnership) {
  KrGeLineSeg3d segment(kP, kQ);
  KrEnt3dImpl* impl = KrEnt3dImpl::implOf(segment);
  int ownerA = 0, ownerB = 0;
  EXPECT_FALSE(impl->isReferenced());
  EXPECT_FALSE(impl->isOwned());
  impl->setReference(&ownerA, false);
  EXPECT_TRUE(impl->isReferenced());
  EXPECT_FALSE(impl->isOwned());
  impl->setReference(&ownerB, true);
  EXPECT_TRUE(impl->isOwned());
  impl->setReference(&ownerB, false);  // overwrites the flag
  EXPECT_FALSE(impl->isOwned());
  EXPECT_TRUE(impl->removeReference(&ownerA));
  EXPECT_FALSE(impl->removeReference(&ownerA));
  EXPECT_TRUE(impl->isReferenced());
  EXPECT_TRUE(impl->removeReference(&ownerB));
  EXPECT_FALSE(impl->isReferenced());
}

TEST(KrEnt3dImpl, Registry_IsNeverCopied) {
  KrGeLineSeg3d segment(kP, kQ);
  int owner = 0;
  KrEnt3dImpl::implOf(segment)->setReference(&owner, true);
  const KrGeLineSeg3d copied(segment);
  KrGeLineSeg3d assigned;
  assigned = segment;
  KrGeEntity3d* made = segment.copy();
  EXPECT_FALSE(KrEnt3dImpl::implOf(copied)->isReferenced());
  EXPECT_FALSE(KrEnt3dImpl::implOf(assigned)->isReferenced());
  EXPECT_FALSE(KrEnt3dImpl::implOf(*made)->isReferenced());
  delete made;
  KrEnt3dImpl::implOf(segment)->removeReference(&owner);
}

TEST(KrEnt3dImpl, DestroyingAnOwnedImplementation_ReportsAndStillFrees) {
  auto* segment = new KrGeLineSeg3d(kP, kQ);
  int owner = 0;
  KrEnt3dImpl::implOf(*segment)->setReference(&owner, true);
  MonitorCapture::clear();
  delete segment;
  EXPECT_EQ(testkit::countMessage(MonitorCapture::drain(), testkit::assertionText("(isOwned())", "KrEnt3dImpl", 15)), 1);
}

// Keys are spread over the 47 buckets and the node blocks are recycled: insert, overwrite,
// remove every other owner, re-insert, and compare with a plain model after each phase.
TEST(KrOwnerRegistry, SurvivesThousandsOfOwners) {
  constexpr int kOwners = 5000;
  std::vector<char> owners(kOwners);
  std::vector<int> model(kOwners, -1);  // -1 absent, else the owned flag
  KrOwnerRegistry registry;
  auto check = [&](const char* phase) {
    SCOPED_TRACE(phase);
    unsigned present = 0;
    bool anyOwned = false;
    for (int i = 0; i < kOwners; ++i) {
      bool owned = false;
      const bool registered = registry.isRegistered(&owners[i], &owned);
      ASSERT_EQ(registered, model[i] >= 0) << i;
      if (registered) {
        ASSERT_EQ(owned, model[i] == 1) << i;
        ++present;
        anyOwned = anyOwned || owned;
      }
    }
    EXPECT_EQ(registry.count(), present);
    EXPECT_EQ(registry.anyOwned(), anyOwned);
  };
  for (int i = 0; i < kOwners; ++i) {
    ASSERT_TRUE(registry.set(&owners[i], false));
    model[i] = 0;
  }
  check("inserted");
  ASSERT_TRUE(registry.set(&owners[4321], true));
  model[4321] = 1;
  check("one owned");
  for (int i = 0; i < kOwners; i += 2) {
    ASSERT_TRUE(registry.remove(&owners[i]));
    model[i] = -1;
  }
  EXPECT_FALSE(registry.remove(&owners[0]));
  check("half removed");
  for (int i = 0; i < kOwners; i += 4) {
    ASSERT_TRUE(registry.set(&owners[i], true));
    model[i] = 1;
  }
  check("re-inserted");
  for (int i = 0; i < kOwners; ++i)
    if (model[i] >= 0) registry.remove(&owners[i]);
  EXPECT_TRUE(registry.isEmpty());
  EXPECT_FALSE(registry.anyOwned());
}

}  // namespace
