// The settings file on Windows: "lw.ini" in the directory of the library module itself, read
// with the system's private-profile reader. Paths cross the KrsSettings interface as UTF-8.
#include "support/KrsSettings.h"

#include "support/KrsPlatform.h"

#include <windows.h>

#include <cwchar>

namespace KrsSettings {
namespace {

constexpr DWORD kPathChars = 2048;
constexpr int kNameChars = 256;

bool toWide(const char* text, wchar_t* out, int capacity) {
  return text && MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text, -1, out, capacity) > 0;
}

}  // namespace

void readProfileInts(const char* path, const char* section, const char* const* keys, int* values, int count,
                     int fallback) {
  for (int k = 0; k < count; ++k) values[k] = fallback;
  wchar_t widePath[kPathChars];
  wchar_t wideSection[kNameChars], wideKey[kNameChars];
  if (!toWide(path, widePath, kPathChars) || !toWide(section, wideSection, kNameChars)) return;
  for (int k = 0; k < count; ++k)
    if (toWide(keys[k], wideKey, kNameChars))
      values[k] = static_cast<int>(GetPrivateProfileIntW(wideSection, wideKey, fallback, widePath));
}

// The module's path from the loader (2048 wide characters; a longer one counts as a failure),
// with everything after the last backslash replaced by the file name.
bool settingsPath(char* buffer, std::size_t size) {
  wchar_t path[kPathChars];
  const auto module = static_cast<HMODULE>(const_cast<void*>(KrsPlatform::libraryModule()));
  if (!module || size == 0 || size > 0x7FFFFFFF) return false;
  const DWORD length = GetModuleFileNameW(module, path, kPathChars);
  if (length == 0 || length >= kPathChars) return false;
  static const wchar_t kName[] = L"lw.ini";
  const wchar_t* backslash = std::wcsrchr(path, L'\\');
  const std::size_t directory = backslash ? static_cast<std::size_t>(backslash - path) + 1 : 0;
  if (directory + sizeof kName / sizeof kName[0] > kPathChars) return false;
  std::wmemcpy(path + directory, kName, sizeof kName / sizeof kName[0]);
  return WideCharToMultiByte(CP_UTF8, 0, path, -1, buffer, static_cast<int>(size), nullptr, nullptr) > 0;
}

}  // namespace KrsSettings
