// The report senders and the process-wide switch words.
#include "KrsDiagnostics.h"
#include "KrsStringW.h"

#include "support/KrsMonitor.h"
#include "support/KrsPlatform.h"
#include "support/KrsSettings.h"

#include <cstddef>

namespace {

constexpr unsigned kKindCheck = 0x08040000;
constexpr unsigned kKindText = 0x0C080000;
constexpr unsigned kCodeCheck = 190;
constexpr unsigned kCodeNotice = 25790;

constexpr std::size_t kWideChars = KrsStringW::kMaxFormatted;

enum class AssertState { kUnknown, kOff, kOn };
AssertState g_assertState = AssertState::kUnknown;
bool g_switchesRead = false;
unsigned g_arraySwitches = 0;
bool g_warningsEnabled = true;

// The settings file is read once, in one pass, for all keys; the mark that it has been read is
// set first, so a failed read leaves every switch off for good.
enum SettingKey { kKrsAssert, kJumpArrOnAdd, kJumpArrOnRemove, kDefecateMem, kSettingCount };
int readSwitch(SettingKey key) {
  static bool read = false;
  static int values[kSettingCount] = {};
  if (!read) {
    read = true;
    static const char* const kKeys[kSettingCount] = {"krsassert", "JumpArrOnAdd", "JumpArrOnRemove", "DefecateMem"};
    char path[2048];
    if (KrsSettings::settingsPath(path, sizeof path))
      KrsSettings::readProfileInts(path, "lw", kKeys, values, kSettingCount, 0);
  }
  return values[key];
}

// Narrow texts in the platform's narrow encoding.
void widen(const char* text, wchar_t* out, std::size_t capacity) { KrsPlatform::widenNarrowText(text, out, capacity); }

bool sendText(KrsMonitor::Channel channel, const KrsStringW& text, const char* source, int line, unsigned kind,
              unsigned code) {
  return KrsMonitor::send(channel, text.GetString(), source, line, kind, code);
}

}  // namespace

bool KrsQueryAssertState() {
  if (g_assertState == AssertState::kUnknown) {
    g_assertState = AssertState::kOff;
    if (KrsPlatform::monitorPresent() && readSwitch(kKrsAssert) != 0) g_assertState = AssertState::kOn;
  }
  return g_assertState == AssertState::kOn;
}

unsigned KrsQueryArraySwitches() {
  if (!g_switchesRead) {
    g_switchesRead = true;  // a failed read leaves every bit clear for good
    unsigned bits = 0;
    if (readSwitch(kJumpArrOnAdd) != 0) bits |= kKrsJumpArrOnAdd;
    if (readSwitch(kJumpArrOnRemove) != 0) bits |= kKrsJumpArrOnRemove;
    if (readSwitch(kDefecateMem) != 0) bits |= kKrsDefecateMem;
    g_arraySwitches = bits;
  }
  return g_arraySwitches;
}

void KrsSetWarningsEnabled(bool enabled) { g_warningsEnabled = enabled; }
bool KrsWarningsEnabled() { return g_warningsEnabled; }

bool KrsReportAssertion(const char* expressionText, const char* source, int line) {
  if (!KrsMonitor::available(KrsMonitor::kAssertChannel)) return false;
  // Bounded stack use: a report may come from a host thread with a small stack.
  constexpr std::size_t kFileChars = 1024;
  wchar_t expression[kWideChars], file[kFileChars];
  widen(expressionText, expression, kWideChars);
  widen(source, file, kFileChars);
  KrsStringW text;
  text.Format(L"KrsAssertion failed;\r\nExpression: '%s'\r\nFile: '%s; Line: %d;\nDebug?", expression, file, line);
  return sendText(KrsMonitor::kAssertChannel, text, source, line, kKindCheck, kCodeCheck);
}

bool KrsReportWarning(const wchar_t* message, const char* source, int line) {
  if (!g_warningsEnabled || !KrsMonitor::available(KrsMonitor::kTextChannel)) return false;
  KrsStringW text;
  text.Format(L"WARNING '%s'", message ? message : L"");
  return sendText(KrsMonitor::kTextChannel, text, source, line, kKindText, kCodeNotice);
}

bool KrsReportWarningA(const char* message, const char* source, int line) {
  if (!g_warningsEnabled || !KrsMonitor::available(KrsMonitor::kTextChannel)) return false;
  wchar_t wide[kWideChars];
  widen(message, wide, kWideChars);
  return KrsReportWarning(wide, source, line);
}

bool KrsReportError(unsigned code, const char* message, const char* source, int line) {
  if (!KrsMonitor::available(KrsMonitor::kTextChannel)) return false;
  wchar_t wide[kWideChars];
  widen(message, wide, kWideChars);
  KrsStringW text;
  text.Format(L"ERROR(%X) '%s'", code, wide);
  return sendText(KrsMonitor::kTextChannel, text, source, line, kKindText, kCodeCheck);
}

bool KrsReportOutOfMemory(const char* source, int line) {
  if (!KrsMonitor::available(KrsMonitor::kErrorChannel)) return false;
  return sendText(KrsMonitor::kErrorChannel, KrsStringW(L"E_CHECK_OUT_OF_MEMORY", nullptr), source, line, kKindCheck,
                  kCodeCheck);
}

bool KrsReportSelfInsert(const char* message, const char* source, int line) {
  if (!KrsMonitor::available(KrsMonitor::kErrorChannel)) return false;
  wchar_t wide[kWideChars];
  widen(message, wide, kWideChars);
  return sendText(KrsMonitor::kErrorChannel, KrsStringW(wide, nullptr), source, line, kKindCheck, kCodeNotice);
}

bool KrsReportNotTested(const char* signature, const char* source, int line) {
  if (!KrsMonitor::available(KrsMonitor::kTextChannel)) return false;
  wchar_t wide[kWideChars];
  widen(signature, wide, kWideChars);
  KrsStringW text;
  text.Format(L"AUTOTEST not passed for \"%s\"", wide);
  return sendText(KrsMonitor::kTextChannel, text, source, line, kKindCheck, kCodeNotice);
}
