// The scene tool run as a user runs it: example scenes against direct library calls, bad input,
// random input, a long scene, and the command list of --help against the README's.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "KrGeCircArc3d.h"
#include "KrGeCurveCurveInt3d.h"
#include "KrGeEllipArc3d.h"
#include "KrGeLine3d.h"
#include "KrGeLineSeg3d.h"
#include "KrGePlane.h"
#include "testkit/Process.h"

namespace {

using Json = nlohmann::json;

struct ToolRun {
  int status = -1;
  std::string out, err;
  std::vector<Json> records;  // --json lines before the summary
  Json summary;
  double seconds = 0.0;     // wall clock
  double cpuSeconds = 0.0;  // user + system time of the tool (and its shell)
};

double childCpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

ToolRun runTool(const testkit::ScratchDir& dir, const std::string& scene, const std::string& options = "--json") {
  ToolRun run;
  const std::string command = std::string("'") + KRGESCENE_PATH + "' " + options + " '" + scene + "' >'" +
                              dir.file("out") + "' 2>'" + dir.file("err") + "'";
  const auto start = std::chrono::steady_clock::now();
  const double cpuStart = childCpuSeconds();
  const int raw = std::system(command.c_str());
  run.cpuSeconds = childCpuSeconds() - cpuStart;
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = readFile(dir.file("out"));
  run.err = readFile(dir.file("err"));
  std::istringstream lines(run.out);
  std::string line;
  while (options.find("--json") != std::string::npos && std::getline(lines, line)) {
    Json record = Json::parse(line);
    if (record.contains("summary")) run.summary = record["summary"];
    else run.records.push_back(record);
  }
  return run;
}

ToolRun runText(const testkit::ScratchDir& dir, const std::string& name, const std::string& text) {
  dir.write(name, text);
  return runTool(dir, dir.file(name));
}

std::vector<std::string> exampleScenes() {
  std::vector<std::string> scenes;
  const std::string folder = std::string(KRGEL_SOURCE_DIR) + "/examples/scenes";
  if (DIR* listing = opendir(folder.c_str())) {
    while (const dirent* entry = readdir(listing)) {
      const std::string name = entry->d_name;
      if (name.size() > 6 && name.compare(name.size() - 6, 6, ".scene") == 0) scenes.push_back(folder + "/" + name);
    }
    closedir(listing);
  }
  return scenes;
}

// The record of the line "command args..." of a run.
const Json* findRecord(const ToolRun& run, const std::string& line) {
  for (const Json& record : run.records) {
    std::string text = record["command"];
    for (const auto& arg : record["args"]) text += " " + arg.get<std::string>();
    if (text == line) return &record;
  }
  return nullptr;
}

KrGePoint3d pointOf(const Json& value) { return KrGePoint3d(value.at(0), value.at(1), value.at(2)); }

// The values the line printed (null when the line is missing: reading them then fails the test).
Json valuesOf(const ToolRun& run, const std::string& line) {
  const Json* record = findRecord(run, line);
  return record ? (*record)["values"] : Json();
}

TEST(KrGeScene, ExampleScenesRunWithoutError) {
  const testkit::ScratchDir dir;
  const std::vector<std::string> scenes = exampleScenes();
  ASSERT_FALSE(scenes.empty());
  for (const std::string& scene : scenes) {
    SCOPED_TRACE(scene);
    const ToolRun run = runTool(dir, scene, "--json --svg '" + dir.file("picture.svg") + "'");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.summary["errors"], 0);
    EXPECT_GT(run.summary["marks"].get<int>(), 0);
  }
}

