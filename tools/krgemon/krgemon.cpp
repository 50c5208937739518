// krgemon: the debug monitor of KrGeL. It owns the endpoint that libraries look for (a Unix
// datagram socket, mode 0600, in a directory it creates with mode 0700 when missing) and prints
// every datagram it receives: records as one readable line or as JSON, plain-text lines (the
// library's attach/detach lines) as they are. The socket is removed on every way out.
//
// Exit status: 0 done (signal, --count reached or --timeout elapsed), 1 the endpoint could not
// be set up, 2 bad arguments, 3 --timeout elapsed before --count datagrams arrived.
#include "MonitorRecord.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t g_stop = 0;
void onSignal(int) { g_stop = 1; }

struct Options {
  std::string socketPath;
  bool json = false;
  long long count = -1;    // stop after this many datagrams; -1 = never
  double timeout = -1.0;   // stop after this many seconds; negative = never
};

void usage(std::FILE* to) {
  std::fputs(
      "usage: krgemon [--json] [--socket PATH] [--count N] [--timeout SECONDS]\n"
      "  Prints what KrGeL libraries report. Default socket: $KRGE_MONITOR, else\n"
      "  $XDG_RUNTIME_DIR/_indebmon, else /tmp/_indebmon-<uid>.\n",
      to);
}

// The library's endpoint rule, so that a monitor started without options is the one it finds.
std::string defaultSocketPath() {
  if (const char* custom = std::getenv("KRGE_MONITOR"); custom && *custom) return custom;
  if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && *runtime) return std::string(runtime) + "/_indebmon";
  return "/tmp/_indebmon-" + std::to_string(static_cast<unsigned>(geteuid()));
}

bool parseOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    char* end = nullptr;
    if (arg == "--json") {
      options.json = true;
    } else if (arg == "--socket" && hasValue) {
      options.socketPath = argv[++i];
    } else if (arg == "--count" && hasValue) {
      options.count = std::strtoll(argv[++i], &end, 10);
      if (*end || options.count < 1) return false;
    } else if (arg == "--timeout" && hasValue) {
      options.timeout = std::strtod(argv[++i], &end);
      if (*end || !(options.timeout >= 0.0) || options.timeout > 1e9) return false;
    } else if (arg == "--help" || arg == "-h") {
      usage(stdout);
      std::exit(0);
    } else {
      return false;
    }
  }
  if (options.socketPath.empty()) options.socketPath = defaultSocketPath();
  return true;
}

// Creates the missing directories above the socket, each with mode 0700.
bool makeParents(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    const std::string directory = path.substr(0, slash);
    struct stat status;
    if (stat(directory.c_str(), &status) == 0) {
      if (!S_ISDIR(status.st_mode)) return false;
      continue;
    }
    if (mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) return false;
    chmod(directory.c_str(), 0700);
  }
  return true;
}

// Binds the endpoint. A live monitor at the path is left alone; a dead socket of ours is
// replaced; anything else there is refused.
int openEndpoint(const std::string& path, ino_t& inode) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    std::fprintf(stderr, "krgemon: socket path too long: %s\n", path.c_str());
    return -1;
  }
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  if (!makeParents(path)) {
    std::fprintf(stderr, "krgemon: cannot create the directory of %s: %s\n", path.c_str(), std::strerror(errno));
    return -1;
  }
  const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) {
    std::perror("krgemon: socket");
    return -1;
  }
  struct stat status;
  if (lstat(path.c_str(), &status) == 0) {
    const int probe = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool live = S_ISSOCK(status.st_mode) && probe >= 0 &&
                      connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (probe >= 0) close(probe);
    const char* reason = !S_ISSOCK(status.st_mode)   ? "exists and is not a socket"
                         : live                        ? "already has a monitor listening"
                         : status.st_uid != geteuid() ? "belongs to another user"
                                                       : nullptr;
    if (reason || unlink(path.c_str()) != 0) {
      std::fprintf(stderr, "krgemon: %s %s\n", path.c_str(), reason ? reason : "cannot be replaced");
      close(fd);
      return -1;
    }
  }
  const mode_t previous = umask(0177);
  const int bound = bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  umask(previous);
  if (bound != 0 || chmod(path.c_str(), 0600) != 0 || lstat(path.c_str(), &status) != 0) {
    std::fprintf(stderr, "krgemon: cannot bind %s: %s\n", path.c_str(), std::strerror(errno));
    close(fd);
    return -1;
  }
  inode = status.st_ino;
  return fd;
}

