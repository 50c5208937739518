// The platform layer: every call into the operating system that the library makes. One
// implementation per platform lives in support/platform/; nothing else includes a system header.
#pragma once

#include <cstddef>

namespace KrsPlatform {

// Address of a debug monitor ("window" of class "_indebmon"), as the platform locates it.
struct MonitorAddress {
  unsigned char bytes[128];
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

unsigned processId();
unsigned threadId();

// Locates a monitor that belongs to this user and accepts datagrams.
bool findMonitor(MonitorAddress& address);
// Delivers one datagram without blocking. kGone means the peer went away (look it up again);
// kDropped that it is there but could not take the datagram now.
SendResult sendToMonitor(const MonitorAddress& address, const void* data, std::size_t size);

// Monotonic milliseconds from a clock cheap enough to read on every report (no system call).
unsigned long long coarseMillis();

}  // namespace KrsPlatform
