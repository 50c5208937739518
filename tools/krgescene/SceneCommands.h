// The command table of the scene language: one entry per command, which gives its slots, its
// help line and the function that runs it. The --help list and the README list come from here.
#pragma once

#include <string>
#include <vector>

#include "SceneParser.h"

namespace krgescene {

using Handler = void (*)(Scene& scene, const std::vector<Arg>& args, Result& result);

enum class Section { kEntity, kTransform, kQuery, kView };

struct Command {
  const char* name;
  Section section;
  std::vector<SlotSpec> slots;
  const char* help;
  Handler run;
};

const std::vector<Command>& commands();
// Null when there is no such command.
const Command* findCommand(const std::string& name);
// "segment NAME P1 P2", optional slots in brackets.
std::string synopsis(const Command& command);
// The command list, one section heading and one line per command, as --help and the README
// show it.
std::string commandList();

}  // namespace krgescene
