#include "testkit/MonitorCapture.h"

#include <dlfcn.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <thread>

#include "KrsDiagnostics.h"
#include "testkit/Process.h"

namespace testkit {
namespace {

constexpr const char* kFdVariable = "KRGEL_TEST_MONITOR_FD";

int monitorFd() {
  static const int fd = std::getenv(kFdVariable) ? std::atoi(std::getenv(kFdVariable)) : -1;
  return fd;
}

// The kernel queues only a handful of datagrams per socket, so a reader thread keeps the queue
// empty while a test sends bursts. Datagrams are only taken from the socket under the lock, so
// drain() sees every datagram sent before it: either already taken or still in the socket.
std::mutex g_lock;
std::vector<Record>* g_records = new std::vector<Record>();  // never destroyed: the reader outlives main()

void takeQueued() {
  static char buffer[1 << 16];
  Record record;
  for (ssize_t size; monitorFd() >= 0 && (size = recv(monitorFd(), buffer, sizeof buffer, MSG_DONTWAIT)) >= 0;)
    if (parseRecord(std::string(buffer, static_cast<std::size_t>(size)), record)) g_records->push_back(record);
}

}  // namespace

std::vector<Record> MonitorCapture::drain() {
  std::lock_guard<std::mutex> guard(g_lock);
  takeQueued();
  std::vector<Record> records;
  records.swap(*g_records);
  return records;
}

void MonitorCapture::startReader() {
  if (monitorFd() < 0) return;
  std::thread([] {
    for (;;) {
      pollfd ready{monitorFd(), POLLIN, 0};
      if (poll(&ready, 1, 50) <= 0) continue;
      std::lock_guard<std::mutex> guard(g_lock);
      takeQueued();
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
  char pattern[] = "/tmp/krgel-test-XXXXXX";
  if (!dladdr(reinterpret_cast<void*>(&KrsQueryAssertState), &info) || !info.dli_fname || !mkdtemp(pattern)) return;
  const std::string directory = pattern, socketPath = directory + "/monitor";
  if (!copyFile(info.dli_fname, directory + "/" + std::filesystem::path(info.dli_fname).filename().string())) return;
  if (FILE* ini = std::fopen((directory + "/lw.ini").c_str(), "w")) {
    std::fputs(settings, ini);
    std::fclose(ini);
  }
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
  setenv("KRGEL_TEST_DIR", directory.c_str(), 1);  // removed by the monitored process when it ends
  execv("/proc/self/exe", argv);
}

void leaveMonitoredProcess() {
  std::error_code error;
  if (const char* dir = std::getenv("KRGEL_TEST_DIR")) std::filesystem::remove_all(dir, error);
}

}  // namespace testkit