// Each printed number is compared with the same question put to the library here.
TEST(KrGeScene, ExampleAnswersAgreeWithTheLibrary) {
  const testkit::ScratchDir dir;
  const std::string folder = std::string(KRGEL_SOURCE_DIR) + "/examples/scenes/";
  const ToolRun crossing = runTool(dir, folder + "crossing-segments.scene");
  const KrGeLineSeg3d rising(KrGePoint3d(0, 0, 0), KrGePoint3d(4, 4, 0));
  const KrGeLineSeg3d falling(KrGePoint3d(0, 4, 0), KrGePoint3d(4, 0, 0));
  const KrGeLineSeg3d high(KrGePoint3d(0, 4, 3), KrGePoint3d(4, 0, 3));
  const KrGeCurveCurveInt3d crossed(rising, falling);
  ASSERT_EQ(crossed.numIntPoints(), 1);
  EXPECT_EQ(pointOf(valuesOf(crossing, "intersect rising falling").at("point")), crossed.intPoint(0));
  const Json* closest = findRecord(crossing, "closest rising high");
  ASSERT_NE(closest, nullptr);
  EXPECT_DOUBLE_EQ((*closest)["values"]["distance"].get<double>(), rising.distanceTo(high));
  const Json* probe = findRecord(crossing, "closest probe rising");
  ASSERT_NE(probe, nullptr);
  EXPECT_EQ(pointOf((*probe)["values"]["on rising"]), rising.closestPointTo(KrGePoint3d(7, 5, 1)));

  const ToolRun cut = runTool(dir, folder + "plane-cut.scene");
  const KrGePlane plane(KrGePoint3d(0, 0, 2), KrGeVector3d(0.2, 0.1, 1));
  KrGePoint3d hit;
  ASSERT_TRUE(plane.intersectWith(KrGeLineSeg3d(KrGePoint3d(0, 6, 0), KrGePoint3d(0, 0, 6)), hit));
  const Json* edge = findRecord(cut, "intersect cut BC");
  ASSERT_NE(edge, nullptr);
  EXPECT_EQ(pointOf((*edge)["values"]["point"]), hit);
  const Json* missed = findRecord(cut, "intersect cut OA");
  ASSERT_NE(missed, nullptr);
  EXPECT_EQ((*missed)["values"]["count"], 0);

  const ToolRun arcs = runTool(dir, folder + "arc-offsets-and-planes.scene");
  const double quarterTurn = 90.0 * 3.14159265358979323846 / 180.0;  // as the scene's "90deg" reads
  const KrGeCircArc3d quarter(KrGePoint3d::kOrigin, KrGeVector3d::kZAxis, KrGeVector3d::kXAxis, 5.0, 0.0, quarterTurn);
  const Json* length = findRecord(arcs, "length quarter");
  ASSERT_NE(length, nullptr);
  EXPECT_EQ((*length)["values"]["length"].get<double>(), quarter.length(quarter.startAng(), quarter.endAng()));
  const Json* nearest = findRecord(arcs, "closest probe quarter");
  ASSERT_NE(nearest, nullptr);
  EXPECT_EQ(pointOf((*nearest)["values"]["on quarter"]), quarter.closestPointTo(KrGePoint3d(1, 1, 0)));
  int count = 0;
  KrGePoint3d first, second;
  quarter.intersectWith(KrGePlane(KrGePoint3d(0, 3, 0), KrGeVector3d(0, 1, 0)), count, first, second);
  const Json* planeCut = findRecord(arcs, "intersect quarter cutter");
  ASSERT_NE(planeCut, nullptr);
  ASSERT_EQ((*planeCut)["values"]["count"], count);
  EXPECT_EQ(pointOf((*planeCut)["values"]["point 1"]), first);
}

