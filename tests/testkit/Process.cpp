#include "testkit/Process.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "KrsDiagnostics.h"

extern char** environ;

namespace testkit {
namespace {

long long nowMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

std::uint32_t word(const std::string& data, std::size_t at) {
  const auto byte = [&](std::size_t k) { return static_cast<std::uint32_t>(static_cast<unsigned char>(data[at + k])); };
  return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

void removeTree(const std::string& path) {
  if (DIR* listing = opendir(path.c_str())) {
    while (const dirent* entry = readdir(listing)) {
      const std::string name = entry->d_name;
      if (name == "." || name == "..") continue;
      const std::string child = path + "/" + name;
      struct stat status;
      if (lstat(child.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        chmod(child.c_str(), 0700);
        removeTree(child);
      } else {
        unlink(child.c_str());
      }
    }
    closedir(listing);
  }
  rmdir(path.c_str());
}

std::string loadedLibraryPath() {
  Dl_info info;
  if (!dladdr(reinterpret_cast<void*>(&KrsQueryAssertState), &info) || !info.dli_fname) return {};
  return info.dli_fname;
}

}  // namespace

bool copyFile(const std::string& from, const std::string& to, unsigned mode) {
  const int in = open(from.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) return false;
  const int out = open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
  bool ok = out >= 0;
  char chunk[1 << 16];
  ssize_t n;
  while (ok && (n = read(in, chunk, sizeof chunk)) > 0) ok = write(out, chunk, static_cast<std::size_t>(n)) == n;
  ::close(in);
  if (out >= 0) ok = (::close(out) == 0) && ok;
  return ok && chmod(to.c_str(), mode) == 0;
}

ScratchDir::ScratchDir() {
  char pattern[] = "/tmp/krgel-scratch-XXXXXX";
  if (const char* made = mkdtemp(pattern)) {
    m_path = made;
    chmod(made, 0755);
  }
}

ScratchDir::~ScratchDir() {
  if (!m_path.empty()) removeTree(m_path);
}

bool ScratchDir::write(const std::string& name, const std::string& content) const {
  std::FILE* out = std::fopen(file(name).c_str(), "wb");
  if (!out) return false;
  const bool written = std::fwrite(content.data(), 1, content.size(), out) == content.size();
  return (std::fclose(out) == 0) && written;
}

bool ScratchDir::copyLibrary() const {
  const std::string library = loadedLibraryPath();
  const std::size_t slash = library.rfind('/');
  return !library.empty() && copyFile(library, file(library.substr(slash + 1)), 0755);
}

std::string ScratchDir::copyProgram(const std::string& program) const {
  const std::size_t slash = program.rfind('/');
  const std::string target = file(program.substr(slash == std::string::npos ? 0 : slash + 1));
  return copyFile(program, target, 0755) ? target : std::string();
}

TestMonitor::TestMonitor(const std::string& path) : m_path(path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  m_fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (m_fd >= 0 && bind(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    ::close(m_fd);
    m_fd = -1;
  }
}

TestMonitor::~TestMonitor() { close(); }

void TestMonitor::close() {
  if (m_fd < 0) return;
  ::close(m_fd);
  m_fd = -1;
  unlink(m_path.c_str());
}

std::vector<std::string> TestMonitor::receive(int timeoutMs) {
  std::vector<std::string> datagrams;
  if (m_fd < 0) return datagrams;
  pollfd entry{m_fd, POLLIN, 0};
  if (poll(&entry, 1, timeoutMs) <= 0) return datagrams;
  static char buffer[1 << 16];
  for (;;) {
    const ssize_t size = recv(m_fd, buffer, sizeof buffer, MSG_DONTWAIT);
    if (size < 0) break;
    datagrams.emplace_back(buffer, static_cast<std::size_t>(size));
  }
  return datagrams;
}

std::vector<std::string> TestMonitor::receiveAtLeast(std::size_t count, int timeoutMs) {
  std::vector<std::string> datagrams;
  const long long deadline = nowMs() + timeoutMs;
  while (datagrams.size() < count) {
    const long long left = deadline - nowMs();
    if (left <= 0) break;
    for (std::string& datagram : receive(static_cast<int>(left))) datagrams.push_back(std::move(datagram));
  }
  return datagrams;
}

bool parseRecord(const std::string& datagram, Record& record) {
  if (datagram.size() < 56 || word(datagram, 0) != 0x5001) return false;
  const std::size_t payload = 56;
  const auto text = [&](std::size_t offsetWord, std::size_t lengthWord, std::string& out) {
    const std::size_t offset = word(datagram, offsetWord), length = word(datagram, lengthWord);
    if (offset > datagram.size() - payload || length > datagram.size() - payload - offset) return false;
    out = datagram.substr(payload + offset, length);
    return true;
  };
  record.processId = word(datagram, 8);
  record.threadId = word(datagram, 12);
  record.line = word(datagram, 32);
  record.kind = word(datagram, 36);
  record.code = word(datagram, 40);
  record.magic = word(datagram, 52);
  return text(20, 16, record.message) && text(28, 24, record.source) && text(44, 48, record.executable);
}

std::vector<Record> recordsOf(const std::vector<std::string>& datagrams) {
  std::vector<Record> records;
  for (const std::string& datagram : datagrams) {
    Record record;
    if (parseRecord(datagram, record)) records.push_back(record);
  }
  return records;
}

std::vector<std::string> textsOf(const std::vector<std::string>& datagrams) {
  std::vector<std::string> texts;
  for (const std::string& datagram : datagrams)
    if (datagram.size() < 4 || word(datagram, 0) != 0x5001) texts.push_back(datagram);
  return texts;
}

ChildProcess::ChildProcess(const Options& options) {
  // Everything the child needs is built before fork: between fork and exec only system calls.
  std::vector<std::string> environment;
  for (char** entry = environ; *entry; ++entry) {
    const std::string item = *entry;
    const std::string name = item.substr(0, item.find('='));
    bool replaced = name == "KRGEL_TEST_MONITOR_FD" || name == "KRGEL_TEST_DIR";
    for (const auto& variable : options.setEnv) replaced = replaced || variable.first == name;
    for (const auto& variable : options.unsetEnv) replaced = replaced || variable == name;
    if (!replaced) environment.push_back(item);
  }
  for (const auto& variable : options.setEnv) environment.push_back(variable.first + "=" + variable.second);
  std::vector<char*> envp, argv;
  for (std::string& item : environment) envp.push_back(item.data());
  envp.push_back(nullptr);
  std::vector<std::string> arguments = options.argv;
  for (std::string& item : arguments) argv.push_back(item.data());
  argv.push_back(nullptr);
  if (arguments.empty()) return;

  int input[2], output[2];
  if (pipe2(input, O_CLOEXEC) != 0) return;
  if (pipe2(output, O_CLOEXEC) != 0) {
    ::close(input[0]);
    ::close(input[1]);
    return;
  }
  const long maxFd = sysconf(_SC_OPEN_MAX);
  const int closeLimit = maxFd > 0 && maxFd < 4096 ? static_cast<int>(maxFd) : 4096;
  m_pid = fork();
  if (m_pid == 0) {
    dup2(input[0], 0);
    dup2(output[1], 1);
    for (int fd = 3; fd < closeLimit; ++fd) ::close(fd);
    if (options.uid >= 0) {
      const auto id = static_cast<uid_t>(options.uid);
      if (setgroups(0, nullptr) != 0 || setgid(static_cast<gid_t>(id)) != 0 || setuid(id) != 0) _exit(126);
    }
    execve(argv[0], argv.data(), envp.data());
    _exit(127);
  }
  ::close(input[0]);
  ::close(output[1]);
  m_in = input[1];
  m_out = output[0];
  if (m_pid < 0) {
    closeInput();
    ::close(m_out);
    m_out = -1;
  }
}

ChildProcess::~ChildProcess() {
  closeInput();
  if (m_pid > 0 && wait(5000) < 0) {
    kill(m_pid, SIGKILL);
    wait(5000);
  }
  if (m_out >= 0) ::close(m_out);
}

bool ChildProcess::readLine(std::string& line, int timeoutMs) {
  const long long deadline = nowMs() + timeoutMs;
  for (;;) {
    const std::size_t end = m_buffer.find('\n');
    if (end != std::string::npos) {
      line = m_buffer.substr(0, end);
      m_buffer.erase(0, end + 1);
      return true;
    }
    const long long left = deadline - nowMs();
    if (m_out < 0 || left <= 0) return false;
    pollfd entry{m_out, POLLIN, 0};
    if (poll(&entry, 1, static_cast<int>(left)) <= 0) continue;
    char chunk[4096];
    const ssize_t n = read(m_out, chunk, sizeof chunk);
    if (n <= 0) {
      ::close(m_out);
      m_out = -1;
      return false;
    }
    m_buffer.append(chunk, static_cast<std::size_t>(n));
  }
}

std::string ChildProcess::call(const std::string& command, int timeoutMs) {
  const std::string line = command + "\n";
  if (m_in < 0 || write(m_in, line.data(), line.size()) != static_cast<ssize_t>(line.size())) return "<no answer>";
  std::string answer;
  return readLine(answer, timeoutMs) ? answer : "<no answer>";
}

std::string ChildProcess::readAll(int timeoutMs) {
  std::string line, all;
  while (readLine(line, timeoutMs)) all += line + "\n";
  all += m_buffer;
  m_buffer.clear();
  return all;
}

void ChildProcess::closeInput() {
  if (m_in >= 0) ::close(m_in);
  m_in = -1;
}

void ChildProcess::signal(int number) {
  if (m_pid > 0 && !m_reaped) kill(m_pid, number);
}

int ChildProcess::wait(int timeoutMs) {
  if (m_pid <= 0) return -1;
  const long long deadline = nowMs() + timeoutMs;
  while (!m_reaped) {
    int status = 0;
    const pid_t done = waitpid(m_pid, &status, WNOHANG);
    if (done == m_pid) {
      m_reaped = true;
      m_status = WIFEXITED(status) ? WEXITSTATUS(status) : WIFSIGNALED(status) ? 128 + WTERMSIG(status) : -1;
      break;
    }
    if (done < 0 || nowMs() >= deadline) return -1;
    usleep(2000);
  }
  return m_status;
}

std::vector<std::pair<std::string, std::string>> libraryEnvironment(const ScratchDir& dir,
                                                                     const std::string& monitorPath) {
  return {{"LD_LIBRARY_PATH", dir.path()}, {"KRGE_MONITOR", monitorPath}};
}

}  // namespace testkit
