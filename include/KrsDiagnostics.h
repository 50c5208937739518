// Diagnostics of the library: assertions, warnings, error reports and self-check notices, sent
// as records to a debug monitor when one is running and dropped silently otherwise.
//
// Report kinds, codes and channels:
//   assertion       "KrsAssertion failed;\r\nExpression: '<expr>'\r\nFile: '<src>; Line: <n>;\nDebug?"
//                   kind 0x08040000, code 190, assertion channel; once per check site, and only while
//                   the module's assertion state (captured at load) is on.
//   out of memory   "E_CHECK_OUT_OF_MEMORY", kind 0x08040000, code 190, error channel.
//   self-insert     the container's own text, kind 0x08040000, code 25790, error channel, every time.
//   warning         "WARNING '<msg>'", kind 0x0C080000, code 25790, text channel, every time unless
//                   the host switched warnings off with KrsSetWarningsEnabled(false).
//   error           "ERROR(<hex code>) '<msg>'", kind 0x0C080000, code 190, text channel.
//   unimplemented   "AUTOTEST not passed for \"<signature>\"", kind 0x08040000, code 25790, text
//                   channel, once per operation.
// Texts are formatted into 2048 wide characters (longer ones are truncated). Nothing here ever
// throws or writes to the host's standard streams. Delivery is synchronous: a report waits while
// the monitor's queue is full, at most 100 ms, and after such a timeout the channel drops what
// does not fit at once for a second. Without a monitor a report costs a clock read; the monitor
// is looked up again at most once a second (wire format and lookup: docs/monitor-protocol.md).
// The self-insert reports go out every time on the error channel (not as warnings), so the
// global warning switch does not silence them.
// Reports may come from any thread and carry its id; a check site reports at most once per
// process even when several threads fail it at the same moment. The warning switch and the
// context globals are plain process-wide values: a host that changes them serialises that.
#pragma once

#include "KrGeLExport.h"

#include <atomic>

// Bits of the array switches read from the settings file.
enum KrsArraySwitch : unsigned {
  kKrsJumpArrOnAdd = 1u,     // every growth moves the contents to a fresh block
  kKrsJumpArrOnRemove = 2u,  // every removal moves the contents to a fresh block
  kKrsDefecateMem = 4u       // unconstructed and destructed element memory is filled with 0xFC
};

// Process-wide switch words, computed on the first query and cached for good. The assertion
// state is on only if a monitor was present at that first query and "krsassert" is nonzero.
KRGEL_API bool KrsQueryAssertState();
KRGEL_API unsigned KrsQueryArraySwitches();

// Process-wide warning switch (on by default).
KRGEL_API void KrsSetWarningsEnabled(bool enabled);
KRGEL_API bool KrsWarningsEnabled();

// Senders. `source` is the source name the record carries, `line` its line. Each answers whether
// a record was delivered to a monitor.
KRGEL_API bool KrsReportAssertion(const char* expressionText, const char* source, int line);
KRGEL_API bool KrsReportWarning(const wchar_t* message, const char* source, int line);
KRGEL_API bool KrsReportWarningA(const char* message, const char* source, int line);
KRGEL_API bool KrsReportError(unsigned code, const char* message, const char* source, int line);
KRGEL_API bool KrsReportOutOfMemory(const char* source, int line);
KRGEL_API bool KrsReportSelfInsert(const char* text, const char* source, int line);
KRGEL_API bool KrsReportNotTested(const char* signature, const char* source, int line);

// What a module (this library, or a host that instantiates the container templates) captured at
// load. Each module has its own copy; the library's copy is hidden inside it.
namespace KrsModule {
inline const bool assertOn = KrsQueryAssertState();
inline const unsigned arraySwitches = KrsQueryArraySwitches();
}  // namespace KrsModule

// Check-site macros: one line per site. Texts are the expression as written, in parentheses.
// Each site's flag is a one-byte relaxed atomic: reading it costs what a plain byte load costs,
// and the exchange lets exactly one of several threads that fail the same check at once report.
#define KRS_REPORT_ONCE_AT(text, src, line)                                                    \
  do {                                                                                         \
    static std::atomic<unsigned char> krsSiteReported_{0};                                     \
    if (KrsModule::assertOn && !krsSiteReported_.load(std::memory_order_relaxed) &&            \
        !krsSiteReported_.exchange(1, std::memory_order_relaxed))                              \
      KrsReportAssertion(text, src, line);                                                     \
  } while (0)

