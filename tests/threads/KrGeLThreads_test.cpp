// Distinct objects of every kind used from several threads at once, under the real monitor with
// assertions on: every thread gets the checksum of a single-threaded run, every once-only report
// arrives exactly once however many threads failed its check together, every warning once per
// call from the thread that made it; under ThreadSanitizer, no race. A new kind adds a workload.
#include <atomic>
#include <climits>
#include <cstring>
#include <map>
#include <set>
#include <thread>

#include "testkit/TestKit.h"

using namespace testkit;

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 40;

// Order-sensitive fold of the bits of every result, so that any difference shows.
struct Checksum {
  std::uint64_t value = 1469598103934665603ull;
  void add(double x) {
    std::uint64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    value = (value ^ bits) * 1099511628211ull;
  }
  void add(const KrGePoint3d& p) { add(p.x), add(p.y), add(p.z); }
  void add(const KrGeVector3d& v) { add(v.x), add(v.y), add(v.z); }
};

void algebra(int round, Checksum& sum) {
  const KrGeVector3d axis(1, round, 2);
  const KrGeMatrix3d m = KrGeMatrix3d::rotation(0.1 * round, axis, KrGePoint3d(round, 1, 0)) *
                         KrGeMatrix3d::scaling(1.5, KrGePoint3d(0, 0, round));
  sum.add(m.inverse() * KrGePoint3d(1, 2, 3));
  sum.add(KrGeVector3d(1, 0, 0).rotateTo(KrGeVector3d(0, 0, 0)) * KrGeVector3d(1, 1, 1));  // warning
  sum.add(KrGeMatrix2d::rotation(0.3 * round).inverse()(0, 1));
  sum.add(KrGeVector3d(round, 1, 1).angleTo(axis));
}

void numerics(int round, Checksum& sum) {
  KrGeKnotVector knots;
  for (int i = 0; i < 8; ++i) knots.append(i / 2);
  knots.insert(0.5 * round);
  knots.setRange(-1, round + 1.0);
  sum.add(knots.multiplicityAt(2) + knots.numIntervals() + knots[-1]);  // bad index: reported once
  KrGeKnotVector head, tail;
  knots.split(0.5, &head, 2, &tail, 1);  // reports itself as not implemented, once
  sum.add(head.length() + tail.length());
  knots.removeSubVector(INT_MAX, INT_MIN);
  const KrGeInterval interval(round + 1.0, 0.0);  // lower above upper: warning
  sum.add(interval.length());
  KrsArray<double> coefficients, roots;
  for (double c : {-6.0, 11.0, -6.0 + round, 1.0, 0.0}) coefficients.Add(c);
  for (int i = methodDecart(coefficients, roots) - 1; i >= 0; --i) sum.add(roots[i]);
  coefficients.RemoveAt(4, 1);
  for (int i = methodFindAllRoot(coefficients, roots, true) - 1; i >= 0; --i) sum.add(roots[i]);
  static_cast<void>(&coefficients.GetAt(9));  // the host's own array code reports its bad index once
}

void linear(int round, Checksum& sum) {
  KrGeLineSeg3d segment(KrGePoint3d(round, 0, 1), KrGePoint3d(3, round, -2));
  const KrGeLine3d line(KrGePoint3d(0, 1, round), KrGeVector3d(1, -1, 0.5));
  KrGePoint3d onLine;
  sum.add(segment.closestPointTo(line, onLine));  // self-check notice, once
  sum.add(onLine);
  KrsArray<KrGeVector3d> derivatives;
  sum.add(segment.evalPoint(0.25, 3, derivatives));
  sum.add(derivatives[0]);
  segment.evalPoint(0.5, INT_MAX, derivatives);  // beyond the limit: reported once
  KrsArray<KrGePoint3d> samples;
  segment.getSamplePoints(1, samples);  // reported once, raised to 2
  line.getSamplePoints(4, samples);     // unbounded: warning
  segment.rotateBy(0.2, KrGeVector3d(0, 0, 1), onLine);
  sum.add(segment.midPoint());
  sum.add(line.projClosestPointTo(KrGePoint3d(1, 2, 3), KrGeVector3d(0, 0, 1)));
  KrGePoint3d crossing;
  sum.add(segment.intersectWith(line, crossing) ? 1.0 : 0.0);
}

void planar(int round, Checksum& sum) {
  KrGePlane plane(KrGePoint3d(1, round, 0), KrGeVector3d(0, 0, 0));  // degenerate normal: warning
  sum.add(plane.normal());
  plane.set(KrGePoint3d(0, 0, round), KrGeVector3d(1, 1, round));
  KrsArray<KrGeVector3d> derivatives;
  sum.add(plane.evalPoint(KrGePoint2d(0.5, round), 2, derivatives));
  sum.add(derivatives[1]);
  plane.evalPoint(KrGePoint2d(), -1, derivatives);  // reported once
  KrGePoint3d meet;
  sum.add(plane.intersectWith(KrGeLine3d(KrGePoint3d(0, 0, 0), KrGeVector3d(1, 2, 3)), meet) ? 1.0 : 0.0);
  sum.add(meet);
  sum.add(plane.closestPointTo(KrGePoint3d(round, 2, 3)));
}

