// Decoding and printing of the datagrams a KrGeL library sends to its debug monitor
// (layout in docs/monitor-protocol.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace krgemon {

struct Record {
  std::uint32_t processId = 0;
  std::uint32_t threadId = 0;
  std::uint32_t line = 0;
  std::uint32_t kind = 0;
  std::uint32_t code = 0;
  std::string message;     // UTF-8 as sent
  std::string source;      // empty when the library could not read the source name
  std::string executable;  // file name part of the reporting executable
};

enum class DatagramType {
  kRecord,     // a report record
  kText,       // a plain-text line (attach/detach)
  kMalformed,  // starts like a record but its fields do not fit the datagram
};

// Classifies one datagram and, for a record, decodes it into `record`. Never reads outside
// [data, data + size).
DatagramType decode(const unsigned char* data, std::size_t size, Record& record);

// One readable line (no trailing newline): time, process, thread, kind, code, executable,
// source:line, message; control characters in texts are escaped so a record stays one line.
std::string formatLine(const std::string& time, const Record& record);
// One JSON object (no trailing newline).
std::string formatJson(const std::string& time, const Record& record);
std::string formatTextJson(const std::string& time, const std::string& text);
std::string formatMalformedJson(const std::string& time, std::size_t size);

// Escapes for JSON string contents; invalid UTF-8 becomes U+FFFD so the output stays valid.
std::string jsonEscape(const std::string& text);

}  // namespace krgemon
