// Reports as the monitor receives them: the whole record, texts in UTF-8 and cut at 2047
// characters, the error macros, the once-per-site assertions, and the assertion state a host
// process decides at load.
#if !defined(_WIN32)
#include "support/ProbeSession.h"
#endif
#include "testkit/TestKit.h"

using namespace testkit;

namespace {

constexpr unsigned kCheckKind = 0x08040100u, kTextKind = 0x0C080100u;

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

TEST(KrsDiagnostics, WarningsCarryTheWholeRecordEveryTimeUnlessSwitchedOff) {
  const int line = __LINE__ + 2;
  const auto records = recordsOf([] {
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(KRS_WARN("degenerated normal, OZ used"));
    EXPECT_TRUE(KRS_WARN_AT("not correct input data", "Vector3d", 256));
    KrsSetWarningsEnabled(false);
    EXPECT_FALSE(KRS_WARN("silenced"));
    EXPECT_EQ(retErr(), -1);  // errors still go out
    KrsSetWarningsEnabled(true);
  });
  ASSERT_EQ(records.size(), 4u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(records[i].kind, kTextKind);
    EXPECT_EQ(records[i].code, 25790u);
    EXPECT_EQ(records[i].magic, 1400u);
    EXPECT_EQ(records[i].processId, currentProcessId());
    EXPECT_EQ(records[i].threadId, currentThreadId());
    EXPECT_EQ(records[i].executable, executableName());
  }
  EXPECT_EQ(records[1].message, "WARNING 'degenerated normal, OZ used'");
  EXPECT_EQ(records[1].source, __FILE__);
  EXPECT_EQ(records[1].line, static_cast<unsigned>(line));
  EXPECT_EQ(records[2].source, "Vector3d");
  EXPECT_EQ(records[2].line, 256u);
  EXPECT_EQ(records[3].message, "ERROR(8000FFFF) 'RETERR marco'");
}

// Narrow texts are in the platform's narrow encoding: UTF-8 on POSIX, where a byte that does not
// decode stands for itself, and the ANSI code page on Windows (1252 where the tests run).
TEST(KrsDiagnostics, TextsTravelAsUtf8CutAt2047CharactersAndNullsAreHarmless) {
  const char* utf8 = "Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC, clef \xF0\x9D\x84\x9E";
#if defined(_WIN32)
  const char* narrow = "Gr\xF6\xDF" "e \x80, clef \xF0\x9D";
  const std::string narrowText = "WARNING 'Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC, clef \xC3\xB0\xC2\x9D'";
#else
  const char* narrow = utf8;
  const std::string narrowText = std::string("WARNING '") + utf8 + "'";
#endif
  const std::string longText(5000, 'x');
  const auto records = recordsOf([&] {
    KrsReportWarning(L"Gr\u00F6\u00DFe \u20AC, clef \U0001D11E", "src", 1);
    KrsReportWarningA(narrow, "src", 2);
    KrsReportWarningA("bad \xFF byte", "src", 3);  // not UTF-8: stands for itself, U+00FF
    KRS_WARN(longText.c_str());
    KrsReportWarningA(nullptr, nullptr, 9);
    KrsReportError(1, nullptr, nullptr, -5);
  });
  ASSERT_EQ(records.size(), 6u);
  EXPECT_EQ(records[0].message, std::string("WARNING '") + utf8 + "'");
  EXPECT_EQ(records[1].message, narrowText);
  EXPECT_EQ(records[2].message, "WARNING 'bad \xC3\xBF byte'");
  EXPECT_EQ(records[3].message, ("WARNING '" + longText).substr(0, 2047));
  EXPECT_EQ(records[4].message, "WARNING ''");
  EXPECT_EQ(records[4].source, "");  // an unreadable source name travels as length 0
  EXPECT_EQ(records[5].message, "ERROR(1) ''");
  EXPECT_EQ(records[5].line, static_cast<unsigned>(-5));
}

TEST(KrsDiagnostics, ErrorMacrosAndCheckSitesSendTheirTextsOnce) {
  EXPECT_EQ(retErrIf(5), 5);
  int numDeriv = -1;
  const int failLine = __LINE__ + 7;
  const int assertLine = __LINE__ + 7;
  const auto records = recordsOf([&] {
    EXPECT_EQ(retErrIf(-5), -2);
    EXPECT_EQ(errRet2(), -3);
    EXPECT_EQ(errContinue2(), 1);
    for (int i = 0; i < 3; ++i) KRS_AUTOTEST("KrGeCurve3d::evalPoint");
    for (int i = 0; i < 2; ++i) KRS_FAIL_IF(numDeriv<0);
    for (int i = 0; i < 2; ++i) KRS_ASSERT(numDeriv >= 0 && numDeriv < 3);
    for (int i = 0; i < 2; ++i) KRS_NOT_IMPLEMENTED_AT("KrGeMatrix2d", 77);
    KRS_ASSERT(numDeriv == -1);  // holds: silent
  });
  const struct { const char* message; unsigned kind, code; } expected[] = {
      {"ERROR(80004005) 'RETERRIF marco, expr: value < 0'", kTextKind, 190},
      {"ERROR(80070057) 'ERRRET2 marco, expr:failingStep() '", kTextKind, 190},
      {"ERROR(80070057) 'ERRCONTINUE2 marco, expr:failingStep() '", kTextKind, 190},
      {"AUTOTEST not passed for \"KrGeCurve3d::evalPoint\"", kCheckKind, 25790},
  };
  ASSERT_EQ(records.size(), 7u);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(records[i].message, expected[i].message);
    EXPECT_EQ(records[i].kind, expected[i].kind);
    EXPECT_EQ(records[i].code, expected[i].code);
  }
  EXPECT_EQ(records[4].message, assertionText("(numDeriv<0)", __FILE__, failLine));
  EXPECT_EQ(records[5].message, assertionText("(numDeriv >= 0 && numDeriv < 3)", __FILE__, assertLine));
  EXPECT_EQ(records[6].message, assertionText("(((HRESULT)0x80004001L))", "KrGeMatrix2d", 77));
  EXPECT_EQ(records[6].kind, kCheckKind);
  EXPECT_EQ(records[6].code, 190u);
}

