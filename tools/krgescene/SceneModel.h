// What a scene holds while it runs: the named entities and vectors, the view plane, and the
// results of the queries, each with the marks it leaves on the picture.
#pragma once

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "KrGeCurve3d.h"
#include "KrGeEntity3d.h"
#include "KrGePlane.h"
#include "KrGePoint3d.h"
#include "KrGeVector3d.h"

namespace krgescene {

// The kinds a scene name can stand for, as bits so that a command lists the kinds it accepts.
enum Kind : unsigned {
  kPointKind = 1u << 0,
  kVectorKind = 1u << 1,
  kLineKind = 1u << 2,
  kSegmentKind = 1u << 3,
  kPlaneKind = 1u << 4,
  kArcKind = 1u << 5,  // circles are full arcs
  kEllipseKind = 1u << 6,
};
constexpr unsigned kLinearKinds = kLineKind | kSegmentKind;
constexpr unsigned kCurveKinds = kLinearKinds | kArcKind | kEllipseKind;
constexpr unsigned kEntityKinds = kPointKind | kCurveKinds | kPlaneKind;

// The word a message or a JSON record uses for a kind ("segment", "arc").
const char* kindName(Kind kind);
// "an arc", "a segment": the noun with its article.
std::string withArticle(const std::string& noun);
// "point or segment" for a set of kinds.
std::string kindList(unsigned kinds);
// The scene kind of an entity the library made (false for kinds a scene cannot name yet).
bool kindOfEntity(const KrGeEntity3d& entity, Kind& kind);
// The word for a library entity type ("segment", "point", "ellipse").
const char* entityTypeName(KrGe::EntityId type);

// A line of the scene is wrong: the message says what, the run goes on with the next line.
class SceneError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

struct Named {
  Kind kind = kPointKind;
  int line = 0;                           // where it was defined
  std::unique_ptr<KrGeEntity3d> entity;   // every kind but vectors
  KrGeVector3d vector;                    // vectors only
  bool constructed = false;               // made by a query (fillet, offset): drawn as a result

  const KrGeCurve3d& curve() const { return static_cast<const KrGeCurve3d&>(*entity); }
  const KrGePlane& plane() const { return static_cast<const KrGePlane&>(*entity); }
  KrGePoint3d point() const;
};

// One value of a result, printed as "key value" and written as a JSON member.
struct Value {
  enum Type { kNumber, kPoint, kVector, kText, kFlag };
  Type type = kNumber;
  std::string key;
  double number = 0.0;
  KrGePoint3d point;
  KrGeVector3d vector;
  std::string text;
  bool flag = false;
};

// Something a result draws on the picture: one SVG element each.
struct Mark {
  enum Type {
    kPoint,   // a cross at `a` (intersection, evaluation, sample)
    kPair,    // a dashed line from `a` to `b` (closest pair)
    kBox,     // the outline of the axis-aligned box from `a` to `b`
    kBlock,   // the outline of the parallelepiped at `a` spanned by `sides`
    kLine,    // the unbounded line through `a` and `b` (two planes' common line)
    kCurve,   // a constructed curve (offset, fillet), drawn in the result colour
  };
  Type type = kPoint;
  KrGePoint3d a, b;
  KrGeVector3d sides[3];  // kBlock
  std::string curveName;  // kCurve: the scene name holding it
  std::string label;
};

struct Result {
  int line = 0;
  std::string command;
  std::vector<std::string> args;  // the line's tokens after the command
  std::vector<Value> values;
  std::vector<Mark> marks;
  std::vector<std::string> defines;      // names this line defined
  std::vector<std::string> diagnostics;  // the library's reports during this line
  std::string error;                     // empty when the line succeeded

  void number(const std::string& key, double value);
  void point(const std::string& key, const KrGePoint3d& value);
  void vector(const std::string& key, const KrGeVector3d& value);
  void text(const std::string& key, const std::string& value);
  void flag(const std::string& key, bool value);
};

// The state of a running scene.
class Scene {
public:
  Scene();

  // The named entry, or SceneError "undefined name 'X'" / "'X' is a segment, not a point".
  const Named& get(const std::string& name, unsigned kinds) const;
  Named& getMutable(const std::string& name, unsigned kinds);
  bool has(const std::string& name) const { return m_names.count(name) != 0; }
  // SceneError when `name` is taken or not a valid name.
  void checkNewName(const std::string& name) const;
  // Adds a new name (checkNewName first).
  Named& define(const std::string& name, Kind kind, int line);
  // Names in the order they were defined.
  const std::vector<std::string>& order() const { return m_order; }
  const Named& at(const std::string& name) const { return m_names.at(name); }

  const KrGePlane& view() const { return m_view; }
  const std::string& viewName() const { return m_viewName; }
  void setView(const KrGePlane& plane, const std::string& name);

  std::vector<Result>& results() { return m_results; }
  const std::vector<Result>& results() const { return m_results; }

private:
  std::map<std::string, Named> m_names;
  std::vector<std::string> m_order;
  KrGePlane m_view;
  std::string m_viewName = "xy";
  std::vector<Result> m_results;
};

}  // namespace krgescene
