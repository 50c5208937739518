#include "SceneMonitor.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MonitorRecord.h"

namespace krgescene {

namespace {

constexpr const char* kFdVariable = "KRGESCENE_MONITOR_FD";
constexpr const char* kDirVariable = "KRGESCENE_MONITOR_DIR";
constexpr const char* kOuterVariable = "KRGESCENE_OUTER_MONITOR";
constexpr const char* kOuterSetVariable = "KRGESCENE_OUTER_SET";  // "1" when the caller set KRGE_MONITOR
constexpr const char* kAttachLine = "KRGEL.DLL process attach\n";

// The endpoint the library would use in the caller's environment.
std::string outerEndpoint() {
  if (const char* custom = std::getenv("KRGE_MONITOR"); custom && *custom) return custom;
  if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && *runtime)
    return std::string(runtime) + "/_indebmon";
  return "/tmp/_indebmon-" + std::to_string(geteuid());
}

bool fillAddress(const std::string& path, sockaddr_un& address) {
  std::memset(&address, 0, sizeof address);
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  return true;
}

// The library's own presence test: a socket owned by this user (no symbolic link).
bool isOwnSocket(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode) && status.st_uid == geteuid();
}

std::string singleLine(std::string text) {
  for (char& c : text)
    if (c == '\r' || c == '\n' || c == '\t') c = ' ';
  std::string collapsed;
  for (const char c : text)
    if (!(c == ' ' && !collapsed.empty() && collapsed.back() == ' ')) collapsed += c;
  while (!collapsed.empty() && collapsed.back() == ' ') collapsed.pop_back();
  return collapsed;
}

}  // namespace

bool describeReport(const unsigned char* data, std::size_t size, std::string& line) {
  krgemon::Record record;
  if (krgemon::decode(data, size, record) != krgemon::DatagramType::kRecord) return false;
  const std::string& message = record.message;
  const std::string assertionHead = "KrsAssertion failed;";
  const std::string expressionHead = "Expression: '";
  const std::size_t expression = message.find(expressionHead);
  if (message.compare(0, assertionHead.size(), assertionHead) == 0 && expression != std::string::npos) {
    const std::size_t start = expression + expressionHead.size();
    const std::size_t end = message.find('\'', start);
    line = "assertion " + message.substr(start, end == std::string::npos ? std::string::npos : end - start);
  } else {
    line = singleLine(message);
  }
  if (!record.source.empty()) {
    const std::size_t slash = record.source.find_last_of('/');
    const std::string file = slash == std::string::npos ? record.source : record.source.substr(slash + 1);
    line += " [" + file + ":" + std::to_string(record.line) + "]";
  }
  return true;
}

void SceneMonitor::enter(char** argv) {
  if (std::getenv(kFdVariable)) return;
  char pattern[] = "/tmp/krgescene-XXXXXX";
  if (!mkdtemp(pattern)) return;
  const std::string directory = pattern;
  const std::string path = directory + "/monitor";
  sockaddr_un address{};
  // The socket stays open across exec on purpose: the re-executed program reads from it.
  const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
  if (fd < 0 || !fillAddress(path, address) ||
      bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    if (fd >= 0) close(fd);
    rmdir(directory.c_str());
    return;
  }
  // Room for the reports of one line even when a query makes many of them.
  const int bufferSize = 1 << 20;
  setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &bufferSize, sizeof bufferSize);
  const char* previous = std::getenv("KRGE_MONITOR");
  setenv(kOuterSetVariable, previous ? "1" : "0", 1);
  setenv(kOuterVariable, outerEndpoint().c_str(), 1);
  setenv(kFdVariable, std::to_string(fd).c_str(), 1);
  setenv(kDirVariable, directory.c_str(), 1);
  setenv("KRGE_MONITOR", path.c_str(), 1);
  execv("/proc/self/exe", argv);
  // No re-execution: undo everything and run without the tool's monitor.
  close(fd);
  unlink(path.c_str());
  rmdir(directory.c_str());
  unsetenv(kFdVariable);
  unsetenv(kDirVariable);
  if (previous) setenv("KRGE_MONITOR", previous, 1);
  else unsetenv("KRGE_MONITOR");
}

SceneMonitor::SceneMonitor() {
  const char* fdText = std::getenv(kFdVariable);
  const char* directory = std::getenv(kDirVariable);
  if (!fdText || !directory) return;
  char* end = nullptr;
  const long fd = std::strtol(fdText, &end, 10);
  struct stat status {};
  if (*end != '\0' || fd < 0 || fstat(static_cast<int>(fd), &status) != 0 || !S_ISSOCK(status.st_mode)) return;
  m_fd = static_cast<int>(fd);
  m_directory = directory;
  if (const char* outer = std::getenv(kOuterVariable)) m_outerPath = outer;
  m_relayFd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
}

SceneMonitor::~SceneMonitor() { finish(); }

std::vector<std::string> SceneMonitor::drain() {
  std::vector<std::string> lines;
  if (m_fd < 0) return lines;
  static unsigned char buffer[65536];
  // Bounded: a line cannot cause more reports than the socket buffer holds.
  for (int i = 0; i < 100000; ++i) {
    const long size = recv(m_fd, buffer, sizeof buffer, MSG_DONTWAIT);
    if (size < 0) break;
    const auto length = static_cast<std::size_t>(size);
    // The outer monitor already saw this process attach, before the re-execution.
    if (length == std::strlen(kAttachLine) && std::memcmp(buffer, kAttachLine, length) == 0) continue;
    relay(buffer, size);
    std::string line;
    if (describeReport(buffer, length, line)) lines.push_back(line);
  }
  return lines;
}

void SceneMonitor::relay(const unsigned char* data, long size) {
  if (m_relayFd < 0 || !isOwnSocket(m_outerPath)) return;
  sockaddr_un address{};
  if (!fillAddress(m_outerPath, address)) return;
  sendto(m_relayFd, data, static_cast<std::size_t>(size), MSG_DONTWAIT, reinterpret_cast<const sockaddr*>(&address),
         sizeof address);
}

void SceneMonitor::finish() {
  if (m_fd < 0) return;
  drain();
  // The library finds its monitor gone at its next report, looks again and reaches the caller's.
  const char* outerSet = std::getenv(kOuterSetVariable);
  if (outerSet && std::strcmp(outerSet, "1") == 0) setenv("KRGE_MONITOR", m_outerPath.c_str(), 1);
  else unsetenv("KRGE_MONITOR");
  close(m_fd);
  m_fd = -1;
  if (m_relayFd >= 0) close(m_relayFd);
  m_relayFd = -1;
  unlink((m_directory + "/monitor").c_str());
  rmdir(m_directory.c_str());
}

}  // namespace krgescene
