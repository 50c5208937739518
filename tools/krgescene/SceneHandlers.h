// The functions behind the commands: entities and transforms (SceneEntities.cpp), queries
// (SceneQueries.cpp) and constructions (SceneConstructions.cpp).
#pragma once

#include <vector>

#include "SceneParser.h"

namespace krgescene {

#define KRGESCENE_HANDLER(name) void name(Scene& scene, const std::vector<Arg>& args, Result& result)

KRGESCENE_HANDLER(definePoint);
KRGESCENE_HANDLER(defineVector);
KRGESCENE_HANDLER(defineLine);
KRGESCENE_HANDLER(defineSegment);
KRGESCENE_HANDLER(definePlane);
KRGESCENE_HANDLER(defineCircle);
KRGESCENE_HANDLER(defineArc);
KRGESCENE_HANDLER(defineArc3);
KRGESCENE_HANDLER(defineEllipse);
KRGESCENE_HANDLER(defineCopy);

KRGESCENE_HANDLER(translateEntity);
KRGESCENE_HANDLER(rotateEntity);
KRGESCENE_HANDLER(mirrorEntity);
KRGESCENE_HANDLER(scaleEntity);
KRGESCENE_HANDLER(setView);

KRGESCENE_HANDLER(queryEval);
KRGESCENE_HANDLER(querySample);
KRGESCENE_HANDLER(queryLength);
KRGESCENE_HANDLER(queryParamAtLength);
KRGESCENE_HANDLER(queryParamOf);
KRGESCENE_HANDLER(queryClosest);
KRGESCENE_HANDLER(queryProjClosest);
KRGESCENE_HANDLER(queryIntersect);
KRGESCENE_HANDLER(queryBound);
KRGESCENE_HANDLER(queryBox);
KRGESCENE_HANDLER(queryDegenerate);

KRGESCENE_HANDLER(constructOffset);
KRGESCENE_HANDLER(constructTangentAt);
KRGESCENE_HANDLER(constructFillet);
KRGESCENE_HANDLER(constructTangent);
KRGESCENE_HANDLER(constructCommonTangent);
KRGESCENE_HANDLER(constructIncircle);

#undef KRGESCENE_HANDLER

}  // namespace krgescene
