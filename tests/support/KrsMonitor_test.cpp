// The monitor channel seen from a host process: who counts as a monitor, and what happens when
// it goes away, comes back or stops reading.
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "support/ProbeSession.h"
#include "testkit/TestKit.h"

namespace {

double secondsNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// One host run with the monitor at `monitorPath`: its state, then its replies to a repeated
// check violation and to `command`.
std::string runHost(const testkit::ScratchDir& dir, const std::string& monitorPath, const char* command) {
  testkit::ChildProcess probe({{KRGEL_PROBE_HOST}, testkit::libraryEnvironment(dir, monitorPath), {}, -1});
  const std::string answers = probe.call("state") + " " + probe.call("violate 2") + " " + probe.call(command);
  probe.closeInput();
  EXPECT_EQ(probe.wait(10000), 0);
  return answers;
}

}  // namespace

// Nobody may harvest another user's diagnostics by squatting the path; a path that is not a
// socket (a file, or a link to one) is left alone.
TEST(KrsMonitor, OnlyASocketOfTheSameUserCountsAsAMonitor) {
  testkit::ScratchDir dir;
  ASSERT_TRUE(dir.copyLibrary());
  ASSERT_TRUE(dir.write("lw.ini", "[lw]\nkrsassert=1\n"));
  ASSERT_TRUE(dir.write("file", ""));
  ASSERT_EQ(symlink(dir.file("file").c_str(), dir.file("link").c_str()), 0);
  for (const char* name : {"file", "link"})
    EXPECT_EQ(runHost(dir, dir.file(name), "warn into a file"), "assert=0 host=0 switches=0 done sent=0") << name;
  struct stat status;
  ASSERT_EQ(stat(dir.file("file").c_str(), &status), 0);
  EXPECT_EQ(status.st_size, 0);
  if (geteuid() != 0) GTEST_SKIP() << "needs root to give the socket to another user";
  testkit::TestMonitor squatter(dir.file("monitor"));
  ASSERT_EQ(chown(dir.file("monitor").c_str(), 65534, 65534), 0);
  EXPECT_EQ(runHost(dir, dir.file("monitor"), "warn secret"), "assert=0 host=0 switches=0 done sent=0");
  EXPECT_TRUE(squatter.receive(200).empty()) << "not even the attach and detach lines";
}

// Gone between two reports: dropped, the host carries on. Back at the same place: found by the
// lookup that runs at most once a second. Replaced: the failed send makes one new lookup at once.
TEST(KrsMonitor, MonitorThatVanishesAndReturnsIsFoundAgain) {
  probe::Session session({});
  EXPECT_EQ(session.call("warn one"), "sent=1");
  session.monitor().close();
  EXPECT_EQ(session.call("warn two"), "sent=0");
  session.startMonitor();
  const double start = secondsNow();
  std::string answer;
  while ((answer = session.call("warn three")) != "sent=1" && secondsNow() - start < 5.0) usleep(50000);
  EXPECT_EQ(answer, "sent=1");
  EXPECT_GT(secondsNow() - start, 0.5) << "looked up again sooner than the once-a-second rule allows";
  session.received();
  session.monitor().close();
  session.startMonitor();
  EXPECT_EQ(session.call("warn four"), "sent=1");
  const auto records = testkit::recordsOf(session.received());
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, "WARNING 'four'");
  EXPECT_EQ(session.quit(), 0);
}

// Nobody reads the monitor's queue: the host is delayed briefly and drops what does not fit;
// once the monitor reads again (after the one-second pause in waiting) reports flow again.
TEST(KrsMonitor, MonitorThatStopsReadingDelaysTheHostOnlyBriefly) {
  probe::Session session({});
  const double start = secondsNow();
  const std::string answer = session.call("warn-big 200");
  EXPECT_LT(secondsNow() - start, 2.0);
  ASSERT_EQ(answer.rfind("sent=", 0), 0u) << answer;
  EXPECT_GT(std::stoi(answer.substr(5)), 0);
  EXPECT_LT(std::stoi(answer.substr(5)), 200);
  session.received();
  usleep(1100000);
  EXPECT_EQ(session.call("warn-many 3"), "sent=3");
  EXPECT_EQ(session.quit(), 0);
}