// The conic scenes: each number against the library asked directly and against the geometry
// worked out here independently (closed forms, brute-force minimisation, quadrature).
TEST(KrGeScene, ConicExampleAnswersAgreeWithTheLibraryAndTheGeometry) {
  const testkit::ScratchDir dir;
  const std::string folder = std::string(KRGEL_SOURCE_DIR) + "/examples/scenes/";
  constexpr double kPi = 3.14159265358979323846;

  const ToolRun fillet = runTool(dir, folder + "fillet-two-segments.scene");
  const KrGePoint3d center = pointOf(valuesOf(fillet, "fillet round floor slope 1.5").at("center"));
  EXPECT_NEAR(center.y, 1.5, 1e-12);                                     // 1.5 above the floor
  EXPECT_NEAR(std::sqrt(3.0) / 2 * center.x - 0.5 * center.y, 1.5, 1e-12);  // and off the slope
  EXPECT_NEAR(valuesOf(fillet, "length round").at("length").get<double>(), 1.5 * (kPi - kPi / 3), 1e-12);

  // The line (-4, -1) + t (10, 4) meets |p - (1, 1)| = 3 where 116 t^2 - 116 t + 20 = 0.
  const ToolRun cut = runTool(dir, folder + "line-cut-by-circle.scene");
  const Json crossings = valuesOf(cut, "intersect cutter disc");
  const KrGeLine3d cutter(KrGePoint3d(-4, -1, 0), KrGePoint3d(6, 3, 0));
  const KrGeCircArc3d disc(KrGePoint3d(1, 1, 0), KrGeVector3d::kZAxis, 3.0);
  const KrGeCurveCurveInt3d direct(cutter, disc);
  ASSERT_EQ(crossings.at("count"), 2);
  ASSERT_EQ(direct.numIntPoints(), 2);
  for (int i = 0; i < 2; ++i) {
    const std::string n = " " + std::to_string(i + 1);
    const double t = (116.0 + (i == 0 ? -1 : 1) * std::sqrt(116.0 * 116.0 - 4 * 116 * 20)) / 232.0;
    EXPECT_EQ(pointOf(crossings.at("point" + n)), direct.intPoint(i));
    EXPECT_NEAR(crossings.at("param on cutter" + n).get<double>(), t, 1e-12);
    EXPECT_EQ(crossings.at("cutter passes" + n), i == 0 ? "right to left" : "left to right");  // in, then out
  }
  EXPECT_EQ(pointOf(valuesOf(cut, "tangent reach disc outside").at("end")), KrGePoint3d(3.4, 2.8, 0));

  // Brute force over both angles, then around the best pair in ever finer grids.
  const ToolRun skew = runTool(dir, folder + "skew-circles.scene");
  const auto gap = [](double a, double b) {
    return KrGePoint3d(4 * std::cos(a), 4 * std::sin(a), 0)
        .distanceTo(KrGePoint3d(6, 1 + 2.5 * std::cos(b), 2 + 2.5 * std::sin(b)));
  };
  double bestA = 0.0, bestB = 0.0, span = kPi;
  for (int pass = 0; pass < 40; ++pass, span *= 0.3) {
    const double a0 = bestA, b0 = bestB, step = span / 20;
    for (int i = -20; i <= 20; ++i)
      for (int j = -20; j <= 20; ++j)
        if (gap(a0 + i * step, b0 + j * step) < gap(bestA, bestB)) bestA = a0 + i * step, bestB = b0 + j * step;
  }
  const double distance = valuesOf(skew, "closest flat upright").at("distance").get<double>();
  EXPECT_NEAR(distance, gap(bestA, bestB), 1e-9);
  EXPECT_NEAR(valuesOf(skew, "closest flat twin").at("distance").get<double>(), distance, 1e-9);

  // Every crossing lies on both curves; the length is the trapezoidal sum of the periodic speed.
  const ToolRun oval = runTool(dir, folder + "ellipse-circle-crossing.scene");
  const Json four = valuesOf(oval, "intersect oval ring");
  ASSERT_EQ(four.at("count"), 4);
  const double c = std::cos(20 * kPi / 180), s = std::sin(20 * kPi / 180);
  for (int i = 1; i <= 4; ++i) {
    const KrGePoint3d p = pointOf(four.at("point " + std::to_string(i)));
    const double u = c * p.x + s * p.y, v = -s * p.x + c * p.y;
    EXPECT_NEAR(u * u / 25 + v * v / 4, 1.0, 1e-12);
    EXPECT_NEAR(p.distanceTo(KrGePoint3d(0.5, 0.3, 0)), 3.0, 1e-12);
  }
  double perimeter = 0.0;
  for (int k = 0; k < 4000; ++k) perimeter += std::hypot(5 * std::sin(k * kPi / 2000), 2 * std::cos(k * kPi / 2000));
  EXPECT_NEAR(valuesOf(oval, "length oval").at("length").get<double>(), perimeter * kPi / 2000, 1e-11);
}

