// The platform layer: every call into the operating system that the library makes. One
// implementation per platform lives in support/platform/; nothing else includes a system header.
#pragma once

#include <cstddef>
#include <cstdio>

namespace KrsPlatform {

// The monitor link and sending, libraryPath, executablePath and openRegularFile serve the POSIX
// monitor channel and settings reader; Windows has its own (support/platform/*Win32.cpp).

// A connection to the debug monitor (the "window" of class "_indebmon"). On POSIX the monitor
// is a Unix-domain datagram socket and the link is a datagram socket connected to it; the
// connection, not the path, is what later sends go to, so a path that is replaced after the
// lookup never receives anything.
struct MonitorLink {
  int handle = -1;  // created on first use and never closed (see the POSIX implementation)
  bool connected = false;
};

enum class SendResult { kSent, kGone, kDropped };

// Writes a line to the platform's debug output. On POSIX this is a plain-text datagram to the
// monitor endpoint when one exists, and nothing otherwise.
void debugOutput(const char* text);

// Full path of the library's own module file, found through the loader from the address of one
// of its static objects; false when the loader cannot tell.
bool libraryPath(char* buffer, std::size_t size);
// Opaque identity of the library's module (its load base).
const void* libraryModule();
// Full path of the running executable; false when unknown.
bool executablePath(char* buffer, std::size_t size);
// Opens `path` for reading when it is a regular file (never blocks on a pipe or device);
// null otherwise.
std::FILE* openRegularFile(const char* path);

unsigned processId();
unsigned threadId();

// True when a monitor that belongs to this user exists and accepts datagrams.
bool monitorPresent();
// Looks the monitor up and connects `link` to it; false (link unconnected) when there is none.
bool connectMonitor(MonitorLink& link);
// Delivers one datagram over a connected link. With `mayWait` the call waits, for at most a
// short bounded time, while the monitor's queue is full; without it, it never waits.
// kGone: the peer went away (look it up again); kDropped: it could not take the datagram now.
SendResult sendToMonitor(MonitorLink& link, const void* data, std::size_t size, bool mayWait);

// Monotonic milliseconds from a clock cheap enough to read on every report (no system call).
unsigned long long coarseMillis();

// Narrow text in the platform's narrow encoding (UTF-8 on POSIX, where a byte that does not
// decode stands for itself; the ANSI code page on Windows) to wide text: at most capacity - 1
// characters and a terminator, surrogate pairs where wchar_t has 16 bits. Null reads as "".
void widenNarrowText(const char* text, wchar_t* out, std::size_t capacity);

// True when all `bytes` bytes from `block` can be read (committed, readable and not a guard
// page where the platform can tell; elsewhere only a null block of nonzero size fails).
bool isReadable(const void* block, std::size_t bytes);

}  // namespace KrsPlatform
