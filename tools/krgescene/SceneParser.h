// The scene language: one command per line, words separated by blanks, "#" starts a comment.
// A command's arguments are typed slots; a point or vector slot takes a name or three numbers,
// a number may end in "deg" (degrees, turned into radians).
#pragma once

#include <string>
#include <vector>

#include "SceneModel.h"

namespace krgescene {

enum class Slot {
  kNewName,  // a name this line defines
  kNumber,   // a finite number
  kCount,    // a whole number within [minCount, maxCount]
  kPoint,    // a point name or x y z
  kVector,   // a vector name or x y z
  kName,     // an existing name of one of `kinds`
  kWord,     // one of the blank-separated `choices`
  kView,     // xy, yz, zx, a plane name, or three numbers: the normal of a plane through the origin
};

struct SlotSpec {
  Slot slot = Slot::kNumber;
  const char* label = "";        // as the synopsis shows it
  unsigned kinds = 0;            // kName
  const char* choices = "";      // kWord
  bool optional = false;         // this slot and every later one may be left out together
  int minCount = 1, maxCount = 1;
};

// The value of one slot after parsing.
struct Arg {
  bool present = false;
  double number = 0.0;
  int count = 0;
  KrGePoint3d point;
  KrGeVector3d vector;
  std::string name;  // kNewName, kName, kWord, kView (the word or the plane name)
  const Named* named = nullptr;
  KrGePlane plane;  // kView
};

// Splits a line into words; the comment is dropped.
std::vector<std::string> tokenize(const std::string& line);
// A finite number (with an optional "deg" suffix): false when the word is not one at all;
// SceneError when it is a number but not finite ("nan", "1e999").
bool parseNumber(const std::string& word, const std::string& label, double& value);

// Parses the words after the command into slot values; SceneError says what is wrong.
std::vector<Arg> parseArgs(const std::string& synopsis, const std::vector<SlotSpec>& specs,
                           const std::vector<std::string>& words, const Scene& scene);

}  // namespace krgescene
