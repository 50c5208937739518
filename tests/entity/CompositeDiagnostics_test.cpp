// Composite curves through the real monitor: assertions, notices and sampling's reports.
#include <functional>
#include <set>

#include "tests/entity/CompositeTestKit.h"

using composite_test::listOf;

namespace {

const char* const kSource = "KrCompositeCurve3dImpl";

// Each assertion site's expected text and line (0: not fixed) with the records of two runs of its
// action; the records of sampling by count; of every announced operation called twice.
struct Site {
  const char* expression;
  int line;
  std::vector<testkit::Record> records;
};
std::vector<Site> gSites;
std::vector<testkit::Record> gSampling, gNotices;

// Every announced operation, each call with outputs of its own.
void callAnnounced(const KrGeCompositeCurve3d& c) {
  const KrGeLineSeg3d o(KrGePoint3d(0, 5, 0), KrGePoint3d(1, 5, 0));
  const KrGeVector3d z(0, 0, 1);
  const KrGePoint3d q(1, 1, 1);
  const std::function<void()> calls[] = {
      [&] { KrGePlane plane; c.isCoplanarWith(o, plane); },
      [&] { KrGePoint3d p; c.projClosestPointTo(o, z, p); },
      [&] { c.projClosestPointTo(q, z); },
      [&] { KrGePointOnCurve3d on; c.getNormalPoint(q, on); },
      [&] { c.project(KrGePlane(), z); },
      [&] { c.paramAtLength(0, 1); },
      [&] { double value; c.area(0, 1, value); },
      [&] { KrGeEntity3d* entity; c.isDegenerate(entity); },
      [&] { KrGe::EntityId id; c.isDegenerate(id); },
      [&] { KrGeCurve3d *a, *b; c.getSplitCurves(1, a, b); },
      [&] { KrGePointOnCurve3d a, b; c.getLocalClosestPoints(o, a, b); },
      [&] { KrGePointOnCurve3d a; c.getLocalClosestPoints(q, a); },
      [&] { KrGePoint3d p; c.closestPointTo(o, p); },
      [&] { c.closestPointTo(q); },
      [&] { KrGeLine3d line; c.isLinear(line); },
      [&] { c.length(0, 1); },
      [&] { KrsArray<void*> curves; KrsArray<int> flags; c.explode(curves, flags); },
      [&] { c.evalPoint(1.0); },
      [&] { int seg; c.globalToLocalParam(1.0, seg); },
      [&] { c.localToGlobalParam(0.5, 0); },
      [&] { c.boundBlock(); },
      [&] { c.orthoBoundBlock(); },
      [&] { KrsArray<KrGePoint3d> points; c.getSamplePoints(3, points); },
      [&] { KrsArray<KrGePoint3d> points; KrsArray<double> params; c.getSamplePoints(0, 1, 0.1, points, params); },
      [&] {
        KrsArray<void*> curves;
        c.getTrimmedOffset(0.5, z, curves, KrGe::kExtend);
        for (int i = 0; i < curves.GetCount(); ++i) delete static_cast<KrGeCurve3d*>(curves[i]);
      },
  };
  for (const auto& call : calls) call();
}

// The first calls happen before any test, so the once-per-process reports are seen in any order.
struct FirstCallsEnvironment : ::testing::Environment {
  void SetUp() override {
    const double nan = testkit::kNaN;
    KrGeCompositeCurve3d chain = composite_test::Chain::of(
        {composite_test::segment({0, 0, 0}, {3, 0, 0}), composite_test::segment({3, 0, 0}, {3, 4, 0})}).curve;
    KrGeCompositeCurve3d empty;
    KrGeLine3d line;
    KrGePlane plane;
    KrsArray<KrGePoint3d> points;
    int seg = 0;
    gNotices = testkit::recordsOf([&] {
      callAnnounced(chain);
      callAnnounced(chain);
    });
    const std::pair<Site, std::function<void()>> sites[] = {
        {{"(nC!=nI)", 1376, {}}, [&] { chain.setCurveList(listOf({&line}), composite_test::flagsOf({0, 0})); }},
        {{"(pC==NULL)", 0, {}}, [&] { chain.setCurveList(listOf({&line, nullptr})); }},
        {{"(!pC->isKindOf(kCurve3d))", 0, {}}, [&] { chain.setCurveList(listOf({&plane})); }},
        {{"(pC->m_pImpl==this)", 0, {}}, [&] { chain.setCurveList(listOf({&chain})); }},
        {{"(nCurves == 0)", 1405, {}}, [&] { empty.globalToLocalParam(1.0, seg); }},
        {{"(nCurves == 0)", 1199, {}}, [&] { empty.length(0, 1); }},
        {{"(segNum < 0 || segNum >= mCurveList.GetCount())", 1442, {}}, [&] { chain.localToGlobalParam(1.0, 2); }},
        {{"(!curveInterval.isBounded())", 196, {}}, [&] { KrGeCompositeCurve3d unbounded(listOf({&line})); }},
        {{"(idxLastCurve>=idxStartCurve)", 1206, {}}, [&] { chain.length(nan, 1.0); }},
        {{"(idxLastCurve>=idxStartCurve)", 558, {}}, [&] { chain.orthoBoundBlock(KrGeInterval(nan, 1.0)); }},
        {{"(((HRESULT)0x80004001L))", 634, {}}, [&] { chain.paramOf(KrGePoint3d(3, 1, 0)); }},
        {{"(pC->m_pImpl->isReferenced())", 49, {}}, [&] {
           auto* kept = new KrGeLineSeg3d();
           auto* owner = new KrGeCompositeCurve3d(listOf({kept}), composite_test::flagsOf({1}));
           KrGeCompositeCurve3d user(listOf({kept}));
           delete owner;
           user.setCurveList(KrsArray<void*>());
           delete kept;
         }},
    };
    for (const auto& site : sites) {
      gSites.push_back(site.first);
      for (int round = 0; round < 2; ++round) {
        const auto records = testkit::recordsOf(site.second);
        gSites.back().records.insert(gSites.back().records.end(), records.begin(), records.end());
      }
    }
    gSampling = testkit::recordsOf([&] {
      for (int n : {1, 0, 2000000, 1, 0, 2000000}) chain.getSamplePoints(n, points);
    });
  }
};

const auto* const kFirstCalls = ::testing::AddGlobalTestEnvironment(new FirstCallsEnvironment);

}  // namespace

