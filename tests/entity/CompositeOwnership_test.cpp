// Composite curves and the owner registry: who deletes which segment, in every order of
// destruction, what the registry says after copies, and lists that are refused.
#include "entity/core/KrEnt3dImpl.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "tests/entity/CompositeTestKit.h"

namespace {

int gDeaths = 0;
std::set<const void*> gAlive;

// A segment that counts its destructions and knows whether it is alive.
struct Counted : KrGeLineSeg3d {
  Counted() : KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0)) { gAlive.insert(this); }
  ~Counted() override {
    ++gDeaths;
    gAlive.erase(this);
  }
};

KrsArray<void*> listOf(std::initializer_list<KrGeCurve3d*> curves) {
  KrsArray<void*> list;
  for (KrGeCurve3d* curve : curves) list.Add(curve);
  return list;
}

KrsArray<int> flagsOf(std::initializer_list<int> flags) {
  KrsArray<int> list;
  for (int flag : flags) list.Add(flag);
  return list;
}

KrEnt3dImpl& implOf(const KrGeEntity3d& entity) { return *KrEnt3dImpl::implOf(entity); }

}  // namespace

// Each row builds composites over counted segments; for every order of destroying the composites
// the segments die exactly as often as the row says, and the survivors are still valid curves.
TEST(CompositeOwnership, Release_EveryDestructionOrder) {
  struct Row {
    const char* name;
    int segments;
    // Builds the composites over the segments; may touch the lists afterwards.
    std::function<std::vector<std::unique_ptr<KrGeCompositeCurve3d>>(std::vector<Counted*>&)> build;
    std::function<int(const std::vector<int>& order)> deaths;
  } rows[] = {
      {"owned", 2, [](std::vector<Counted*>& s) {
         std::vector<std::unique_ptr<KrGeCompositeCurve3d>> c;
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0], s[1]}), flagsOf({1, 0})));
         return c;
       }, [](const std::vector<int>&) { return 1; }},
      {"owner and user", 1, [](std::vector<Counted*>& s) {
         std::vector<std::unique_ptr<KrGeCompositeCurve3d>> c;
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0]}), flagsOf({1})));
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0]})));
         return c;
       }, [](const std::vector<int>& order) { return order[0] == 1 ? 1 : 0; }},
      {"two owners", 1, [](std::vector<Counted*>& s) {
         std::vector<std::unique_ptr<KrGeCompositeCurve3d>> c;
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0]}), flagsOf({1})));
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0]}), flagsOf({1})));
         return c;
       }, [](const std::vector<int>&) { return 1; }},
      {"nested", 2, [](std::vector<Counted*>& s) {
         std::vector<std::unique_ptr<KrGeCompositeCurve3d>> c;
         auto* inner = new KrGeCompositeCurve3d(listOf({s[0], s[1]}), flagsOf({1, 1}));
         c.emplace_back(new KrGeCompositeCurve3d(listOf({inner, s[1]}), flagsOf({1, 0})));
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0]})));
         return c;
       }, [](const std::vector<int>& order) { return order[0] == 1 ? 2 : 1; }},
      {"listed twice", 1, [](std::vector<Counted*>& s) {
         std::vector<std::unique_ptr<KrGeCompositeCurve3d>> c;
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0], s[0], s[0]}), flagsOf({0, 0, 1})));
         c[0]->reverseParam();
         c.emplace_back(new KrGeCompositeCurve3d(*c[0]));
         return c;
       }, [](const std::vector<int>&) { return 1; }},
      {"relisted", 2, [](std::vector<Counted*>& s) {
         std::vector<std::unique_ptr<KrGeCompositeCurve3d>> c;
         c.emplace_back(new KrGeCompositeCurve3d(listOf({s[0], s[1]}), flagsOf({1, 1})));
         c[0]->setCurveList(listOf({s[1], s[0]}), flagsOf({0, 1}));
         return c;
       }, [](const std::vector<int>&) { return 1; }},
  };
  for (const Row& row : rows) {
    for (const bool reversed : {false, true}) {
      SCOPED_TRACE(std::string(row.name) + (reversed ? ", reversed order" : ""));
      std::vector<Counted*> segments;
      for (int i = 0; i < row.segments; ++i) segments.push_back(new Counted());
      auto composites = row.build(segments);
      std::vector<int> order;
      for (int i = 0; i < int(composites.size()); ++i) order.push_back(i);
      if (reversed) std::reverse(order.begin(), order.end());
      gDeaths = 0;
      for (int index : order) composites[index].reset();
      EXPECT_EQ(gDeaths, row.deaths(order));
      // The survivors are intact and nobody is registered with them any more.
      for (Counted* segment : segments) {
        if (!gAlive.count(segment)) continue;
        EXPECT_FALSE(implOf(*segment).isReferenced());
        EXPECT_DOUBLE_EQ(segment->length(0, 1), 1.0);
        delete segment;
      }
      EXPECT_TRUE(gAlive.empty());
    }
  }
}

