// Composite curves through the real monitor: every assertion with its exact text, source and
// line, reported once per site; the not-implemented operations; the once-per-operation notices
// with their signature texts; the error and the warning of sampling by count.
#include <functional>
#include <map>
#include <set>

#include "tests/entity/CompositeTestKit.h"

using composite_test::listOf;

namespace {

const char* const kSource = "KrCompositeCurve3dImpl";
const double kNaN = linear_test::kNaN;

// The records of the first calls, per action, and of every announced operation called twice.
std::map<std::string, std::vector<testkit::Record>> gRecords;
std::vector<testkit::Record> gNotices;

// Every operation that announces itself, called twice on a two-piece chain.
void callAnnounced(const KrGeCompositeCurve3d& chain) {
  const KrGeLineSeg3d other(KrGePoint3d(0, 5, 0), KrGePoint3d(1, 5, 0));
  const KrGeVector3d z(0, 0, 1);
  KrGePoint3d point;
  KrGePointOnCurve3d on1, on2;
  KrGePlane plane;
  KrGeLine3d line;
  KrsArray<void*> curves;
  KrsArray<int> flags;
  KrsArray<KrGePoint3d> points;
  KrsArray<double> params;
  KrGeEntity3d* entity = nullptr;
  KrGe::EntityId id = KrGe::kEntity3d;
  KrGeCurve3d *piece1 = nullptr, *piece2 = nullptr;
  double value = 0;
  int seg = 0;
  chain.isCoplanarWith(other, plane);
  chain.projClosestPointTo(other, z, point);
  chain.projClosestPointTo(point, z);
  chain.getNormalPoint(point, on1);
  delete chain.project(plane, z);
  chain.paramAtLength(0, 1);
  chain.area(0, 1, value);
  chain.isDegenerate(entity);
  chain.isDegenerate(id);
  chain.getSplitCurves(1, piece1, piece2);
  chain.getLocalClosestPoints(other, on1, on2);
  chain.getLocalClosestPoints(point, on1);
  chain.closestPointTo(other, point);
  chain.closestPointTo(point);
  chain.isLinear(line);
  chain.length(0, 1);
  chain.explode(curves, flags);
  chain.evalPoint(1.0);
  chain.globalToLocalParam(1.0, seg);
  chain.localToGlobalParam(0.5, 0);
  chain.boundBlock();
  chain.orthoBoundBlock();
  chain.getSamplePoints(3, points);
  chain.getSamplePoints(0, 1, 0.1, points, params);
  chain.getTrimmedOffset(0.5, z, curves, KrGe::kExtend);
  for (int i = 0; i < curves.GetCount(); ++i) delete static_cast<KrGeCurve3d*>(curves[i]);
}

// The first calls happen before any test, so that the once-per-process reports are seen whatever
// order the tests run in.
struct FirstCallsEnvironment : ::testing::Environment {
  void SetUp() override {
    using linear_test::recordsOf;
    auto* a = new KrGeLineSeg3d(KrGePoint3d(0, 0, 0), KrGePoint3d(3, 0, 0));
    auto* b = new KrGeLineSeg3d(KrGePoint3d(3, 0, 0), KrGePoint3d(3, 4, 0));
    const KrsArray<int> twoFlags = composite_test::flagsOf({1, 1});
    KrGeCompositeCurve3d chain(listOf({a, b}), twoFlags);
    KrGeCompositeCurve3d empty;
    gNotices = recordsOf([&] {
      for (int round = 0; round < 2; ++round) callAnnounced(chain);
    });
    KrsArray<KrGePoint3d> points;
    int seg = 0;
    const std::map<std::string, std::function<void()>> actions = {
        {"counts", [&] { chain.setCurveList(listOf({a}), twoFlags); }},
        {"null", [&] { chain.setCurveList(listOf({a, nullptr})); }},
        {"itself", [&] { chain.setCurveList(listOf({&chain})); }},
        {"empty map", [&] { empty.globalToLocalParam(1.0, seg); }},
        {"empty length", [&] { empty.length(0, 1); }},
        {"segment out of range", [&] { chain.localToGlobalParam(1.0, 2); }},
        {"unbounded", [&] { KrGeLine3d line; KrGeCompositeCurve3d(listOf({&line})); }},
        {"reversed pieces, length", [&] { chain.length(kNaN, 1.0); }},
        {"reversed pieces, block", [&] { chain.orthoBoundBlock(KrGeInterval(kNaN, 1.0)); }},
        {"paramOf", [&] { chain.paramOf(KrGePoint3d(3, 1, 0)); }},
        {"kept", [&] {
           KrGeLineSeg3d* c = new KrGeLineSeg3d();
           auto* owner = new KrGeCompositeCurve3d(listOf({c}), composite_test::flagsOf({1}));
           KrGeCompositeCurve3d user(listOf({c}));
           delete owner;
           user.setCurveList(KrsArray<void*>());
           delete c;
         }},
        {"sampling", [&] {
           chain.getSamplePoints(1, points);
           chain.getSamplePoints(0, points);
           chain.getSamplePoints(2000000, points);
         }},
    };
    for (int round = 0; round < 2; ++round)
      for (const auto& action : actions) {
        auto records = recordsOf(action.second);
        gRecords[action.first].insert(gRecords[action.first].end(), records.begin(), records.end());
      }
  }
};

const auto* const kFirstCalls = ::testing::AddGlobalTestEnvironment(new FirstCallsEnvironment);

// The only record of `name` is the assertion `expression` at `line` of the composite's source.
void expectOnlyAssertion(const std::string& name, const std::string& expression, int line) {
  SCOPED_TRACE(name);
  const auto& records = gRecords[name];
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, testkit::assertionText(expression, kSource, line));
  EXPECT_EQ(records[0].source, kSource);
  EXPECT_EQ(records[0].line, unsigned(line));
}

}  // namespace

