// The monitor tool, run as a real process: its endpoint, its output and its ways out.
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <regex>
#include <sstream>

#include "support/ProbeSession.h"
#include "testkit/TestKit.h"

namespace {

// The file type and permission bits of a path, 0 when nothing is there.
unsigned modeOf(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0 ? status.st_mode : 0u;
}

bool waitForSocket(const std::string& path) {
  for (int i = 0; i < 500 && !S_ISSOCK(modeOf(path)); ++i) usleep(10000);
  return S_ISSOCK(modeOf(path));
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Sends `data` to the socket at `path`; with bindOnly, binds a socket there and closes it
// without removing it, as a monitor that died would leave it.
bool datagram(const std::string& path, const std::string& data, bool bindOnly = false) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path.c_str());
  const auto* target = reinterpret_cast<const sockaddr*>(&address);
  const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
  const bool done = fd >= 0 && (bindOnly ? bind(fd, target, sizeof address) == 0
                                         : sendto(fd, data.data(), data.size(), 0, target, sizeof address) ==
                                               static_cast<ssize_t>(data.size()));
  if (fd >= 0) close(fd);
  return done;
}

// A record datagram built field by field, the way the protocol document describes it.
std::string recordDatagram(const std::string& message, const std::string& source, std::uint32_t messageOffset = 0) {
  const std::uint32_t m = static_cast<std::uint32_t>(message.size()), s = static_cast<std::uint32_t>(source.size());
  const std::uint32_t words[14] = {0x5001, 77, 77, 78, m, messageOffset, s, m, 12, 0x0C080100, 25790, m + s, 4, 1400};
  std::string bytes;
  for (const std::uint32_t w : words)
    for (int k = 0; k < 4; ++k) bytes += static_cast<char>((w >> (8 * k)) & 0xFF);
  return bytes + message + source + "host";
}

testkit::ChildProcess::Options monitorOptions(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), KRGEL_KRGEMON);
  return {arguments, {}, {"KRGE_MONITOR"}, -1};
}

}  // namespace

// The acceptance run: a host with krsassert=1 violates one check twice under a listening krgemon.
TEST(krgemon, PrintsAHostsRecordsAsReadableLinesAndCleansUp) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.copyLibrary());
  ASSERT_TRUE(dir.write("lw.ini", "[lw]\nkrsassert=1\n"));
  const std::string socketPath = dir.file("run/user/monitor");
  testkit::ChildProcess monitor(monitorOptions({"--socket", socketPath, "--count", "4", "--timeout", "30"}));
  ASSERT_TRUE(waitForSocket(socketPath));
  EXPECT_EQ(modeOf(dir.file("run")) & 07777u, 0700u);
  EXPECT_EQ(modeOf(dir.file("run/user")) & 07777u, 0700u);
  EXPECT_EQ(modeOf(socketPath) & 07777u, 0600u);

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
  EXPECT_EQ(modeOf(socketPath), 0u);
  EXPECT_NE(modeOf(dir.file("run/user")), 0u);
}

TEST(krgemon, JsonLinesEscapeTextsAndReportMalformedDatagrams) {
  testkit::ScratchDir dir;
  const std::string socketPath = dir.file("monitor");
  testkit::ChildProcess monitor(monitorOptions({"--json", "--socket", socketPath, "--count", "5"}));
  ASSERT_TRUE(waitForSocket(socketPath));
  ASSERT_TRUE(datagram(socketPath, recordDatagram("WARNING 'quote \" back\\slash \xC3\xA9'", "a.cpp")));
  ASSERT_TRUE(datagram(socketPath, "KRGEL.DLL process attach\n"));
  ASSERT_TRUE(datagram(socketPath, recordDatagram("message", "a.cpp", 1000)));  // points past the end
  ASSERT_TRUE(datagram(socketPath, std::string("\x01\x50\x00\x00short", 9)));   // cut-off header
  ASSERT_TRUE(datagram(socketPath, recordDatagram("bad \xFF utf8", "")));
  const auto lines = linesOf(monitor.readAll(10000));
  EXPECT_EQ(monitor.wait(10000), 0);
  const std::string record = "\"pid\":77,\"tid\":78,\"kind\":201851136,\"code\":25790,\"line\":12,\"exe\":\"host\",";
  const std::string expected[] = {
      record + "\"source\":\"a.cpp\",\"message\":\"WARNING 'quote \\\" back\\\\slash \xC3\xA9'\"",
      "\"text\":\"KRGEL.DLL process attach\\n\"",
      "\"malformed\":" + std::to_string(56 + 7 + 5 + 4),
      "\"malformed\":9",
      record + "\"source\":\"\",\"message\":\"bad \\ufffd utf8\"",
  };
  ASSERT_EQ(lines.size(), 5u);
  const std::regex time("\\{\"time\":\"\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}\",(.*)\\}");
  for (std::size_t i = 0; i < 5; ++i) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(lines[i], match, time)) << lines[i];
    EXPECT_EQ(match[1], expected[i]);
  }
}

