// The debug-monitor channels on Windows. A report is a record of twelve fields whose texts stay
// in this process: the record's address goes to the window of class "_indebmon" by a
// synchronous SendMessageW (message 0x5001, the process id as second parameter), and the
// monitor reads the record and its texts from this process while the call waits. Each channel
// finds the window on its first report and keeps it; a window that has been closed is looked up
// again at once, and while there is none the lookup runs at most once a second.
#include "support/KrsMonitor.h"

#include "support/KrsPlatform.h"

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <cwchar>
#include <mutex>

namespace KrsMonitor {
namespace {

constexpr DWORD kExePathChars = 256;
constexpr unsigned long long kLookupIntervalMs = 1000;
constexpr std::size_t kMaxMessageChars = 2047;
constexpr std::size_t kMaxSourceBytes = 1024;
constexpr std::size_t kPageBytes = 4096;  // the smallest page of every Windows target

// The record in the platform's natural layout: in a 32-bit process twelve 32-bit words; in a
// 64-bit one the three text addresses are 64 bits wide, each aligned to 8 bytes (72 bytes).
struct Record {
  std::uint32_t processId;
  std::uint32_t threadId;
  std::uint32_t messageLength;  // wide characters
  const wchar_t* messageText;
  std::uint32_t sourceLength;   // bytes; 0 when the name is not readable
  const char* sourceText;       // as passed; null when the name is not readable
  std::uint32_t line;
  std::uint32_t kind;
  std::uint32_t code;
  const wchar_t* exeNameText;
  std::uint32_t exeNameLength;  // wide characters
  std::uint32_t magic;
};

struct ChannelContext {
  std::once_flag filled;
  std::atomic<HWND> window{nullptr};
  std::atomic<unsigned long long> nextLookup{0};
  DWORD processId = 0;
  wchar_t exePath[kExePathChars] = {};
  const wchar_t* exeName = exePath;
  DWORD exeNameLength = 0;
};

ChannelContext g_channels[kChannelCount];

void fill(ChannelContext& context) {
  context.processId = GetCurrentProcessId();
  const DWORD length = GetModuleFileNameW(nullptr, context.exePath, kExePathChars);
  context.exePath[length < kExePathChars ? length : kExePathChars - 1] = L'\0';
  const wchar_t* backslash = std::wcsrchr(context.exePath, L'\\');
  context.exeName = backslash ? backslash + 1 : context.exePath;
  context.exeNameLength = static_cast<DWORD>(std::wcslen(context.exeName));
  context.nextLookup.store(KrsPlatform::coarseMillis() + kLookupIntervalMs, std::memory_order_relaxed);
  context.window.store(FindWindowW(L"_indebmon", nullptr), std::memory_order_relaxed);
}

ChannelContext& contextOf(Channel channel) {
  ChannelContext& context = g_channels[channel];
  std::call_once(context.filled, fill, std::ref(context));
  return context;
}

// Length of the NUL-terminated name at `text`, read one page at a time so that nothing outside
// readable memory is touched; -1 when the name runs into unreadable memory first.
long readableLength(const char* text) {
  std::size_t length = 0;
  while (length < kMaxSourceBytes) {
    const auto at = reinterpret_cast<std::uintptr_t>(text + length);
    std::size_t chunk = kPageBytes - at % kPageBytes;
    if (chunk > kMaxSourceBytes - length) chunk = kMaxSourceBytes - length;
    if (!KrsPlatform::isReadable(text + length, chunk)) return -1;
    for (std::size_t i = 0; i < chunk; ++i, ++length)
      if (text[length] == '\0') return static_cast<long>(length);
  }
  return static_cast<long>(length);
}

// The source name is tested for readability with the address's top bit cleared; the record
// carries the address as passed.
void describeSource(const char* source, Record& record) {
  record.sourceText = nullptr;
  record.sourceLength = 0;
  if (!source) return;
  constexpr std::uintptr_t kTopBit = ~(~std::uintptr_t{0} >> 1);
  const auto tested = reinterpret_cast<const char*>(reinterpret_cast<std::uintptr_t>(source) & ~kTopBit);
  if (!KrsPlatform::isReadable(tested, 1)) return;
  const long length = readableLength(source);
  if (length < 0) return;
  record.sourceText = source;
  record.sourceLength = static_cast<std::uint32_t>(length);
}

}  // namespace

bool available(Channel channel) {
  ChannelContext& context = contextOf(channel);
  if (context.window.load(std::memory_order_relaxed)) return true;
  const unsigned long long now = KrsPlatform::coarseMillis();
  if (now < context.nextLookup.load(std::memory_order_relaxed)) return false;
  context.nextLookup.store(now + kLookupIntervalMs, std::memory_order_relaxed);
  const HWND window = FindWindowW(L"_indebmon", nullptr);
  context.window.store(window, std::memory_order_relaxed);
  return window != nullptr;
}

bool send(Channel channel, const wchar_t* message, const char* source, int line, unsigned kind, unsigned code) {
  if (!available(channel)) return false;
  ChannelContext& context = contextOf(channel);
  HWND window = context.window.load(std::memory_order_relaxed);
  if (!IsWindow(window)) {
    window = FindWindowA("_indebmon", nullptr);
    context.window.store(window, std::memory_order_relaxed);
    if (!window) {
      context.nextLookup.store(KrsPlatform::coarseMillis() + kLookupIntervalMs, std::memory_order_relaxed);
      return false;
    }
  }

  Record record;
  record.processId = GetCurrentProcessId();
  record.threadId = GetCurrentThreadId();
  record.messageText = message ? message : L"";
  record.messageLength = static_cast<std::uint32_t>(wcsnlen(record.messageText, kMaxMessageChars));
  describeSource(source, record);
  record.line = static_cast<std::uint32_t>(line);
  record.kind = kind | kKindFlag;
  record.code = code & kCodeMask;
  record.exeNameText = context.exeName;
  record.exeNameLength = context.exeNameLength;
  record.magic = kMagic;

  // The reply is not read; a window that vanished in between fails the call.
  SetLastError(ERROR_SUCCESS);
  SendMessageW(window, kMessageNumber, reinterpret_cast<WPARAM>(&record), static_cast<LPARAM>(record.processId));
  return GetLastError() != ERROR_INVALID_WINDOW_HANDLE;
}

}  // namespace KrsMonitor