TEST(CompositeDiagnostics, Assertions_ExactTextsAndLinesOncePerSite) {
  ASSERT_NE(kFirstCalls, nullptr);
  ASSERT_TRUE(testkit::MonitorCapture::active());
  expectOnlyAssertion("counts", "(nC!=nI)", 1376);
  expectOnlyAssertion("empty length", "(nCurves == 0)", 1199);
  expectOnlyAssertion("segment out of range", "(segNum < 0 || segNum >= mCurveList.GetCount())", 1442);
  expectOnlyAssertion("unbounded", "(!curveInterval.isBounded())", 196);
  expectOnlyAssertion("reversed pieces, length", "(idxLastCurve>=idxStartCurve)", 1206);
  expectOnlyAssertion("reversed pieces, block", "(idxLastCurve>=idxStartCurve)", 558);
  expectOnlyAssertion("paramOf", "(((HRESULT)0x80004001L))", 634);
  expectOnlyAssertion("kept", "(pC->m_pImpl->isReferenced())", 49);
  for (const char* name : {"null", "itself", "empty map"}) EXPECT_EQ(gRecords[name].size(), 1u) << name;
  EXPECT_EQ(linear_test::countAssertions(gRecords["null"], "(pC==NULL)"), 1);
  EXPECT_EQ(linear_test::countAssertions(gRecords["itself"], "(pC->m_pImpl==this)"), 1);
  EXPECT_EQ(testkit::countMessage(gRecords["empty map"], testkit::assertionText("(nCurves == 0)", kSource, 1405)), 1);
}

// "negative count" for 0 and 1 samples, every time; the cap's warning, every time.
TEST(CompositeDiagnostics, SamplingByCount_ErrorAndCapEveryTime) {
  const auto& records = gRecords["sampling"];
  EXPECT_EQ(testkit::countMessage(records, "ERROR(80070057) 'negative count'"), 4);
  EXPECT_EQ(testkit::countMessage(
                records, linear_test::warningText(
                             "KrCompositeCurve3dImpl::getSamplePoints - numSample above 1048576, 1048576 used")),
            2);
  for (const auto& record : records) EXPECT_EQ(record.source, kSource);
  EXPECT_EQ(records[0].line, 1335u);
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
