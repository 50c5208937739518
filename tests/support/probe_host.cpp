// A small host program for the process-level tests: it links the library as any host does and
// executes one command per line of standard input, answering one line per command.
#include <iostream>
#include <sstream>
#include <string>

#include "KrGeL.h"

namespace {

bool allBytes(const void* block, std::size_t bytes, unsigned char value) {
  const auto* p = static_cast<const unsigned char*>(block);
  for (std::size_t i = 0; i < bytes; ++i)
    if (p[i] != value) return false;
  return true;
}

// Appends one value at a time and counts growths and how many of them moved the block.
std::string appendAndWatch(int count) {
  KrsArray<double> values;
  int growths = 0, moves = 0;
  bool intact = true;
  for (int i = 0; i < count; ++i) {
    const double* before = values.GetData();
    const int capacity = values.GetMaxSize();
    values.Add(i + 0.25);
    growths += values.GetMaxSize() != capacity && before;
    moves += values.GetMaxSize() != capacity && before && values.GetData() != before;
  }
  for (int i = 0; i < count; ++i) intact = intact && values[i] == i + 0.25;
  return "growths=" + std::to_string(growths) + " moves=" + std::to_string(moves) + " intact=" + std::to_string(intact);
}

std::string removeAndWatch(int count) {
  KrsArray<int> values;
  for (int i = 0; i < count; ++i) values.Add(i);
  int removals = 0, moves = 0;
  for (; values.GetSize() > 1; ++removals) {
    const int* before = values.GetData();
    values.RemoveAt(0);
    moves += values.GetData() != before;
  }
  return "removals=" + std::to_string(removals) + " moves=" + std::to_string(moves) + " last=" + std::to_string(values[0]);
}

// With DefecateMem on, memory the array holds but does not use reads as 0xFC.
std::string defecate() {
  KrsArray<double> shrunk, removed, fresh;
  shrunk.SetSize(10);
  for (int i = 0; i < 10; ++i) shrunk[i] = 1.0 + i;
  shrunk.SetSize(3);
  for (int i = 0; i < 6; ++i) removed.Add(10.0 + i);
  removed.RemoveAt(1, 2);
  const bool removeFilled = allBytes(removed.GetData() + 4, 2 * sizeof(double), 0xFC) && removed[1] == 13.0;
  fresh.SetSize(5, 20);
  const bool freshFilled = allBytes(fresh.GetData() + 5, 15 * sizeof(double), 0xFC) && allBytes(fresh.GetData(), 5 * sizeof(double), 0);
  fresh.SetSize(21);  // growth: the new tail beyond the constructed elements is marked as well
  return "shrink=" + std::to_string(allBytes(shrunk.GetData() + 3, 7 * sizeof(double), 0xFC)) + " remove=" +
         std::to_string(removeFilled) + " fresh=" + std::to_string(freshFilled) + " grown=" +
         std::to_string(allBytes(fresh.GetData() + 21, (fresh.GetMaxSize() - 21) * sizeof(double), 0xFC));
}

std::string execute(const std::string& line) {
  std::istringstream in(line);
  std::string command, text;
  int count = 0, sent = 0;
  in >> command;
  if (command == "state")
    return "assert=" + std::to_string(KrsQueryAssertState()) + " host=" + std::to_string(KrsModule::assertOn) +
           " switches=" + std::to_string(KrsQueryArraySwitches());
  if (command == "violate" && in >> count) {
    for (int i = 0; i < count; ++i) KrsArray<double>().RemoveAt(-1);  // one check site, "(nIndex >= 0)"
    return "done";
  }
  if (command == "warn" && std::getline(in >> std::ws, text)) return "sent=" + std::to_string(KRS_WARN(text.c_str()));
  if ((command == "warn-many" || command == "warn-big") && in >> count) {  // long warnings fill a queue quickly
    text = command == "warn-big" ? std::string(2000, 'w') : "probe warning";
    for (int i = 0; i < count; ++i) sent += KRS_WARN(text.c_str());
    return "sent=" + std::to_string(sent);
  }
  if (command == "append" && in >> count) return appendAndWatch(count);
  if (command == "remove" && in >> count) return removeAndWatch(count);
  if (command == "defecate") return defecate();
  return "unknown command";
}

}  // namespace

int main() {
  std::string line;
  while (std::getline(std::cin, line) && line != "quit") std::cout << execute(line) << std::endl;
  return 0;
}
