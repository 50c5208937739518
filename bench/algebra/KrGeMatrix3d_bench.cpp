// Speed of the 3D matrix operations beside a lean hand-written 3x4 form and, when Eigen is
// available, beside Eigen's 4x4 affine transform, in the same run so the figures read as ratios.
#include "KrGeMatrix3d.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#if defined(KRGEL_HAVE_EIGEN)
#include <Eigen/Geometry>
#endif

namespace {

constexpr unsigned kInputs = 256;  // a power of two, cycled so that nothing constant-folds

struct Inputs {
  std::vector<KrGeMatrix3d> matrices;
  std::vector<KrGePoint3d> points;
  std::vector<KrGeVector3d> axes;
  std::vector<double> angles;
  Inputs() {
    std::mt19937_64 engine(1234);
    std::uniform_real_distribution<double> value(-1, 1);
    for (unsigned i = 0; i < kInputs; ++i) {
      const KrGeVector3d axis(value(engine), value(engine), value(engine) + 2.0);
      const KrGePoint3d centre(value(engine) * 10, value(engine) * 10, value(engine) * 10);
      matrices.push_back(KrGeMatrix3d::rotation(value(engine) * 3, axis, centre) *
                         KrGeMatrix3d::scaling(1.5 + value(engine)));
      points.emplace_back(value(engine) * 100, value(engine) * 100, value(engine) * 100);
      axes.push_back(axis);
      angles.push_back(value(engine) * 3);
    }
  }
};

const Inputs& inputs() {
  static const Inputs data;
  return data;
}

// The plain forms a careful engineer would write by hand: a 3x4 affine block.
struct Affine34 {
  double m[3][4];
};

Affine34 toAffine(const KrGeMatrix3d& matrix) {
  Affine34 a;
  for (unsigned i = 0; i < 3; ++i)
    for (unsigned j = 0; j < 4; ++j) a.m[i][j] = matrix(i, j);
  return a;
}

void handTransform(const Affine34& a, const double p[3], double out[3]) {
  for (unsigned i = 0; i < 3; ++i) out[i] = a.m[i][0] * p[0] + a.m[i][1] * p[1] + a.m[i][2] * p[2] + a.m[i][3];
}

void handProduct(const Affine34& a, const Affine34& b, Affine34& r) {
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 4; ++j) r.m[i][j] = a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j] + a.m[i][2] * b.m[2][j];
    r.m[i][3] += a.m[i][3];
  }
}

void handInverse(const Affine34& a, Affine34& r) {
  const double(&e)[3][4] = a.m;
  const double c00 = e[1][1] * e[2][2] - e[1][2] * e[2][1];
  const double c01 = e[1][2] * e[2][0] - e[1][0] * e[2][2];
  const double c02 = e[1][0] * e[2][1] - e[1][1] * e[2][0];
  const double inv = 1.0 / (e[0][0] * c00 + e[0][1] * c01 + e[0][2] * c02);
  r.m[0][0] = c00 * inv;
  r.m[1][0] = c01 * inv;
  r.m[2][0] = c02 * inv;
  r.m[0][1] = (e[0][2] * e[2][1] - e[0][1] * e[2][2]) * inv;
  r.m[1][1] = (e[0][0] * e[2][2] - e[0][2] * e[2][0]) * inv;
  r.m[2][1] = (e[0][1] * e[2][0] - e[0][0] * e[2][1]) * inv;
  r.m[0][2] = (e[0][1] * e[1][2] - e[0][2] * e[1][1]) * inv;
  r.m[1][2] = (e[0][2] * e[1][0] - e[0][0] * e[1][2]) * inv;
  r.m[2][2] = (e[0][0] * e[1][1] - e[0][1] * e[1][0]) * inv;
  for (unsigned i = 0; i < 3; ++i) r.m[i][3] = -(r.m[i][0] * e[0][3] + r.m[i][1] * e[1][3] + r.m[i][2] * e[2][3]);
}

