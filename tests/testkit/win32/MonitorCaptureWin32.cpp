// The monitored test program on Windows. The first process copies itself beside a copy of
// KrGeL.dll with an lw.ini and opens a monitor window, so that the library of the second process
// loads with a monitor present; that process, which runs the tests, then opens its own window and
// the first one closes its window (a handover through two inherited events) and waits.
#include "testkit/MonitorCapture.h"
#include "testkit/win32/WindowsKit.h"
#include "testkit/win32/WindowsText.h"

#include <windows.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>

#include "KrsDiagnostics.h"

namespace testkit {
namespace {

constexpr const char* kDirVariable = "KRGEL_TEST_DIR";
constexpr const char* kHandoverVariable = "KRGEL_TEST_HANDOVER";
constexpr DWORD kHandoverTimeoutMs = 30000;

struct Capture {
  std::mutex inboxLock;  // guards the received records and texts
  std::vector<SeenRecord> records;
  std::vector<std::pair<unsigned, std::string>> texts;

  std::mutex runLock;  // guards the window and reader (never taken by their threads)
  std::unique_ptr<krgemon::DebugOutputReader> debugOutput;
  std::unique_ptr<krgemon::MonitorWindow> window;
  int pauses = 0;

  void start() {
    debugOutput = std::make_unique<krgemon::DebugOutputReader>([this](std::uint32_t processId, const std::string& text) {
      std::lock_guard<std::mutex> guard(inboxLock);
      texts.emplace_back(processId, text);
    });
    window = std::make_unique<krgemon::MonitorWindow>(
        [this](const krgemon::WindowRecord& raw, const krgemon::Record& read, bool complete) {
          const Record record{read.processId, read.threadId, read.line,   read.kind,      read.code,
                              raw.magic,      read.message,  read.source, read.executable};
          std::lock_guard<std::mutex> guard(inboxLock);
          records.push_back({raw, record, complete});
        });
  }
  void stop() {
    window.reset();
    debugOutput.reset();
  }
};

Capture& capture() {
  static Capture* instance = new Capture();  // never destroyed: its threads may outlive main()
  return *instance;
}

bool monitored() { return std::getenv(kDirVariable) != nullptr; }

std::vector<SeenRecord> takeRecords(unsigned processId) {
  Capture& c = capture();
  std::lock_guard<std::mutex> guard(c.inboxLock);
  std::vector<SeenRecord> taken, kept;
  for (SeenRecord& seen : c.records) (seen.raw.processId == processId ? taken : kept).push_back(std::move(seen));
  c.records.swap(kept);
  return taken;
}

std::vector<Record> recordsOnly(std::vector<SeenRecord> seen) {
  std::vector<Record> records;
  for (SeenRecord& one : seen) records.push_back(std::move(one.record));
  return records;
}

HANDLE inheritableEvent() {
  SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return CreateEventW(&inherit, TRUE, FALSE, nullptr);
}

// The second process's command line: its own copy of the program, then this one's arguments.
std::wstring childCommandLine(const std::string& program) {
  std::wstring line = quoted(wide(program));
  int count = 0;
  if (LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count)) {
    for (int i = 1; i < count; ++i) line += L" " + quoted(arguments[i]);
    LocalFree(arguments);
  }
  return line;
}

// Runs the program's copy in `directory` under this process's window until it is handed over;
// answers the copy's exit code.
DWORD runMonitoredCopy(const std::string& directory, const std::string& program) {
  HANDLE ready = inheritableEvent(), released = inheritableEvent();
  auto window = std::make_unique<krgemon::MonitorWindow>([](const krgemon::WindowRecord&, const krgemon::Record&, bool) {});
  if (!ready || !released || !window->ok()) return 1;
  char handover[64];
  std::snprintf(handover, sizeof handover, "%llu %llu", static_cast<unsigned long long>(reinterpret_cast<UINT_PTR>(ready)),
                static_cast<unsigned long long>(reinterpret_cast<UINT_PTR>(released)));
  SetEnvironmentVariableA(kHandoverVariable, handover);
  SetEnvironmentVariableA(kDirVariable, directory.c_str());
  SetEnvironmentVariableA("KRGEL_TEST_ORIGIN", directoryOf(moduleFile(nullptr)).c_str());

  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
    SetHandleInformation(GetStdHandle(stream), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION child{};
  std::wstring commandLine = childCommandLine(program);
  if (!CreateProcessW(wide(program).c_str(), &commandLine[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                      &child))
    return 1;
  CloseHandle(child.hThread);
  const HANDLE waits[] = {ready, child.hProcess};
  if (WaitForMultipleObjects(2, waits, FALSE, INFINITE) == WAIT_OBJECT_0) {
    window.reset();
    SetEvent(released);
  }
  WaitForSingleObject(child.hProcess, INFINITE);
  DWORD code = 1;
  GetExitCodeProcess(child.hProcess, &code);
  CloseHandle(child.hProcess);
  return code;
}

}  // namespace

std::vector<SeenRecord> takeRecordsOf(unsigned processId) { return takeRecords(processId); }

std::vector<std::string> takeTextsOf(unsigned processId) {
  Capture& c = capture();
  {
    std::lock_guard<std::mutex> guard(c.runLock);
    if (c.debugOutput) c.debugOutput->sync();
  }
  std::lock_guard<std::mutex> guard(c.inboxLock);
  std::vector<std::string> taken;
  std::vector<std::pair<unsigned, std::string>> kept;
  for (auto& text : c.texts) {
    if (text.first == processId)
      taken.push_back(std::move(text.second));
    else
      kept.push_back(std::move(text));
  }
  c.texts.swap(kept);
  return taken;
}

MonitorPause::MonitorPause() {
  Capture& c = capture();
  std::lock_guard<std::mutex> guard(c.runLock);
  if (c.pauses++ == 0) c.stop();
}

MonitorPause::~MonitorPause() {
  Capture& c = capture();
  std::lock_guard<std::mutex> guard(c.runLock);
  if (--c.pauses == 0 && monitored()) c.start();
}

std::vector<Record> MonitorCapture::drain() { return recordsOnly(takeRecords(currentProcessId())); }

// Opens this process's window and takes over from the first process.
void MonitorCapture::startReader() {
  if (!monitored()) return;
  {
    Capture& c = capture();
    std::lock_guard<std::mutex> guard(c.runLock);
    c.start();
  }
  unsigned long long ready = 0, released = 0;
  const char* handover = std::getenv(kHandoverVariable);
  if (!handover || std::sscanf(handover, "%llu %llu", &ready, &released) != 2) return;
  SetEvent(reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(ready)));
  WaitForSingleObject(reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(released)), kHandoverTimeoutMs);
}

