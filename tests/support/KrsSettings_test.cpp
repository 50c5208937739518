// The settings file is read once, at load, by the library beside which it lies: every case runs
// a host process over a copy of the library with its own lw.ini and a monitor present.
#include <sys/stat.h>
#include <unistd.h>

#include "support/ProbeSession.h"
#include "testkit/TestKit.h"

namespace {

std::string stateWithSettings(const std::string& settings) {
  probe::Session session({settings, true, true});
  const std::string state = session.call("state");
  EXPECT_EQ(session.quit(), 0);
  return state;
}

// Runs the probe host (as `uid` when not negative) over the library copy in `dir`.
std::string stateIn(const testkit::ScratchDir& dir, const std::string& program = KRGEL_PROBE_HOST, int uid = -1) {
  testkit::ChildProcess probe({{program}, testkit::libraryEnvironment(dir, dir.file("monitor")), {}, uid});
  return probe.call("state", 5000);
}

}  // namespace

TEST(KrsSettings, IntegerKeysAreReadLikeThePrivateProfileReader) {
  const struct { const char* name; std::string content; const char* expected; } rows[] = {
      {"all on", "[lw]\nkrsassert=1\nJumpArrOnAdd=1\nJumpArrOnRemove=1\nDefecateMem=1\n", "assert=1 host=1 switches=7"},
      {"keys and section in any case", "[LW]\nKRSASSERT=1\njumparronadd=2\ndefecatemem=3\n", "assert=1 host=1 switches=5"},
      {"blanks and CRLF", "  [ lw ]  \r\n  krsassert = 1 \r\n JumpArrOnRemove\t=\t9\r\n", "assert=1 host=1 switches=2"},
      {"plus sign, negative is nonzero", "[lw]\nkrsassert=+1\nDefecateMem=-7\n", "assert=1 host=1 switches=4"},
      {"digits then junk, huge clamps", "[lw]\nkrsassert=12abc\nJumpArrOnAdd=99999999999999999999999\n", "assert=1 host=1 switches=1"},
      {"zero and minus zero", "[lw]\nkrsassert=-0\nDefecateMem=000\n", "assert=0 host=0 switches=0"},
      {"junk before digits, hexadecimal", "[lw]\nkrsassert=abc12\nDefecateMem=0x4\n", "assert=0 host=0 switches=0"},
      {"sign without digits, empty value", "[lw]\nkrsassert=+\nJumpArrOnAdd=- 1\nDefecateMem=\n", "assert=0 host=0 switches=0"},
      {"key in another section", "[other]\nkrsassert=1\n[lw]\nJumpArrOnAdd=1\n", "assert=0 host=0 switches=1"},
      {"key before any section, commented", "krsassert=1\n[lw]\n;JumpArrOnAdd=1\n", "assert=0 host=0 switches=0"},
      {"first occurrence wins", "[lw]\nkrsassert=1\nkrsassert=0\n", "assert=1 host=1 switches=0"},
      {"key with a longer or shorter name", "[lw]\nkrsassertion=1\nkrsasser=1\n", "assert=0 host=0 switches=0"},
      {"byte-order mark", "\xEF\xBB\xBF[lw]\nkrsassert=1\n", "assert=1 host=1 switches=0"},
      {"no newline at the end", "[lw]\nDefecateMem=1", "assert=0 host=0 switches=4"},
      {"binary first line", std::string("\0\0\0\n", 4) + "[lw]\nJumpArrOnAdd=1\n", "assert=0 host=0 switches=1"},
      // The reader stops after its byte budget and keeps only a bounded piece of each line.
      {"20 MiB of one line first", std::string(20u << 20, 'k') + "\n[lw]\nkrsassert=1\n", "assert=0 host=0 switches=0"},
      {"long file, key early", "[lw]\nDefecateMem=1\n" + std::string(1u << 20, ';'), "assert=0 host=0 switches=4"},
  };
  for (const auto& row : rows) EXPECT_EQ(stateWithSettings(row.content), row.expected) << row.name;
}

// A directory, a pipe (which would block a plain open until a writer came) and a dangling link
// named lw.ini leave every switch off; so does a file the host's user cannot read.
TEST(KrsSettings, UnreadableFilesLeaveEverySwitchOff) {
  const struct { const char* name; int (*make)(const char* path); } rows[] = {
      {"directory", [](const char* path) { return mkdir(path, 0755); }},
      {"pipe", [](const char* path) { return mkfifo(path, 0644); }},
      {"dangling link", [](const char* path) { return symlink("/nonexistent/lw.ini", path); }},
  };
  for (const auto& row : rows) {
    testkit::ScratchDir dir;
    ASSERT_TRUE(dir.copyLibrary());
    ASSERT_EQ(row.make(dir.file("lw.ini").c_str()), 0);
    testkit::TestMonitor monitor(dir.file("monitor"));
    EXPECT_EQ(stateIn(dir), "assert=0 host=0 switches=0") << row.name;
  }
  if (geteuid() != 0) GTEST_SKIP() << "needs root to run the host as another user";
  for (const bool readable : {false, true}) {
    testkit::ScratchDir dir;
    ASSERT_TRUE(dir.copyLibrary());
    ASSERT_TRUE(dir.write("lw.ini", "[lw]\nDefecateMem=1\nJumpArrOnAdd=1\n"));
    ASSERT_EQ(chmod(dir.file("lw.ini").c_str(), readable ? 0644 : 0600), 0);
    EXPECT_EQ(stateIn(dir, dir.copyProgram(KRGEL_PROBE_HOST), 65534), readable ? "assert=0 host=0 switches=5" : "assert=0 host=0 switches=0");
  }
}

TEST(KrsSettings, FileIsTakenFromTheLibraryDirectoryNotTheExecutables) {
  testkit::ScratchDir libraryDir, programDir;
  ASSERT_TRUE(libraryDir.copyLibrary());
  ASSERT_TRUE(libraryDir.write("lw.ini", "[lw]\nJumpArrOnAdd=1\n"));
  ASSERT_TRUE(programDir.write("lw.ini", "[lw]\nDefecateMem=1\n"));
  EXPECT_EQ(stateIn(libraryDir, programDir.copyProgram(KRGEL_PROBE_HOST)), "assert=0 host=0 switches=1");
}
