#include "testkit/MonitorCapture.h"

namespace testkit {

std::string assertionText(const std::string& expression, const std::string& source, int line) {
  return "KrsAssertion failed;\r\nExpression: '" + expression + "'\r\nFile: '" + source + "; Line: " +
         std::to_string(line) + ";\nDebug?";
}

int countMessage(const std::vector<Record>& records, const std::string& message) {
  int n = 0;
  for (const Record& r : records) n += r.message == message;
  return n;
}

}  // namespace testkit
