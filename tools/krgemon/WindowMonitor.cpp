#include "WindowMonitor.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

namespace krgemon {
namespace {

constexpr UINT kRecordMessage = 0x5001;
constexpr std::uint32_t kMagic = 1400;
// Upper bounds for what a record may claim; anything longer is not a record of the library.
constexpr std::uint32_t kMaxMessageChars = 4096;
constexpr std::uint32_t kMaxSourceBytes = 4096;
constexpr std::uint32_t kMaxExeNameChars = 1024;
constexpr DWORD kDebugBufferBytes = 4096;

struct Handle {
  HANDLE value = nullptr;
  ~Handle() {
    if (value) CloseHandle(value);
  }
};

bool readBytes(HANDLE process, std::uint64_t address, void* out, std::size_t size) {
  SIZE_T read = 0;
  return size == 0 || (address != 0 && ReadProcessMemory(process, reinterpret_cast<LPCVOID>(address), out, size, &read) &&
                       read == size);
}

std::string utf8Of(const wchar_t* text, int length) {
  if (length <= 0) return {};
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(size > 0 ? size : 0), '\0');
  if (size > 0) WideCharToMultiByte(CP_UTF8, 0, text, length, &out[0], size, nullptr, nullptr);
  return out;
}

bool readWide(HANDLE process, std::uint64_t address, std::uint32_t length, std::uint32_t limit, std::string& out) {
  if (length > limit) return false;
  std::vector<wchar_t> text(length + 1u);
  if (!readBytes(process, address, text.data(), length * sizeof(wchar_t))) return false;
  out = utf8Of(text.data(), static_cast<int>(length));
  return true;
}

// The source name is in the sender's ANSI code page.
bool readAnsi(HANDLE process, std::uint64_t address, std::uint32_t length, std::string& out) {
  if (length > kMaxSourceBytes) return false;
  std::vector<char> text(length + 1u);
  if (!readBytes(process, address, text.data(), length)) return false;
  std::vector<wchar_t> wide(length + 1u);
  const int chars = length ? MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(length), wide.data(),
                                                 static_cast<int>(length)) : 0;
  out = utf8Of(wide.data(), chars);
  return true;
}

std::uint32_t word32(const unsigned char* at) {
  std::uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

std::uint64_t word64(const unsigned char* at) {
  std::uint64_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

}  // namespace

bool readRecord(std::uint32_t processId, std::uint64_t address, WindowRecord& raw, Record& record) {
  Handle process{OpenProcess(PROCESS_VM_READ | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId)};
  if (!process.value) return false;
  BOOL wow64 = FALSE;
  const bool narrow = sizeof(void*) == 4 || (IsWow64Process(process.value, &wow64) && wow64);
  // The sender's natural layout: twelve 32-bit words, or with 64-bit addresses at offsets 16,
  // 32 and 56 (72 bytes).
  unsigned char bytes[72];
  if (!readBytes(process.value, address, bytes, narrow ? 48 : 72)) return false;
  if (narrow) {
    std::uint32_t w[12];
    for (int i = 0; i < 12; ++i) w[i] = word32(bytes + 4 * i);
    raw = {w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7], w[8], w[9], w[10], w[11]};
  } else {
    raw = {word32(bytes), word32(bytes + 4), word32(bytes + 8), word64(bytes + 16), word32(bytes + 24),
           word64(bytes + 32), word32(bytes + 40), word32(bytes + 44), word32(bytes + 48), word64(bytes + 56),
           word32(bytes + 64), word32(bytes + 68)};
  }
  record.processId = raw.processId;
  record.threadId = raw.threadId;
  record.line = raw.line;
  record.kind = raw.kind;
  record.code = raw.code;
  record.source.clear();
  return raw.magic == kMagic &&
         readWide(process.value, raw.messageText, raw.messageLength, kMaxMessageChars, record.message) &&
         (raw.sourceLength == 0 || readAnsi(process.value, raw.sourceText, raw.sourceLength, record.source)) &&
         readWide(process.value, raw.exeNameText, raw.exeNameLength, kMaxExeNameChars, record.executable);
}

struct MonitorWindow::State {
  explicit State(RecordHandler handler) : onRecord(std::move(handler)) {}
  RecordHandler onRecord;
  HWND window = nullptr;
  std::thread thread;
};

namespace {

LRESULT CALLBACK monitorWindowProc(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_NCCREATE) {
    const auto* create = reinterpret_cast<const CREATESTRUCTW*>(second);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
  }
  auto* state = reinterpret_cast<MonitorWindow::State*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == kRecordMessage && state) {
    WindowRecord raw;
    Record record;
    const bool complete = readRecord(static_cast<std::uint32_t>(second), first, raw, record);
    state->onRecord(raw, record, complete);
    return 0;
  }
  if (message == WM_DESTROY) {
    PostQuitMessage(0);
    return 0;
  }
  return DefWindowProcW(window, message, first, second);
}