// Each site reports once, with its text at the composite's source and line; sampling's error and
// warning go out every time.
TEST(CompositeDiagnostics, Assertions_ExactTextsAndLinesOncePerSite) {
  ASSERT_NE(kFirstCalls, nullptr);
  ASSERT_TRUE(testkit::MonitorCapture::active());
  for (const Site& site : gSites) {
    SCOPED_TRACE(site.expression);
    ASSERT_EQ(site.records.size(), 1u);
    const unsigned line = site.line ? unsigned(site.line) : site.records[0].line;
    EXPECT_EQ(site.records[0].message, testkit::assertionText(site.expression, kSource, int(line)));
    EXPECT_EQ(site.records[0].source, kSource);
    EXPECT_EQ(site.records[0].line, line);
  }
  // "negative count" for 0 and 1 samples and the cap's warning, every time.
  ASSERT_EQ(gSampling.size(), 6u);
  EXPECT_EQ(testkit::countMessage(gSampling, "ERROR(80070057) 'negative count'"), 4);
  EXPECT_EQ(testkit::countMessage(gSampling, testkit::warningText("KrCompositeCurve3dImpl::getSamplePoints - numSample above 1048576, 1048576 used")), 2);
  EXPECT_EQ(gSampling[0].line, 1335u);
}

// 25 operations announce themselves once each, among them these signatures.
TEST(CompositeDiagnostics, Notices_OncePerOperationWithTheirSignatures) {
  const std::string c = "KrCompositeCurve3dImpl::";
  std::set<std::string> notices;
  for (const auto& record : gNotices) {
    if (record.message.rfind("AUTOTEST", 0) != 0) continue;
    EXPECT_TRUE(notices.insert(record.message).second) << record.message;
  }
  EXPECT_EQ(notices.size(), 25u);
  for (const std::string& signature :
       {"double " + c + "globalToLocalParam ( double param, int& segNum ) const",
        "double " + c + "localToGlobalParam(double param, int segNum) const",
        "KrGePoint3d " + c + "evalPoint(double param, int numDeriv, KrGeVector3dArray& derivArray) const",
        "double " + c + "length(double fromParam, double toParam, double tol) const",
        "void " + c + "getSamplePoints by num samples", "void " + c + "getSamplePoints by eps",
        "bool " + c + "explod(...)"})
    EXPECT_EQ(notices.count(testkit::noticeText(signature)), 1u) << signature;
  // The 12 operations not provided report their assertion once each, just before their notice.
  EXPECT_EQ(testkit::countAssertions(gNotices, "(((HRESULT)0x80004001L))"), 12);
  EXPECT_EQ(gNotices[1].message, testkit::assertionText("(((HRESULT)0x80004001L))", kSource, gNotices[1].line));
}
