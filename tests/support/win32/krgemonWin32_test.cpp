// krgemon.exe run as a real process: it takes the window class and the debug output, prints a
// host's records and attach/detach lines, and gives way to a monitor that is already running.
#include "testkit/win32/WindowsKit.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace

// The acceptance run: a host with krsassert=1 violates one check twice under a listening krgemon.
TEST(krgemonWin32, PrintsAHostsRecordsAndAttachDetachLines) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.ok() && dir.copyLibrary() && dir.write("lw.ini", "[lw]\nkrsassert=1\n"));
  const testkit::MonitorPause ownMonitorAway;
  testkit::ChildProcess monitor({testkit::buildProgram("krgemon.exe"), "--count", "4", "--timeout", "60"});
  ASSERT_TRUE(monitor.started());
  for (int i = 0; i < 500 && !FindWindowW(L"_indebmon", nullptr); ++i) Sleep(10);
  testkit::ChildProcess host({dir.copyProgram("krgel_probe_host.exe")});
  EXPECT_EQ(host.call("violate 2"), "done");
  EXPECT_EQ(host.call("warn tab\there"), "sent=1");
  host.closeInput();
  ASSERT_EQ(host.wait(10000), 0);
  const std::string pid = std::to_string(host.pid());

  const auto lines = linesOf(monitor.readAll(20000));
  EXPECT_EQ(monitor.wait(10000), 0);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "KRGEL.DLL process attach");
  const std::regex assertion("\\d\\d:\\d\\d:\\d\\d\\.\\d{3} pid " + pid + " tid \\d+ kind 0x08040100 code 190 "
                             "krgel_probe_host\\.exe KrsTempl:(\\d+) KrsAssertion failed;\\\\r\\\\nExpression: "
                             "'\\(nIndex >= 0\\)'\\\\r\\\\nFile: 'KrsTempl; Line: (\\d+);\\\\nDebug\\?");
  std::smatch match;
  ASSERT_TRUE(std::regex_match(lines[1], match, assertion)) << lines[1];
  EXPECT_EQ(match[1], match[2]);
  const std::regex warning(".* kind 0x0C080100 code 25790 krgel_probe_host\\.exe .*probe_host\\.cpp:\\d+ "
                           "WARNING 'tab\\\\there'");
  EXPECT_TRUE(std::regex_match(lines[2], warning)) << lines[2];
  EXPECT_EQ(lines[3], "KRGEL.DLL process detach");
}

TEST(krgemonWin32, GivesWayToARunningMonitorAndRefusesBadArguments) {
  const struct {
    std::vector<std::string> arguments;
    long long status;
  } rows[] = {{{"--timeout", "5"}, 1}, {{"--count", "0"}, 2}, {{"--timeout", "nan"}, 2}, {{"--socket", "x"}, 2}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.arguments[0] + " " + row.arguments[1]);
    std::vector<std::string> argv{testkit::buildProgram("krgemon.exe")};
    argv.insert(argv.end(), row.arguments.begin(), row.arguments.end());
    testkit::ChildProcess monitor(argv);
    EXPECT_EQ(monitor.wait(10000), row.status);
  }
  const testkit::MonitorPause ownMonitorAway;
  testkit::ChildProcess timedOut({testkit::buildProgram("krgemon.exe"), "--count", "3", "--timeout", "0.2"});
  EXPECT_EQ(timedOut.wait(10000), 3);
}
