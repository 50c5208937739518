#include "SceneRunner.h"

#include <exception>

#include "SceneCommands.h"
#include "SceneMonitor.h"
#include "SceneOutput.h"

namespace krgescene {

namespace {

void runLine(Scene& scene, const std::vector<std::string>& words, Result& result) {
  const Command* command = findCommand(words[0]);
  if (!command) throw SceneError("unknown command '" + words[0] + "' (krgescene --help lists the commands)");
  const std::vector<Arg> args = parseArgs(synopsis(*command), command->slots, words, scene);
  command->run(scene, args, result);
}

}  // namespace

RunCounts runScene(std::istream& input, Scene& scene, SceneMonitor* monitor, const RunOptions& options) {
  RunCounts counts;
  std::string text;
  int lineNumber = 0;
  if (monitor) monitor->drain();  // whatever arrived before the first line belongs to no line
  while (std::getline(input, text)) {
    ++lineNumber;
    const std::vector<std::string> words = tokenize(text);
    if (words.empty()) continue;
    ++counts.lines;
    Result result;
    result.line = lineNumber;
    result.command = words[0];
    result.args.assign(words.begin() + 1, words.end());
    try {
      runLine(scene, words, result);
    } catch (const SceneError& error) {
      result.error = error.what();
    } catch (const std::exception& error) {
      result.error = std::string("internal error: ") + error.what();
    }
    if (monitor) result.diagnostics = monitor->drain();
    if (!result.error.empty()) {
      ++counts.errors;
      result.values.clear();
      result.marks.clear();
      printError(options.err, options.sceneName, result);
    }
    if (options.json) printJson(options.out, result);
    else if (result.error.empty()) printText(options.out, result);
    if (result.error.empty()) scene.results().push_back(std::move(result));
  }
  return counts;
}

}  // namespace krgescene