struct BadLine {
  const char* text;
  const char* message;
};

TEST(KrGeScene, BadLinesAreNumberedAndTheRunGoesOn) {
  const BadLine rows[] = {
      {"frobnicate S0", "unknown command 'frobnicate'"},
      {"segment S1 0 0 0 1 1", "wrong argument count: got 6, expected 'segment NAME P1 P2'"},
      {"eval S0", "wrong argument count: got 1"},
      {"point P1 1 two 3", "Y: expected a number, got 'two'"},
      {"circle C1 0 0 0 0 0 1 nan", "RADIUS: 'nan' is not a finite number"},
      {"segment S2 0 0 0 1e999 0 0", "P2: '1e999' is not a finite number"},
      {"closest nowhere S0", "undefined name 'nowhere'"},
      {"closest S0 up", "'up' is a vector, not a point, line, segment, arc or ellipse"},
      {"circle C2 0 0 0 0 0 1 0", "degenerate circle: RADIUS must be positive"},
      {"circle C3 0 0 0 0 0 0 2", "degenerate circle: NORMAL is a zero vector"},
      {"arc3 C4 0 0 0 1 1 0 2 2 0", "degenerate arc: P1, P2 and P3 lie on one line or coincide"},
      {"point S0 1 1 1", "'S0' is already defined on line 1"},
      {"sample S0 1", "N: expected a whole number from 2 to 10000, got '1'"},
      {"offset O1 S0 1 0 0 1 round", "EXTEND: expected one of fillet chamfer extend, got 'round'"},
      {"closest S0 S0 S0", "wrong argument count: got 3, expected 'closest A B'"},
      {"ellipse E1 0 0 0 1 0 0 2 0 0 5 2", "degenerate ellipse: MINORAXIS is parallel to MAJORAXIS"},
      {"ellipse E2 0 0 0 1 0 0 0 1 0 5 0", "degenerate ellipse: MINOR must be positive, got 0"},
      {"ellipse E3 0 0 0 1 0 0 0 1 0 5 2 1", "wrong argument count: got 13, expected 'ellipse NAME CENTER"},
      {"fillet F1 S0 E0 1", "'E0' is an ellipse, not a line, segment or arc"},
      {"fillet F2 S0 C0 -1", "RADIUS must be positive, got -1"},
      {"projclosest C0 S0 0 0 1", "projclosest of an arc and a segment is not available in the library yet"},
      {"incircle I1 S0 S0 S0", "no circle touches S0, S0 and S0"},
  };
  std::string scene = "segment S0 0 0 0 4 0 0\nvector up 0 0 1\ncircle C0 0 0 0 0 0 1 1\nellipse E0 0 0 0 1 0 0 0 1 0 3 1\n";
  for (const BadLine& row : rows) scene += std::string(row.text) + "\npoint P" + std::to_string(&row - rows) + "x 1 2 3\n";
  scene += "closest P0x S0\n";
  const testkit::ScratchDir dir;
  const ToolRun run = runText(dir, "bad.scene", scene);
  EXPECT_EQ(run.status, 1);
  for (const BadLine& row : rows) {
    const std::string expected =
        dir.file("bad.scene") + ":" + std::to_string(5 + 2 * (&row - rows)) + ": " + row.message;
    EXPECT_NE(run.err.find(expected), std::string::npos) << expected << "\n--- stderr:\n" << run.err;
  }
  // The library's own warning for the repaired circle is printed beside its line.
  EXPECT_NE(run.err.find(dir.file("bad.scene") + ":23:   library: WARNING 'KrCircArc3dImpl::set(cent, nrm, rad) fail - "
                                                 "0-length normal, OZ used'"),
            std::string::npos)
      << run.err;
  // Every good line after a bad one still ran.
  EXPECT_EQ(run.summary["errors"], std::size(rows));
  EXPECT_EQ(run.summary["entities"], 3 + std::size(rows));
  ASSERT_NE(findRecord(run, "closest P0x S0"), nullptr);
}

