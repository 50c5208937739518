// Real processes for the tests: a scratch directory holding a copy of the library and an
// "lw.ini", a monitor socket bound by the test, and child programs driven through pipes.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

#include "testkit/MonitorCapture.h"

namespace testkit {

// A private directory (mode 0755, so another user can be let in), removed with its contents.
class ScratchDir {
public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  bool ok() const { return !m_path.empty(); }
  const std::string& path() const { return m_path; }
  std::string file(const std::string& name) const { return m_path + "/" + name; }
  bool write(const std::string& name, const std::string& content) const;
  // Copies the library this program loaded, or a program (answering its new path, empty on failure).
  bool copyLibrary() const;
  std::string copyProgram(const std::string& program) const;

private:
  std::string m_path;
};

bool copyFile(const std::string& from, const std::string& to);

// A monitor endpoint bound by the test itself.
class TestMonitor {
public:
  explicit TestMonitor(const std::string& path);
  ~TestMonitor() { close(); }
  TestMonitor(const TestMonitor&) = delete;
  TestMonitor& operator=(const TestMonitor&) = delete;

  bool ok() const { return m_fd >= 0; }
  // Closes the socket and removes its path: the monitor vanishes.
  void close();
  // Datagrams received within `timeoutMs` (waits for the first, then takes what is queued).
  std::vector<std::string> receive(int timeoutMs);

private:
  std::string m_path;
  int m_fd = -1;
};

// Record datagrams decoded (plain text and malformed ones skipped), and the plain-text ones.
bool parseRecord(const std::string& datagram, Record& record);
std::vector<Record> recordsOf(const std::vector<std::string>& datagrams);
std::vector<std::string> textsOf(const std::vector<std::string>& datagrams);

// A child program with its standard input and output on pipes (standard error is inherited).
class ChildProcess {
public:
  struct Options {
    std::vector<std::string> argv;
    std::vector<std::pair<std::string, std::string>> setEnv;
    std::vector<std::string> unsetEnv;
    int uid = -1;  // run as this user (and its group) when not negative
  };
  explicit ChildProcess(const Options& options);
  ~ChildProcess();  // ends the child if it still runs
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return m_pid; }
  // Sends one command line and answers the child's next output line ("<no answer>" on timeout).
  std::string call(const std::string& command, int timeoutMs = 10000);
  // Everything the child writes until it closes its output.
  std::string readAll(int timeoutMs);
  void closeInput();
  void signal(int number);
  // Exit status (0-255), 128 + signal when killed by one, -1 when it did not end in time.
  int wait(int timeoutMs);

private:
  bool readLine(std::string& line, int timeoutMs);

  pid_t m_pid = -1;
  int m_in = -1;
  int m_out = -1;
  std::string m_buffer;
  int m_status = -1;
};

// The environment of a host beside the library copy in `dir` with its monitor at `monitorPath`.
std::vector<std::pair<std::string, std::string>> libraryEnvironment(const ScratchDir& dir, const std::string& monitorPath);

}  // namespace testkit
