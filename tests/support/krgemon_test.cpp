// The monitor tool, run as a real process: its endpoint, its output and its ways out.
#include "support/ProbeSession.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

bool waitForSocket(const std::string& path) {
  for (int i = 0; i < 500; ++i) {
    struct stat status;
    if (lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode)) return true;
    usleep(10000);
  }
  return false;
}

bool exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

unsigned modeOf(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777u : 0u;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool sendDatagram(const std::string& path, const std::string& data) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
  const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
  const bool sent = fd >= 0 && sendto(fd, data.data(), data.size(), 0, reinterpret_cast<const sockaddr*>(&address),
                                      sizeof address) == static_cast<ssize_t>(data.size());
  if (fd >= 0) close(fd);
  return sent;
}

// A record datagram built field by field, the way the protocol document describes it.
std::string recordDatagram(const std::string& message, const std::string& source, const std::string& exe,
                           std::uint32_t messageOffsetShift = 0) {
  const std::uint32_t m = static_cast<std::uint32_t>(message.size()), s = static_cast<std::uint32_t>(source.size()),
                      e = static_cast<std::uint32_t>(exe.size());
  const std::uint32_t words[14] = {0x5001, 77, 77, 78, m, messageOffsetShift, s, m, 12, 0x0C080100, 25790, m + s, e, 1400};
  std::string datagram;
  for (const std::uint32_t w : words)
    for (int k = 0; k < 4; ++k) datagram += static_cast<char>((w >> (8 * k)) & 0xFF);
  return datagram + message + source + exe;
}

// A socket file whose owner closed it without removing it.
bool makeStaleSocket(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
  const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
  const bool bound = fd >= 0 && bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  if (fd >= 0) close(fd);
  return bound;
}

testkit::ChildProcess::Options monitorOptions(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), KRGEL_KRGEMON);
  return {arguments, {}, {"KRGE_MONITOR"}, -1};
}

}  // namespace

TEST(krgemon, PrintsAHostsRecordsAsReadableLinesAndCleansUp) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.ok() && dir.copyLibrary() && dir.write("lw.ini", "[lw]\nkrsassert=1\n"));
  const std::string socketPath = dir.file("run/user/monitor");
  testkit::ChildProcess monitor(monitorOptions({"--socket", socketPath, "--count", "4", "--timeout", "30"}));
  ASSERT_TRUE(waitForSocket(socketPath));
  EXPECT_EQ(modeOf(dir.file("run")), 0700u);
  EXPECT_EQ(modeOf(dir.file("run/user")), 0700u);
  EXPECT_EQ(modeOf(socketPath), 0600u);

  testkit::ChildProcess host({{KRGEL_PROBE_HOST}, testkit::libraryEnvironment(dir, socketPath), {}, -1});
  EXPECT_EQ(host.call("violate 2"), "done");
  EXPECT_EQ(host.call("warn tab\there"), "sent=1");
  host.closeInput();
  ASSERT_EQ(host.wait(10000), 0);
  const std::string pid = std::to_string(host.pid());

  const auto lines = linesOf(monitor.readAll(10000));
  EXPECT_EQ(monitor.wait(10000), 0);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "KRGEL.DLL process attach");
  const std::regex assertion("\\d\\d:\\d\\d:\\d\\d\\.\\d{3} pid " + pid + " tid " + pid +
                             " kind 0x08040100 code 190 krgel_probe_host KrsTempl:(\\d+) "
                             "KrsAssertion failed;\\\\r\\\\nExpression: '\\(nIndex >= 0\\)'\\\\r\\\\n"
                             "File: 'KrsTempl; Line: (\\d+);\\\\nDebug\\?");
  std::smatch match;
  ASSERT_TRUE(std::regex_match(lines[1], match, assertion)) << lines[1];
  EXPECT_EQ(match[1], match[2]);
  const std::regex warning(".* kind 0x0C080100 code 25790 krgel_probe_host .*probe_host\\.cpp:\\d+ "
                           "WARNING 'tab\\\\there'");
  EXPECT_TRUE(std::regex_match(lines[2], warning)) << lines[2];
  EXPECT_EQ(lines[3], "KRGEL.DLL process detach");
  EXPECT_FALSE(exists(socketPath));
  EXPECT_TRUE(exists(dir.file("run/user")));
}

TEST(krgemon, JsonLinesEscapeTextsAndReportMalformedDatagrams) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.ok());
  const std::string socketPath = dir.file("monitor");
  testkit::ChildProcess monitor(monitorOptions({"--json", "--socket", socketPath, "--count", "5"}));
  ASSERT_TRUE(waitForSocket(socketPath));
  ASSERT_TRUE(sendDatagram(socketPath, recordDatagram("WARNING 'quote \" back\\slash \xC3\xA9'", "a.cpp", "host")));
  ASSERT_TRUE(sendDatagram(socketPath, "KRGEL.DLL process attach\n"));
  ASSERT_TRUE(sendDatagram(socketPath, recordDatagram("message", "a.cpp", "host", 1000)));  // points past the end
  ASSERT_TRUE(sendDatagram(socketPath, std::string("\x01\x50\x00\x00short", 9)));            // cut-off header
  ASSERT_TRUE(sendDatagram(socketPath, recordDatagram("bad \xFF utf8", "", "host")));
  const auto lines = linesOf(monitor.readAll(10000));
  EXPECT_EQ(monitor.wait(10000), 0);
  ASSERT_EQ(lines.size(), 5u);
  const std::regex time("\\{\"time\":\"\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}\",(.*)\\}");
  std::vector<std::string> bodies;
  for (const std::string& line : lines) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, time)) << line;
    bodies.push_back(match[1]);
  }
  EXPECT_EQ(bodies[0],
            "\"pid\":77,\"tid\":78,\"kind\":201851136,\"code\":25790,\"line\":12,\"exe\":\"host\",\"source\":"
            "\"a.cpp\",\"message\":\"WARNING 'quote \\\" back\\\\slash \xC3\xA9'\"");
  EXPECT_EQ(bodies[1], "\"text\":\"KRGEL.DLL process attach\\n\"");
  EXPECT_EQ(bodies[2], "\"malformed\":" + std::to_string(56 + 7 + 5 + 4));
  EXPECT_EQ(bodies[3], "\"malformed\":9");
  EXPECT_EQ(bodies[4],
            "\"pid\":77,\"tid\":78,\"kind\":201851136,\"code\":25790,\"line\":12,\"exe\":\"host\",\"source\":\"\","
            "\"message\":\"bad \\ufffd utf8\"");
}

