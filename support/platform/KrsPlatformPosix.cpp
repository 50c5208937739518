// POSIX implementation of the platform layer: the loader (dladdr) for the library's own path,
// a Unix-domain datagram socket as the debug-monitor window, and the shared object's
// constructor/destructor as the process attach/detach entry.
#include "support/KrsLibraryLoad.h"
#include "support/KrsPlatform.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

namespace KrsPlatform {
namespace {

// Any static object of the library will do for asking the loader which module holds it.
const char kModuleAnchor = 0;

static_assert(sizeof(sockaddr_un) <= sizeof(MonitorAddress::bytes), "monitor address too small");

bool monitorPath(char* buffer, std::size_t size) {
  const char* custom = getenv("KRGE_MONITOR");
  int written;
  if (custom && *custom) {
    written = snprintf(buffer, size, "%s", custom);
  } else if (const char* runtime = getenv("XDG_RUNTIME_DIR"); runtime && *runtime) {
    written = snprintf(buffer, size, "%s/_indebmon", runtime);
  } else {
    written = snprintf(buffer, size, "/tmp/_indebmon-%u", static_cast<unsigned>(geteuid()));
  }
  return written > 0 && static_cast<std::size_t>(written) < size;
}

// One unbound datagram socket for the life of the process: it is never closed, so a
// concurrent report can never write into a descriptor that the host has reused.
int senderSocket() {
  static int fd = -1;
  if (fd < 0) fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  return fd;
}

}  // namespace

void debugOutput(const char* text) {
  MonitorAddress address;
  if (findMonitor(address)) sendToMonitor(address, text, strlen(text));
}

bool libraryPath(char* buffer, std::size_t size) {
  Dl_info info;
  if (dladdr(&kModuleAnchor, &info) == 0 || !info.dli_fname || !*info.dli_fname) return false;
  const int written = snprintf(buffer, size, "%s", info.dli_fname);
  return written > 0 && static_cast<std::size_t>(written) < size;
}

const void* libraryModule() {
  Dl_info info;
  return dladdr(&kModuleAnchor, &info) ? info.dli_fbase : nullptr;
}

bool executablePath(char* buffer, std::size_t size) {
  if (size == 0) return false;
  const ssize_t length = readlink("/proc/self/exe", buffer, size - 1);
  if (length <= 0) return false;
  buffer[length] = '\0';
  return true;
}

unsigned processId() { return static_cast<unsigned>(getpid()); }
unsigned threadId() { return static_cast<unsigned>(syscall(SYS_gettid)); }

// The endpoint exists when its path is a socket owned by this user and a datagram socket can be
// connected to it. A socket owned by anyone else is treated as absent: nobody may collect
// another user's diagnostics by occupying the path first.
bool findMonitor(MonitorAddress& address) {
  sockaddr_un socketAddress{};
  socketAddress.sun_family = AF_UNIX;
  if (!monitorPath(socketAddress.sun_path, sizeof socketAddress.sun_path)) return false;
  struct stat status;
  if (lstat(socketAddress.sun_path, &status) != 0 || !S_ISSOCK(status.st_mode) || status.st_uid != geteuid())
    return false;
  const int probe = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (probe < 0) return false;
  const bool listening =
      connect(probe, reinterpret_cast<const sockaddr*>(&socketAddress), sizeof socketAddress) == 0;
  close(probe);
  if (!listening) return false;
  memcpy(address.bytes, &socketAddress, sizeof socketAddress);
  return true;
}

SendResult sendToMonitor(const MonitorAddress& address, const void* data, std::size_t size) {
  const int fd = senderSocket();
  if (fd < 0) return SendResult::kDropped;
  sockaddr_un socketAddress;
  memcpy(&socketAddress, address.bytes, sizeof socketAddress);
  const ssize_t sent = sendto(fd, data, size, MSG_DONTWAIT | MSG_NOSIGNAL,
                              reinterpret_cast<const sockaddr*>(&socketAddress), sizeof socketAddress);
  if (sent >= 0) return SendResult::kSent;
  return (errno == ECONNREFUSED || errno == ENOENT || errno == ENOTSOCK) ? SendResult::kGone : SendResult::kDropped;
}

unsigned long long coarseMillis() {
  timespec now;
#if defined(CLOCK_MONOTONIC_COARSE)
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
#else
  clock_gettime(CLOCK_MONOTONIC, &now);
#endif
  return static_cast<unsigned long long>(now.tv_sec) * 1000u + static_cast<unsigned long long>(now.tv_nsec) / 1000000u;
}

}  // namespace KrsPlatform

// The shared object's load and unload hooks stand for the process attach and detach entry.
__attribute__((constructor)) static void krsProcessAttach() { KrsOnProcessAttach(); }
__attribute__((destructor)) static void krsProcessDetach() { KrsOnProcessDetach(); }