// Reports "(cond)" when the invariant `cond` does not hold.
#define KRS_ASSERT_AT(cond, src, line) do { if (!(cond)) KRS_REPORT_ONCE_AT("(" #cond ")", src, line); } while (0)
#define KRS_ASSERT(cond) KRS_ASSERT_AT(cond, __FILE__, __LINE__)
// Reports "(cond)" when the failure condition `cond` holds.
#define KRS_FAIL_IF_AT(cond, src, line) do { if (cond) KRS_REPORT_ONCE_AT("(" #cond ")", src, line); } while (0)
#define KRS_FAIL_IF(cond) KRS_FAIL_IF_AT(cond, __FILE__, __LINE__)
// Reports a fixed text when `ok` is false (for checks whose written form is not the C++ form).
#define KRS_CHECK_TEXT_AT(ok, text, src, line) do { if (!(ok)) KRS_REPORT_ONCE_AT(text, src, line); } while (0)

#define KRS_E_NOTIMPL_TEXT "(((HRESULT)0x80004001L))"
#define KRS_E_FAIL_TEXT "(((HRESULT)0x80004005L))"
#define KRS_E_UNEXPECTED_TEXT "(((HRESULT)0x8000FFFFL))"
#define KRS_E_INVALIDARG_TEXT "(((HRESULT)0x80070057L))"
#define KRS_NOT_IMPLEMENTED_AT(src, line) KRS_REPORT_ONCE_AT(KRS_E_NOTIMPL_TEXT, src, line)
#define KRS_NOT_IMPLEMENTED() KRS_NOT_IMPLEMENTED_AT(__FILE__, __LINE__)
#define KRS_E_FAIL_AT(src, line) KRS_REPORT_ONCE_AT(KRS_E_FAIL_TEXT, src, line)
#define KRS_E_FAIL() KRS_E_FAIL_AT(__FILE__, __LINE__)

#define KRS_WARN_AT(msg, src, line) KrsReportWarningA(msg, src, line)
#define KRS_WARN(msg) KrsReportWarningA(msg, __FILE__, __LINE__)

// The once-per-operation self-check notice (same once-only flag as a check site).
#define KRS_AUTOTEST_AT(signature, src, line)                                                  \
  do {                                                                                         \
    static std::atomic<unsigned char> krsToldOnce_{0};                                         \
    if (!krsToldOnce_.load(std::memory_order_relaxed) &&                                       \
        !krsToldOnce_.exchange(1, std::memory_order_relaxed))                                  \
      KrsReportNotTested(signature, src, line);                                                \
  } while (0)
#define KRS_AUTOTEST(signature) KRS_AUTOTEST_AT(signature, __FILE__, __LINE__)

// Error-return macros of the implementation classes ("marco" is the texts' own spelling).
#define KRS_RETERR(ret) do { KrsReportError(0x8000FFFFu, "RETERR marco", __FILE__, __LINE__); return ret; } while (0)
#define KRS_RETERRIF(cond, code, ret)                                                          \
  do { if (cond) { KrsReportError(code, "RETERRIF marco, expr: " #cond, __FILE__, __LINE__); return ret; } } while (0)
#define KRS_ERRRET2(call, ret)                                                                 \
  do { const int krsHr_ = static_cast<int>(call);                                            \
       if (krsHr_ < 0) { KrsReportError(static_cast<unsigned>(krsHr_), "ERRRET2 marco, expr:" #call " ", __FILE__, __LINE__); return ret; } } while (0)
#define KRS_ERRCONTINUE2(call)                                                                 \
  do { const int krsHr_ = static_cast<int>(call);                                            \
       if (krsHr_ < 0) KrsReportError(static_cast<unsigned>(krsHr_), "ERRCONTINUE2 marco, expr:" #call " ", __FILE__, __LINE__); } while (0)
