#include "support/KrsMonitor.h"

#include "support/KrsPlatform.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <mutex>

namespace KrsMonitor {
namespace {

constexpr int kExePathSize = 4096;
constexpr unsigned long long kLookupIntervalMs = 1000;
constexpr std::size_t kMaxMessageChars = 2047;
constexpr std::size_t kMaxSourceBytes = 1024;
// Every character of the message may take four UTF-8 bytes.
constexpr std::size_t kDatagramSize = kHeaderWords * 4 + kMaxMessageChars * 4 + kMaxSourceBytes + kExePathSize;

// The executable's name, taken once for the process on the first report of any channel.
struct ExecutableName {
  ExecutableName() {
    if (!KrsPlatform::executablePath(path, sizeof path)) path[0] = '\0';
    const char* slash = std::strrchr(path, '/');
    name = slash ? slash + 1 : path;
    length = std::strlen(name);
  }
  char path[kExePathSize] = {};
  const char* name = path;
  std::size_t length = 0;
};

const ExecutableName& executableName() {
  static const ExecutableName exe;
  return exe;
}

// Reports come from any thread. The link and the send back-off are touched only under the
// channel's lock, so the link is made once and never twice; the two values a report reads
// before deciding to send (connected, time of the next lookup) are relaxed atomic copies, so a
// report without a monitor still costs one clock read and takes no lock.
struct ChannelContext {
  std::mutex lock;
  KrsPlatform::MonitorLink window;    // under lock
  unsigned long long waitAgain = 0;   // under lock: after a monitor stopped reading, no waiting before this
  std::atomic<bool> connected{false};
  std::atomic<unsigned long long> nextLookup{0};  // while there is no monitor: time of the next lookup
};

ChannelContext g_channels[kChannelCount];

// Called with the channel's lock held.
void lookUp(ChannelContext& context) {
  KrsPlatform::connectMonitor(context.window);
  context.connected.store(context.window.connected, std::memory_order_relaxed);
  context.nextLookup.store(KrsPlatform::coarseMillis() + kLookupIntervalMs, std::memory_order_relaxed);
}

// Encodes one code point as UTF-8; invalid code points become U+FFFD.
std::size_t putUtf8(unsigned long cp, unsigned char* out) {
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = 0xFFFD;
  if (cp < 0x80) { out[0] = static_cast<unsigned char>(cp); return 1; }
  if (cp < 0x800) {
    out[0] = static_cast<unsigned char>(0xC0 | (cp >> 6));
    out[1] = static_cast<unsigned char>(0x80 | (cp & 0x3F));
    return 2;
  }
  if (cp < 0x10000) {
    out[0] = static_cast<unsigned char>(0xE0 | (cp >> 12));
    out[1] = static_cast<unsigned char>(0x80 | ((cp >> 6) & 0x3F));
    out[2] = static_cast<unsigned char>(0x80 | (cp & 0x3F));
    return 3;
  }
  out[0] = static_cast<unsigned char>(0xF0 | (cp >> 18));
  out[1] = static_cast<unsigned char>(0x80 | ((cp >> 12) & 0x3F));
  out[2] = static_cast<unsigned char>(0x80 | ((cp >> 6) & 0x3F));
  out[3] = static_cast<unsigned char>(0x80 | (cp & 0x3F));
  return 4;
}

// Wide text to UTF-8 (UTF-32 or UTF-16 wide characters, whichever the platform has).
std::size_t wideToUtf8(const wchar_t* text, unsigned char* out) {
  std::size_t written = 0;
  for (std::size_t i = 0; text[i] && i < kMaxMessageChars; ++i) {
    unsigned long cp = static_cast<unsigned long>(text[i]) & 0xFFFFFFFFul;
    if (sizeof(wchar_t) == 2 && cp >= 0xD800 && cp < 0xDC00 && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (static_cast<unsigned long>(text[i + 1]) - 0xDC00);
      ++i;
    }
    written += putUtf8(cp, out + written);
  }
  return written;
}

void putWord(unsigned char* at, std::uint32_t value) {
  at[0] = static_cast<unsigned char>(value);
  at[1] = static_cast<unsigned char>(value >> 8);
  at[2] = static_cast<unsigned char>(value >> 16);
  at[3] = static_cast<unsigned char>(value >> 24);
}

}  // namespace

bool available(Channel channel) {
  ChannelContext& context = g_channels[channel];
  if (context.connected.load(std::memory_order_relaxed)) return true;
  if (KrsPlatform::coarseMillis() < context.nextLookup.load(std::memory_order_relaxed)) return false;
  std::lock_guard<std::mutex> guard(context.lock);
  // Another thread may have looked while this one waited for the lock.
  if (!context.window.connected && KrsPlatform::coarseMillis() >= context.nextLookup.load(std::memory_order_relaxed))
    lookUp(context);
  return context.window.connected;
}

bool send(Channel channel, const wchar_t* message, const char* source, int line, unsigned kind, unsigned code) {
  if (!available(channel)) return false;
  ChannelContext& context = g_channels[channel];
  const ExecutableName& exe = executableName();

  unsigned char datagram[kDatagramSize];
  unsigned char* payload = datagram + kHeaderWords * 4;
  const std::size_t messageBytes = wideToUtf8(message ? message : L"", payload);
  // A source name that cannot be read travels as length 0 and offset 0.
  const std::size_t sourceBytes = source ? strnlen(source, kMaxSourceBytes) : 0;
  if (sourceBytes) std::memcpy(payload + messageBytes, source, sourceBytes);
  const std::size_t exeOffset = messageBytes + sourceBytes;
  std::memcpy(payload + exeOffset, exe.name, exe.length);

  // Taken per report, not from the context: a forked child reports under its own id.
  const std::uint32_t processId = KrsPlatform::processId();
  const std::uint32_t words[kHeaderWords] = {
      kMessageNumber,
      processId,
      processId,
      KrsPlatform::threadId(),
      static_cast<std::uint32_t>(messageBytes),
      0,
      static_cast<std::uint32_t>(sourceBytes),
      static_cast<std::uint32_t>(sourceBytes ? messageBytes : 0),
      static_cast<std::uint32_t>(line),
      kind | kKindFlag,
      code & kCodeMask,
      static_cast<std::uint32_t>(exeOffset),
      static_cast<std::uint32_t>(exe.length),
      kMagic};
  for (int i = 0; i < kHeaderWords; ++i) putWord(datagram + 4 * i, words[i]);
  const std::size_t size = kHeaderWords * 4 + exeOffset + exe.length;

  // Delivery is synchronous like a window message, but a monitor that stops reading delays the
  // host at most once a second by the platform's bounded wait.
  std::lock_guard<std::mutex> guard(context.lock);
  const unsigned long long now = KrsPlatform::coarseMillis();
  KrsPlatform::SendResult result = KrsPlatform::sendToMonitor(context.window, datagram, size, now >= context.waitAgain);
  if (result == KrsPlatform::SendResult::kGone) {
    // The monitor went away; it may have come back at the same place: one new lookup.
    lookUp(context);
    if (!context.window.connected) return false;
    result = KrsPlatform::sendToMonitor(context.window, datagram, size, now >= context.waitAgain);
  }
  if (result == KrsPlatform::SendResult::kDropped) context.waitAgain = KrsPlatform::coarseMillis() + kLookupIntervalMs;
  return result == KrsPlatform::SendResult::kSent;
}

}  // namespace KrsMonitor
