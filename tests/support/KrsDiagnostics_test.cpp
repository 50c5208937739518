#include "KrsDiagnostics.h"

#if !defined(_WIN32)
#include "support/ProbeSession.h"
#endif
#include "testkit/MonitorCapture.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using testkit::MonitorCapture;
using testkit::Record;

namespace {

constexpr unsigned kCheckKind = 0x08040100u;
constexpr unsigned kTextKind = 0x0C080100u;

class KrsDiagnosticsTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(MonitorCapture::active());
    MonitorCapture::clear();
  }
  void TearDown() override { KrsSetWarningsEnabled(true); }
};

// Error-return macros inside functions shaped like the implementation classes' methods.
int failingStep() { return static_cast<int>(0x80070057u); }
int succeedingStep() { return 0; }
int retErr() { KRS_RETERR(-1); }
int retErrIf(int value) {
  KRS_RETERRIF(value < 0, 0x80004005u, -2);
  return value;
}
int errRet2() {
  KRS_ERRRET2(succeedingStep(), -4);
  KRS_ERRRET2(failingStep(), -3);
  return 0;
}
int errContinue2() {
  int steps = 0;
  KRS_ERRCONTINUE2(failingStep());
  return ++steps;
}

}  // namespace

TEST_F(KrsDiagnosticsTest, Warning_IsSentEveryTimeWithTheWholeRecord) {
  const int line = __LINE__ + 1;
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(KRS_WARN("degenerated normal, OZ used"));
  EXPECT_TRUE(KRS_WARN_AT("not correct input data", "Vector3d", 256));
  unsigned workerId = 0;
  std::thread worker([&] {
    workerId = testkit::currentThreadId();
    KRS_WARN("from a worker");
  });
  worker.join();
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 4u);
  for (const Record& record : records) {
    EXPECT_EQ(record.kind, kTextKind);
    EXPECT_EQ(record.code, 25790u);
    EXPECT_EQ(record.magic, 1400u);
    EXPECT_EQ(record.processId, testkit::currentProcessId());
    EXPECT_EQ(record.executable, testkit::executableName());
  }
  EXPECT_EQ(records[0].message, "WARNING 'degenerated normal, OZ used'");
  EXPECT_EQ(records[1].message, records[0].message);
  EXPECT_EQ(records[1].source, __FILE__);
  EXPECT_EQ(records[1].line, static_cast<unsigned>(line));
  EXPECT_EQ(records[1].threadId, testkit::currentThreadId());
  EXPECT_EQ(records[2].source, "Vector3d");
  EXPECT_EQ(records[2].line, 256u);
  EXPECT_EQ(records[3].threadId, workerId);
  EXPECT_NE(workerId, testkit::currentThreadId());
}

TEST_F(KrsDiagnosticsTest, Warning_GlobalSwitchSilencesWarningsOnly) {
  KrsSetWarningsEnabled(false);
  EXPECT_FALSE(KRS_WARN("silenced"));
  EXPECT_FALSE(KrsReportWarning(L"silenced", "x", 1));
  EXPECT_EQ(retErr(), -1);  // errors still go out
  KrsSetWarningsEnabled(true);
  EXPECT_TRUE(KRS_WARN("back"));
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].message, "ERROR(8000FFFF) 'RETERR marco'");
  EXPECT_EQ(records[1].message, "WARNING 'back'");
}

// Narrow texts are in the platform's narrow encoding: UTF-8 on POSIX, where a byte that does not
// decode stands for itself, and the ANSI code page on Windows (1252 where the tests run).
TEST_F(KrsDiagnosticsTest, Warning_TextsTravelAsUtf8) {
  const char* utf8 = "Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC, clef \xF0\x9D\x84\x9E";
  KrsReportWarning(L"Gr\u00F6\u00DFe \u20AC, clef \U0001D11E", "src", 1);
#if defined(_WIN32)
  KrsReportWarningA("Gr\xF6\xDF" "e \x80, clef \xF0\x9D", "src", 2);
  const std::string narrow = "WARNING 'Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC, clef \xC3\xB0\xC2\x9D'";
#else
  KrsReportWarningA(utf8, "src", 2);
  const std::string narrow = std::string("WARNING '") + utf8 + "'";
#endif
  KrsReportWarningA("bad \xFF byte", "src", 3);  // not UTF-8: stands for itself, U+00FF
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].message, std::string("WARNING '") + utf8 + "'");
  EXPECT_EQ(records[1].message, narrow);
  EXPECT_EQ(records[2].message, "WARNING 'bad \xC3\xBF byte'");
}

TEST_F(KrsDiagnosticsTest, Report_LongTextIsCutAt2047CharactersAndNullsAreHarmless) {
  const std::string longText(5000, 'x');
  EXPECT_TRUE(KRS_WARN(longText.c_str()));
  EXPECT_TRUE(KrsReportWarningA(nullptr, nullptr, 9));
  EXPECT_TRUE(KrsReportWarning(nullptr, "src", -5));
  EXPECT_TRUE(KrsReportError(1, nullptr, nullptr, 0));
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(records[0].message, ("WARNING '" + longText).substr(0, 2047));
  EXPECT_EQ(records[1].message, "WARNING ''");
  EXPECT_EQ(records[1].source, "");  // an unreadable source name travels as length 0
  EXPECT_EQ(records[1].line, 9u);
  EXPECT_EQ(records[2].line, static_cast<unsigned>(-5));
  EXPECT_EQ(records[3].message, "ERROR(1) ''");
}

