// Constructions: queries whose answers are new curves. Each new curve gets a scene name (so later
// lines can query it) and is drawn as a result, in the result colour.
#include <cmath>

#include "KrsArray.h"
#include "SceneHandlers.h"

namespace krgescene {

namespace {

// Names and draws the curves the library made; takes ownership of every one of them.
void adoptCurves(Scene& scene, const std::string& prefix, KrsArray<void*>& curves, Result& result) {
  std::vector<std::unique_ptr<KrGeEntity3d>> owned;
  for (int i = 0; i < curves.GetSize(); ++i)
    owned.emplace_back(static_cast<KrGeEntity3d*>(static_cast<KrGeCurve3d*>(curves[i])));
  if (owned.empty()) throw SceneError("the library made no curve");
  std::vector<std::string> names;
  for (std::size_t i = 0; i < owned.size(); ++i) {
    names.push_back(owned.size() == 1 ? prefix : prefix + "." + std::to_string(i + 1));
    scene.checkNewName(names.back());
  }
  for (std::size_t i = 0; i < owned.size(); ++i) {
    Kind kind = kSegmentKind;
    if (!kindOfEntity(*owned[i], kind))
      throw SceneError(std::string("the library made a ") + entityTypeName(owned[i]->type()) +
                       ", which a scene cannot hold yet");
  }
  for (std::size_t i = 0; i < owned.size(); ++i) {
    Kind kind = kSegmentKind;
    kindOfEntity(*owned[i], kind);
    Named& named = scene.define(names[i], kind, result.line);
    named.entity = std::move(owned[i]);
    named.constructed = true;
    result.defines.push_back(names[i]);
    result.text("curve " + std::to_string(i + 1), names[i] + " (" + kindName(kind) + ")");
    Mark mark;
    mark.type = Mark::kCurve;
    mark.curveName = names[i];
    mark.label = names[i];
    result.marks.push_back(mark);
  }
}

KrGe::OffsetCrvExtType extensionType(const Arg& arg) {
  if (!arg.present || arg.name == "fillet") return KrGe::kFillet;
  return arg.name == "chamfer" ? KrGe::kChamfer : KrGe::kExtend;
}

}  // namespace

void constructOffset(Scene& scene, const std::vector<Arg>& args, Result& result) {
  KrsArray<void*> curves;
  args[1].named->curve().getTrimmedOffset(args[2].number, args[3].vector, curves, extensionType(args[4]));
  adoptCurves(scene, args[0].name, curves, result);
}

}  // namespace krgescene
