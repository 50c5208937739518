// Entity definitions, transforms and the view: each builds or changes entities through the
// library's public classes and records the name it defines.
#include <cmath>

#include "KrGeCircArc3d.h"
#include "KrGeEllipArc3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"
#include "KrGePointEnt3d.h"
#include "SceneHandlers.h"
#include "SceneOutput.h"

namespace krgescene {

namespace {

void store(Scene& scene, const std::string& name, Kind kind, std::unique_ptr<KrGeEntity3d> entity,
           Result& result) {
  Named& named = scene.define(name, kind, result.line);
  named.entity = std::move(entity);
  result.defines.push_back(name);
}

// The checks below mirror the cases the library repairs with a fallback: a scene that relies on
// a repaired circle most likely has a typing error, so the line is refused (the library's
// warning for it is shown beside the message).
void requireRadius(const char* what, double radius) {
  if (!(radius > 0.0)) throw SceneError(std::string("degenerate ") + what + ": RADIUS must be positive, got " +
                                        std::to_string(radius));
}

void requireDirection(const char* what, const char* label, const KrGeVector3d& vector) {
  if (vector.isZeroLength()) throw SceneError(std::string("degenerate ") + what + ": " + label + " is a zero vector");
}

}  // namespace

void definePoint(Scene& scene, const std::vector<Arg>& args, Result& result) {
  store(scene, args[0].name, kPointKind,
        std::make_unique<KrGePointEnt3d>(KrGePoint3d(args[1].number, args[2].number, args[3].number)), result);
}

void defineVector(Scene& scene, const std::vector<Arg>& args, Result& result) {
  Named& named = scene.define(args[0].name, kVectorKind, result.line);
  named.vector = KrGeVector3d(args[1].number, args[2].number, args[3].number);
  result.defines.push_back(args[0].name);
}

void defineLine(Scene& scene, const std::vector<Arg>& args, Result& result) {
  if (args[1].point.isEqualTo(args[2].point)) throw SceneError("degenerate line: P1 and P2 coincide");
  store(scene, args[0].name, kLineKind, std::make_unique<KrGeLine3d>(args[1].point, args[2].point), result);
}

void defineSegment(Scene& scene, const std::vector<Arg>& args, Result& result) {
  // A zero-length segment is a legitimate entity (its queries have defined answers).
  store(scene, args[0].name, kSegmentKind, std::make_unique<KrGeLineSeg3d>(args[1].point, args[2].point), result);
}

void definePlane(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto plane = std::make_unique<KrGePlane>(args[1].point, args[2].vector);
  requireDirection("plane", "NORMAL", args[2].vector);
  store(scene, args[0].name, kPlaneKind, std::move(plane), result);
}

void defineCircle(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto circle = std::make_unique<KrGeCircArc3d>(args[1].point, args[2].vector, args[3].number);
  requireDirection("circle", "NORMAL", args[2].vector);
  requireRadius("circle", args[3].number);
  store(scene, args[0].name, kArcKind, std::move(circle), result);
}

void defineArc(Scene& scene, const std::vector<Arg>& args, Result& result) {
  const KrGeVector3d& normal = args[2].vector;
  const KrGeVector3d& refVec = args[3].vector;
  auto arc = std::make_unique<KrGeCircArc3d>(args[1].point, normal, refVec, args[4].number, args[5].number,
                                             args[6].number);
  requireDirection("arc", "NORMAL", normal);
  requireDirection("arc", "REFVEC", refVec);
  if (normal.isParallelTo(refVec)) throw SceneError("degenerate arc: REFVEC is parallel to NORMAL");
  requireRadius("arc", args[4].number);
  store(scene, args[0].name, kArcKind, std::move(arc), result);
}

void defineArc3(Scene& scene, const std::vector<Arg>& args, Result& result) {
  auto arc = std::make_unique<KrGeCircArc3d>();
  KrGe::ErrorCondition status = KrGe::kOk;
  arc->set(args[1].point, args[2].point, args[3].point, status);
  if (status != KrGe::kOk) throw SceneError("degenerate arc: P1, P2 and P3 lie on one line or coincide");
  store(scene, args[0].name, kArcKind, std::move(arc), result);
}

void defineEllipse(Scene& scene, const std::vector<Arg>& args, Result& result) {
  const KrGeVector3d& majorAxis = args[2].vector;
  const KrGeVector3d& minorAxis = args[3].vector;
  const double majorRadius = args[4].number, minorRadius = args[5].number;
  // Without START and END the full ellipse.
  auto ellipse = args[6].present ? std::make_unique<KrGeEllipArc3d>(args[1].point, majorAxis, minorAxis, majorRadius,
                                                                      minorRadius, args[6].number, args[7].number)
                                 : std::make_unique<KrGeEllipArc3d>(args[1].point, majorAxis, minorAxis, majorRadius,
                                                                      minorRadius);
  requireDirection("ellipse", "MAJORAXIS", majorAxis);
  requireDirection("ellipse", "MINORAXIS", minorAxis);
  if (majorAxis.isParallelTo(minorAxis)) throw SceneError("degenerate ellipse: MINORAXIS is parallel to MAJORAXIS");
  if (!(majorRadius > 0.0)) throw SceneError("degenerate ellipse: MAJOR must be positive, got " + formatNumber(majorRadius));
  if (!(minorRadius > 0.0)) throw SceneError("degenerate ellipse: MINOR must be positive, got " + formatNumber(minorRadius));
  // A minor radius above the major one is kept: the library exchanges the axes, every point stays.
  store(scene, args[0].name, kEllipseKind, std::move(ellipse), result);
}

void defineCopy(Scene& scene, const std::vector<Arg>& args, Result& result) {
  const Named& source = *args[1].named;
  if (source.kind == kVectorKind) {
    const KrGeVector3d value = source.vector;
    scene.define(args[0].name, kVectorKind, result.line).vector = value;
    result.defines.push_back(args[0].name);
    return;
  }
  store(scene, args[0].name, source.kind, std::unique_ptr<KrGeEntity3d>(source.entity->copy()), result);
}

void translateEntity(Scene& scene, const std::vector<Arg>& args, Result&) {
  scene.getMutable(args[0].name, kEntityKinds).entity->translateBy(args[1].vector);
}

void rotateEntity(Scene& scene, const std::vector<Arg>& args, Result&) {
  if (args[2].vector.isZeroLength()) throw SceneError("AXIS is a zero vector");
  const KrGePoint3d about = args[3].present ? args[3].point : KrGePoint3d::kOrigin;
  scene.getMutable(args[0].name, kEntityKinds).entity->rotateBy(args[1].number, args[2].vector, about);
}

void mirrorEntity(Scene& scene, const std::vector<Arg>& args, Result&) {
  // Copy the plane first: mirroring a plane in itself must not read the plane being changed.
  const KrGePlane mirrorPlane = args[1].named->plane();
  scene.getMutable(args[0].name, kEntityKinds).entity->mirror(mirrorPlane);
}

void scaleEntity(Scene& scene, const std::vector<Arg>& args, Result&) {
  const KrGePoint3d about = args[2].present ? args[2].point : KrGePoint3d::kOrigin;
  scene.getMutable(args[0].name, kEntityKinds).entity->scaleBy(args[1].number, about);
}

void setView(Scene& scene, const std::vector<Arg>& args, Result&) { scene.setView(args[0].plane, args[0].name); }

}  // namespace krgescene
