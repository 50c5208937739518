// The owner registry of implementations: registration, ownership, never copied, the report when
// an owned implementation is destroyed, and thousands of owners.
#include "entity/core/KrEnt3dImpl.h"

#include "entity/core/KrOwnerRegistry.h"
#include "tests/entity/EntityKit.h"

namespace {

const KrGePoint3d kP(1, 2, 3), kQ(4, -2, 7);

}  // namespace

// setReference inserts or overwrites the flag; copies, assignments and copy() carry nothing over.
TEST(KrEnt3dImpl, Registry_TracksReferencesAndOwnershipAndIsNeverCopied) {
  KrGeLineSeg3d segment(kP, kQ);
  KrEnt3dImpl* impl = KrEnt3dImpl::implOf(segment);
  int ownerA = 0, ownerB = 0;
  EXPECT_FALSE(impl->isReferenced());
  impl->setReference(&ownerA, false);
  EXPECT_TRUE(impl->isReferenced());
  EXPECT_FALSE(impl->isOwned());
  impl->setReference(&ownerB, true);
  EXPECT_TRUE(impl->isOwned());
  KrGeLineSeg3d copied(segment), assigned;
  assigned = segment;
  std::unique_ptr<KrGeEntity3d> made(segment.copy());
  for (const KrGeEntity3d* other : {static_cast<const KrGeEntity3d*>(&copied), static_cast<const KrGeEntity3d*>(&assigned), static_cast<const KrGeEntity3d*>(made.get())}) EXPECT_FALSE(KrEnt3dImpl::implOf(*other)->isReferenced());
  impl->setReference(&ownerB, false);
  EXPECT_FALSE(impl->isOwned());
  EXPECT_TRUE(impl->removeReference(&ownerA));
  EXPECT_FALSE(impl->removeReference(&ownerA));
  EXPECT_TRUE(impl->removeReference(&ownerB));
  EXPECT_FALSE(impl->isReferenced());
}

TEST(KrEnt3dImpl, DestroyingAnOwnedImplementation_ReportsAndStillFrees) {
  auto* segment = new KrGeLineSeg3d(kP, kQ);
  int owner = 0;
  KrEnt3dImpl::implOf(*segment)->setReference(&owner, true);
  const auto records = recordsOf([&] { delete segment; });
  EXPECT_EQ(countMessage(records, assertionText("(isOwned())", "KrEnt3dImpl", 15)), 1);
}

// Keys spread over the 47 buckets and the node blocks are recycled: insert, overwrite, remove
// every other owner, re-insert, and compare with a plain model after each phase.
TEST(KrOwnerRegistry, SurvivesThousandsOfOwners) {
  constexpr int kOwners = 5000;
  std::vector<char> owners(kOwners);
  std::vector<int> model(kOwners, -1);  // -1 absent, else the owned flag
  KrOwnerRegistry registry;
  auto apply = [&](int first, int step, int state) {
    for (int i = first; i < kOwners; i += step) {
      ASSERT_TRUE(state < 0 ? registry.remove(&owners[i]) : registry.set(&owners[i], state == 1));
      model[i] = state;
    }
    unsigned present = 0;
    for (int i = 0; i < kOwners; ++i) {
      bool owned = false;
      ASSERT_EQ(registry.isRegistered(&owners[i], &owned), model[i] >= 0) << i;
      ASSERT_TRUE(model[i] < 0 || owned == (model[i] == 1)) << i;
      present += model[i] >= 0;
    }
    EXPECT_EQ(registry.count(), present);
    EXPECT_EQ(registry.anyOwned(), std::count(model.begin(), model.end(), 1) > 0);
  };
  apply(0, 1, 0);
  apply(4321, kOwners, 1);
  apply(0, 2, -1);
  EXPECT_FALSE(registry.remove(&owners[0]));
  apply(0, 4, 1);
  apply(1, 2, -1);
  apply(0, 4, -1);
  EXPECT_TRUE(registry.isEmpty());
}