bool MonitorCapture::active() {
  Capture& c = capture();
  std::lock_guard<std::mutex> guard(c.runLock);
  return monitored() && c.window && c.window->ok() && KrsModule::assertOn;
}

unsigned currentProcessId() { return static_cast<unsigned>(GetCurrentProcessId()); }
unsigned currentThreadId() { return static_cast<unsigned>(GetCurrentThreadId()); }
std::string executableName() { return fileNameOf(moduleFile(nullptr)); }

void enterMonitoredProcess(int argc, char** argv, const char* settings) {
  if (monitored()) return;
  for (int i = 1; i < argc; ++i)
    if (std::strncmp(argv[i], "--gtest_list_tests", 18) == 0) return;
  const std::string library = moduleFile(reinterpret_cast<const void*>(&KrsQueryAssertState));
  const std::string program = moduleFile(nullptr);
  const std::string directory = makeScratchDirectory("krgel-test-");
  if (library.empty() || program.empty() || directory.empty()) return;
  const std::string copy = directory + "\\" + fileNameOf(program);
  if (!CopyFileW(wide(library).c_str(), wide(directory + "\\" + fileNameOf(library)).c_str(), FALSE) ||
      !CopyFileW(wide(program).c_str(), wide(copy).c_str(), FALSE) || !writeFile(directory + "\\lw.ini", settings)) {
    removeDirectory(directory);
    return;
  }
  const DWORD code = runMonitoredCopy(directory, copy);
  // The copy's executable may stay locked for a moment after its process ended.
  for (int attempt = 0; attempt < 50; ++attempt) {
    removeDirectory(directory);
    if (GetFileAttributesW(wide(directory).c_str()) == INVALID_FILE_ATTRIBUTES) break;
    Sleep(20);
  }
  // An exception code such as 0xC0000005 must not reach the shell as a multiple of 256.
  std::fflush(stdout);
  std::exit(code == 0 ? 0 : (code & 0xFF) != 0 ? static_cast<int>(code & 0xFF) : 1);
}

void leaveMonitoredProcess() {
  Capture& c = capture();
  std::lock_guard<std::mutex> guard(c.runLock);
  c.stop();
}

}  // namespace testkit
