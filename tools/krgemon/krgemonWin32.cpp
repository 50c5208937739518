// krgemon.exe: the debug monitor of KrGeL on Windows. It creates the hidden window of class
// "_indebmon" that libraries look for, reads each record's texts from the reporting process and
// prints one line per record (or JSON with --json); the system's debug output, where the
// libraries write their attach/detach lines, is printed as it arrives.
//
// Exit status: 0 done (Ctrl+C, --count reached or --timeout elapsed), 1 the window or the debug
// output could not be taken (another monitor runs), 2 bad arguments, 3 --timeout elapsed before
// --count lines were printed.
#include "MonitorRecord.h"
#include "WindowMonitor.h"

#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

namespace {

HANDLE g_done = nullptr;

struct Options {
  bool json = false;
  long long count = -1;  // stop after this many lines; -1 = never
  double timeout = -1.0;  // stop after this many seconds; negative = never
};

void usage(std::FILE* to) {
  std::fputs("usage: krgemon [--json] [--count N] [--timeout SECONDS]\n"
             "  Prints what KrGeL libraries report to the window of class \"_indebmon\".\n",
             to);
}

bool parseOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    char* end = nullptr;
    if (arg == "--json") {
      options.json = true;
    } else if (arg == "--count" && hasValue) {
      options.count = std::strtoll(argv[++i], &end, 10);
      if (*end || options.count < 1) return false;
    } else if (arg == "--timeout" && hasValue) {
      options.timeout = std::strtod(argv[++i], &end);
      if (*end || !(options.timeout >= 0.0) || options.timeout > 1e6) return false;
    } else if (arg == "--help" || arg == "-h") {
      usage(stdout);
      std::exit(0);
    } else {
      return false;
    }
  }
  return true;
}

// Prints lines from the window's and the debug reader's threads, one at a time, and signals the
// main thread once the wanted count has been printed.
class Printer {
public:
  explicit Printer(const Options& options) : m_options(options) {}

  void record(const krgemon::Record& record, bool complete) {
    const std::string time = krgemon::localTime(m_options.json);
    if (!complete)
      put(m_options.json ? "{\"time\":\"" + time + "\",\"malformed\":\"record\"}" : time + " malformed record");
    else
      put(m_options.json ? krgemon::formatJson(time, record) : krgemon::formatLine(time, record));
  }

  void text(const std::string& text) {
    std::string line = m_options.json ? krgemon::formatTextJson(krgemon::localTime(true), text) : text;
    if (!m_options.json && !line.empty() && line.back() == '\n') line.pop_back();
    put(line);
  }

  bool reachedCount() {
    std::lock_guard<std::mutex> guard(m_lock);
    return m_options.count > 0 && m_printed >= m_options.count;
  }

private:
  void put(const std::string& line) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (m_options.count > 0 && m_printed >= m_options.count) return;
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
    if (++m_printed == m_options.count) SetEvent(g_done);
  }

  const Options& m_options;
  std::mutex m_lock;
  long long m_printed = 0;
};

BOOL WINAPI onConsoleEvent(DWORD) {
  SetEvent(g_done);
  return TRUE;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parseOptions(argc, argv, options)) {
    usage(stderr);
    return 2;
  }
  g_done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetConsoleCtrlHandler(onConsoleEvent, TRUE);
  if (FindWindowW(L"_indebmon", nullptr)) {
    std::fputs("krgemon: another debug monitor already has a window of class \"_indebmon\"\n", stderr);
    return 1;
  }
  Printer printer(options);
  krgemon::DebugOutputReader debugOutput([&](std::uint32_t, const std::string& text) { printer.text(text); });
  krgemon::MonitorWindow window([&](const krgemon::WindowRecord&, const krgemon::Record& record, bool complete) {
    printer.record(record, complete);
  });
  if (!window.ok() || !debugOutput.ok()) {
    std::fputs("krgemon: cannot take the monitor window and the debug output\n", stderr);
    return 1;
  }
  const DWORD wait = options.timeout >= 0.0 ? static_cast<DWORD>(std::ceil(options.timeout * 1000.0)) : INFINITE;
  const bool signalled = WaitForSingleObject(g_done, wait) == WAIT_OBJECT_0;
  return !signalled && options.count > 0 && !printer.reachedCount() ? 3 : 0;
}
