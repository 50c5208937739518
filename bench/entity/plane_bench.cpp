// Speed of the plane operations through the public interface, each beside the plain closed form
// on the same inputs, so that the figures read as ratios.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "KrGeLine3d.h"
#include "KrGeMatrix3d.h"
#include "KrGePlane.h"

namespace {

constexpr int kInputs = 1024;  // cycled, so that branches are not all predicted alike

struct PlaneInputs {
  std::vector<KrGePlane> planes;
  std::vector<KrGeLine3d> lines;
  std::vector<KrGePoint3d> planeOrigins, lineOrigins;
  std::vector<KrGeVector3d> normals, directions;
  std::vector<KrGeMatrix3d> motions;
  PlaneInputs() {
    std::mt19937_64 engine(4242);
    std::uniform_real_distribution<double> coordinate(-10, 10);
    auto point = [&] { return KrGePoint3d(coordinate(engine), coordinate(engine), coordinate(engine)); };
    auto unit = [&] {
      const KrGeVector3d v(coordinate(engine), coordinate(engine), coordinate(engine) + 0.5);
      return v / v.length();
    };
    for (int i = 0; i < kInputs; ++i) {
      planeOrigins.push_back(point());
      normals.push_back(unit());
      planes.emplace_back(planeOrigins.back(), normals.back());
      lineOrigins.push_back(point());
      directions.push_back(unit() * 3.0);
      lines.emplace_back(lineOrigins.back(), directions.back());
      motions.push_back(KrGeMatrix3d::rotation(coordinate(engine), unit(), point()));
    }
  }
};

const PlaneInputs& inputs() {
  static const PlaneInputs data;
  return data;
}

void BM_PlaneLineIntersect_Api(benchmark::State& state) {
  const PlaneInputs& in = inputs();
  KrGePoint3d hit;
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.planes[i].intersectWith(in.lines[i], hit));
    benchmark::DoNotOptimize(hit);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PlaneLineIntersect_Api);

// t = -n . (o - p) / (n . d), hit = o + t d, with the same parallel test.
void BM_PlaneLineIntersect_ClosedForm(benchmark::State& state) {
  const PlaneInputs& in = inputs();
  KrGePoint3d hit;
  int i = 0;
  for (auto _ : state) {
    const KrGeVector3d& n = in.normals[i];
    const KrGeVector3d& d = in.directions[i];
    const double denominator = n.dotProduct(d);
    const bool meets = std::fabs(denominator) > 1e-10;
    if (meets) hit = in.lineOrigins[i] + d * (-n.dotProduct(in.lineOrigins[i] - in.planeOrigins[i]) / denominator);
    benchmark::DoNotOptimize(meets);
    benchmark::DoNotOptimize(hit);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PlaneLineIntersect_ClosedForm);

void BM_PlaneTransformBy_Api(benchmark::State& state) {
  const PlaneInputs& in = inputs();
  KrGePlane plane(KrGePoint3d(1, 2, 3), KrGeVector3d(0.2, -0.3, 0.9));
  int i = 0;
  for (auto _ : state) {
    plane.transformBy(in.motions[i]);
    benchmark::DoNotOptimize(plane);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PlaneTransformBy_Api);

// The frame maps as origin and two axes; the normal is their normalised cross product, turned
// when the map mirrors.
void BM_PlaneTransformBy_ClosedForm(benchmark::State& state) {
  const PlaneInputs& in = inputs();
  KrGePoint3d origin(1, 2, 3);
  KrGeVector3d u(1, 0, 0), v(0, 1, 0), normal(0, 0, 1);
  bool reversed = false;
  int i = 0;
  for (auto _ : state) {
    const KrGeMatrix3d& m = in.motions[i];
    origin = m * origin;
    u = m * u;
    v = m * v;
    if (m.det() < -1e-10) reversed = !reversed;
    normal = u.crossProduct(v);
    normal = normal / (reversed ? -normal.length() : normal.length());
    benchmark::DoNotOptimize(origin);
    benchmark::DoNotOptimize(normal);
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PlaneTransformBy_ClosedForm);

void BM_PlanePlaneIntersect_Api(benchmark::State& state) {
  const PlaneInputs& in = inputs();
  KrGeLine3d line;
  int i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(in.planes[i].intersectWith(in.planes[(i + 1) & (kInputs - 1)], line));
    i = (i + 1) & (kInputs - 1);
  }
}
BENCHMARK(BM_PlanePlaneIntersect_Api);

// Direction n1 x n2; point where the in-plane line from p1 perpendicular to it meets plane 2.
void BM_PlanePlaneIntersect_ClosedForm(benchmark::State& state) {
  const PlaneInputs& in = inputs();
  KrGePoint3d point;
  KrGeVector3d direction;
  int i = 0;
  for (auto _ : state) {
    const int j = (i + 1) & (kInputs - 1);
    const KrGeVector3d& n1 = in.normals[i];
    const KrGeVector3d& n2 = in.normals[j];
    direction = n1.crossProduct(n2);
    direction = direction / direction.length();
    KrGeVector3d across = n1.crossProduct(direction);
    across = across / across.length();
    const double t = -n2.dotProduct(in.planeOrigins[i] - in.planeOrigins[j]) / across.dotProduct(n2);
    point = in.planeOrigins[i] + across * t;
    benchmark::DoNotOptimize(point);
    benchmark::DoNotOptimize(direction);
    i = j;
  }
}
BENCHMARK(BM_PlanePlaneIntersect_ClosedForm);

}  // namespace
