// A real debug monitor for the tests. The test program's main() moves itself into a private
// directory holding a copy of the library and an "lw.ini" with assertions on, binds a monitor
// socket there and re-executes itself, so the library loads with the monitor present exactly
// as it would beside a host. Records then arrive on that socket and are read back here.
#pragma once

#include <string>
#include <vector>

namespace testkit {

struct Record {
  unsigned processId = 0, threadId = 0, line = 0, kind = 0, code = 0, magic = 0;
  std::string message;  // UTF-8
  std::string source;
  std::string executable;
};

// Reads the records the library has sent (plain debug-output lines are dropped).
class MonitorCapture {
public:
  // Discards what is queued.
  static void clear() { drain(); }
  // Records received since the last clear()/drain(), in arrival order.
  static std::vector<Record> drain();
  // Starts the thread that empties the monitor socket as records arrive (called by main()).
  static void startReader();
  // True when this process runs under the test monitor with assertions on.
  static bool active();
};

// The assertion text the library sends for `expression` at `source`:`line`.
std::string assertionText(const std::string& expression, const std::string& source, int line);

// Count of records whose message equals `message`.
int countMessage(const std::vector<Record>& records, const std::string& message);

// Re-executes the test program under the monitor (beside a copy of the library and an lw.ini
// holding `settings`); called first thing by the test main(). Returns, and the caller simply goes
// on, when the program is already monitored, only lists its tests, or the set-up failed.
void enterMonitoredProcess(int argc, char** argv, const char* settings);
// Ends the monitored run (called last by the test main): the private directory is removed.
void leaveMonitoredProcess();

// The running process as a record names it: its id, the calling thread's id, the executable's
// file name.
unsigned currentProcessId();
unsigned currentThreadId();
std::string executableName();

}  // namespace testkit