// Rodrigues' closed axis-angle form about a centre.
void handRotation(double angle, const double axis[3], const double centre[3], Affine34& r) {
  const double length = std::sqrt(axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2]);
  const double x = axis[0] / length, y = axis[1] / length, z = axis[2] / length;
  const double c = std::cos(angle), s = std::sin(angle), t = 1 - c;
  r.m[0][0] = t * x * x + c;     r.m[0][1] = t * x * y - s * z; r.m[0][2] = t * x * z + s * y;
  r.m[1][0] = t * x * y + s * z; r.m[1][1] = t * y * y + c;     r.m[1][2] = t * y * z - s * x;
  r.m[2][0] = t * x * z - s * y; r.m[2][1] = t * y * z + s * x; r.m[2][2] = t * z * z + c;
  for (unsigned i = 0; i < 3; ++i)
    r.m[i][3] = centre[i] - (r.m[i][0] * centre[0] + r.m[i][1] * centre[1] + r.m[i][2] * centre[2]);
}

void PointTransform_KrGe(benchmark::State& state) {
  const Inputs& in = inputs();
  const KrGeMatrix3d matrix = in.matrices[0];
  unsigned i = 0;
  for (auto _ : state) {
    KrGePoint3d p = matrix * in.points[i++ & (kInputs - 1)];
    benchmark::DoNotOptimize(p);
  }
}
BENCHMARK(PointTransform_KrGe);

void PointTransform_KrGeTransformBy(benchmark::State& state) {
  const Inputs& in = inputs();
  const KrGeMatrix3d matrix = in.matrices[0];
  unsigned i = 0;
  for (auto _ : state) {
    KrGePoint3d p = in.points[i++ & (kInputs - 1)];
    p.transformBy(matrix);
    benchmark::DoNotOptimize(p);
  }
}
BENCHMARK(PointTransform_KrGeTransformBy);