TEST(krgemon, StopSignalsRemoveTheSocket) {
  for (const int number : {SIGINT, SIGTERM}) {
    SCOPED_TRACE(number);
    testkit::ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    const std::string socketPath = dir.file("monitor");
    testkit::ChildProcess monitor(monitorOptions({"--socket", socketPath}));
    ASSERT_TRUE(waitForSocket(socketPath));
    monitor.signal(number);
    EXPECT_EQ(monitor.wait(10000), 0);
    EXPECT_FALSE(exists(socketPath));
  }
}

TEST(krgemon, TimeoutEndsTheRunAndTellsWhetherTheCountWasReached) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.ok());
  const struct {
    std::vector<std::string> extra;
    int status;
  } rows[] = {{{"--timeout", "0.2"}, 0}, {{"--timeout", "0.2", "--count", "3"}, 3}};
  for (const auto& row : rows) {
    std::vector<std::string> arguments = {"--socket", dir.file("monitor")};
    arguments.insert(arguments.end(), row.extra.begin(), row.extra.end());
    testkit::ChildProcess monitor(monitorOptions(arguments));
    EXPECT_EQ(monitor.wait(10000), row.status);
    EXPECT_FALSE(exists(dir.file("monitor")));
  }
}

TEST(krgemon, RefusesBadArgumentsAndPathsItMustNotTake) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.ok() && dir.write("file", "keep me"));
  const std::vector<std::string> badArguments[] = {
      {"--count", "0"}, {"--count", "x"}, {"--timeout", "-1"}, {"--timeout", "nan"}, {"--socket"}, {"--verbose"}};
  for (const auto& arguments : badArguments) {
    SCOPED_TRACE(arguments[0]);
    testkit::ChildProcess monitor(monitorOptions(arguments));
    EXPECT_EQ(monitor.wait(10000), 2);
  }

  // A regular file at the path is neither used nor removed.
  testkit::ChildProcess onFile(monitorOptions({"--socket", dir.file("file"), "--timeout", "5"}));
  EXPECT_EQ(onFile.wait(10000), 1);
  struct stat status;
  ASSERT_EQ(lstat(dir.file("file").c_str(), &status), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));

  // A live monitor keeps its socket; a second one at the same path gives up.
  const std::string socketPath = dir.file("monitor");
  testkit::ChildProcess first(monitorOptions({"--socket", socketPath, "--count", "1", "--timeout", "30"}));
  ASSERT_TRUE(waitForSocket(socketPath));
  testkit::ChildProcess second(monitorOptions({"--socket", socketPath, "--timeout", "5"}));
  EXPECT_EQ(second.wait(10000), 1);
  ASSERT_TRUE(sendDatagram(socketPath, "still here\n"));
  EXPECT_EQ(first.readAll(10000), "still here\n");
  EXPECT_EQ(first.wait(10000), 0);

  // The socket of a monitor that died without cleaning up is taken over.
  ASSERT_TRUE(makeStaleSocket(socketPath));
  testkit::ChildProcess third(monitorOptions({"--socket", socketPath, "--count", "1", "--timeout", "30"}));
  bool delivered = false;  // the stale socket refuses until the new monitor has replaced it
  for (int i = 0; i < 500 && !delivered; ++i) delivered = sendDatagram(socketPath, "again\n") || (usleep(10000), false);
  ASSERT_TRUE(delivered);
  EXPECT_EQ(third.readAll(10000), "again\n");
}

TEST(krgemon, DefaultEndpointFollowsTheLibrarysRule) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.ok());
  const struct {
    const char* name;
    std::vector<std::pair<std::string, std::string>> set;
    std::vector<std::string> unset;
    std::string expected;
  } rows[] = {
      {"KRGE_MONITOR first", {{"KRGE_MONITOR", dir.file("a")}, {"XDG_RUNTIME_DIR", dir.path()}}, {}, dir.file("a")},
      {"then XDG_RUNTIME_DIR", {{"KRGE_MONITOR", ""}, {"XDG_RUNTIME_DIR", dir.path()}}, {}, dir.file("_indebmon")},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    testkit::ChildProcess monitor({{KRGEL_KRGEMON, "--count", "1", "--timeout", "30"}, row.set, row.unset, -1});
    ASSERT_TRUE(waitForSocket(row.expected));
    ASSERT_TRUE(sendDatagram(row.expected, "x\n"));
    EXPECT_EQ(monitor.wait(10000), 0);
    EXPECT_FALSE(exists(row.expected));
  }
}
