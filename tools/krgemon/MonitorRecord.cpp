#include "MonitorRecord.h"

#include <cstdio>

namespace krgemon {
namespace {

constexpr std::uint32_t kMessageNumber = 0x5001;
constexpr std::uint32_t kMagic = 1400;
constexpr std::size_t kHeaderBytes = 14 * 4;

std::uint32_t word(const unsigned char* at) {
  return static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
         static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

// A text field given as (offset, length) into the payload; false when it lies outside.
bool field(const unsigned char* payload, std::size_t payloadSize, std::uint32_t offset, std::uint32_t length,
           std::string& out) {
  if (offset > payloadSize || length > payloadSize - offset) return false;
  out.assign(reinterpret_cast<const char*>(payload) + offset, length);
  return true;
}

// Length of the valid UTF-8 sequence at text[i], or 0 when the byte does not start one.
std::size_t utf8Sequence(const std::string& text, std::size_t i) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i);
  std::size_t length;
  std::uint32_t cp;
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) { length = 2; cp = lead & 0x1F; }
  else if (lead >= 0xE0 && lead <= 0xEF) { length = 3; cp = lead & 0x0F; }
  else if (lead >= 0xF0 && lead <= 0xF4) { length = 4; cp = lead & 0x07; }
  else return 0;
  if (i + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
    cp = cp << 6 | (byte(i + k) & 0x3F);
  }
  // Overlong forms, surrogates and code points past U+10FFFF are not valid UTF-8.
  if ((length == 3 && cp < 0x800) || (length == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
      (cp >= 0xD800 && cp <= 0xDFFF))
    return 0;
  return length;
}

// Escapes control characters and backslashes so that a multi-line message prints as one line.
std::string lineEscape(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (byte < 0x20 || byte == 0x7F) {
          char hex[8];
          std::snprintf(hex, sizeof hex, "\\x%02X", byte);
          out += hex;
        } else {
          out += c;
        }
    }
  }
  return out;
}

}  // namespace

DatagramType decode(const unsigned char* data, std::size_t size, Record& record) {
  if (size < 4 || word(data) != kMessageNumber) return DatagramType::kText;
  if (size < kHeaderBytes) return DatagramType::kMalformed;
  const unsigned char* fields = data + 8;
  if (word(fields + 44) != kMagic) return DatagramType::kMalformed;
  const unsigned char* payload = data + kHeaderBytes;
  const std::size_t payloadSize = size - kHeaderBytes;
  record.processId = word(fields + 0);
  record.threadId = word(fields + 4);
  record.line = word(fields + 24);
  record.kind = word(fields + 28);
  record.code = word(fields + 32);
  const bool fits = field(payload, payloadSize, word(fields + 12), word(fields + 8), record.message) &&
                    field(payload, payloadSize, word(fields + 20), word(fields + 16), record.source) &&
                    field(payload, payloadSize, word(fields + 36), word(fields + 40), record.executable);
  return fits ? DatagramType::kRecord : DatagramType::kMalformed;
}

std::string formatLine(const std::string& time, const Record& record) {
  char head[160];
  std::snprintf(head, sizeof head, "%s pid %u tid %u kind 0x%08X code %u ", time.c_str(), record.processId,
                record.threadId, record.kind, record.code);
  return head + lineEscape(record.executable.empty() ? "?" : record.executable) + " " +
         lineEscape(record.source.empty() ? "?" : record.source) + ":" + std::to_string(record.line) + " " +
         lineEscape(record.message);
}

std::string jsonEscape(const std::string& text) {
  std::string out;
  out.reserve(text.size() + 8);
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::size_t length = utf8Sequence(text, i);
    if (length == 0) {
      out += "\\ufffd";
      ++i;
      continue;
    }
    if (length > 1) {
      out.append(text, i, length);
      i += length;
      continue;
    }
    switch (byte) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (byte < 0x20) {
          char hex[8];
          std::snprintf(hex, sizeof hex, "\\u%04x", byte);
          out += hex;
        } else {
          out += static_cast<char>(byte);
        }
    }
    ++i;
  }
  return out;
}

std::string formatJson(const std::string& time, const Record& record) {
  char numbers[160];
  std::snprintf(numbers, sizeof numbers, "\"pid\":%u,\"tid\":%u,\"kind\":%u,\"code\":%u,\"line\":%u", record.processId,
                record.threadId, record.kind, record.code, record.line);
  return "{\"time\":\"" + jsonEscape(time) + "\"," + numbers + ",\"exe\":\"" + jsonEscape(record.executable) +
         "\",\"source\":\"" + jsonEscape(record.source) + "\",\"message\":\"" + jsonEscape(record.message) + "\"}";
}

std::string formatTextJson(const std::string& time, const std::string& text) {
  return "{\"time\":\"" + jsonEscape(time) + "\",\"text\":\"" + jsonEscape(text) + "\"}";
}

std::string formatMalformedJson(const std::string& time, std::size_t size) {
  return "{\"time\":\"" + jsonEscape(time) + "\",\"malformed\":" + std::to_string(size) + "}";
}

}  // namespace krgemon
