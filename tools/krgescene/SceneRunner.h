// Runs a scene line by line: each line is parsed against the command table and run; a bad line is
// reported and the run goes on with the next one.
#pragma once

#include <cstdio>
#include <istream>
#include <string>

#include "SceneModel.h"

namespace krgescene {

class SceneMonitor;

struct RunOptions {
  bool json = false;
  std::string sceneName;  // as messages show it
  std::FILE* out = stdout;
  std::FILE* err = stderr;
};

struct RunCounts {
  int lines = 0;
  int errors = 0;
};

// Runs every line of `input` into `scene`; `monitor` (may be null) supplies the library's reports.
RunCounts runScene(std::istream& input, Scene& scene, SceneMonitor* monitor, const RunOptions& options);

}  // namespace krgescene
