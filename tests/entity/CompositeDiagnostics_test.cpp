// Composite curves through the real monitor: assertions with their texts, sources and lines once
// per site, the operations not provided, the notices once per operation, sampling's reports.
#include <functional>
#include <map>
#include <set>

#include "tests/entity/CompositeTestKit.h"

using composite_test::listOf;

namespace {

const char* const kSource = "KrCompositeCurve3dImpl";

// The records of each action's two runs, and of every announced operation called twice.
std::map<std::string, std::vector<testkit::Record>> gRecords;
std::vector<testkit::Record> gNotices;

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
    const double nan = linear_test::kNaN;
    KrGeCompositeCurve3d chain = composite_test::Chain::of(
        {composite_test::segment({0, 0, 0}, {3, 0, 0}), composite_test::segment({3, 0, 0}, {3, 4, 0})}).curve;
    KrGeCompositeCurve3d empty;
    KrGeLine3d line;
    KrsArray<KrGePoint3d> points;
    int seg = 0;
    gNotices = linear_test::recordsOf([&] {
      callAnnounced(chain);
      callAnnounced(chain);
    });
    const std::map<std::string, std::function<void()>> actions = {
        {"counts", [&] { chain.setCurveList(listOf({&line}), composite_test::flagsOf({0, 0})); }},
        {"null", [&] { chain.setCurveList(listOf({&line, nullptr})); }},
        {"itself", [&] { chain.setCurveList(listOf({&chain})); }},
        {"empty map", [&] { empty.globalToLocalParam(1.0, seg); }},
        {"empty length", [&] { empty.length(0, 1); }},
        {"segment out of range", [&] { chain.localToGlobalParam(1.0, 2); }},
        {"unbounded", [&] { KrGeCompositeCurve3d unbounded(listOf({&line})); }},
        {"pieces out of order, length", [&] { chain.length(nan, 1.0); }},
        {"pieces out of order, block", [&] { chain.orthoBoundBlock(KrGeInterval(nan, 1.0)); }},
        {"paramOf", [&] { chain.paramOf(KrGePoint3d(3, 1, 0)); }},
        {"kept", [&] {
           auto* kept = new KrGeLineSeg3d();
           auto* owner = new KrGeCompositeCurve3d(listOf({kept}), composite_test::flagsOf({1}));
           KrGeCompositeCurve3d user(listOf({kept}));
           delete owner;
           user.setCurveList(KrsArray<void*>());
           delete kept;
         }},
        {"sampling", [&] {
           chain.getSamplePoints(1, points);
           chain.getSamplePoints(0, points);
           chain.getSamplePoints(2000000, points);
         }},
    };
    for (int round = 0; round < 2; ++round)
      for (const auto& action : actions) {
        const auto records = linear_test::recordsOf(action.second);
        gRecords[action.first].insert(gRecords[action.first].end(), records.begin(), records.end());
      }
  }
};

const auto* const kFirstCalls = ::testing::AddGlobalTestEnvironment(new FirstCallsEnvironment);

}  // namespace

// Each action's only record is its assertion, at the composite's source and the line given; the
// sampling error and warning are sent every time.
TEST(CompositeDiagnostics, Assertions_ExactTextsAndLinesOncePerSite) {
  ASSERT_NE(kFirstCalls, nullptr);
  ASSERT_TRUE(testkit::MonitorCapture::active());
  const struct {
    const char* action;
    const char* expression;
    int line;  // 0: not fixed
  } rows[] = {
      {"counts", "(nC!=nI)", 1376}, {"null", "(pC==NULL)", 0}, {"itself", "(pC->m_pImpl==this)", 0},
      {"empty map", "(nCurves == 0)", 1405}, {"empty length", "(nCurves == 0)", 1199},
      {"segment out of range", "(segNum < 0 || segNum >= mCurveList.GetCount())", 1442},
      {"unbounded", "(!curveInterval.isBounded())", 196},
      {"pieces out of order, length", "(idxLastCurve>=idxStartCurve)", 1206},
      {"pieces out of order, block", "(idxLastCurve>=idxStartCurve)", 558},
      {"paramOf", "(((HRESULT)0x80004001L))", 634}, {"kept", "(pC->m_pImpl->isReferenced())", 49},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.action);
    const auto& records = gRecords[row.action];
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].message, testkit::assertionText(row.expression, kSource, row.line ? row.line : records[0].line));
    EXPECT_EQ(records[0].source, kSource);
  }
  // "negative count" for 0 and 1 samples and the cap's warning, every time.
  const auto& sampling = gRecords["sampling"];
  ASSERT_EQ(sampling.size(), 6u);
  EXPECT_EQ(testkit::countMessage(sampling, "ERROR(80070057) 'negative count'"), 4);
  EXPECT_EQ(testkit::countMessage(sampling, linear_test::warningText("KrCompositeCurve3dImpl::getSamplePoints - numSample above 1048576, 1048576 used")), 2);
  EXPECT_EQ(sampling[0].line, 1335u);
  EXPECT_EQ(sampling[0].source, kSource);
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
    EXPECT_EQ(notices.count(linear_test::noticeText(signature)), 1u) << signature;
  // The 12 operations not provided report their assertion once each, just before their notice.
  EXPECT_EQ(linear_test::countAssertions(gNotices, "(((HRESULT)0x80004001L))"), 12);
  EXPECT_EQ(gNotices[1].message, testkit::assertionText("(((HRESULT)0x80004001L))", kSource, gNotices[1].line));
  EXPECT_EQ(gNotices[2].message.rfind("AUTOTEST not passed for \"KrGePoint3d " + c + "projClosestPointTo(", 0), 0u);
}