void blocksAndPoints(int round, Checksum& sum) {
  KrGeBoundBlock3d block(KrGePoint3d(0, 0, 0), KrGeVector3d(1, round, 0), KrGeVector3d(0, 1, 0),
                         KrGeVector3d(0, 0, 1));
  block.extend(KrGePoint3d(round, -2, 5)).swell(0.5);
  sum.add(block.contains(KrGePoint3d(1, 1, 1)) + 2.0 * block.isDisjoint(KrGeBoundBlock3d()));
  KrGePoint3d low, high;
  block.setToBox(true).getMinMaxPoints(low, high);
  sum.add(high - low);
  const KrGeLineSeg3d segment(KrGePoint3d(0, round, 0), KrGePoint3d(4, 0, 1));
  KrGePointOnCurve3d onCurve(segment, 0.25), bare;
  sum.add(onCurve.point());
  sum.add(onCurve.deriv(1) + onCurve.deriv(0));  // order 0: reported once
  sum.add(bare.point());                         // no curve: reported once
  KrGePointEnt3d point(KrGePoint3d(round, 1, 2));
  point.rotateBy(0.5, KrGeVector3d(1, 0, 0));
  sum.add(point.point3d());
}

void arcs(int round, Checksum& sum) {
  KrGeCircArc3d arc(KrGePoint3d(round, 0, 1), KrGeVector3d(0, 0, 0), 2.0);  // zero normal: warning
  arc.setAngles(0.25, 2.0 + round * 0.01);
  KrsArray<KrGeVector3d> derivatives;
  sum.add(arc.evalPoint(1.0, 2, derivatives));
  sum.add(derivatives[1]);
  KrsArray<KrGePoint3d> samples;
  arc.getSamplePoints(1, samples);  // reported once
  sum.add(samples[0]);
  int count = 0;
  KrGePoint3d first, second;
  sum.add(arc.intersectWith(KrGeLineSeg3d(KrGePoint3d(-5, 0.5, 1), KrGePoint3d(9, 0.5, 1)), count, first, second));
  sum.add(first), sum.add(count);
  const KrGeLine3d across(KrGePoint3d(0, 0.5, 1), KrGeVector3d(1, 0, 0));
  const KrGeCurveCurveInt3d crossing(arc, across);
  sum.add(crossing.numIntPoints()), sum.add(crossing.intPoint(0)), sum.add(crossing.intPoint(-1));  // bad index
  arc.rotateBy(0.3, KrGeVector3d(1, 1, 0), KrGePoint3d(0, round, 0));
  sum.add(arc.startPoint()), sum.add(arc.normal());
}

struct Workload {
  const char* name;
  void (*run)(int round, Checksum& sum);
};

const Workload kWorkloads[] = {{"algebra", algebra},
                               {"numerics", numerics},
                               {"linear", linear},
                               {"planar", planar},
                               {"blocks and points", blocksAndPoints},
                               {"arcs and intersections", arcs}};

std::vector<std::uint64_t> runAll() {
  std::vector<std::uint64_t> sums;
  for (const Workload& workload : kWorkloads) {
    Checksum sum;
    for (int round = 0; round < kRounds; ++round) workload.run(round, sum);
    sums.push_back(sum.value);
  }
  return sums;
}

}  // namespace

TEST(KrGeLThreads, DistinctObjectsOnSeveralThreads_SameResultsAndEachReportOnce) {
  ASSERT_TRUE(MonitorCapture::active());
  MonitorCapture::clear();
  std::vector<std::vector<std::uint64_t>> sums(kThreads);
  std::vector<std::thread> threads;
  std::atomic<int> ready{0};
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      ready.fetch_add(1);
      while (ready.load() < kThreads) std::this_thread::yield();  // start together
      sums[t] = runAll();
    });
  for (std::thread& thread : threads) thread.join();
  const std::vector<Record> together = MonitorCapture::drain();
  const std::vector<std::uint64_t> alone = runAll();
  const std::vector<Record> single = MonitorCapture::drain();

  for (int t = 0; t < kThreads; ++t)
    for (std::size_t w = 0; w < alone.size(); ++w) EXPECT_EQ(sums[t][w], alone[w]) << kWorkloads[w].name << ", thread " << t;

  std::map<std::string, int> onceOnly;
  std::set<unsigned> warningThreads;
  for (const Record& record : together)
    record.message.rfind("WARNING", 0) == 0 ? void(warningThreads.insert(record.threadId)) : void(++onceOnly[record.message]);
  EXPECT_GE(onceOnly.size(), 10u);
  for (const auto& [message, count] : onceOnly) EXPECT_EQ(count, 1) << message;
  EXPECT_EQ(warningsIn(single).size(), single.size()) << "a once-only report came again";
  EXPECT_GT(single.size(), 0u);
  EXPECT_EQ(warningsIn(together).size(), kThreads * single.size());
  EXPECT_EQ(warningThreads.size(), static_cast<std::size_t>(kThreads));
}