// A signal or the timeout ends a run and removes the socket (exit 3 when fewer records than
// --count came); bad arguments exit 2; a path that is a file or a live monitor's socket exits 1
// and is left alone; a dead monitor's socket is taken over.
TEST(krgemon, EndsCleanlyAndRefusesBadArgumentsAndPathsItMustNotTake) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.write("file", "keep me"));
  for (const int number : {SIGINT, SIGTERM}) {
    testkit::ChildProcess monitor(monitorOptions({"--socket", dir.file("monitor")}));
    ASSERT_TRUE(waitForSocket(dir.file("monitor")));
    monitor.signal(number);
    EXPECT_EQ(monitor.wait(10000), 0) << number;
    EXPECT_EQ(modeOf(dir.file("monitor")), 0u);
  }
  for (const char* count : {"", "3"}) {
    std::vector<std::string> arguments = {"--socket", dir.file("monitor"), "--timeout", "0.2"};
    if (*count) arguments.insert(arguments.end(), {"--count", count});
    testkit::ChildProcess monitor(monitorOptions(arguments));
    EXPECT_EQ(monitor.wait(10000), *count ? 3 : 0) << count;
    EXPECT_EQ(modeOf(dir.file("monitor")), 0u);
  }
  const std::vector<std::string> badArguments[] = {
      {"--count", "0"}, {"--count", "x"}, {"--timeout", "-1"}, {"--timeout", "nan"}, {"--socket"}, {"--verbose"}};
  for (const auto& arguments : badArguments) EXPECT_EQ(testkit::ChildProcess(monitorOptions(arguments)).wait(10000), 2) << arguments[0];
  testkit::ChildProcess onFile(monitorOptions({"--socket", dir.file("file"), "--timeout", "5"}));
  EXPECT_EQ(onFile.wait(10000), 1);
  EXPECT_TRUE(S_ISREG(modeOf(dir.file("file"))));

  // A live monitor keeps its socket; a second one at the same path gives up.
  const std::string socketPath = dir.file("monitor");
  testkit::ChildProcess first(monitorOptions({"--socket", socketPath, "--count", "1", "--timeout", "30"}));
  ASSERT_TRUE(waitForSocket(socketPath));
  testkit::ChildProcess second(monitorOptions({"--socket", socketPath, "--timeout", "5"}));
  EXPECT_EQ(second.wait(10000), 1);
  ASSERT_TRUE(datagram(socketPath, "still here\n"));
  EXPECT_EQ(first.readAll(10000), "still here\n");
  EXPECT_EQ(first.wait(10000), 0);

  // The socket of a monitor that died without cleaning up is taken over.
  ASSERT_TRUE(datagram(socketPath, "", true));
  testkit::ChildProcess third(monitorOptions({"--socket", socketPath, "--count", "1", "--timeout", "30"}));
  bool delivered = false;  // the stale socket refuses until the new monitor has replaced it
  for (int i = 0; i < 500 && !delivered; ++i) delivered = datagram(socketPath, "again\n") || (usleep(10000), false);
  ASSERT_TRUE(delivered);
  EXPECT_EQ(third.readAll(10000), "again\n");
}

TEST(krgemon, DefaultEndpointFollowsTheLibrarysRule) {
  testkit::ScratchDir dir;
  const struct { const char* name; std::string monitorVariable, expected; } rows[] = {{"KRGE_MONITOR first", dir.file("a"), dir.file("a")},
              {"then XDG_RUNTIME_DIR", "", dir.file("_indebmon")}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    testkit::ChildProcess monitor({{KRGEL_KRGEMON, "--count", "1", "--timeout", "30"},
                                   {{"KRGE_MONITOR", row.monitorVariable}, {"XDG_RUNTIME_DIR", dir.path()}}, {}, -1});
    ASSERT_TRUE(waitForSocket(row.expected));
    ASSERT_TRUE(datagram(row.expected, "x\n"));
    EXPECT_EQ(monitor.wait(10000), 0);
    EXPECT_EQ(modeOf(row.expected), 0u);
  }
}
