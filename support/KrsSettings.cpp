#include "support/KrsSettings.h"

#include "support/KrsPlatform.h"

#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>

namespace KrsSettings {
namespace {

constexpr long kMaxBytes = 16L * 1024 * 1024;
constexpr std::size_t kMaxLine = 1024;

// Reads one line, keeping at most kMaxLine - 1 characters of it; false at end of file.
bool readLine(std::FILE* file, char* line, long& budget) {
  std::size_t length = 0;
  int c;
  bool any = false;
  while (budget > 0 && (c = std::fgetc(file)) != EOF) {
    --budget;
    any = true;
    if (c == '\n') break;
    if (length + 1 < kMaxLine) line[length++] = static_cast<char>(c);
  }
  line[length] = '\0';
  return any;
}

char* trim(char* text) {
  while (*text && std::isspace(static_cast<unsigned char>(*text))) ++text;
  char* end = text + std::strlen(text);
  while (end > text && std::isspace(static_cast<unsigned char>(end[-1]))) --end;
  *end = '\0';
  return text;
}

bool sameName(const char* a, const char* b) {
  for (; *a && *b; ++a, ++b)
    if (std::tolower(static_cast<unsigned char>(*a)) != std::tolower(static_cast<unsigned char>(*b))) return false;
  return *a == *b;
}

// Optional sign and leading decimal digits, clamped to the int range.
bool parseInt(const char* text, int& value) {
  bool negative = false;
  if (*text == '+' || *text == '-') negative = *text++ == '-';
  if (!std::isdigit(static_cast<unsigned char>(*text))) return false;
  long long magnitude = 0;
  for (; std::isdigit(static_cast<unsigned char>(*text)); ++text)
    if (magnitude <= INT_MAX) magnitude = magnitude * 10 + (*text - '0');
  if (negative) magnitude = -magnitude;
  value = magnitude > INT_MAX ? INT_MAX : magnitude < INT_MIN ? INT_MIN : static_cast<int>(magnitude);
  return true;
}

}  // namespace

void readProfileInts(const char* path, const char* section, const char* const* keys, int* values, int count,
                     int fallback) {
  constexpr int kMaxKeys = 32;
  bool found[kMaxKeys] = {};
  if (count > kMaxKeys) count = kMaxKeys;
  for (int k = 0; k < count; ++k) values[k] = fallback;
  std::FILE* file = KrsPlatform::openRegularFile(path);
  if (!file) return;
  char buffer[kMaxLine];
  long budget = kMaxBytes;
  bool inSection = false;
  int remaining = count;
  for (bool first = true; remaining > 0 && readLine(file, buffer, budget); first = false) {
    char* line = buffer;
    if (first && std::strncmp(line, "\xEF\xBB\xBF", 3) == 0) line += 3;  // UTF-8 byte-order mark
    line = trim(line);
    if (*line == '[') {
      char* close = std::strchr(line, ']');
      if (close) *close = '\0';
      inSection = sameName(trim(line + 1), section);
      continue;
    }
    if (!inSection || *line == ';') continue;
    char* equals = std::strchr(line, '=');
    if (!equals) continue;
    *equals = '\0';
    const char* name = trim(line);
    for (int k = 0; k < count; ++k) {
      if (found[k] || !sameName(name, keys[k])) continue;
      int value;
      values[k] = parseInt(trim(equals + 1), value) ? value : fallback;
      found[k] = true;
      --remaining;
      break;
    }
  }
  std::fclose(file);
}

bool settingsPath(char* buffer, std::size_t size) {
  if (!KrsPlatform::libraryPath(buffer, size)) return false;
  char* slash = std::strrchr(buffer, '/');
  if (char* backslash = std::strrchr(buffer, '\\'); backslash && (!slash || backslash > slash)) slash = backslash;
  const std::size_t directory = slash ? static_cast<std::size_t>(slash - buffer) + 1 : 0;
  static const char kName[] = "lw.ini";
  if (directory + sizeof kName > size) return false;
  std::memcpy(buffer + directory, kName, sizeof kName);
  return true;
}

}  // namespace KrsSettings
