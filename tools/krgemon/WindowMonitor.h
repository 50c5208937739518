// The Windows side of the debug monitor: the hidden window of class "_indebmon" that receives the
// records of KrGeL libraries, the reader of a record and its texts from the sending process, and
// the reader of the system's debug-output buffer, where the attach/detach lines arrive.
#pragma once

#include "MonitorRecord.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace krgemon {

// A record's twelve fields as the sender laid them out (addresses widened to 64 bits).
struct WindowRecord {
  std::uint32_t processId = 0;
  std::uint32_t threadId = 0;
  std::uint32_t messageLength = 0;
  std::uint64_t messageText = 0;
  std::uint32_t sourceLength = 0;
  std::uint64_t sourceText = 0;
  std::uint32_t line = 0;
  std::uint32_t kind = 0;
  std::uint32_t code = 0;
  std::uint64_t exeNameText = 0;
  std::uint32_t exeNameLength = 0;
  std::uint32_t magic = 0;
};

// Reads the record at `address` in process `processId` (the layout of a 32-bit sender when that
// process runs under WOW64, else this program's own) and its texts, converted to UTF-8. False
// when the process or any of its texts cannot be read, or the magic is not 1400.
bool readRecord(std::uint32_t processId, std::uint64_t address, WindowRecord& raw, Record& record);

// A hidden top-level window of class "_indebmon" run by a thread of its own; `onRecord` is called
// on that thread, while the sender waits, for every record message (complete = readRecord's
// answer). Only one such window should exist at a time: senders look the class up by name.
class MonitorWindow {
public:
  using RecordHandler = std::function<void(const WindowRecord& raw, const Record& record, bool complete)>;
  explicit MonitorWindow(RecordHandler onRecord);
  ~MonitorWindow();  // closes the window and ends its thread
  MonitorWindow(const MonitorWindow&) = delete;
  MonitorWindow& operator=(const MonitorWindow&) = delete;

  bool ok() const;

  struct State;

private:
  std::unique_ptr<State> m_state;
};

// Reader of the system-wide debug-output buffer: `onText` is called on the reader's thread with
// the writer's process id and text. Fails (ok() false) while another reader holds the buffer.
class DebugOutputReader {
public:
  using TextHandler = std::function<void(std::uint32_t processId, const std::string& text)>;
  explicit DebugOutputReader(TextHandler onText);
  ~DebugOutputReader();
  DebugOutputReader(const DebugOutputReader&) = delete;
  DebugOutputReader& operator=(const DebugOutputReader&) = delete;

  bool ok() const;
  // Returns once every text written before the call has been handed to `onText`.
  void sync();

  struct State;

private:
  std::unique_ptr<State> m_state;
};

// The current local time as "hh:mm:ss.mmm", or "yyyy-mm-ddThh:mm:ss.mmm" with `iso`.
std::string localTime(bool iso);

}  // namespace krgemon
