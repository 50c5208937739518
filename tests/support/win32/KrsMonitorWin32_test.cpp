// The Windows diagnostics path through real windows and processes: the record's twelve fields and
// the texts read through their addresses, from this process and from a host process; the
// window found again after it was closed; the settings beside KrGeL.dll; the memory probe.
#include "KrsArray.h"
#include "KrsDiagnostics.h"

#include "testkit/win32/WindowsKit.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <cwchar>
#include <memory>
#include <string>

using testkit::SeenRecord;

namespace {

// A host process (the probe host) beside its own copy of the library and an lw.ini.
struct Host {
  explicit Host(const std::string& settings) {
    if (dir.ok() && dir.copyLibrary() && dir.write("lw.ini", settings))
      process = std::make_unique<testkit::ChildProcess>(std::vector<std::string>{dir.copyProgram("krgel_probe_host.exe")});
  }
  bool ok() const { return process && process->started(); }
  std::string call(const std::string& command) { return process->call(command); }

  testkit::ScratchDir dir;
  std::unique_ptr<testkit::ChildProcess> process;
};

struct ProbeItem {
  double value;
};

double secondsNow() { return static_cast<double>(GetTickCount64()) / 1000.0; }

// One page with the given protection, released when the test ends.
struct Page {
  explicit Page(DWORD protection) : base(VirtualAlloc(nullptr, 4096, MEM_COMMIT | MEM_RESERVE, protection)) {}
  ~Page() { VirtualFree(base, 0, MEM_RELEASE); }
  void* base;
};

}  // namespace

TEST(KrsMonitorWin32, SameProcess_RecordFieldsAndTextsReadThroughTheirAddresses) {
  ASSERT_TRUE(testkit::MonitorCapture::active());
  static const char kSource[] = "win32\\KrsMonitorWin32_test.cpp";
  const Page noAccess(PAGE_NOACCESS);
  testkit::takeRecordsOf(testkit::currentProcessId());
  KrsReportWarning(L"clef \U0001D11E", kSource, 42);
  KrsReportWarning(L"empty source", "", 43);
  KrsReportWarning(L"unreadable source", static_cast<const char*>(noAccess.base), 44);
  const auto seen = testkit::takeRecordsOf(testkit::currentProcessId());
  ASSERT_EQ(seen.size(), 3u);
  const auto& raw = seen[0].raw;
  EXPECT_TRUE(seen[0].complete);
  EXPECT_EQ(raw.processId, GetCurrentProcessId());
  EXPECT_EQ(raw.threadId, GetCurrentThreadId());
  EXPECT_EQ(raw.messageLength, std::wcslen(L"WARNING 'clef \U0001D11E'"));  // a surrogate pair counts 2
  EXPECT_NE(raw.messageText, 0u);
  EXPECT_EQ(raw.sourceLength, std::strlen(kSource));
  EXPECT_EQ(raw.sourceText, reinterpret_cast<std::uintptr_t>(kSource));  // the address as passed
  EXPECT_EQ(raw.line, 42u);
  EXPECT_EQ(raw.kind, 0x0C080100u);
  EXPECT_EQ(raw.code, 25790u);
  EXPECT_EQ(raw.exeNameLength, testkit::executableName().size());
  EXPECT_EQ(raw.magic, 1400u);
  EXPECT_EQ(seen[0].record.message, "WARNING 'clef \xF0\x9D\x84\x9E'");
  EXPECT_EQ(seen[0].record.source, kSource);
  EXPECT_EQ(seen[0].record.executable, testkit::executableName());
  EXPECT_EQ(seen[1].raw.sourceLength, 0u);
  EXPECT_NE(seen[1].raw.sourceText, 0u);
  EXPECT_EQ(seen[2].raw.sourceLength, 0u);
  EXPECT_EQ(seen[2].raw.sourceText, 0u);
  EXPECT_EQ(seen[2].record.message, "WARNING 'unreadable source'");
}

TEST(KrsMonitorWin32, SecondProcess_RecordsAndAttachDetachLinesAreReadFromTheHost) {
  Host host("[lw]\nkrsassert=1\n");
  ASSERT_TRUE(host.ok());
  EXPECT_EQ(host.call("state"), "assert=1 host=1 switches=0");
  EXPECT_EQ(host.call("violate 2"), "done");
  EXPECT_EQ(host.call("warn from the host"), "sent=1");
  const unsigned pid = host.process->pid();
  const auto seen = testkit::takeRecordsOf(pid);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].record.source, "KrsTempl");
  EXPECT_EQ(seen[0].record.message, testkit::assertionText("(nIndex >= 0)", "KrsTempl", static_cast<int>(seen[0].raw.line)));
  EXPECT_EQ(seen[1].record.message, "WARNING 'from the host'");
  for (const SeenRecord& one : seen) {
    EXPECT_TRUE(one.complete);
    EXPECT_EQ(one.raw.processId, pid);
    EXPECT_EQ(one.record.executable, "krgel_probe_host.exe");
  }
  host.process->closeInput();
  EXPECT_EQ(host.process->wait(10000), 0);
  EXPECT_EQ(testkit::takeTextsOf(pid), (std::vector<std::string>{"KRGEL.DLL process attach\n", "KRGEL.DLL process detach\n"}));
}

