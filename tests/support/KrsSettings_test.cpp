// The settings file is read once, at load, by the library beside which it lies: every case runs
// a host process over a copy of the library with its own lw.ini and a monitor present.
#include "support/ProbeSession.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

std::string stateWithSettings(const std::string& settings) {
  probe::Session session({settings, true, true});
  if (!session.ok()) return "<probe did not start>";
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
  const struct {
    const char* name;
    std::string content;
    const char* expected;
  } rows[] = {
      {"all on", "[lw]\nkrsassert=1\nJumpArrOnAdd=1\nJumpArrOnRemove=1\nDefecateMem=1\n",
       "assert=1 host=1 switches=7"},
      {"keys and section in any case", "[LW]\nKRSASSERT=1\njumparronadd=2\ndefecatemem=3\n",
       "assert=1 host=1 switches=5"},
      {"blanks and CRLF", "  [ lw ]  \r\n  krsassert = 1 \r\n JumpArrOnRemove\t=\t9\r\n",
       "assert=1 host=1 switches=2"},
      {"plus sign, negative is nonzero", "[lw]\nkrsassert=+1\nDefecateMem=-7\n", "assert=1 host=1 switches=4"},
      {"digits then junk, huge clamps", "[lw]\nkrsassert=12abc\nJumpArrOnAdd=99999999999999999999999\n",
       "assert=1 host=1 switches=1"},
      {"zero and minus zero", "[lw]\nkrsassert=-0\nDefecateMem=000\n", "assert=0 host=0 switches=0"},
      {"junk before digits, hexadecimal", "[lw]\nkrsassert=abc12\nDefecateMem=0x4\n", "assert=0 host=0 switches=0"},
      {"sign without digits, empty value", "[lw]\nkrsassert=+\nJumpArrOnAdd=- 1\nDefecateMem=\n",
       "assert=0 host=0 switches=0"},
      {"key in another section", "[other]\nkrsassert=1\n[lw]\nJumpArrOnAdd=1\n", "assert=0 host=0 switches=1"},
      {"key before any section, commented", "krsassert=1\n[lw]\n;JumpArrOnAdd=1\n", "assert=0 host=0 switches=0"},
      {"first occurrence wins", "[lw]\nkrsassert=1\nkrsassert=0\n", "assert=1 host=1 switches=0"},
      {"key with a longer or shorter name", "[lw]\nkrsassertion=1\nkrsasser=1\n", "assert=0 host=0 switches=0"},
      {"byte-order mark", "\xEF\xBB\xBF[lw]\nkrsassert=1\n", "assert=1 host=1 switches=0"},
      {"no newline at the end", "[lw]\nDefecateMem=1", "assert=0 host=0 switches=4"},
      {"empty file", "", "assert=0 host=0 switches=0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(stateWithSettings(row.content), row.expected);
  }
}

TEST(KrsSettings, BinaryAndHugeFilesReadAsDefaultsWithoutHarm) {
  const std::uint32_t seed = 20240611u;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  std::string binary(64 * 1024, '\0');
  for (char& c : binary) c = static_cast<char>(random() & 0xFF);
  EXPECT_EQ(stateWithSettings(binary), "assert=0 host=0 switches=0");
  EXPECT_EQ(stateWithSettings(std::string("\0\0\0\n", 4) + "[lw]\nJumpArrOnAdd=1\n"), "assert=0 host=0 switches=1");
  // 20 MiB of one endless line, then the key: the reader stops after its byte budget and keeps
  // only a bounded piece of each line. A long file whose key comes early is still read.
  EXPECT_EQ(stateWithSettings(std::string(20u << 20, 'k') + "\n[lw]\nkrsassert=1\n"), "assert=0 host=0 switches=0");
  EXPECT_EQ(stateWithSettings("[lw]\nDefecateMem=1\n" + std::string(1u << 20, ';')), "assert=0 host=0 switches=4");
}

TEST(KrsSettings, UnreadableFilesLeaveEverySwitchOff) {
  const struct {
    const char* name;
    int (*make)(const char* path);
  } rows[] = {
      {"a directory named lw.ini", [](const char* path) { return mkdir(path, 0755); }},
      // A pipe would block a plain open() until a writer came: the load must not hang on it.
      {"a pipe named lw.ini", [](const char* path) { return mkfifo(path, 0644); }},
      {"a dangling link named lw.ini", [](const char* path) { return symlink("/nonexistent/lw.ini", path); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    testkit::ScratchDir dir;
    ASSERT_TRUE(dir.ok() && dir.copyLibrary());
    ASSERT_EQ(row.make(dir.file("lw.ini").c_str()), 0);
    testkit::TestMonitor monitor(dir.file("monitor"));
    EXPECT_EQ(stateIn(dir), "assert=0 host=0 switches=0");
  }
  // A file readable by its owner only, the host running as another user; readable, it counts.
  if (geteuid() != 0) GTEST_SKIP() << "needs root to run the host as another user";
  for (const bool readable : {false, true}) {
    SCOPED_TRACE(readable ? "readable" : "not readable");
    testkit::ScratchDir dir;
    ASSERT_TRUE(dir.ok() && dir.copyLibrary() && dir.write("lw.ini", "[lw]\nDefecateMem=1\nJumpArrOnAdd=1\n"));
    ASSERT_EQ(chmod(dir.file("lw.ini").c_str(), readable ? 0644 : 0600), 0);
    const std::string program = dir.copyProgram(KRGEL_PROBE_HOST);
    ASSERT_FALSE(program.empty());
    EXPECT_EQ(stateIn(dir, program, 65534), readable ? "assert=0 host=0 switches=5" : "assert=0 host=0 switches=0");
  }
}

TEST(KrsSettings, FileIsTakenFromTheLibraryDirectoryNotTheExecutables) {
  testkit::ScratchDir libraryDir, programDir;
  ASSERT_TRUE(libraryDir.ok() && libraryDir.copyLibrary() && libraryDir.write("lw.ini", "[lw]\nJumpArrOnAdd=1\n"));
  ASSERT_TRUE(programDir.ok() && programDir.write("lw.ini", "[lw]\nDefecateMem=1\n"));
  const std::string program = programDir.copyProgram(KRGEL_PROBE_HOST);
  ASSERT_FALSE(program.empty());
  EXPECT_EQ(stateIn(libraryDir, program), "assert=0 host=0 switches=1");
}
