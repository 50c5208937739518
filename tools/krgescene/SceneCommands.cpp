#include "SceneCommands.h"

#include <cstring>

#include "SceneHandlers.h"
#include "SceneReach.h"

namespace krgescene {

namespace {

SlotSpec newName(const char* label = "NAME") { return {Slot::kNewName, label}; }
SlotSpec number(const char* label) { return {Slot::kNumber, label}; }
SlotSpec point(const char* label) { return {Slot::kPoint, label}; }
SlotSpec vector(const char* label) { return {Slot::kVector, label}; }
SlotSpec name(const char* label, unsigned kinds) { return {Slot::kName, label, kinds}; }
SlotSpec count(const char* label, int low, int high) {
  SlotSpec spec{Slot::kCount, label};
  spec.minCount = low;
  spec.maxCount = high;
  return spec;
}
SlotSpec word(const char* label, const char* choices) {
  SlotSpec spec{Slot::kWord, label};
  spec.choices = choices;
  return spec;
}
SlotSpec optional(SlotSpec spec) {
  spec.optional = true;
  return spec;
}

std::vector<Command> makeTable() {
  return {
      {"point", Section::kEntity, {newName(), number("X"), number("Y"), number("Z")}, "a point", definePoint},
      {"vector", Section::kEntity, {newName(), number("X"), number("Y"), number("Z")},
       "a vector (a value for other commands)", defineVector},
      {"line", Section::kEntity, {newName(), point("P1"), point("P2")}, "the unbounded line through P1 and P2",
       defineLine},
      {"segment", Section::kEntity, {newName(), point("P1"), point("P2")}, "the segment from P1 to P2",
       defineSegment},
      {"plane", Section::kEntity, {newName(), point("ORIGIN"), vector("NORMAL")}, "the plane through ORIGIN",
       definePlane},
      {"circle", Section::kEntity, {newName(), point("CENTER"), vector("NORMAL"), number("RADIUS")},
       "the full circle", defineCircle},
      {"arc", Section::kEntity,
       {newName(), point("CENTER"), vector("NORMAL"), vector("REFVEC"), number("RADIUS"), number("START"),
        number("END")},
       "arc about NORMAL from angle START to END (from REFVEC)", defineArc},
      {"arc3", Section::kEntity, {newName(), point("P1"), point("P2"), point("P3")},
       "the arc from P1 through P2 to P3", defineArc3},
      {"ellipse", Section::kEntity,
       {newName(), point("CENTER"), vector("MAJORAXIS"), vector("MINORAXIS"), number("MAJOR"), number("MINOR"),
        optional(number("START")), number("END")},
       "the ellipse, or its arc from eccentric angle START to END", defineEllipse},
      {"copy", Section::kEntity, {newName(), name("SOURCE", kEntityKinds | kVectorKind)},
       "a copy of SOURCE under a new name", defineCopy},

      {"translate", Section::kTransform, {name("NAME", kEntityKinds), vector("BY")}, "moves NAME by BY",
       translateEntity},
      {"rotate", Section::kTransform,
       {name("NAME", kEntityKinds), number("ANGLE"), vector("AXIS"), optional(point("ABOUT"))},
       "turns NAME by ANGLE about AXIS through ABOUT (origin)", rotateEntity},
      {"mirror", Section::kTransform, {name("NAME", kEntityKinds), name("PLANE", kPlaneKind)},
       "reflects NAME in PLANE", mirrorEntity},
      {"scale", Section::kTransform, {name("NAME", kEntityKinds), number("FACTOR"), optional(point("ABOUT"))},
       "scales NAME by FACTOR about ABOUT (origin)", scaleEntity},

      {"eval", Section::kQuery, {name("CURVE", kEvalKinds), number("T")},
       "point and first derivative at parameter T", queryEval},
      {"sample", Section::kQuery, {name("CURVE", kEvalKinds), count("N", 2, 10000)},
       "N points spread evenly over the curve", querySample},
      {"length", Section::kQuery, {name("CURVE", kMeasureKinds), optional(number("T0")), number("T1")},
       "arc length of the whole curve or from T0 to T1", queryLength},
      {"paramat", Section::kQuery, {name("CURVE", kMeasureKinds), number("T0"), number("LENGTH")},
       "the parameter at arc length LENGTH from T0", queryParamAtLength},
      {"param", Section::kQuery, {name("CURVE", kMeasureKinds), point("P")}, "the parameter of point P on the curve",
       queryParamOf},
      {"closest", Section::kQuery, {name("A", kindsOf(kClosestPairs)), name("B", kindsOf(kClosestPairs))},
       "closest pair and distance of point or curve A and curve B", queryClosest},
      {"projclosest", Section::kQuery, {name("A", kindsOf(kProjClosestPairs)), name("B", kindsOf(kProjClosestPairs)), vector("DIR")},
       "closest pair as seen along DIR", queryProjClosest},
      {"intersect", Section::kQuery, {name("A", kindsOf(kIntersectPairs)), name("B", kindsOf(kIntersectPairs))},
       "where two curves, a curve and a plane, or two planes meet", queryIntersect},
      {"bound", Section::kQuery, {name("CURVE", kBoundKinds)}, "the axis-aligned bounding box", queryBound},
      {"box", Section::kQuery, {name("CURVE", kBoundKinds)}, "the block aligned with the curve (tighter than bound)",
       queryBox},
      {"degenerate", Section::kQuery, {name("CURVE", kDegenerateKinds)},
       "whether the curve collapses, and into what", queryDegenerate},
      {"offset", Section::kQuery,
       {newName(), name("CURVE", kOffsetKinds), number("DISTANCE"), vector("NORMAL"),
        optional(word("EXTEND", "fillet chamfer extend"))},
       "trimmed offset, to the right seen from the tip of NORMAL",
       constructOffset},
      {"tangentat", Section::kQuery, {newName(), name("CURVE", kTangentAtKinds), point("P")},
       "tangent line at the curve's point P", constructTangentAt},
      {"tangent", Section::kQuery, {newName(), name("CURVE", kTangentKinds), point("P")},
       "segment from P to where it touches the curve", constructTangent},
      {"commontangent", Section::kQuery,
       {newName(), name("A", kindsOf(kTangentPairs)), name("B", kindsOf(kTangentPairs))},
       "shortest segment touching both curves", constructCommonTangent},
      {"fillet", Section::kQuery,
       {newName(), name("A", kindsOf(kTangentPairs)), name("B", kindsOf(kTangentPairs)), number("RADIUS")},
       "arc of RADIUS touching both curves, nearest to where they meet", constructFillet},
      {"incircle", Section::kQuery,
       {newName(), name("L1", kIncircleKinds), name("L2", kIncircleKinds), name("L3", kIncircleKinds)},
       "circle inscribed in the triangle of three lines", constructIncircle},

      {"view", Section::kView, {{Slot::kView, "PLANE"}}, "picture plane: xy (default), yz, zx, a plane or a normal",
       setView},
  };
}

const char* sectionTitle(Section section) {
  switch (section) {
    case Section::kEntity: return "Entities";
    case Section::kTransform: return "Transforms";
    case Section::kQuery: return "Queries";
    case Section::kView: return "Picture";
  }
  return "";
}

}  // namespace

const std::vector<Command>& commands() {
  static const std::vector<Command> table = makeTable();
  return table;
}

const Command* findCommand(const std::string& commandName) {
  for (const Command& command : commands())
    if (commandName == command.name) return &command;
  return nullptr;
}

std::string synopsis(const Command& command) {
  std::string text = command.name;
  bool inOptional = false;
  for (const SlotSpec& spec : command.slots) {
    text += ' ';
    if (spec.optional && !inOptional) {
      text += '[';
      inOptional = true;
    }
    text += spec.label;
  }
  if (inOptional) text += ']';
  return text;
}

std::string commandList() {
  constexpr std::size_t kHelpColumn = 38;
  std::string text;
  const Section order[] = {Section::kEntity, Section::kTransform, Section::kQuery, Section::kView};
  for (const Section section : order) {
    text += std::string(sectionTitle(section)) + ":\n";
    for (const Command& command : commands()) {
      if (command.section != section) continue;
      // Help in a second column; a synopsis too wide for the first gets a line of its own.
      std::string line = "  " + synopsis(command);
      if (line.size() >= kHelpColumn) line += "\n";
      line.resize(line.size() < kHelpColumn ? kHelpColumn : line.size() + kHelpColumn, ' ');
      text += line + command.help + "\n";
    }
  }
  return text;
}

}  // namespace krgescene
