// Composite curves and the owner registry: release in every order, copies, bad lists and input.
#include "entity/core/KrEnt3dImpl.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "tests/entity/CompositeTestKit.h"

using composite_test::flagsOf;
using composite_test::listOf;
using Composites = std::vector<std::unique_ptr<KrGeCompositeCurve3d>>;

namespace {

std::set<const void*> gAlive;

// A segment that knows whether it is alive.
struct Counted : KrGeLineSeg3d {
  Counted() : KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0)) { gAlive.insert(this); }
  ~Counted() override { gAlive.erase(this); }
};

KrEnt3dImpl& implOf(const void* entity) { return *KrEnt3dImpl::implOf(*static_cast<const KrGeEntity3d*>(entity)); }

KrGeCompositeCurve3d* make(const std::vector<void*>& curves, const std::vector<int>& flags) {
  return new KrGeCompositeCurve3d(listOf(curves), flagsOf(flags));
}

}  // namespace

// Composites over segments s[0], s[1] (and a nested chain); destroyed in both orders, the segments
// left alive are exactly those the row names, unregistered and intact.
TEST(CompositeOwnership, Release_EveryDestructionOrder) {
  const struct {
    const char* name;
    std::function<void(std::vector<Counted*>& s, Composites& c)> build;
    std::set<int> aliveInOrder, aliveInReverse;
  } rows[] = {
      {"owner, then user", [](auto& s, auto& c) { c.emplace_back(make({s[0]}, {1})); c.emplace_back(make({s[0]}, {0})); },
       {0, 1}, {1}},
      {"two owners", [](auto& s, auto& c) { c.emplace_back(make({s[0]}, {1})); c.emplace_back(make({s[0]}, {1})); },
       {1}, {1}},
      {"nested", [](auto& s, auto& c) {
         c.emplace_back(make({make({s[0], s[1]}, {1, 1}), s[1]}, {1, 0}));
         c.emplace_back(make({s[0]}, {0}));
       }, {0}, {}},
      {"listed twice, reversed, copied", [](auto& s, auto& c) {
         c.emplace_back(make({s[0], s[0], s[0]}, {0, 0, 1}));
         c[0]->reverseParam();
         c.emplace_back(new KrGeCompositeCurve3d(*c[0]));
       }, {1}, {1}},
      {"relisted", [](auto& s, auto& c) {
         c.emplace_back(make({s[0], s[1]}, {1, 1}));
         c[0]->setCurveList(listOf({s[1], s[0]}), flagsOf({0, 1}));
       }, {1}, {1}},
  };
  for (const auto& row : rows) {
    for (const bool reverse : {false, true}) {
      SCOPED_TRACE(std::string(row.name) + (reverse ? ", reverse order" : ""));
      std::vector<Counted*> s = {new Counted(), new Counted()};
      Composites c;
      row.build(s, c);
      if (reverse) std::reverse(c.begin(), c.end());
      c.clear();
      for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(gAlive.count(s[i]), (reverse ? row.aliveInReverse : row.aliveInOrder).count(i)) << i;
        if (!gAlive.count(s[i])) continue;
        EXPECT_FALSE(implOf(s[i]).isReferenced());
        delete s[i];
      }
    }
  }
}

// A copy (constructor, assignment) owns copies of the owned segments and shares the others,
// and the registry says so.
TEST(CompositeOwnership, Copy_OwnsCopiesOfOwnedSegmentsAndSharesTheOthers) {
  auto* owned = new KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(1, 0, 0));
  KrGeLineSeg3d shared(KrGePoint3d(1, 0, 0), KrGePoint3d(1, 1, 0));
  const KrGeCompositeCurve3d source(listOf({owned, &shared}), flagsOf({1, 0}));
  const KrGeCompositeCurve3d copied(source);
  const std::unique_ptr<KrGeCompositeCurve3d> assigned(make({new KrGeLineSeg3d()}, {1}));
  *assigned = source;
  for (const KrGeEntity3d* copy : std::vector<const KrGeEntity3d*>{&copied, assigned.get()}) {
    KrsArray<void*> list;
    static_cast<const KrGeCompositeCurve3d*>(copy)->getCurveList(list);
    ASSERT_EQ(list.GetCount(), 2);
    EXPECT_NE(list[0], static_cast<void*>(owned));
    EXPECT_TRUE(implOf(list[0]).isOwned());
    EXPECT_EQ(list[1], static_cast<void*>(&shared));
  }
}

// Refused lists leave the old one; empty chains answer neutral values; an unbounded line adds
// nothing to the range but keeps its place in the mapping; NaN and huge counts are harmless.
TEST(CompositeOwnership, BadInput_RefusedOrNeutral) {
  KrGeLineSeg3d a(KrGePoint3d(0, 0, 0), KrGePoint3d(3, 0, 0));
  KrGeCompositeCurve3d curve(listOf({&a}));
  const KrGeCompositeCurve3d holder(listOf({&curve}));
  const std::pair<KrsArray<void*>, KrsArray<int>> rows[] = {
      {listOf({&a, nullptr}), flagsOf({0, 0})}, {listOf({&a, &a, &a}), flagsOf({0, 0})},
      {listOf({&a, &curve}), flagsOf({0, 0})}, {listOf({const_cast<KrGeCompositeCurve3d*>(&holder)}), flagsOf({0})}};
  for (const auto& row : rows) {
    curve.setCurveList(row.first, row.second);
    KrsArray<void*> list;
    curve.getCurveList(list);
    EXPECT_EQ(list.GetCount() == 1 ? list[0] : nullptr, static_cast<void*>(&a));
    EXPECT_DOUBLE_EQ(holder.length(0, 3), 3.0);
  }
  const KrGeCompositeCurve3d empty;
  int seg = -1;
  EXPECT_EQ(empty.globalToLocalParam(2.0, seg), 0.0);
  EXPECT_EQ(empty.evalPoint(1.0), KrGePoint3d::kOrigin);
  KrGeLine3d line(KrGePoint3d(0, 0, 0), KrGeVector3d(0, 1, 0));
  const KrGeCompositeCurve3d open(listOf({&a, &line}));
  EXPECT_EQ(open.length(0, 3), 3.0);
  EXPECT_EQ(open.globalToLocalParam(10.0, seg), 10.0);
  EXPECT_EQ(seg, 1);
  EXPECT_TRUE(std::isnan(open.evalPoint(testkit::kNaN).x));
  KrsArray<KrGePoint3d> points;
  composite_test::slot().curve.getSamplePoints(2147483647, points);
  EXPECT_EQ(points.GetCount(), 1048576);
}
