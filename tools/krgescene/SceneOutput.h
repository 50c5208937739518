// Printing a scene's results: readable text, or one JSON object per line.
#pragma once

#include <cstdio>
#include <string>

#include "SceneModel.h"

namespace krgescene {

// "1.5", "-2", "1e-12": twelve significant digits, no negative zero.
std::string formatNumber(double value);
// "(x, y, z)" and "<x, y, z>".
std::string formatPoint(const KrGePoint3d& point);
std::string formatVector(const KrGeVector3d& vector);

// A result in text: a "[line] command args" heading, then one indented "key value" line per
// value and one "library: ..." line per report. Lines that only define a name and drew no report
// print nothing.
void printText(std::FILE* out, const Result& result);
// A failed line, compiler style: "scene:LINE: what is wrong", then the library's reports for it.
void printError(std::FILE* out, const std::string& sceneName, const Result& result);
// A result or a failed line as one JSON object on one line.
void printJson(std::FILE* out, const Result& result);
// The closing JSON line: counts of lines, errors, drawn entities and marks.
void printJsonSummary(std::FILE* out, const Scene& scene, int lines, int errors);

// Entities the picture draws as entities (constructed curves are drawn as results), and marks.
int drawnEntityCount(const Scene& scene);
int markCount(const Scene& scene);

}  // namespace krgescene
