// A small host program for the process-level tests: it links the library as any host does and
// executes one command per line of standard input, answering one line per command.
#include "KrGeL.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

namespace {

// One check site, violated as often as the caller asks: "(nIndex >= 0)" of RemoveAt.
void violateRemoveAt() {
  KrsArray<double> values;
  values.Add(1.0);
  values.RemoveAt(-1);
}

bool allBytes(const void* block, std::size_t bytes, unsigned char value) {
  const auto* p = static_cast<const unsigned char*>(block);
  for (std::size_t i = 0; i < bytes; ++i)
    if (p[i] != value) return false;
  return true;
}

// Appends `count` values one at a time and counts growths and how many of them moved the block.
std::string appendAndWatch(int count) {
  KrsArray<double> values;
  int growths = 0, moves = 0;
  bool intact = true;
  for (int i = 0; i < count; ++i) {
    const double* before = values.GetData();
    const int capacity = values.GetMaxSize();
    values.Add(i + 0.25);
    if (values.GetMaxSize() != capacity && before) {
      ++growths;
      moves += values.GetData() != before;
    }
  }
  for (int i = 0; i < count; ++i) intact = intact && values[i] == i + 0.25;
  return "growths=" + std::to_string(growths) + " moves=" + std::to_string(moves) + " intact=" + std::to_string(intact);
}

std::string removeAndWatch(int count) {
  KrsArray<int> values;
  for (int i = 0; i < count; ++i) values.Add(i);
  int removals = 0, moves = 0;
  while (values.GetSize() > 1) {
    const int* before = values.GetData();
    values.RemoveAt(0);
    ++removals;
    moves += values.GetData() != before;
  }
  return "removals=" + std::to_string(removals) + " moves=" + std::to_string(moves) +
         " last=" + std::to_string(values[0]);
}

// With DefecateMem on, memory the array holds but does not use reads as 0xFC.
std::string defecate() {
  KrsArray<double> shrunk;
  shrunk.SetSize(10);
  for (int i = 0; i < 10; ++i) shrunk[i] = 1.0 + i;
  shrunk.SetSize(3);
  const bool shrinkFilled = allBytes(shrunk.GetData() + 3, 7 * sizeof(double), 0xFC);

  KrsArray<double> removed;
  for (int i = 0; i < 6; ++i) removed.Add(10.0 + i);
  removed.RemoveAt(1, 2);
  const bool removeFilled = allBytes(removed.GetData() + 4, 2 * sizeof(double), 0xFC) && removed[0] == 10.0 &&
                            removed[1] == 13.0 && removed[3] == 15.0;

  KrsArray<double> fresh;
  fresh.SetSize(5, 20);
  const bool freshFilled = allBytes(fresh.GetData() + 5, 15 * sizeof(double), 0xFC) &&
                           allBytes(fresh.GetData(), 5 * sizeof(double), 0);
  fresh.SetSize(21);  // growth: the new tail beyond the constructed elements is marked as well
  const bool grownFilled = allBytes(fresh.GetData() + 21, (fresh.GetMaxSize() - 21) * sizeof(double), 0xFC);
  return "shrink=" + std::to_string(shrinkFilled) + " remove=" + std::to_string(removeFilled) +
         " fresh=" + std::to_string(freshFilled) + " grown=" + std::to_string(grownFilled);
}

std::string execute(const std::string& line) {
  std::istringstream in(line);
  std::string command;
  in >> command;
  if (command == "state")
    return "assert=" + std::to_string(KrsQueryAssertState()) + " host=" + std::to_string(KrsModule::assertOn) +
           " switches=" + std::to_string(KrsQueryArraySwitches());
  if (command == "violate") {
    int times = 1;
    in >> times;
    for (int i = 0; i < times; ++i) violateRemoveAt();
    return "done";
  }
  if (command == "warn") {
    std::string text;
    std::getline(in >> std::ws, text);
    return "sent=" + std::to_string(KRS_WARN(text.c_str()));
  }
  if (command == "warn-many") {
    int times = 0, sent = 0;
    in >> times;
    for (int i = 0; i < times; ++i) sent += KRS_WARN("probe warning");
    return "sent=" + std::to_string(sent);
  }
  if (command == "warn-big") {  // long warnings, to fill a monitor's queue quickly
    int times = 0, sent = 0;
    in >> times;
    const std::string text(2000, 'w');
    for (int i = 0; i < times; ++i) sent += KRS_WARN(text.c_str());
    return "sent=" + std::to_string(sent);
  }
  int count = 0;
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