#if !defined(_WIN32)  // on Windows, KrsMonitorWin32_test runs the host processes
// Host processes decide their assertion state at load: off with krsassert=0 (warnings still go
// out, every time) and off when the monitor only appears after the load.
TEST(KrsDiagnostics, HostAssertionStateIsDecidedAtLoad) {
  probe::Session quiet({"[lw]\nkrsassert=0\n", true, true});
  EXPECT_EQ(quiet.call("state"), "assert=0 host=0 switches=0");
  EXPECT_EQ(quiet.call("violate 2"), "done");
  EXPECT_EQ(quiet.call("warn-many 3"), "sent=3");
  auto received = quiet.received();
  EXPECT_EQ(textsOf(received), std::vector<std::string>{"KRGEL.DLL process attach\n"});
  EXPECT_EQ(countMessage(recordsOf(received), "WARNING 'probe warning'"), 3);
  EXPECT_EQ(recordsOf(received).size(), 3u);
  EXPECT_EQ(quiet.quit(), 0);
  EXPECT_EQ(textsOf(quiet.received()), std::vector<std::string>{"KRGEL.DLL process detach\n"});

  probe::Session late({"[lw]\nkrsassert=1\n", true, false});
  EXPECT_EQ(late.call("state"), "assert=0 host=0 switches=0");
  late.startMonitor();
  EXPECT_EQ(late.call("violate 1"), "done");
  EXPECT_EQ(late.call("warn late"), "sent=1");  // the text channel looks up on its first report
  received = late.received();
  ASSERT_EQ(recordsOf(received).size(), 1u);
  EXPECT_EQ(recordsOf(received)[0].message, "WARNING 'late'");
  EXPECT_EQ(late.quit(), 0);
}
#endif