TEST(KrsMonitorWin32, ClosedWindowIsLookedUpAgainAndAbsentAtLoadKeepsAssertionsOff) {
  std::unique_ptr<Host> host;
  {
    const testkit::MonitorPause noMonitor;
    host = std::make_unique<Host>("[lw]\nkrsassert=1\n");
    ASSERT_TRUE(host->ok());
    EXPECT_EQ(host->call("state"), "assert=0 host=0 switches=0");
    EXPECT_EQ(host->call("warn nobody"), "sent=0");
  }
  // Back: found by the lookup that runs at most once a second; assertions stay off.
  const double start = secondsNow();
  std::string answer;
  while ((answer = host->call("warn again")) != "sent=1" && secondsNow() - start < 5.0) Sleep(50);
  EXPECT_EQ(answer, "sent=1");
  EXPECT_GT(secondsNow() - start, 0.5);
  EXPECT_EQ(host->call("violate 1"), "done");
  // Closed and reopened between two reports: the stale handle is replaced at once.
  { const testkit::MonitorPause reopen; }
  EXPECT_EQ(host->call("warn replaced"), "sent=1");
  const auto seen = testkit::takeRecordsOf(host->process->pid());
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[1].record.message, "WARNING 'replaced'");
}

TEST(KrsMonitorWin32, SettingsAreReadBesideTheLibraryWithThePrivateProfileReader) {
  const struct {
    const char* name;
    const char* content;
    const char* expected;
  } rows[] = {
      {"all on", "[lw]\nkrsassert=1\nJumpArrOnAdd=1\nJumpArrOnRemove=1\nDefecateMem=1\n", "assert=1 host=1 switches=7"},
      {"keys and section in any case", "[LW]\r\nKRSASSERT=2\r\njumparronremove=1\r\n", "assert=1 host=1 switches=2"},
      {"another section", "[other]\nkrsassert=1\nDefecateMem=1\n", "assert=0 host=0 switches=0"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Host host(row.content);
    ASSERT_TRUE(host.ok());
    EXPECT_EQ(host.call("state"), row.expected);
  }
  // The program and its lw.ini in one directory, the library (found through the working
  // directory) and its lw.ini in another: the library's counts.
  testkit::ScratchDir libraryDir, programDir;
  ASSERT_TRUE(libraryDir.copyLibrary() && libraryDir.write("lw.ini", "[lw]\nJumpArrOnAdd=1\n"));
  ASSERT_TRUE(programDir.write("lw.ini", "[lw]\nDefecateMem=1\n"));
  testkit::ChildProcess host({programDir.copyProgram("krgel_probe_host.exe")}, libraryDir.path());
  EXPECT_EQ(host.call("state"), "assert=0 host=0 switches=1");
}

TEST(KrsMonitorWin32, ReadableProbeWalksTheAddressSpace) {
  const Page readable(PAGE_READWRITE), noAccess(PAGE_NOACCESS), guard(PAGE_READWRITE | PAGE_GUARD);
  void* reserved = VirtualAlloc(nullptr, 4096, MEM_RESERVE, PAGE_NOACCESS);
  const auto* bytes = static_cast<const char*>(readable.base);
  const struct {
    const char* name;
    const void* block;
    std::size_t size;
    bool expected;
  } rows[] = {
      {"committed page", bytes, 4096, true},          {"empty block anywhere", nullptr, 0, true},
      {"null", nullptr, 1, false},                    {"no access", noAccess.base, 1, false},
      {"guard page", guard.base, 1, false},           {"reserved only", reserved, 1, false},
      {"past the page", bytes + 4000, 4096, false},   {"wraps around", bytes, ~std::size_t{0}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(KrsIsReadableMemory(row.block, row.size), row.expected);
  }
  VirtualFree(reserved, 0, MEM_RELEASE);
  // The probe never touched the guard page: the first read still trips its guard.
  MEMORY_BASIC_INFORMATION info;
  ASSERT_EQ(VirtualQuery(guard.base, &info, sizeof info), sizeof info);
  EXPECT_TRUE(info.Protect & PAGE_GUARD);

  // An array asked to append from unreadable memory reports and stays as it was.
  testkit::MonitorCapture::clear();
  KrsArray<ProbeItem> values;
  EXPECT_EQ(values.Append(static_cast<const ProbeItem*>(noAccess.base), 4), 0);
  EXPECT_EQ(values.GetSize(), 0);
  const auto records = testkit::MonitorCapture::drain();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].message, testkit::assertionText("((IsBadReadPtr((const void*)(pArr), sizeof(*pArr)*nCount)))",
                                                       "KrsTempl", static_cast<int>(records[0].line)));
}
