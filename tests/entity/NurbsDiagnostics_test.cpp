// The reports of the spline base and the NURBS curve through the real monitor: every site with
// its exact expression, source and line, each once per process although every call is made
// twice. The calls run before any test, so that no other test has used a site first.
#include "testkit/TestKit.h"

#include "KrGeNurbCurve3d.h"

namespace {

const char* const kNurbs = "KrNurbCurve3dImpl";
const char* const kSpline = "krsent3d";
const char* const kNotImpl = "(((HRESULT)0x80004001L))";

std::vector<testkit::Record> gRecords;

struct NurbsCallsEnvironment : ::testing::Environment {
  void SetUp() override {
    gRecords = testkit::recordsOf([] {
      for (int round = 0; round < 2; ++round) {
        KrsArray<KrGePoint3d> points, fit;
        points.Add(KrGePoint3d(0, 0, 0));
        points.Add(KrGePoint3d(1, 0, 0));
        KrsArray<KrGeVector3d> tangents;
        const double knots[] = {0, 0, 1, 1};
        const KrGeKnotVector kv(4, knots);
        KrGeNurbCurve3d stored(1, kv, points);
        KrGeNurbCurve3d fit1(points, KrGeTol());
        KrGeNurbCurve3d fit2(points, tangents, KrGeTol());
        KrGeNurbCurve3d fit3(points, KrGeVector3d::kXAxis, KrGeVector3d::kXAxis, true, true, KrGeTol());
        KrGeNurbCurve3d curve;
        KrGePoint3d point;
        KrGeVector3d a, b;
        bool f1 = false, f2 = false, f3 = false;
        KrGeTol tol;
        int degree = 0;
        KrGeKnotVector outKnots;
        KrsArray<double> weights, params;
        curve.getFitPointAt(3, point);
        curve.getFitTolerance(tol);
        curve.getFitTangents(a, b);
        curve.getFitTangents(a, b, f1, f2);
        curve.getFitData(fit, tol, f1, a, b);
        curve.getDefinitionData(degree, f1, f2, outKnots, points, weights);
        curve.weightAt(-1);
        curve.evalMode();
        curve.getParamsOfC1Discontinuity(params);
        curve.getParamsOfG1Discontinuity(params);
        curve.setFitPointAt(0, point);
        curve.addFitPointAt(0, point);
        curve.deleteFitPointAt(0);
        curve.setFitTolerance();
        curve.setFitTangents(a, b);
        curve.setFitTangents(a, b, f1, f3);
        curve.setFitData(fit, a, b);
        curve.setFitData(outKnots, fit, a, b);
        curve.setFitData(3, fit);
        curve.setWeightAt(5, 2.0);
        curve.setEvalMode().joinWith(stored).hardTrimByParams(0, 1).makeRational().makeClosed();
        curve.makePeriodic().makeNonPeriodic().makeOpen();
        KrGeNurbCurve3d(curve).elevateDegree(-1);
        curve.basisValue(0.5, 0, 0);
        curve.basisValue(0.5, 7, 2);
        KrsArray<void*> offsets;
        curve.getTrimmedOffset(1.0, KrGeVector3d::kZAxis, offsets);
        KrsArray<KrGeVector3d> derivatives;
        curve.evalPoint(0.5, INT_MAX, derivatives);
        KrsArray<KrGePoint3d> samples;
        curve.getSamplePoints(INT_MAX, samples);
        curve.isRational();
        curve.degree();
        curve.order();
        curve.numKnots();
        curve.knots();
        curve.numControlPoints();
        curve.continuityAtKnot(0);
        curve.startParam();
        curve.endParam();
        curve.startPoint();
        curve.endPoint();
        curve.hasFitData();
        curve.knotAt(0);
        curve.setKnotAt(0, 1.0);
        curve.controlPointAt(0);
        curve.setControlPointAt(0, point);
        static_cast<KrGeSplineEnt3d&>(curve) = static_cast<const KrGeSplineEnt3d&>(stored);
      }
    });
  }
};

const auto* const kCalls = ::testing::AddGlobalTestEnvironment(new NurbsCallsEnvironment);

int count(const std::string& expression, const char* source, int line) {
  return testkit::countMessage(gRecords, testkit::assertionText(expression, source, line));
}

}  // namespace

TEST(NurbsDiagnostics, EverySiteReportsItsTextOnce) {
  ASSERT_NE(kCalls, nullptr);
  ASSERT_TRUE(testkit::MonitorCapture::active());
  const struct {
    const char* expression;
    const char* source;
    std::vector<int> lines;
  } rows[] = {
      {kNotImpl, kNurbs, {275, 370, 398, 364, 454, 460, 470, 481, 493, 509, 515, 521, 529, 536, 543, 549, 558, 568,
                          578, 590, 600, 672, 678, 684, 690, 696, 702, 708, 714, 760}},
      {"(index < 0 || index >= mFitPoints.GetCount())", kNurbs, {447}},
      {"(idx < 0 || idx >= mWeights.GetCount())", kNurbs, {503, 665}},
      {"(index < 0 || index >= mWeights.GetCount())", kNurbs, {527}},
      {"(plusDegree < 0)", kNurbs, {720}},
      {"(nDegree <= 0)", kNurbs, {780}},
      {"(((HRESULT)0x80004005L))", kNurbs, {784}},
      {kNotImpl, kSpline, {12, 18, 24, 30, 36, 43, 49, 55, 61, 67, 73, 79, 85, 91, 97, 103, 109}},
  };
  int expected = 0;
  for (const auto& row : rows)
    for (int line : row.lines) {
      EXPECT_EQ(count(row.expression, row.source, line), 1) << row.expression << " " << row.source << ":" << line;
      ++expected;
    }
  // The caps of hostile counts are warnings, sent on every call.
  for (const char* text : {"KrNurbCurve3dImpl::evalPoint - numDeriv above 1048576, 1048576 used",
                           "KrNurbCurve3dImpl::getSamplePoints - numSamples above 1048576, 1048576 used"}) {
    EXPECT_EQ(testkit::countMessage(gRecords, testkit::warningText(text)), 2) << text;
    expected += 2;
  }
  EXPECT_EQ(static_cast<int>(gRecords.size()), expected);
}

// The fit-point constructors report in their own order.
TEST(NurbsDiagnostics, FitConstructorsReportInOrder) {
  std::vector<unsigned> lines;
  for (const testkit::Record& record : gRecords)
    if (record.source == kNurbs && (record.line == 370 || record.line == 398 || record.line == 364))
      lines.push_back(record.line);
  EXPECT_EQ(lines, (std::vector<unsigned>{370, 398, 364}));
}