TEST(KrGeScene, RandomLinesNeverCrash) {
  const unsigned seed = 20261101u;
  std::mt19937 random(seed);
  const std::vector<std::string> words = {
      "point", "vector", "line", "segment", "plane", "circle", "arc", "arc3", "copy", "translate", "rotate",
      "mirror", "scale", "eval", "sample", "length", "paramat", "param", "closest", "projclosest", "intersect",
      "bound", "degenerate", "offset", "view", "ellipse", "box", "tangent", "commontangent", "incircle", "A", "B", "C", "0", "1", "-1", "1e308", "1e-300", "nan", "inf",
      "90deg", "xy", "fillet", "#", "3", "2.5", "x", "B.1", "0x10"};
  std::string scene;
  for (int line = 0; line < 3000; ++line) {
    const int count = std::uniform_int_distribution<int>(1, 12)(random);
    for (int i = 0; i < count; ++i) scene += words[random() % words.size()] + " ";
    scene += "\n";
  }
  const testkit::ScratchDir dir;
  dir.write("random.scene", scene);
  const ToolRun run = runTool(dir, dir.file("random.scene"), "--svg '" + dir.file("random.svg") + "'");
  EXPECT_TRUE(run.status == 0 || run.status == 1) << "seed " << seed << ", status " << run.status;
  std::istringstream lines(run.err);
  std::string line;
  const std::regex numbered("^" + dir.file("random.scene") + ":[0-9]+: .+");
  while (std::getline(lines, line)) EXPECT_TRUE(std::regex_match(line, numbered)) << "seed " << seed << ": " << line;
}

TEST(KrGeScene, TenThousandLinesRunInUnderASecond) {
  std::string scene;
  for (int i = 0; i < 1000; ++i) {
    const std::string n = std::to_string(i), m = std::to_string(i / 2);
    scene += "segment S" + n + " " + n + " 0 0 " + n + " 5 0\npoint P" + n + " " + n + " 2 7\nclosest P" + n + " S" +
             n + "\nintersect S" + n + " S" + m + "\ncircle C" + n + " " + n + " 2 0 0 0 1 1.5\nellipse E" + n + " " + n +
             " 1 0 1 0.2 0 0 1 0 3 1\nintersect E" + n + " C" + n + "\nclosest E" + n + " C" + m + "\nfillet F" + n +
             " S" + n + " C" + n + " 0.5\nlength E" + n + "\n";
  }
  const testkit::ScratchDir dir;
  dir.write("long.scene", scene);
  const ToolRun run = runTool(dir, dir.file("long.scene"), "--svg '" + dir.file("long.svg") + "'");
  EXPECT_EQ(run.status, 0);
  // Processor time, not wall time: the machines that run the suite also build and test in
  // parallel, and a busy machine must not fail a fast tool.
#if defined(__SANITIZE_ADDRESS__)
  const double limit = 10.0;  // the instrumented build is several times slower by design
#else
  const double limit = 1.0;
#endif
  EXPECT_LT(run.cpuSeconds, limit) << "wall clock " << run.seconds << " s";
}

TEST(KrGeScene, HelpAndReadmeListTheSameCommands) {
  const testkit::ScratchDir dir;
  const ToolRun list = runTool(dir, "", "--commands");
  const ToolRun help = runTool(dir, "", "--help");
  const std::string readme = readFile(std::string(KRGEL_SOURCE_DIR) + "/README.md");
  const std::string begin = "<!-- krgescene commands: begin -->\n```text\n", end = "```\n<!-- krgescene commands: end -->";
  const std::size_t from = readme.find(begin), to = readme.find(end);
  ASSERT_NE(from, std::string::npos);
  ASSERT_NE(to, std::string::npos);
  EXPECT_EQ(readme.substr(from + begin.size(), to - from - begin.size()), list.out);
  EXPECT_NE(help.out.find(list.out), std::string::npos);
}

}  // namespace
