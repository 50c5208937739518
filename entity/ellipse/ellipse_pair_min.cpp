#include "entity/ellipse/ellipse_pair_min.h"

#include <cmath>

#include "entity/ellipse/ellipse_closest.h"

namespace {

constexpr int kCapacity = 1024;
constexpr double kGolden = 0.6180339887498949;

struct Sample {
  double t;
  double d;
};

// Distances and derivatives along the ellipse; every evaluation that improves the best pair
// records it.
class Pair {
public:
  Pair(const KrEllipseFrame& frame, const KrNearestOnCurve& other) : m_frame(frame), m_other(other) {}

  double distance(double t) {
    double param = 0.0;
    const KrGePoint3d on = m_frame.pointAt(t);
    const KrGePoint3d near = m_other.nearest(on, param);
    const double d = on.distanceTo(near);
    if (!m_any || d < m_best.distance) {
      m_any = true;
      m_best.t = t;
      m_best.otherParam = param;
      m_best.onEllipse = on;
      m_best.onOther = near;
      m_best.distance = d;
    }
    return d;
  }
  // Half the derivative of D^2: (point - nearest) . point'.
  double slope(double t) const {
    const double c = std::cos(t);
    const double s = std::sin(t);
    const KrGePoint3d on = m_frame.pointAt(c, s);
    double param = 0.0;
    const KrGeVector3d tangent = m_frame.majorAxis * (-s * m_frame.majorRadius) + m_frame.minorAxis * (c * m_frame.minorRadius);
    return (on - m_other.nearest(on, param)).dotProduct(tangent);
  }
  const KrPairMinimum& best() const { return m_best; }

private:
  const KrEllipseFrame& m_frame;
  const KrNearestOnCurve& m_other;
  KrPairMinimum m_best;
  bool m_any = false;
};

// The zero of the slope in (low, high), slope(low) < 0 < slope(high): regula falsi with the
// Illinois halving of a side that stays, bisection when a step leaves the bracket.
double slopeZero(Pair& pair, double low, double high, double slopeLow, double slopeHigh) {
  int side = 0;
  double previous = low;
  double t = low;
  for (int iteration = 0; iteration < 100; ++iteration) {
    t = (low * slopeHigh - high * slopeLow) / (slopeHigh - slopeLow);
    if (!(t > low && t < high)) t = 0.5 * (low + high);
    const double value = pair.slope(t);
    if (value == 0.0) break;
    if (value < 0.0) {
      low = t;
      slopeLow = value;
      if (side == -1) slopeHigh *= 0.5;
      side = -1;
    } else {
      high = t;
      slopeHigh = value;
      if (side == 1) slopeLow *= 0.5;
      side = 1;
    }
    const double scale = std::fmax(1.0, std::fabs(t));
    if (std::fabs(t - previous) <= 1e-15 * scale || !(high - low > 1e-15 * scale)) break;
    previous = t;
  }
  return t;
}

// Golden-section search of D on [low, high].
double goldenMinimum(Pair& pair, double low, double high) {
  double x1 = high - kGolden * (high - low);
  double x2 = low + kGolden * (high - low);
  double f1 = pair.distance(x1);
  double f2 = pair.distance(x2);
  for (int iteration = 0; iteration < 80 && high - low > 1e-15 * std::fmax(1.0, std::fabs(low)); ++iteration) {
    if (f1 <= f2) {
      high = x2;
      x2 = x1;
      f2 = f1;
      x1 = high - kGolden * (high - low);
      f1 = pair.distance(x1);
    } else {
      low = x1;
      x1 = x2;
      f1 = f2;
      x2 = low + kGolden * (high - low);
      f2 = pair.distance(x2);
    }
  }
  return f1 <= f2 ? x1 : x2;
}

}  // namespace

KrPairMinimum krEllipsePairMinimum(const KrEllipseFrame& frame, double lower, double upper,
                                   const KrNearestOnCurve& other) {
  Pair pair(frame, other);
  const double span = upper - lower;
  if (!(span > 0.0) || !std::isfinite(span)) {
    pair.distance(lower);
    return pair.best();
  }
  const double lipschitz = frame.majorRadius;
  const double perTurn = std::ceil(32.0 * span / kKrEllipseTwoPi);
  const int intervals = perTurn < 8.0 ? 8 : (perTurn > 64.0 ? 64 : static_cast<int>(perTurn));

  static_assert(kCapacity >= 65, "room for the first samples");
  Sample buffers[2][kCapacity];
  Sample* samples = buffers[0];
  Sample* fresh = buffers[1];
  int count = intervals + 1;
  for (int i = 0; i < count; ++i) {
    const double t = i == intervals ? upper : lower + span * i / intervals;
    samples[i] = Sample{t, pair.distance(t)};
  }

  // Branch and bound: halve the intervals that could hide a deeper basin.
  for (int pass = 0; pass < 40; ++pass) {
    const double best = pair.best().distance;
    const double margin = 1e-7 * (lipschitz + best);
    int made = 0;
    bool inserted = false;
    for (int i = 0; i < count; ++i) {
      fresh[made++] = samples[i];
      if (i + 1 == count) break;
      const double h = samples[i + 1].t - samples[i].t;
      const double bound = 0.5 * (samples[i].d + samples[i + 1].d - lipschitz * h);
      const bool room = made + (count - i) < kCapacity;
      if (room && bound < best - margin && h > 1e-12 * std::fmax(1.0, std::fabs(samples[i].t))) {
        const double t = samples[i].t + 0.5 * h;
        fresh[made++] = Sample{t, pair.distance(t)};
        inserted = true;
      }
    }
    Sample* swap = samples;
    samples = fresh;
    fresh = swap;
    count = made;
    if (!inserted) break;
  }

  // Refine each sample that is a local minimum and might still hold the global one.
  for (int i = 0; i < count; ++i) {
    const bool leftHigher = i == 0 || samples[i].d <= samples[i - 1].d;
    const bool rightHigher = i + 1 == count || samples[i].d <= samples[i + 1].d;
    if (!leftHigher || !rightHigher) continue;
    const double low = samples[i > 0 ? i - 1 : 0].t;
    const double high = samples[i + 1 < count ? i + 1 : count - 1].t;
    if (samples[i].d - lipschitz * (high - low) > pair.best().distance) continue;
    const double slopeLow = pair.slope(low);
    const double slopeHigh = pair.slope(high);
    if (slopeLow < 0.0 && slopeHigh > 0.0)
      pair.distance(slopeZero(pair, low, high, slopeLow, slopeHigh));
    else if (high > low)
      pair.distance(goldenMinimum(pair, low, high));
  }
  return pair.best();
}

KrGePoint3d KrNearestOnSpan::nearest(const KrGePoint3d& point, double& param) const {
  param = krClosestParamToPoint(m_span, point);
  return m_span.at(param);
}

KrGePoint3d KrNearestOnEllipse::nearest(const KrGePoint3d& point, double& param) const {
  double x = 0.0;
  double y = 0.0;
  double height = 0.0;
  m_frame.toLocal(point, x, y, height);
  double footX = 0.0;
  double footY = 0.0;
  param = krEllipseArcNearest(m_frame.majorRadius, m_frame.minorRadius, m_frame.startAng, m_frame.sweep, x, y, footX,
                              footY);
  return m_frame.pointOfLocal(footX, footY);
}
