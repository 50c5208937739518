#include "SceneParser.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace krgescene {

namespace {

constexpr double kPi = 3.14159265358979323846;

class Cursor {
public:
  Cursor(const std::vector<std::string>& words, const std::string& synopsis)
      : m_words(words), m_synopsis(synopsis) {}

  bool atEnd() const { return m_next >= m_words.size(); }
  const std::string& peek() const { return m_words[m_next]; }
  const std::string& take() {
    if (atEnd()) throw countError();
    return m_words[m_next++];
  }
  // The last `count` words taken, blank-separated.
  std::string joined(std::size_t count) const {
    std::string text;
    for (std::size_t i = m_next - count; i < m_next; ++i) text += (text.empty() ? "" : " ") + m_words[i];
    return text;
  }
  SceneError countError() const {
    return SceneError("wrong argument count: got " + std::to_string(m_words.size() - 1) + ", expected '" +
                      m_synopsis + "' (a point or vector is a name or three numbers)");
  }

private:
  const std::vector<std::string>& m_words;
  const std::string& m_synopsis;
  std::size_t m_next = 1;  // words[0] is the command
};

double takeNumber(Cursor& cursor, const std::string& label) {
  const std::string& word = cursor.take();
  double value = 0.0;
  if (!parseNumber(word, label, value)) throw SceneError(label + ": expected a number, got '" + word + "'");
  return value;
}

bool looksNumeric(const std::string& word, const std::string& label) {
  double ignored = 0.0;
  return parseNumber(word, label, ignored);
}

KrGePoint3d takeTriple(Cursor& cursor, const std::string& label) {
  const double x = takeNumber(cursor, label);
  const double y = takeNumber(cursor, label);
  const double z = takeNumber(cursor, label);
  return KrGePoint3d(x, y, z);
}

int takeCount(Cursor& cursor, const SlotSpec& spec) {
  const std::string& word = cursor.take();
  char* end = nullptr;
  errno = 0;
  const long value = std::strtol(word.c_str(), &end, 10);
  if (word.empty() || *end != '\0' || errno != 0 || value < spec.minCount || value > spec.maxCount)
    throw SceneError(std::string(spec.label) + ": expected a whole number from " + std::to_string(spec.minCount) +
                     " to " + std::to_string(spec.maxCount) + ", got '" + word + "'");
  return static_cast<int>(value);
}

std::string takeWord(Cursor& cursor, const SlotSpec& spec) {
  const std::string& word = cursor.take();
  std::istringstream choices(spec.choices);
  std::string choice;
  while (choices >> choice)
    if (choice == word) return word;
  throw SceneError(std::string(spec.label) + ": expected one of " + spec.choices + ", got '" + word + "'");
}

void takeView(Cursor& cursor, const Scene& scene, Arg& arg) {
  if (cursor.atEnd()) throw cursor.countError();
  if (looksNumeric(cursor.peek(), "PLANE")) {
    // Three numbers: the normal of a view plane through the origin.
    const KrGeVector3d normal = takeTriple(cursor, "PLANE").asVector();
    if (normal.isZeroLength()) throw SceneError("PLANE: the view normal is a zero vector");
    arg.plane = KrGePlane(KrGePoint3d::kOrigin, normal);
    arg.name = "normal " + cursor.joined(3);
    return;
  }
  const std::string& word = cursor.take();
  arg.name = word;
  if (word == "xy") arg.plane = KrGePlane::kXYPlane;
  else if (word == "yz") arg.plane = KrGePlane::kYZPlane;
  else if (word == "zx") arg.plane = KrGePlane::kZXPlane;
  else arg.plane = scene.get(word, kPlaneKind).plane();
}

}  // namespace

std::vector<std::string> tokenize(const std::string& line) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : line) {
    if (c == '#') break;
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f') {
      if (!word.empty()) words.push_back(std::move(word));
      word.clear();
    } else {
      word += c;
    }
  }
  if (!word.empty()) words.push_back(std::move(word));
  return words;
}

bool parseNumber(const std::string& word, const std::string& label, double& value) {
  std::string digits = word;
  double scale = 1.0;
  if (digits.size() > 3 && digits.compare(digits.size() - 3, 3, "deg") == 0) {
    digits.resize(digits.size() - 3);
    scale = kPi / 180.0;
  }
  if (digits.empty()) return false;
  const char first = digits[0];
  // Only words that start like a decimal number count: "inf" and "nan" are caught below as
  // numbers that are not finite, a name such as "e1" is a name.
  const bool numeric = std::isdigit(static_cast<unsigned char>(first)) || first == '-' || first == '+' ||
                       first == '.' || digits == "nan" || digits == "inf" || digits == "infinity" ||
                       digits == "NaN" || digits == "Inf";
  if (!numeric) return false;
  char* end = nullptr;
  const double parsed = std::strtod(digits.c_str(), &end);
  if (end == digits.c_str() || *end != '\0') return false;
  value = parsed * scale;
  if (!std::isfinite(value)) throw SceneError(label + ": '" + word + "' is not a finite number");
  return true;
}

std::vector<Arg> parseArgs(const std::string& synopsis, const std::vector<SlotSpec>& specs,
                           const std::vector<std::string>& words, const Scene& scene) {
  Cursor cursor(words, synopsis);
  std::vector<Arg> args(specs.size());
  for (std::size_t i = 0; i < specs.size(); ++i) {
    const SlotSpec& spec = specs[i];
    if (spec.optional && cursor.atEnd()) break;  // the optional tail is left out
    Arg& arg = args[i];
    arg.present = true;
    switch (spec.slot) {
      case Slot::kNewName:
        arg.name = cursor.take();
        scene.checkNewName(arg.name);
        break;
      case Slot::kNumber:
        arg.number = takeNumber(cursor, spec.label);
        break;
      case Slot::kCount:
        arg.count = takeCount(cursor, spec);
        break;
      case Slot::kPoint:
        if (cursor.atEnd()) throw cursor.countError();
        if (looksNumeric(cursor.peek(), spec.label)) arg.point = takeTriple(cursor, spec.label);
        else arg.point = scene.get(cursor.take(), kPointKind).point();
        break;
      case Slot::kVector:
        if (cursor.atEnd()) throw cursor.countError();
        if (looksNumeric(cursor.peek(), spec.label)) arg.vector = takeTriple(cursor, spec.label).asVector();
        else arg.vector = scene.get(cursor.take(), kVectorKind).vector;
        break;
      case Slot::kName:
        arg.name = cursor.take();
        arg.named = &scene.get(arg.name, spec.kinds);
        break;
      case Slot::kWord:
        arg.name = takeWord(cursor, spec);
        break;
      case Slot::kView:
        takeView(cursor, scene, arg);
        break;
    }
  }
  if (!cursor.atEnd()) throw cursor.countError();
  return args;
}

}  // namespace krgescene
