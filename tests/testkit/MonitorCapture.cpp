#include "testkit/MonitorCapture.h"

#include "testkit/Process.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <thread>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include "KrsDiagnostics.h"

namespace testkit {
namespace {

constexpr const char* kFdVariable = "KRGEL_TEST_MONITOR_FD";

int monitorFd() {
  static int fd = [] {
    const char* text = std::getenv(kFdVariable);
    return text ? std::atoi(text) : -1;
  }();
  return fd;
}

// The kernel queues only a handful of datagrams per socket, so a reader thread keeps the queue
// empty while a test sends bursts. Datagrams are only ever taken from the socket under the lock,
// so drain() sees every datagram sent before it: either already taken or still in the socket.
struct Inbox {
  std::mutex lock;
  std::vector<Record> records;
  std::vector<std::string> lines;
};

Inbox& inbox() {
  static Inbox* box = new Inbox();  // never destroyed: the reader thread outlives main()
  return *box;
}

void takeQueued(Inbox& box) {
  const int fd = monitorFd();
  if (fd < 0) return;
  static char buffer[1 << 16];
  for (;;) {
    const ssize_t size = recv(fd, buffer, sizeof buffer, MSG_DONTWAIT);
    if (size < 0) break;
    const std::string datagram(buffer, static_cast<std::size_t>(size));
    Record record;
    if (parseRecord(datagram, record))
      box.records.push_back(record);
    else
      box.lines.push_back(datagram);
  }
}

std::vector<Record> receive() {
  Inbox& box = inbox();
  std::lock_guard<std::mutex> guard(box.lock);
  takeQueued(box);
  std::vector<Record> records;
  records.swap(box.records);
  return records;
}

}  // namespace

void MonitorCapture::clear() { receive(); }
std::vector<Record> MonitorCapture::drain() { return receive(); }
std::vector<std::string> MonitorCapture::debugLines() {
  Inbox& box = inbox();
  std::lock_guard<std::mutex> guard(box.lock);
  takeQueued(box);
  return box.lines;
}

void MonitorCapture::startReader() {
  const int fd = monitorFd();
  if (fd < 0) return;
  inbox();
  std::thread([fd] {
    for (;;) {
      pollfd ready{fd, POLLIN, 0};
      if (poll(&ready, 1, 50) <= 0) continue;
      Inbox& box = inbox();
      std::lock_guard<std::mutex> guard(box.lock);
      takeQueued(box);
    }
  }).detach();
}
bool MonitorCapture::active() { return monitorFd() >= 0 && KrsModule::assertOn; }

unsigned currentProcessId() { return static_cast<unsigned>(getpid()); }
unsigned currentThreadId() { return static_cast<unsigned>(syscall(SYS_gettid)); }
std::string executableName() { return program_invocation_short_name; }

void enterMonitoredProcess(int argc, char** argv, const char* settings) {
  if (std::getenv(kFdVariable)) return;
  for (int i = 1; i < argc; ++i)
    if (std::strncmp(argv[i], "--gtest_list_tests", 18) == 0) return;

  Dl_info info;
  if (!dladdr(reinterpret_cast<void*>(&KrsQueryAssertState), &info) || !info.dli_fname) return;
  char pattern[] = "/tmp/krgel-test-XXXXXX";
  const char* dir = mkdtemp(pattern);
  if (!dir) return;
  const std::string directory = dir;
  const char* slash = std::strrchr(info.dli_fname, '/');
  const std::string libraryName = slash ? slash + 1 : info.dli_fname;
  if (!copyFile(info.dli_fname, directory + "/" + libraryName, 0755)) return;
  if (FILE* ini = std::fopen((directory + "/lw.ini").c_str(), "w")) {
    std::fputs(settings, ini);
    std::fclose(ini);
  }
  const std::string socketPath = directory + "/monitor";
  const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);  // inherited across exec on purpose
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", socketPath.c_str());
  if (fd < 0 || bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return;
  int bufferSize = 4 << 20;
  setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &bufferSize, sizeof bufferSize);

  setenv(kFdVariable, std::to_string(fd).c_str(), 1);
  setenv("KRGE_MONITOR", socketPath.c_str(), 1);
  const char* previous = std::getenv("LD_LIBRARY_PATH");
  setenv("LD_LIBRARY_PATH", previous && *previous ? (directory + ":" + previous).c_str() : directory.c_str(), 1);
  // The directory is removed by the monitored process when it ends.
  setenv("KRGEL_TEST_DIR", directory.c_str(), 1);
  execv("/proc/self/exe", argv);
}

void leaveMonitoredProcess() {
  const char* dir = std::getenv("KRGEL_TEST_DIR");
  if (!dir) return;
  if (DIR* listing = opendir(dir)) {
    while (const dirent* entry = readdir(listing))
      if (entry->d_name[0] != '.') unlink((std::string(dir) + "/" + entry->d_name).c_str());
    closedir(listing);
  }
  rmdir(dir);
}

}  // namespace testkit
