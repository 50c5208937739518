// The tool's own debug monitor, so that the library's reports can be printed beside the scene
// line that caused them.
//
// The library decides at load whether to report assertions (only with a monitor present) and
// looks its monitor up through KRGE_MONITOR. So the tool binds a datagram socket in a fresh
// directory, points KRGE_MONITOR at it and re-executes itself, keeping the socket open across
// the exec: the library then loads with the tool's socket as its monitor. Library reports are
// synchronous, so after each scene line everything that line caused is already queued and is
// read without waiting. Every record is also relayed to the monitor the tool's caller had (a
// running krgemon), and at the end KRGE_MONITOR is restored so that the library's detach line
// reaches that monitor too.
#pragma once

#include <string>
#include <vector>

namespace krgescene {

class SceneMonitor {
public:
  // Re-executes the program under the tool's own monitor unless it already runs under it; returns
  // only when it did not re-execute (already monitored, or no socket could be made: the tool then
  // runs without diagnostics).
  static void enter(char** argv);

  // Takes over the socket inherited through the re-execution, if any.
  SceneMonitor();
  ~SceneMonitor();
  SceneMonitor(const SceneMonitor&) = delete;
  SceneMonitor& operator=(const SceneMonitor&) = delete;

  bool active() const { return m_fd >= 0; }
  // The reports received since the last call, one readable line each, relayed to the outer
  // monitor as they are.
  std::vector<std::string> drain();
  // Restores the caller's KRGE_MONITOR and removes the socket (also done by the destructor).
  void finish();

private:
  void relay(const unsigned char* data, long size);

  int m_fd = -1;
  int m_relayFd = -1;
  std::string m_directory;
  std::string m_outerPath;
};

// One readable line for a report datagram; false for a datagram that is not a report (the
// library's plain attach and detach lines, or anything malformed).
bool describeReport(const unsigned char* data, std::size_t size, std::string& line);

}  // namespace krgescene
