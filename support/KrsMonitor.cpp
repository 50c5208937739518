#include "support/KrsMonitor.h"

#include "support/KrsPlatform.h"

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace KrsMonitor {
namespace {

constexpr int kExePathSize = 4096;
constexpr unsigned long long kLookupIntervalMs = 1000;
constexpr std::size_t kMaxMessageChars = 2047;
constexpr std::size_t kMaxSourceBytes = 1024;
// Every character of the message may take four UTF-8 bytes.
constexpr std::size_t kDatagramSize = kHeaderWords * 4 + kMaxMessageChars * 4 + kMaxSourceBytes + kExePathSize;

struct ChannelContext {
  bool initialised = false;
  KrsPlatform::MonitorLink window;
  char exePath[kExePathSize] = {};
  const char* exeName = exePath;
  std::size_t exeNameLength = 0;
  unsigned long long nextLookup = 0;  // while there is no monitor: time of the next lookup
  unsigned long long waitAgain = 0;   // after a monitor stopped reading: no waiting before this
};

ChannelContext g_channels[kChannelCount];

void lookUp(ChannelContext& context) {
  KrsPlatform::connectMonitor(context.window);
  context.nextLookup = KrsPlatform::coarseMillis() + kLookupIntervalMs;
}

void initialise(ChannelContext& context) {
  if (!KrsPlatform::executablePath(context.exePath, sizeof context.exePath)) context.exePath[0] = '\0';
  const char* slash = std::strrchr(context.exePath, '/');
  context.exeName = slash ? slash + 1 : context.exePath;
  context.exeNameLength = std::strlen(context.exeName);
  lookUp(context);
  context.initialised = true;
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
  if (!context.initialised) initialise(context);
  if (context.window.connected) return true;
  if (KrsPlatform::coarseMillis() < context.nextLookup) return false;
  lookUp(context);
  return context.window.connected;
}

bool send(Channel channel, const wchar_t* message, const char* source, int line, unsigned kind, unsigned code) {
  if (!available(channel)) return false;
  ChannelContext& context = g_channels[channel];

  unsigned char datagram[kDatagramSize];
  unsigned char* payload = datagram + kHeaderWords * 4;
  const std::size_t messageBytes = wideToUtf8(message ? message : L"", payload);
  // A source name that cannot be read travels as length 0 and offset 0.
  const std::size_t sourceBytes = source ? strnlen(source, kMaxSourceBytes) : 0;
  if (sourceBytes) std::memcpy(payload + messageBytes, source, sourceBytes);
  const std::size_t exeOffset = messageBytes + sourceBytes;
  std::memcpy(payload + exeOffset, context.exeName, context.exeNameLength);

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
      static_cast<std::uint32_t>(context.exeNameLength),
      kMagic};
  for (int i = 0; i < kHeaderWords; ++i) putWord(datagram + 4 * i, words[i]);
  const std::size_t size = kHeaderWords * 4 + exeOffset + context.exeNameLength;

  // Delivery is synchronous like a window message, but a monitor that stops reading delays the
  // host at most once a second by the platform's bounded wait.
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