// Local wall-clock time of arrival, to the millisecond.
std::string now(bool iso) {
  timespec stamp{};
  clock_gettime(CLOCK_REALTIME, &stamp);
  std::tm local{};
  localtime_r(&stamp.tv_sec, &local);
  char text[64];
  const std::size_t n = std::strftime(text, sizeof text, iso ? "%Y-%m-%dT%H:%M:%S" : "%H:%M:%S", &local);
  std::snprintf(text + n, sizeof text - n, ".%03ld", stamp.tv_nsec / 1000000L);
  return text;
}

double seconds() {
  timespec stamp{};
  clock_gettime(CLOCK_MONOTONIC, &stamp);
  return static_cast<double>(stamp.tv_sec) + static_cast<double>(stamp.tv_nsec) * 1e-9;
}

// Prints one datagram; false when standard output is gone.
bool print(const unsigned char* data, std::size_t size, bool json) {
  krgemon::Record record;
  const krgemon::DatagramType type = krgemon::decode(data, size, record);
  const std::string time = now(json);
  std::string out;
  if (type == krgemon::DatagramType::kRecord) {
    out = json ? krgemon::formatJson(time, record) : krgemon::formatLine(time, record);
  } else if (type == krgemon::DatagramType::kText) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (json) {
      out = krgemon::formatTextJson(time, text);
    } else {
      out = text;
      if (!out.empty() && out.back() == '\n') out.pop_back();
    }
  } else {
    out = json ? krgemon::formatMalformedJson(time, size) : time + " malformed datagram of " + std::to_string(size) + " bytes";
  }
  out += '\n';
  return std::fwrite(out.data(), 1, out.size(), stdout) == out.size() && std::fflush(stdout) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parseOptions(argc, argv, options)) {
    usage(stderr);
    return 2;
  }
  struct sigaction action{};
  action.sa_handler = onSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGHUP, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  // The stop signals are let through only while waiting in ppoll, so none is lost between the
  // check of the stop flag and the wait.
  sigset_t stopSignals, waitMask;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGINT);
  sigaddset(&stopSignals, SIGTERM);
  sigaddset(&stopSignals, SIGHUP);
  sigprocmask(SIG_BLOCK, &stopSignals, &waitMask);
  sigdelset(&waitMask, SIGINT);
  sigdelset(&waitMask, SIGTERM);
  sigdelset(&waitMask, SIGHUP);

  ino_t inode = 0;
  const int fd = openEndpoint(options.socketPath, inode);
  if (fd < 0) return 1;

  const double deadline = options.timeout >= 0.0 ? seconds() + options.timeout : -1.0;
  std::vector<unsigned char> buffer(1 << 20);
  long long received = 0;
  int status = 0;
  while (!g_stop && received != options.count) {
    timespec wait{3600, 0};
    if (deadline >= 0.0) {
      const double left = deadline - seconds();
      if (left <= 0.0) {
        if (options.count > 0) status = 3;
        break;
      }
      if (left < 3600.0) {
        wait.tv_sec = static_cast<time_t>(left);
        wait.tv_nsec = static_cast<long>((left - static_cast<double>(wait.tv_sec)) * 1e9);
      }
    }
    pollfd entry{fd, POLLIN, 0};
    const int ready = ppoll(&entry, 1, &wait, &waitMask);
    if (ready < 0 && errno != EINTR) break;
    if (ready <= 0) continue;
    const ssize_t size = recv(fd, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (size < 0) continue;
    ++received;
    if (!print(buffer.data(), static_cast<std::size_t>(size), options.json)) break;
  }

  // Remove the socket only if it is still the one this monitor bound.
  struct stat current;
  if (lstat(options.socketPath.c_str(), &current) == 0 && current.st_ino == inode) unlink(options.socketPath.c_str());
  close(fd);
  return status;
}
