// krgescene: runs a scene file against the library and prints, and optionally draws, the answers.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "SceneCommands.h"
#include "SceneMonitor.h"
#include "SceneOutput.h"
#include "SceneRunner.h"
#include "SceneSvg.h"

namespace {

constexpr const char* kUsage =
    "usage: krgescene [--json] [--svg FILE] [--no-monitor] SCENE\n"
    "       krgescene --help | --commands\n"
    "Runs the scene file SCENE (- for standard input): one command per line, # starts a comment.\n"
    "A point or vector argument is a name or three numbers; a number may end in deg (degrees).\n"
    "Angles and arc parameters are radians otherwise. Results go to standard output (JSON lines\n"
    "with --json); a bad line is reported as SCENE:LINE: message on standard error, with the\n"
    "library's reports for it, and the run goes on (exit status 1 at the end). --svg writes the\n"
    "picture of the scene in its view plane. --no-monitor runs without the tool's own monitor.\n";

int usageError(const char* message) {
  std::fprintf(stderr, "krgescene: %s\n%s", message, kUsage);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  bool json = false, monitorWanted = true;
  std::string svgPath, scenePath;
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--help" || option == "-h") {
      std::printf("%s\nCommands (P is a point, V a vector, T a parameter):\n%s", kUsage,
                  krgescene::commandList().c_str());
      return 0;
    }
    if (option == "--commands") {
      std::printf("%s", krgescene::commandList().c_str());
      return 0;
    }
    if (option == "--json") json = true;
    else if (option == "--no-monitor") monitorWanted = false;
    else if (option == "--svg" && i + 1 < argc) svgPath = argv[++i];
    else if (option == "--svg") return usageError("--svg needs a file name");
    else if (option.size() > 1 && option[0] == '-') return usageError(("unknown option " + option).c_str());
    else if (scenePath.empty()) scenePath = option;
    else return usageError("one scene file at a time");
  }
  if (scenePath.empty()) return usageError("no scene file");

  if (monitorWanted) krgescene::SceneMonitor::enter(argv);
  krgescene::SceneMonitor monitor;
  std::ifstream file;
  if (scenePath != "-") {
    file.open(scenePath);
    if (!file) {
      std::fprintf(stderr, "krgescene: cannot read %s\n", scenePath.c_str());
      return 2;
    }
  }

  krgescene::Scene scene;
  krgescene::RunOptions options;
  options.json = json;
  options.sceneName = scenePath == "-" ? "scene" : scenePath;
  const krgescene::RunCounts counts =
      krgescene::runScene(scenePath == "-" ? std::cin : file, scene, monitor.active() ? &monitor : nullptr, options);
  if (json) krgescene::printJsonSummary(stdout, scene, counts.lines, counts.errors);

  int status = counts.errors > 0 ? 1 : 0;
  if (!svgPath.empty()) {
    std::ofstream svg(svgPath, std::ios::binary);
    svg << krgescene::renderSvg(scene, options.sceneName);
    if (!svg) {
      std::fprintf(stderr, "krgescene: cannot write %s\n", svgPath.c_str());
      status = 1;
    }
  }
  std::fflush(stdout);
  monitor.finish();
  return status;
}
