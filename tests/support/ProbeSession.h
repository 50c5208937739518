// One run of the probe host: a scratch directory with a copy of the library and (optionally) an
// lw.ini, a monitor socket bound by the test, and the probe process driven line by line.
#pragma once

#include "testkit/Process.h"

#include <memory>
#include <string>

namespace probe {

struct Setup {
  std::string settings = "[lw]\nkrsassert=1\n";  // content of lw.ini (any bytes)
  bool writeSettings = true;                       // false: no lw.ini at all
  bool monitorBeforeStart = true;                  // bind the monitor before the probe loads
};

class Session {
public:
  explicit Session(const Setup& setup) {
    if (!m_dir.ok() || !m_dir.copyLibrary()) return;
    if (setup.writeSettings && !m_dir.write("lw.ini", setup.settings)) return;
    m_program = m_dir.copyProgram(KRGEL_PROBE_HOST);
    if (m_program.empty()) return;
    if (setup.monitorBeforeStart) startMonitor();
    m_probe = std::make_unique<testkit::ChildProcess>(testkit::ChildProcess::Options{
        {m_program}, testkit::libraryEnvironment(m_dir, monitorPath()), {}, -1});
  }

  bool ok() const { return m_probe && m_probe->started(); }
  testkit::ScratchDir& dir() { return m_dir; }
  std::string monitorPath() const { return m_dir.file("monitor"); }
  testkit::TestMonitor& monitor() { return *m_monitor; }
  bool hasMonitor() const { return m_monitor && m_monitor->ok(); }
  void startMonitor() { m_monitor = std::make_unique<testkit::TestMonitor>(monitorPath()); }
  testkit::ChildProcess& process() { return *m_probe; }

  std::string call(const std::string& command) { return m_probe->call(command); }
  // What the monitor has received so far (the probe answers only after its reports were sent).
  std::vector<std::string> received() { return hasMonitor() ? m_monitor->receive(0) : std::vector<std::string>(); }
  // Ends the probe (end of its input) and answers its exit status.
  int quit() {
    m_probe->closeInput();
    return m_probe->wait(10000);
  }

private:
  testkit::ScratchDir m_dir;
  std::string m_program;
  std::unique_ptr<testkit::TestMonitor> m_monitor;
  std::unique_ptr<testkit::ChildProcess> m_probe;
};

}  // namespace probe
