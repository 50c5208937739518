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
#include <sys/time.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

namespace KrsPlatform {
namespace {

// Any static object of the library will do for asking the loader which module holds it.
const char kModuleAnchor = 0;

// Longest a report waits for a monitor whose queue is full.
constexpr long kSendWaitMicroseconds = 100000;

// The endpoint path: $KRGE_MONITOR, else $XDG_RUNTIME_DIR/_indebmon, else /tmp/_indebmon-<uid>.
bool monitorAddress(sockaddr_un& address) {
  memset(&address, 0, sizeof address);
  address.sun_family = AF_UNIX;
  char* buffer = address.sun_path;
  const std::size_t size = sizeof address.sun_path;
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

// The endpoint counts only when it is a socket owned by this user: nobody may collect another
// user's diagnostics by occupying the path first.
bool ownedSocket(const char* path, struct stat& status) {
  return lstat(path, &status) == 0 && S_ISSOCK(status.st_mode) && status.st_uid == geteuid();
}

// Connects `fd` to the endpoint. The path is checked before and after connecting, so a socket
// swapped in between is refused too; once connected, later sends go to that socket object
// whatever happens to the path.
bool connectChecked(int fd) {
  sockaddr_un address;
  struct stat before, after;
  if (!monitorAddress(address) || !ownedSocket(address.sun_path, before)) return false;
  if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return false;
  if (ownedSocket(address.sun_path, after) && after.st_ino == before.st_ino && after.st_dev == before.st_dev)
    return true;
  sockaddr unspecified{};
  unspecified.sa_family = AF_UNSPEC;  // dissolve the association
  connect(fd, &unspecified, sizeof unspecified);
  return false;
}

int newDatagramSocket() {
  const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd >= 0) {
    timeval wait{};
    wait.tv_usec = kSendWaitMicroseconds;
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait);
  }
  return fd;
}

MonitorLink g_debugOutputLink;

}  // namespace

void debugOutput(const char* text) {
  const std::size_t size = strlen(text);
  if (g_debugOutputLink.connected &&
      sendToMonitor(g_debugOutputLink, text, size, true) != SendResult::kGone)
    return;
  if (connectMonitor(g_debugOutputLink)) sendToMonitor(g_debugOutputLink, text, size, true);
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

std::FILE* openRegularFile(const char* path) {
  const int fd = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) return nullptr;
  struct stat status;
  if (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
    close(fd);
    return nullptr;
  }
  std::FILE* file = fdopen(fd, "rb");
  if (!file) close(fd);
  return file;
}

unsigned processId() { return static_cast<unsigned>(getpid()); }
unsigned threadId() { return static_cast<unsigned>(syscall(SYS_gettid)); }

bool monitorPresent() {
  const int probe = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (probe < 0) return false;
  const bool present = connectChecked(probe);
  close(probe);
  return present;
}

// The link's descriptor is created once and never closed, so a report racing with another
// thread can never send into a descriptor number that the host has meanwhile reused.
bool connectMonitor(MonitorLink& link) {
  link.connected = false;
  if (link.handle < 0) link.handle = newDatagramSocket();
  if (link.handle < 0) return false;
  link.connected = connectChecked(link.handle);
  return link.connected;
}

SendResult sendToMonitor(MonitorLink& link, const void* data, std::size_t size, bool mayWait) {
  if (!link.connected || link.handle < 0) return SendResult::kGone;
  const int flags = MSG_NOSIGNAL | (mayWait ? 0 : MSG_DONTWAIT);
  ssize_t sent;
  int attempts = 0;
  do {
    sent = send(link.handle, data, size, flags);
  } while (sent < 0 && errno == EINTR && ++attempts < 3);
  if (sent >= 0) return SendResult::kSent;
  switch (errno) {
    case ECONNREFUSED:
    case ECONNRESET:
    case ENOTCONN:
    case EDESTADDRREQ:
    case EPIPE:
      link.connected = false;
      return SendResult::kGone;
    case EBADF:
    case ENOTSOCK:  // the host closed or reused the descriptor: start over with a fresh one
      link.handle = -1;
      link.connected = false;
      return SendResult::kGone;
    default:
      return SendResult::kDropped;  // queue full (EAGAIN after the wait), too large, no buffers
  }
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