void PointTransform_HandLoop(benchmark::State& state) {
  const Inputs& in = inputs();
  const Affine34 matrix = toAffine(in.matrices[0]);
  unsigned i = 0;
  for (auto _ : state) {
    const KrGePoint3d& p = in.points[i++ & (kInputs - 1)];
    const double q[3] = {p.x, p.y, p.z};
    double out[3];
    handTransform(matrix, q, out);
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(PointTransform_HandLoop);

// transformBy works in place on a copy held in memory; the fair baseline does the same.
void PointTransform_HandLoopInPlace(benchmark::State& state) {
  const Inputs& in = inputs();
  const Affine34 matrix = toAffine(in.matrices[0]);
  unsigned i = 0;
  for (auto _ : state) {
    const KrGePoint3d& p = in.points[i++ & (kInputs - 1)];
    double q[3] = {p.x, p.y, p.z};
    benchmark::DoNotOptimize(q);
    double out[3];
    handTransform(matrix, q, out);
    q[0] = out[0];
    q[1] = out[1];
    q[2] = out[2];
    benchmark::DoNotOptimize(q);
  }
}
BENCHMARK(PointTransform_HandLoopInPlace);

void MatrixProduct_KrGe(benchmark::State& state) {
  const Inputs& in = inputs();
  unsigned i = 0;
  KrGeMatrix3d r;
  for (auto _ : state) {
    r.setToProduct(in.matrices[i & (kInputs - 1)], in.matrices[(i + 1) & (kInputs - 1)]);
    ++i;
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(MatrixProduct_KrGe);

void MatrixProduct_Hand3x4(benchmark::State& state) {
  std::vector<Affine34> affine;
  for (const KrGeMatrix3d& m : inputs().matrices) affine.push_back(toAffine(m));
  unsigned i = 0;
  Affine34 r;
  for (auto _ : state) {
    handProduct(affine[i & (kInputs - 1)], affine[(i + 1) & (kInputs - 1)], r);
    ++i;
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(MatrixProduct_Hand3x4);

void Inverse_KrGe(benchmark::State& state) {
  const Inputs& in = inputs();
  unsigned i = 0;
  KrGeMatrix3d r;
  for (auto _ : state) {
    in.matrices[i++ & (kInputs - 1)].inverse(r, KrGeContext::gTol);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(Inverse_KrGe);

void Inverse_KrGeByValue(benchmark::State& state) {
  const Inputs& in = inputs();
  unsigned i = 0;
  for (auto _ : state) {
    KrGeMatrix3d r = in.matrices[i++ & (kInputs - 1)].inverse();
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(Inverse_KrGeByValue);

void Inverse_Hand3x4(benchmark::State& state) {
  std::vector<Affine34> affine;
  for (const KrGeMatrix3d& m : inputs().matrices) affine.push_back(toAffine(m));
  unsigned i = 0;
  Affine34 r;
  for (auto _ : state) {
    handInverse(affine[i++ & (kInputs - 1)], r);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(Inverse_Hand3x4);

void SetToRotation_KrGe(benchmark::State& state) {
  const Inputs& in = inputs();
  unsigned i = 0;
  KrGeMatrix3d r;
  for (auto _ : state) {
    const unsigned k = i++ & (kInputs - 1);
    r.setToRotation(in.angles[k], in.axes[k], in.points[k]);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(SetToRotation_KrGe);

void SetToRotation_ClosedForm(benchmark::State& state) {
  const Inputs& in = inputs();
  unsigned i = 0;
  Affine34 r;
  for (auto _ : state) {
    const unsigned k = i++ & (kInputs - 1);
    const double axis[3] = {in.axes[k].x, in.axes[k].y, in.axes[k].z};
    const double centre[3] = {in.points[k].x, in.points[k].y, in.points[k].z};
    handRotation(in.angles[k], axis, centre, r);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(SetToRotation_ClosedForm);

#if defined(KRGEL_HAVE_EIGEN)
Eigen::Affine3d toEigen(const KrGeMatrix3d& matrix) {
  Eigen::Affine3d a;
  for (unsigned i = 0; i < 4; ++i)
    for (unsigned j = 0; j < 4; ++j) a.matrix()(i, j) = matrix(i, j);
  return a;
}

std::vector<Eigen::Affine3d, Eigen::aligned_allocator<Eigen::Affine3d>> eigenMatrices() {
  std::vector<Eigen::Affine3d, Eigen::aligned_allocator<Eigen::Affine3d>> result;
  for (const KrGeMatrix3d& m : inputs().matrices) result.push_back(toEigen(m));
  return result;
}

void PointTransform_Eigen(benchmark::State& state) {
  const Eigen::Affine3d matrix = toEigen(inputs().matrices[0]);
  std::vector<Eigen::Vector3d> points;
  for (const KrGePoint3d& p : inputs().points) points.emplace_back(p.x, p.y, p.z);
  unsigned i = 0;
  for (auto _ : state) {
    Eigen::Vector3d p = matrix * points[i++ & (kInputs - 1)];
    benchmark::DoNotOptimize(p);
  }
}
BENCHMARK(PointTransform_Eigen);

void MatrixProduct_Eigen(benchmark::State& state) {
  const auto matrices = eigenMatrices();
  unsigned i = 0;
  Eigen::Affine3d r;
  for (auto _ : state) {
    r = matrices[i & (kInputs - 1)] * matrices[(i + 1) & (kInputs - 1)];
    ++i;
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(MatrixProduct_Eigen);

void Inverse_Eigen(benchmark::State& state) {
  const auto matrices = eigenMatrices();
  unsigned i = 0;
  Eigen::Affine3d r;
  for (auto _ : state) {
    r = matrices[i++ & (kInputs - 1)].inverse(Eigen::Affine);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(Inverse_Eigen);

void SetToRotation_Eigen(benchmark::State& state) {
  const Inputs& in = inputs();
  unsigned i = 0;
  Eigen::Affine3d r;
  for (auto _ : state) {
    const unsigned k = i++ & (kInputs - 1);
    const Eigen::Vector3d axis(in.axes[k].x, in.axes[k].y, in.axes[k].z);
    const Eigen::Vector3d centre(in.points[k].x, in.points[k].y, in.points[k].z);
    r = Eigen::Translation3d(centre) * Eigen::AngleAxisd(in.angles[k], axis.normalized()) * Eigen::Translation3d(-centre);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(SetToRotation_Eigen);
#endif

}  // namespace
