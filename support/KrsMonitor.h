// Monitor channels: one per report stream (wide texts, assertions, errors). A channel finds
// the monitor on its first report and keeps it; when the monitor has gone it looks once more,
// and while there is none it looks again at most once a second, so that a dropped report costs
// no system call.
#pragma once

namespace KrsMonitor {

enum Channel { kTextChannel = 0, kAssertChannel = 1, kErrorChannel = 2, kChannelCount = 3 };

// True when the channel has a monitor to send to (cheap; no system call in the common case).
bool available(Channel channel);

// Sends one record: the message (at most 2047 characters are sent), the source name (null:
// sent as length 0) and line, kind and code. Waits at most 100 ms for a monitor whose queue is
// full. Answers whether the record was delivered.
bool send(Channel channel, const wchar_t* message, const char* source, int line, unsigned kind, unsigned code);

// Wire-format constants (see docs/monitor-protocol.md).
constexpr unsigned kMessageNumber = 0x5001;
constexpr unsigned kMagic = 1400;
constexpr unsigned kKindFlag = 0x100;
constexpr unsigned kCodeMask = 0x00FFFFFF;
constexpr int kHeaderWords = 14;

}  // namespace KrsMonitor