TEST_F(KrsDiagnosticsTest, ErrorMacros_SendTheirTextsAndCodes) {
  EXPECT_EQ(retErr(), -1);
  EXPECT_EQ(retErrIf(5), 5);
  EXPECT_EQ(retErrIf(-5), -2);
  EXPECT_EQ(errRet2(), -3);
  EXPECT_EQ(errContinue2(), 1);
  const auto records = MonitorCapture::drain();
  const char* expected[] = {
      "ERROR(8000FFFF) 'RETERR marco'",
      "ERROR(80004005) 'RETERRIF marco, expr: value < 0'",
      "ERROR(80070057) 'ERRRET2 marco, expr:failingStep() '",
      "ERROR(80070057) 'ERRCONTINUE2 marco, expr:failingStep() '",
  };
  ASSERT_EQ(records.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(records[i].message, expected[i]);
    EXPECT_EQ(records[i].kind, kTextKind);
    EXPECT_EQ(records[i].code, 190u);
    EXPECT_EQ(records[i].source, __FILE__);
  }
}

TEST_F(KrsDiagnosticsTest, AssertionsAndAutotest_ReportTheirWrittenTextOncePerSite) {
  for (int i = 0; i < 3; ++i) KRS_AUTOTEST("KrGeCurve3d::evalPoint");
  int numDeriv = -1;
  const int failLine = __LINE__ + 1;
  for (int i = 0; i < 2; ++i) KRS_FAIL_IF(numDeriv<0);
  const int assertLine = __LINE__ + 1;
  for (int i = 0; i < 2; ++i) KRS_ASSERT(numDeriv >= 0 && numDeriv < 3);
  for (int i = 0; i < 2; ++i) KRS_NOT_IMPLEMENTED_AT("KrGeMatrix2d", 77);
  KRS_CHECK_TEXT_AT(false, KRS_E_INVALIDARG_TEXT, "KrGeCurve3d", 12);
  KRS_ASSERT(numDeriv == -1);  // holds: silent
  const auto records = MonitorCapture::drain();
  ASSERT_EQ(records.size(), 5u);
  EXPECT_EQ(records[0].message, "AUTOTEST not passed for \"KrGeCurve3d::evalPoint\"");
  EXPECT_EQ(records[0].code, 25790u);
  EXPECT_EQ(records[1].message, testkit::assertionText("(numDeriv<0)", __FILE__, failLine));
  EXPECT_EQ(records[2].message, testkit::assertionText("(numDeriv >= 0 && numDeriv < 3)", __FILE__, assertLine));
  EXPECT_EQ(records[3].message, testkit::assertionText("(((HRESULT)0x80004001L))", "KrGeMatrix2d", 77));
  EXPECT_EQ(records[4].message, testkit::assertionText("(((HRESULT)0x80070057L))", "KrGeCurve3d", 12));
  for (std::size_t i = 1; i < records.size(); ++i) EXPECT_EQ(records[i].code, 190u);
  for (const Record& record : records) EXPECT_EQ(record.kind, kCheckKind);
}

#if !defined(_WIN32)  // the Windows host processes run in KrsDiagnosticsWin32_test.cpp
// Host processes, whose assertion state is decided at load (krgemon_test runs the acceptance
// case of one check violated twice under a real monitor).

TEST(KrsDiagnosticsProcess, WarningsAreSentEveryTimeWhileAssertionsStayOff) {
  probe::Session session({"[lw]\nkrsassert=0\n", true, true});
  ASSERT_TRUE(session.ok());
  EXPECT_EQ(session.call("state"), "assert=0 host=0 switches=0");
  EXPECT_EQ(session.call("violate 2"), "done");
  EXPECT_EQ(session.call("warn-many 3"), "sent=3");
  const auto received = session.received();
  EXPECT_EQ(testkit::textsOf(received), std::vector<std::string>{"KRGEL.DLL process attach\n"});
  const auto records = testkit::recordsOf(received);
  EXPECT_EQ(records.size(), 3u);
  EXPECT_EQ(testkit::countMessage(records, "WARNING 'probe warning'"), 3);
  EXPECT_EQ(session.quit(), 0);
  EXPECT_EQ(testkit::textsOf(session.received()), std::vector<std::string>{"KRGEL.DLL process detach\n"});
}

TEST(KrsDiagnosticsProcess, MonitorStartedAfterLoadDoesNotEnableAssertions) {
  probe::Session session({"[lw]\nkrsassert=1\n", true, false});
  ASSERT_TRUE(session.ok());
  EXPECT_EQ(session.call("state"), "assert=0 host=0 switches=0");
  session.startMonitor();
  ASSERT_TRUE(session.hasMonitor());
  EXPECT_EQ(session.call("violate 1"), "done");
  EXPECT_EQ(session.call("warn late"), "sent=1");  // the text channel looks up on its first report
  EXPECT_EQ(session.call("state"), "assert=0 host=0 switches=0");
  const auto records = testkit::recordsOf(session.received());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, "WARNING 'late'");
  EXPECT_EQ(session.quit(), 0);
}
#endif