// A copy owns copies of the owned segments and shares the others, and the registry of each
// segment says so; assignment does the same and gives the old segments back.
TEST(CompositeOwnership, Copy_OwnsCopiesOfOwnedSegmentsAndSharesTheOthers) {
  auto* owned = new KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0));
  KrGeLineSeg3d shared(KrGePoint3d(1, 0, 0), KrGePoint3d(1, 1, 0));
  const KrGeCompositeCurve3d source(listOf({owned, &shared}), flagsOf({1, 0}));
  const KrGeCompositeCurve3d copied(source);
  std::unique_ptr<KrGeEntity3d> made(source.copy());
  KrGeCompositeCurve3d assigned(listOf({new KrGeLineSeg3d()}), flagsOf({1}));
  assigned = source;
  for (const KrGeEntity3d* copy : {static_cast<const KrGeEntity3d*>(&copied), static_cast<const KrGeEntity3d*>(made.get()),
                                   static_cast<const KrGeEntity3d*>(&assigned)}) {
    KrsArray<void*> list;
    static_cast<const KrGeCompositeCurve3d*>(copy)->getCurveList(list);
    ASSERT_EQ(list.GetCount(), 2);
    EXPECT_NE(list[0], static_cast<void*>(owned));
    EXPECT_TRUE(static_cast<KrGeCurve3d*>(list[0])->isEqualTo(*owned));
    EXPECT_TRUE(implOf(*static_cast<KrGeCurve3d*>(list[0])).isOwned());
    EXPECT_EQ(list[1], static_cast<void*>(&shared));
    EXPECT_TRUE(copy->isEqualTo(source));
  }
  EXPECT_TRUE(implOf(*owned).isOwned());
  EXPECT_TRUE(implOf(shared).isReferenced());
  EXPECT_FALSE(implOf(shared).isOwned());
}

// Refused lists leave the previous list in place: a null pointer, mismatched flag counts, the
// composite itself, a composite that holds it.
TEST(CompositeOwnership, RefusedLists_KeepThePreviousList) {
  KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(3, 0, 0));
  KrGeCompositeCurve3d curve(listOf({&a}));
  KrGeCompositeCurve3d holder(listOf({&curve}));
  const struct {
    const char* name;
    KrsArray<void*> list;
    KrsArray<int> flags;
  } rows[] = {
      {"null", listOf({&a, nullptr}), flagsOf({0, 0})},
      {"counts", listOf({&a, &a, &a}), flagsOf({0, 0})},
      {"itself", listOf({&a, &curve}), flagsOf({0, 0})},
      {"holder", listOf({&holder}), flagsOf({0})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    curve.setCurveList(row.list, row.flags);
    KrsArray<void*> list;
    curve.getCurveList(list);
    ASSERT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list[0], static_cast<void*>(&a));
    EXPECT_DOUBLE_EQ(holder.length(0, 3), 3.0);
  }
}

// Empty chains answer neutral values; an unbounded line adds nothing to the range but keeps its
// place in the mapping; non-finite and huge inputs neither crash nor hang.
TEST(CompositeOwnership, DegenerateInput_NeutralAnswers) {
  const KrGeCompositeCurve3d empty;
  int seg = -1;
  EXPECT_EQ(empty.globalToLocalParam(2.0, seg), 0.0);
  EXPECT_EQ(seg, 0);
  EXPECT_EQ(empty.localToGlobalParam(2.0, 0), 0.0);
  EXPECT_EQ(empty.evalPoint(1.0), KrGePoint3d::kOrigin);
  EXPECT_EQ(empty.length(0, 1), 0.0);
  EXPECT_EQ(empty.closestPointTo(KrGePoint3d(1, 2, 3)), KrGePoint3d::kOrigin);
  EXPECT_TRUE(empty.orthoBoundBlock().isEmpty());
  KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 1, 0));
  KrGeLineSeg3d seg3(KrGePoint3d(0, 0, 0), KrGePoint3d(3, 0, 0));
  const KrGeCompositeCurve3d open(listOf({&seg3, &line}));
  KrGeInterval range;
  open.getInterval(range);
  EXPECT_EQ(range.upperBound(), 3.0);
  EXPECT_EQ(open.globalToLocalParam(10.0, seg), 10.0);
  EXPECT_EQ(seg, 1);
  EXPECT_EQ(open.localToGlobalParam(0.0, 1), 3.0 + 1.7976931348623157e308);
  EXPECT_EQ(open.localToGlobalParam(0.0, 7), open.localToGlobalParam(1.0, 1));
  EXPECT_EQ(open.localToGlobalParam(0.5, -1), 0.0);
  EXPECT_TRUE(std::isnan(open.evalPoint(linear_test::kNaN).x));
  KrsArray<KrGePoint3d> points;
  const composite_test::Chain slot = composite_test::slot();
  slot.curve.getSamplePoints(2147483647, points);
  EXPECT_EQ(points.GetCount(), 1048576);
}
