// One run of the probe host: a scratch directory with a copy of the library and (optionally) an
// lw.ini, a monitor socket bound by the test, and the probe process driven line by line.
#pragma once

#include <memory>
#include <string>

#if defined(_WIN32)
#include "testkit/win32/WindowsKit.h"
#else
#include "testkit/Process.h"
#endif

namespace probe {

struct Setup {
  std::string settings = "[lw]\nkrsassert=1\n";  // content of lw.ini (any bytes)
  bool writeSettings = true;                       // false: no lw.ini at all
  bool monitorBeforeStart = true;                  // bind the monitor before the probe loads
};

#if defined(_WIN32)
// On Windows the loader takes the library beside the program, and the test program's own window
// is the monitor: a session is the probe copied beside the library, driven line by line.
class Session {
public:
  explicit Session(const Setup& setup) {
    if (!m_dir.copyLibrary() || (setup.writeSettings && !m_dir.write("lw.ini", setup.settings))) return;
    m_probe = std::make_unique<testkit::ChildProcess>(std::vector<std::string>{m_dir.copyProgram("krgel_probe_host.exe")});
  }
  std::string call(const std::string& command) { return m_probe ? m_probe->call(command) : "<probe did not start>"; }
  int quit() {
    if (!m_probe) return -1;
    m_probe->closeInput();
    return static_cast<int>(m_probe->wait(10000));
  }

private:
  testkit::ScratchDir m_dir;
  std::unique_ptr<testkit::ChildProcess> m_probe;
};
#else
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
    if (!m_probe) return -1;
    m_probe->closeInput();
    return m_probe->wait(10000);
  }

private:
  testkit::ScratchDir m_dir;
  std::unique_ptr<testkit::TestMonitor> m_monitor;
  std::unique_ptr<testkit::ChildProcess> m_probe;
};
#endif

}  // namespace probe
