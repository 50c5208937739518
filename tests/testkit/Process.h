// Real processes for the tests: a scratch directory holding a copy of the library and an
// "lw.ini", a monitor socket bound by the test, and child programs driven through pipes.
#pragma once

#include "testkit/MonitorCapture.h"

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace testkit {

// A private directory (mode 0755, so another user can be let in) removed with its contents.
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
  // Copies the library this test program loaded (under its loaded file name) into the directory.
  bool copyLibrary() const;
  // Copies a program into the directory; answers its new path (empty on failure).
  std::string copyProgram(const std::string& program) const;

private:
  std::string m_path;
};

bool copyFile(const std::string& from, const std::string& to, unsigned mode);

// A monitor endpoint bound by the test itself.
class TestMonitor {
public:
  explicit TestMonitor(const std::string& path);
  ~TestMonitor();
  TestMonitor(const TestMonitor&) = delete;
  TestMonitor& operator=(const TestMonitor&) = delete;

  bool ok() const { return m_fd >= 0; }
  // Closes the socket and removes its path: the monitor vanishes.
  void close();
  // Datagrams received within `timeoutMs` (waits for the first, then takes what is queued).
  std::vector<std::string> receive(int timeoutMs);
  // Waits until `count` datagrams have arrived or `timeoutMs` passed.
  std::vector<std::string> receiveAtLeast(std::size_t count, int timeoutMs);

private:
  std::string m_path;
  int m_fd = -1;
};

// Decodes a record datagram; false for plain text or a malformed datagram.
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

  bool started() const { return m_pid > 0; }
  pid_t pid() const { return m_pid; }
  // Sends one command line and answers the child's next output line ("<no answer>" on timeout).
  std::string call(const std::string& command, int timeoutMs = 10000);
  bool readLine(std::string& line, int timeoutMs);
  // Everything the child writes until it closes its output.
  std::string readAll(int timeoutMs);
  void closeInput();
  void signal(int number);
  // Exit status (0-255), 128 + signal when killed by one, -1 when it did not end in time.
  int wait(int timeoutMs);

private:
  pid_t m_pid = -1;
  int m_in = -1;
  int m_out = -1;
  std::string m_buffer;
  bool m_reaped = false;
  int m_status = -1;
};

// A library environment for one child: LD_LIBRARY_PATH at the scratch directory and the
// monitor endpoint at `monitorPath`.
std::vector<std::pair<std::string, std::string>> libraryEnvironment(const ScratchDir& dir,
                                                                     const std::string& monitorPath);

}  // namespace testkit
