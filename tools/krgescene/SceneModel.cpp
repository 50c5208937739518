#include "SceneModel.h"

#include <cctype>

#include "KrGePointEnt3d.h"

namespace krgescene {

namespace {

constexpr Kind kAllKinds[] = {kPointKind, kVectorKind, kLineKind, kSegmentKind, kPlaneKind, kArcKind, kEllipseKind};

bool isValidName(const std::string& name) {
  if (name.empty() || name.size() > 64) return false;
  if (!std::isalpha(static_cast<unsigned char>(name[0])) && name[0] != '_') return false;
  // Words that read as numbers in a point slot cannot be names.
  if (name == "nan" || name == "inf" || name == "infinity" || name == "NaN" || name == "Inf") return false;
  for (const char c : name)
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '.') return false;
  return true;
}

}  // namespace

std::string withArticle(const std::string& noun) {
  const bool vowel = noun[0] == 'a' || noun[0] == 'e' || noun[0] == 'i' || noun[0] == 'o' || noun[0] == 'u';
  return (vowel ? "an " : "a ") + noun;
}

const char* kindName(Kind kind) {
  switch (kind) {
    case kPointKind: return "point";
    case kVectorKind: return "vector";
    case kLineKind: return "line";
    case kSegmentKind: return "segment";
    case kPlaneKind: return "plane";
    case kArcKind: return "arc";
    case kEllipseKind: return "ellipse";
  }
  return "entity";
}

std::string kindList(unsigned kinds) {
  std::vector<const char*> words;
  for (const Kind kind : kAllKinds)
    if (kinds & kind) words.push_back(kindName(kind));
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 == words.size() ? " or " : ", ";
    text += words[i];
  }
  return text;
}

bool kindOfEntity(const KrGeEntity3d& entity, Kind& kind) {
  switch (entity.type()) {
    case KrGe::kPosition3d: kind = kPointKind; return true;
    case KrGe::kLine3d: kind = kLineKind; return true;
    case KrGe::kLineSeg3d: kind = kSegmentKind; return true;
    case KrGe::kPlane: kind = kPlaneKind; return true;
    case KrGe::kCircArc3d: kind = kArcKind; return true;
    case KrGe::kEllipArc3d: kind = kEllipseKind; return true;
    default: return false;
  }
}

const char* entityTypeName(KrGe::EntityId type) {
  switch (type) {
    case KrGe::kPosition3d: return "point";
    case KrGe::kPointOnCurve3d: return "point on curve";
    case KrGe::kLine3d: return "line";
    case KrGe::kLineSeg3d: return "segment";
    case KrGe::kCircArc3d: return "arc";
    case KrGe::kEllipArc3d: return "ellipse";
    case KrGe::kNurbCurve3d: return "nurbs";
    case KrGe::kCompositeCrv3d: return "composite";
    case KrGe::kPlane: return "plane";
    case KrGe::kBoundBlock3d: return "bound block";
    default: return "entity";
  }
}

KrGePoint3d Named::point() const { return static_cast<const KrGePointEnt3d&>(*entity).point3d(); }

void Result::number(const std::string& key, double value) {
  Value v;
  v.type = Value::kNumber;
  v.key = key;
  v.number = value;
  values.push_back(v);
}

void Result::point(const std::string& key, const KrGePoint3d& value) {
  Value v;
  v.type = Value::kPoint;
  v.key = key;
  v.point = value;
  values.push_back(v);
}

void Result::vector(const std::string& key, const KrGeVector3d& value) {
  Value v;
  v.type = Value::kVector;
  v.key = key;
  v.vector = value;
  values.push_back(v);
}

void Result::text(const std::string& key, const std::string& value) {
  Value v;
  v.type = Value::kText;
  v.key = key;
  v.text = value;
  values.push_back(v);
}

void Result::flag(const std::string& key, bool value) {
  Value v;
  v.type = Value::kFlag;
  v.key = key;
  v.flag = value;
  values.push_back(v);
}

Scene::Scene() : m_view(KrGePlane::kXYPlane) {}

const Named& Scene::get(const std::string& name, unsigned kinds) const {
  const auto found = m_names.find(name);
  if (found == m_names.end()) throw SceneError("undefined name '" + name + "'");
  if (!(found->second.kind & kinds))
    throw SceneError("'" + name + "' is " + withArticle(kindName(found->second.kind)) + ", not " +
                     withArticle(kindList(kinds)));
  return found->second;
}

Named& Scene::getMutable(const std::string& name, unsigned kinds) {
  return const_cast<Named&>(static_cast<const Scene&>(*this).get(name, kinds));
}

void Scene::checkNewName(const std::string& name) const {
  if (!isValidName(name))
    throw SceneError("'" + name + "' is not a name (a letter or _, then letters, digits, _ or .)");
  const auto found = m_names.find(name);
  if (found != m_names.end())
    throw SceneError("'" + name + "' is already defined on line " + std::to_string(found->second.line));
}

Named& Scene::define(const std::string& name, Kind kind, int line) {
  checkNewName(name);
  Named& named = m_names[name];
  named.kind = kind;
  named.line = line;
  m_order.push_back(name);
  return named;
}

void Scene::setView(const KrGePlane& plane, const std::string& name) {
  m_view = plane;
  m_viewName = name;
}

}  // namespace krgescene
