// Windows implementation of the platform layer: the DLL entry point as the process attach and
// detach hooks, the debug-output string for their lines, the loader's record of the module that
// holds a static object of the library, window lookup for the debug monitor, the ANSI code page
// for narrow texts, and an address-space walk as the readable-memory probe.
#include "support/KrsLibraryLoad.h"
#include "support/KrsPlatform.h"

#include <windows.h>

#include <cstdint>
#include <cstring>

namespace KrsPlatform {
namespace {

// Any static object of the library will do for asking which module holds it.
const char kModuleAnchor = 0;

// A block spanning more regions than this is taken as readable rather than walked further:
// the probe only ever adds reports, and a walk must end.
constexpr int kMaxRegions = 1 << 16;

constexpr DWORD kReadableProtection = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                                      PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;

}  // namespace

void debugOutput(const char* text) { OutputDebugStringA(text); }

// The module handle is the base of the allocation that holds the library's image.
const void* libraryModule() {
  MEMORY_BASIC_INFORMATION info;
  if (VirtualQuery(&kModuleAnchor, &info, sizeof info) != sizeof info) return nullptr;
  return info.AllocationBase;
}

unsigned processId() { return static_cast<unsigned>(GetCurrentProcessId()); }
unsigned threadId() { return static_cast<unsigned>(GetCurrentThreadId()); }

bool monitorPresent() { return FindWindowW(L"_indebmon", nullptr) != nullptr; }

unsigned long long coarseMillis() { return static_cast<unsigned long long>(GetTickCount64()); }

// The ANSI code page yields at most one wide character per byte, so converting the first
// capacity - 1 bytes always fits; a double-byte character cut at that end becomes the code
// page's default character.
void widenNarrowText(const char* text, wchar_t* out, std::size_t capacity) {
  if (capacity == 0) return;
  out[0] = L'\0';
  if (!text || capacity < 2) return;
  const std::size_t limit = capacity - 1 > 0x7FFFFFFF ? 0x7FFFFFFF : capacity - 1;
  const void* end = std::memchr(text, '\0', limit);
  const std::size_t bytes = end ? static_cast<std::size_t>(static_cast<const char*>(end) - text) : limit;
  if (bytes == 0) return;
  const int written = MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(bytes), out, static_cast<int>(limit));
  out[written > 0 ? written : 0] = L'\0';
}

// Walks the regions that cover the block: each must be committed, readable and not a guard
// page. Unlike a probing read this never touches the memory, so a guard page keeps its guard.
bool isReadable(const void* block, std::size_t bytes) {
  if (bytes == 0) return true;
  if (!block) return false;
  const auto first = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t last = first + (bytes - 1);
  if (last < first) return false;  // the block would wrap around the address space
  std::uintptr_t at = first;
  for (int region = 0; region < kMaxRegions; ++region) {
    MEMORY_BASIC_INFORMATION info;
    if (VirtualQuery(reinterpret_cast<const void*>(at), &info, sizeof info) != sizeof info) return false;
    if (info.State != MEM_COMMIT || (info.Protect & (PAGE_GUARD | PAGE_NOACCESS)) ||
        !(info.Protect & kReadableProtection))
      return false;
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(info.BaseAddress) + info.RegionSize;
    if (end == 0 || end > last) return true;
    at = end;
  }
  return true;
}

}  // namespace KrsPlatform

// The entry point of KrGeL.dll. Thread attach and detach are left alone: the runtime linked
// into the library needs them for its thread-local data.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) KrsOnProcessAttach();
  if (reason == DLL_PROCESS_DETACH) KrsOnProcessDetach();
  return TRUE;
}
