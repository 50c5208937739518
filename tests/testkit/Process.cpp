#include "testkit/Process.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "KrsDiagnostics.h"

extern char** environ;

namespace fs = std::filesystem;

namespace testkit {
namespace {

long long nowMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

std::uint32_t word(const std::string& data, std::size_t at) {
  std::uint32_t value = 0;
  for (int k = 3; k >= 0; --k) value = value << 8 | static_cast<unsigned char>(data[at + k]);
  return value;
}

}  // namespace

bool copyFile(const std::string& from, const std::string& to) {
  std::error_code error;
  return fs::copy_file(from, to, fs::copy_options::overwrite_existing, error) && !error;
}

ScratchDir::ScratchDir() {
  char pattern[] = "/tmp/krgel-scratch-XXXXXX";
  if (const char* made = mkdtemp(pattern)) {
    m_path = made;
    fs::permissions(m_path, fs::perms(0755));
  }
}

ScratchDir::~ScratchDir() {
  std::error_code error;
  if (ok()) fs::remove_all(m_path, error);
}

bool ScratchDir::write(const std::string& name, const std::string& content) const {
  std::ofstream out(file(name), std::ios::binary);
  return static_cast<bool>(out.write(content.data(), static_cast<std::streamsize>(content.size())));
}

bool ScratchDir::copyLibrary() const {
  Dl_info info;
  return dladdr(reinterpret_cast<void*>(&KrsQueryAssertState), &info) && info.dli_fname &&
         copyFile(info.dli_fname, file(fs::path(info.dli_fname).filename()));
}

std::string ScratchDir::copyProgram(const std::string& program) const {
  const std::string target = file(fs::path(program).filename());
  return copyFile(program, target) ? target : std::string();
}

TestMonitor::TestMonitor(const std::string& path) : m_path(path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  m_fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (m_fd >= 0 && bind(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) close();
}

void TestMonitor::close() {
  if (m_fd < 0) return;
  ::close(m_fd);
  m_fd = -1;
  unlink(m_path.c_str());
}

std::vector<std::string> TestMonitor::receive(int timeoutMs) {
  std::vector<std::string> datagrams;
  pollfd entry{m_fd, POLLIN, 0};
  if (m_fd < 0 || poll(&entry, 1, timeoutMs) <= 0) return datagrams;
  static char buffer[1 << 16];
  for (ssize_t size; (size = recv(m_fd, buffer, sizeof buffer, MSG_DONTWAIT)) >= 0;)
    datagrams.emplace_back(buffer, static_cast<std::size_t>(size));
  return datagrams;
}

bool parseRecord(const std::string& datagram, Record& record) {
  constexpr std::size_t kPayload = 56;
  if (datagram.size() < kPayload || word(datagram, 0) != 0x5001) return false;
  const auto text = [&](std::size_t offsetAt, std::size_t lengthAt, std::string& out) {
    const std::size_t offset = word(datagram, offsetAt), length = word(datagram, lengthAt);
    if (offset > datagram.size() - kPayload || length > datagram.size() - kPayload - offset) return false;
    out = datagram.substr(kPayload + offset, length);
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
  Record record;
  for (const std::string& datagram : datagrams)
    if (parseRecord(datagram, record)) records.push_back(record);
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
  std::vector<std::string> environment, arguments = options.argv;
  for (char** entry = environ; *entry; ++entry) {
    const std::string item = *entry, name = item.substr(0, item.find('='));
    bool replaced = name == "KRGEL_TEST_MONITOR_FD" || name == "KRGEL_TEST_DIR";
    for (const auto& variable : options.setEnv) replaced = replaced || variable.first == name;
    for (const auto& variable : options.unsetEnv) replaced = replaced || variable == name;
    if (!replaced) environment.push_back(item);
  }
  for (const auto& variable : options.setEnv) environment.push_back(variable.first + "=" + variable.second);
  std::vector<char*> envp, argv;
  for (std::string& item : environment) envp.push_back(item.data());
  for (std::string& item : arguments) argv.push_back(item.data());
  envp.push_back(nullptr);
  argv.push_back(nullptr);
  int input[2], output[2];
  if (arguments.empty() || pipe2(input, O_CLOEXEC) != 0) return;
  if (pipe2(output, O_CLOEXEC) != 0) {
    ::close(input[0]);
    ::close(input[1]);
    return;
  }
  m_pid = fork();
  if (m_pid == 0) {
    dup2(input[0], 0);
    dup2(output[1], 1);
    for (int fd = 3; fd < 4096; ++fd) ::close(fd);
    const auto id = static_cast<uid_t>(options.uid);
    if (options.uid >= 0 && (setgroups(0, nullptr) != 0 || setgid(id) != 0 || setuid(id) != 0)) _exit(126);
    execve(argv[0], argv.data(), envp.data());
    _exit(127);
  }
  ::close(input[0]);
  ::close(output[1]);
  m_in = input[1];
  m_out = output[0];
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
  for (const long long deadline = nowMs() + timeoutMs;;) {
    const std::size_t end = m_buffer.find('\n');
    if (end != std::string::npos) {
      line = m_buffer.substr(0, end);
      m_buffer.erase(0, end + 1);
      return true;
    }
    const long long left = deadline - nowMs();
    pollfd entry{m_out, POLLIN, 0};
    if (m_out < 0 || left <= 0) return false;
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
  std::string answer;
  if (m_in < 0 || write(m_in, line.data(), line.size()) != static_cast<ssize_t>(line.size())) return "<no answer>";
  return readLine(answer, timeoutMs) ? answer : "<no answer>";
}

std::string ChildProcess::readAll(int timeoutMs) {
  std::string line, all;
  while (readLine(line, timeoutMs)) all += line + "\n";
  return all + m_buffer;
}

void ChildProcess::closeInput() {
  if (m_in >= 0) ::close(m_in);
  m_in = -1;
}

void ChildProcess::signal(int number) {
  if (m_pid > 0 && m_status < 0) kill(m_pid, number);
}

int ChildProcess::wait(int timeoutMs) {
  for (const long long deadline = nowMs() + timeoutMs; m_pid > 0 && m_status < 0; usleep(2000)) {
    int status = 0;
    const pid_t done = waitpid(m_pid, &status, WNOHANG);
    if (done == m_pid) m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    if (done < 0 || (done == 0 && nowMs() >= deadline)) return -1;
  }
  return m_status;
}

std::vector<std::pair<std::string, std::string>> libraryEnvironment(const ScratchDir& dir, const std::string& monitorPath) {
  return {{"LD_LIBRARY_PATH", dir.path()}, {"KRGE_MONITOR", monitorPath}};
}

}  // namespace testkit
