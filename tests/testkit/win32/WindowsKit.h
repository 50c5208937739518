// The Windows side of the test kit. The monitored test program owns a real debug-monitor window
// (hidden, top-level, class "_indebmon": the same window as krgemon.exe's) and the reader of the
// system's debug output; records and texts from every process are kept by sender. Host processes
// for the process-level tests run beside copies of the library, driven through pipes.
#pragma once

#include "testkit/MonitorCapture.h"

#include "WindowMonitor.h"

#include <string>
#include <vector>

namespace testkit {

struct SeenRecord {
  krgemon::WindowRecord raw;  // the twelve fields as the sender laid them out
  Record record;              // with the texts read through their addresses
  bool complete = false;      // every text could be read
};

// What process `processId` has sent since the last call: records, and debug-output texts (the
// reader is synchronised first, so every text written before the call is there).
std::vector<SeenRecord> takeRecordsOf(unsigned processId);
std::vector<std::string> takeTextsOf(unsigned processId);

// While one is alive the test program has neither its window nor the debug-output reader, so a
// host can load without a monitor, or another monitor can take the window class.
class MonitorPause {
public:
  MonitorPause();
  ~MonitorPause();
  MonitorPause(const MonitorPause&) = delete;
  MonitorPause& operator=(const MonitorPause&) = delete;
};

// A private directory under the temporary directory, removed with its contents.
class ScratchDir {
public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  bool ok() const { return !m_path.empty(); }
  const std::string& path() const { return m_path; }
  std::string file(const std::string& name) const { return m_path + "\\" + name; }
  bool write(const std::string& name, const std::string& content) const;
  // Copies the library this program loaded (KrGeL.dll) into the directory.
  bool copyLibrary() const;
  // Copies a program of the build (by file name) into the directory; answers its new path.
  std::string copyProgram(const std::string& name) const;

private:
  std::string m_path;
};

// A child program started in `directory` (empty: this program's), its standard input and output
// on pipes, standard error inherited.
class ChildProcess {
public:
  explicit ChildProcess(const std::vector<std::string>& argv, const std::string& directory = {});
  ~ChildProcess();  // ends the child if it still runs
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  bool started() const { return m_process != nullptr; }
  unsigned pid() const { return m_pid; }
  // Sends one command line and answers the child's next output line ("<no answer>" on timeout).
  std::string call(const std::string& command, int timeoutMs = 10000);
  // Everything the child writes until it closes its output.
  std::string readAll(int timeoutMs);
  void closeInput();
  // Exit code, -1 when the child did not end in time.
  long long wait(int timeoutMs);

private:
  bool readLine(std::string& line, int timeoutMs);

  void* m_process = nullptr;
  void* m_in = nullptr;
  void* m_out = nullptr;
  unsigned m_pid = 0;
  std::string m_buffer;
};

// Path of a program built beside the test programs (krgel_probe_host.exe, krgemon.exe).
std::string buildProgram(const std::string& name);

}  // namespace testkit
