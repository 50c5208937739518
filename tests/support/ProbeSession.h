// One run of the probe host: a scratch directory with a copy of the library and (optionally) an
// lw.ini, a monitor socket bound by the test, and the probe process driven line by line.
#pragma once

#include <memory>
#include <string>

#include "testkit/Process.h"

namespace probe {

struct Setup {
  std::string settings = "[lw]\nkrsassert=1\n";  // content of lw.ini (any bytes)
  bool writeSettings = true;                       // false: no lw.ini at all
  bool monitorBeforeStart = true;                  // bind the monitor before the probe loads
};

class Session {
public:
  explicit Session(const Setup& setup) {
    if (!m_dir.copyLibrary() || (setup.writeSettings && !m_dir.write("lw.ini", setup.settings))) return;
    if (setup.monitorBeforeStart) startMonitor();
    m_probe = std::make_unique<testkit::ChildProcess>(testkit::ChildProcess::Options{
        {m_dir.copyProgram(KRGEL_PROBE_HOST)}, testkit::libraryEnvironment(m_dir, m_dir.file("monitor")), {}, -1});
  }

  testkit::TestMonitor& monitor() { return *m_monitor; }
  void startMonitor() { m_monitor = std::make_unique<testkit::TestMonitor>(m_dir.file("monitor")); }
  std::string call(const std::string& command) { return m_probe ? m_probe->call(command) : "<probe did not start>"; }
  // What the monitor has received so far (the probe answers only after its reports were sent).
  std::vector<std::string> received() { return m_monitor ? m_monitor->receive(0) : std::vector<std::string>(); }
  // Ends the probe (end of its input) and answers its exit status.
  int quit() {
    m_probe->closeInput();
    return m_probe->wait(10000);
  }

private:
  testkit::ScratchDir m_dir;
  std::unique_ptr<testkit::TestMonitor> m_monitor;
  std::unique_ptr<testkit::ChildProcess> m_probe;
};

}  // namespace probe