// The class is registered once per process and stays registered, so windows can come and go.
bool registerMonitorClass() {
  static const bool registered = [] {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = monitorWindowProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"_indebmon";
    return RegisterClassExW(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
  }();
  return registered;
}

}  // namespace

MonitorWindow::MonitorWindow(RecordHandler onRecord) : m_state(new State(std::move(onRecord))) {
  if (!registerMonitorClass()) return;
  Handle ready{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  if (!ready.value) return;
  State* state = m_state.get();
  HANDLE readyEvent = ready.value;
  state->thread = std::thread([state, readyEvent] {
    // Hidden (no WS_VISIBLE) but top-level: message-only windows are invisible to FindWindow.
    state->window = CreateWindowExW(0, L"_indebmon", L"KrGeL debug monitor", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                    GetModuleHandleW(nullptr), state);
    SetEvent(readyEvent);
    if (!state->window) return;
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  });
  WaitForSingleObject(ready.value, INFINITE);
}

MonitorWindow::~MonitorWindow() {
  if (m_state->window) PostMessageW(m_state->window, WM_CLOSE, 0, 0);
  if (m_state->thread.joinable()) m_state->thread.join();
}

bool MonitorWindow::ok() const { return m_state->window != nullptr; }

struct DebugOutputReader::State {
  explicit State(TextHandler handler) : onText(std::move(handler)) {}
  TextHandler onText;
  Handle bufferReady, dataReady, mapping, stop, syncRequest, syncDone;
  const unsigned char* view = nullptr;
  std::thread thread;
};

DebugOutputReader::DebugOutputReader(TextHandler onText) : m_state(new State(std::move(onText))) {
  State& s = *m_state;
  // The writers' protocol: wait for "buffer ready", write the process id and the text into the
  // shared buffer, signal "data ready". A second reader would steal texts, so one that finds the
  // objects already there gives up.
  s.bufferReady.value = CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_BUFFER_READY");
  if (!s.bufferReady.value || GetLastError() == ERROR_ALREADY_EXISTS) return;
  s.dataReady.value = CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY");
  if (!s.dataReady.value || GetLastError() == ERROR_ALREADY_EXISTS) return;
  s.mapping.value = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kDebugBufferBytes, L"DBWIN_BUFFER");
  if (!s.mapping.value) return;
  s.view = static_cast<const unsigned char*>(MapViewOfFile(s.mapping.value, FILE_MAP_READ, 0, 0, kDebugBufferBytes));
  s.stop.value = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  s.syncRequest.value = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  s.syncDone.value = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  if (!s.view || !s.stop.value || !s.syncRequest.value || !s.syncDone.value) return;
  s.thread = std::thread([&s] {
    SetEvent(s.bufferReady.value);
    // A pending text outranks a sync request: WaitForMultipleObjects answers the lowest index.
    const HANDLE events[] = {s.dataReady.value, s.syncRequest.value, s.stop.value};
    for (;;) {
      const DWORD which = WaitForMultipleObjects(3, events, FALSE, INFINITE);
      if (which == WAIT_OBJECT_0) {
        const std::uint32_t processId = word32(s.view);
        const auto* text = reinterpret_cast<const char*>(s.view + 4);
        s.onText(processId, std::string(text, strnlen(text, kDebugBufferBytes - 4)));
        SetEvent(s.bufferReady.value);
      } else if (which == WAIT_OBJECT_0 + 1) {
        SetEvent(s.syncDone.value);
      } else {
        break;
      }
    }
  });
}

DebugOutputReader::~DebugOutputReader() {
  if (m_state->thread.joinable()) {
    SetEvent(m_state->stop.value);
    m_state->thread.join();
  }
  if (m_state->view) UnmapViewOfFile(m_state->view);
}

bool DebugOutputReader::ok() const { return m_state->thread.joinable(); }

void DebugOutputReader::sync() {
  if (!ok()) return;
  SetEvent(m_state->syncRequest.value);
  WaitForSingleObject(m_state->syncDone.value, 5000);
}

std::string localTime(bool iso) {
  SYSTEMTIME now;
  GetLocalTime(&now);
  char text[64];
  if (iso)
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%03u", now.wYear, now.wMonth, now.wDay, now.wHour,
                  now.wMinute, now.wSecond, now.wMilliseconds);
  else
    std::snprintf(text, sizeof text, "%02u:%02u:%02u.%03u", now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  return text;
}

}  // namespace krgemon
