// The picture of a scene: the entities seen in the view plane (orthogonal projection), the marks
// of the results on top, labels with the names, the viewport fitted to everything finite, a
// scale bar. Every entity is one element of class "entity ...", every mark one element of class
// "mark ..."; labels, the title and the scale bar use other classes.
#pragma once

#include <string>

#include "SceneModel.h"

namespace krgescene {

// The SVG document for the scene as it stands (entities in their final position).
std::string renderSvg(const Scene& scene, const std::string& title);

}  // namespace krgescene
