// Closest pairs of two circular arcs.
#include "entity/relation/arc_arc.h"

#include <algorithm>
#include <limits>

#include "entity/arc/KrCircArc3dImpl.h"
#include "entity/relation/arc_arc_descent.h"
#include "entity/relation/line_arc_geometry.h"

namespace {

constexpr int kSamplesPerTurn = 32;
constexpr int kRefinedMinima = 4;

// The nearest pair seen so far (the first wins a tie). Seeds are critical pairs of the whole
// distance inside both arcs; edge pairs are exact. Only the nearest candidate is refined, when it
// is a seed: the others are critical points already, which the refinement would move by no more
// than rounding, so it could not change which is nearest.
struct NearestPair {
  NearestPair(const KrCircle& first, const KrCircle& second) : circle1(first), circle2(second) {}
  const KrCircle& circle1;
  const KrCircle& circle2;
  KrTurn theta1, theta2;
  double value = std::numeric_limits<double>::infinity();
  bool any = false, seeded = false;

  void consider(const KrTurn& turn1, const KrTurn& turn2, bool isSeed = false) {
    if (!std::isfinite(turn1.angle) || !std::isfinite(turn2.angle)) return;
    const double distance = (circle1.at(turn1) - circle2.at(turn2)).lengthSqrd();
    if (any && !(distance < value)) return;
    theta1 = turn1;
    theta2 = turn2;
    value = distance;
    any = true;
    seeded = isSeed;
  }
  void seed(const KrTurn& turn1, const KrTurn& turn2) {
    if (krOnArc(circle1, turn1.angle) && krOnArc(circle2, turn2.angle)) consider(turn1, turn2, true);
  }
  // The descent from the nearest seed, finished by Newton when it went past its first round;
  // kept where it stays inside both arcs and is not farther.
  void refine() {
    if (!seeded) return;
    KrTurn refined1 = theta1, refined2 = theta2;
    double angle1 = theta1.angle, angle2 = theta2.angle;
    const double tolerance = krArcArcDescentTolerance(circle1, circle2, theta1, theta2);
    if (krArcArcCoordDescent(krFrameOf(circle1), krFrameOf(circle2), angle1, angle2, tolerance, &refined1, &refined2) >
        1)
      krPolishArcArc(circle1, circle2, refined1, refined2);
    if (krOnArc(circle1, refined1.angle) && krOnArc(circle2, refined2.angle)) consider(refined1, refined2);
  }
};

// Parallel planes: the critical pairs of two circles in one plane (the height between the
// planes adds a constant). With the shadow of the second centre at w from the first, the
// pairs on the line of the centres are C1 +- R1 w^ and C2 +- R2 w^, and the shadows cross at
// a = (D^2 + R1^2 - R2^2) / (2D) along w^ and +-sqrt((R1 - a)(R1 + a)) across it.
void parallelSeeds(const KrCircle& c1, const KrCircle& c2, NearestPair& nearest) {
  const KrGeVector3d& n = c1.n;
  const KrGeVector3d offset = c2.center - c1.center;
  const KrGeVector3d w = offset - n * offset.dotProduct(n);
  const double distance = w.length();
  if (!(distance > 1e-12 * std::max(c1.radius, c2.radius))) {
    const KrCircle* arcs[] = {&c1, &c2};
    for (const KrCircle* arc : arcs)
      for (const double end : {arc->start, arc->start + arc->sweep}) {
        const KrGeVector3d direction = arc->radial(krTurnOf(end));
        nearest.seed(c1.turnOf(direction), c2.turnOf(direction));
      }
    nearest.seed(KrTurn{}, c2.turnOf(c1.u));
    return;
  }
  const KrGeVector3d along = w / distance;
  for (const double side1 : {1.0, -1.0})
    for (const double side2 : {1.0, -1.0}) nearest.seed(c1.turnOf(along * side1), c2.turnOf(along * side2));
  const double a = 0.5 * (distance + (c1.radius - c2.radius) * (c1.radius + c2.radius) / distance);
  const double across2 = (c1.radius - a) * (c1.radius + a);
  if (!(across2 >= 0.0)) return;
  const KrGeVector3d across = n.crossProduct(along) * std::sqrt(across2);
  for (const double side : {1.0, -1.0}) {
    const KrGeVector3d fromCenter1 = along * a + across * side;
    nearest.seed(c1.turnOf(fromCenter1), c2.turnOf(fromCenter1 - w));
  }
}

// The squared distance from the point of `from` at a turn to the arc `to`, with its first two
// derivatives in the angle when asked. Where the nearest point is inside the arc the closed form
// h^2 + (rho - R)^2 holds (h the height over the plane, rho the distance from the axis); where it
// is an end (or the point is on the axis and the start is taken) that point is fixed.
struct ArcDistance {
  const KrCircle& from;
  const KrCircle& to;
  // Whether the point at w from the centre of `to` has its nearest point inside that arc: off
  // the axis, radially towards an angle of the arc.
  bool nearestInside(const KrGeVector3d& w) const {
    const KrGeVector3d flat = w - to.n * w.dotProduct(to.n);
    return flat.lengthSqrd() > 0.0 && (to.full || krOnArc(to, to.angleOf(flat)));
  }
  // The value alone, for the samples: to a full circle, h^2 + (rho - R)^2 with rho^2 taken as
  // |w|^2 - h^2, which loses digits only near the axis, where samples need none.
  double sample(const KrTurn& turn) const {
    const KrGeVector3d w = (from.center - to.center) + from.radial(turn);
    if (!to.full) return value(turn);
    const double h = w.dotProduct(to.n);
    const double gap = std::sqrt(std::max(0.0, w.lengthSqrd() - h * h)) - to.radius;
    return h * h + gap * gap;
  }
  double value(const KrTurn& turn, double* first = nullptr, double* second = nullptr) const {
    const KrGeVector3d radial = from.radial(turn);
    const KrGeVector3d w = (from.center - to.center) + radial;
    if (!nearestInside(w)) {
      const KrGeVector3d r = (from.center + radial) - to.at(krClosestArcTurn(to, from.center + radial));
      if (first) *first = 2.0 * r.dotProduct(from.tangent(turn));
      if (second) *second = 2.0 * (from.tangent(turn).lengthSqrd() - r.dotProduct(radial));
      return r.lengthSqrd();
    }
    const double h = w.dotProduct(to.n);
    const KrGeVector3d flat = w - to.n * h;
    const double rho = std::sqrt(flat.lengthSqrd());
    const double gap = rho - to.radius;
    if (first || second) {
      const KrGeVector3d tangent = from.tangent(turn);
      const double h1 = tangent.dotProduct(to.n), h2 = -radial.dotProduct(to.n);
      const KrGeVector3d flat1 = tangent - to.n * h1, flat2 = -radial - to.n * h2;
      const double inverseRho = 1.0 / rho;  // one division for both derivatives
      const double rho1 = flat.dotProduct(flat1) * inverseRho;
      const double rho2 = (flat1.lengthSqrd() + flat.dotProduct(flat2) - rho1 * rho1) * inverseRho;
      if (first) *first = 2.0 * (h * h1 + gap * rho1);
      if (second) *second = 2.0 * (h1 * h1 + h * h2 + rho1 * rho1 + gap * rho2);
    }
    return h * h + gap * gap;
  }
};

// A local minimum of the distance in [low, high] (offsets from `from`'s start) from `x`, the
// least sample: Newton steps where the curvature is positive and the step stays in the bracket,
// halving towards the descent otherwise; a point that is not lower shrinks the bracket. A Newton
// step below 1e-9 is the last: convergence is quadratic by then. So is a Newton step d after an
// accepted Newton step p when d^3 / p^2, the size that quadratic convergence predicts for the
// next one, is below the rounding.
KrTurn bracketedMinimum(const ArcDistance& distance, double low, double high, double x, KrTurn turn) {
  const double start = distance.from.start;
  double first = 0.0, second = 0.0;
  double fx = distance.value(turn, &first, &second);
  double previous = 0.0;  // the last accepted Newton step, 0 after any other
  for (int i = 0; i < 60; ++i) {
    double next = second > 0.0 ? x - first / second : x;
    bool newton = true;
    if (!(next > low && next < high) || next == x) {
      next = first > 0.0 ? 0.5 * (low + x) : 0.5 * (x + high);
      newton = false;
    }
    const double step = std::fabs(next - x);
    if (step <= 4.0 * kKrRelEpsilon * (1.0 + std::fabs(x))) break;
    const bool last = newton && (step <= 1e-9 || step * step * step <= kKrRelEpsilon * previous * previous);
    const KrTurn nextTurn = krTurnOf(start + next);
    double nextFirst = 0.0, nextSecond = 0.0;
    const double fn = distance.value(nextTurn, &nextFirst, &nextSecond);
    previous = 0.0;
    if (fn <= fx) {
      if (newton) previous = step;
      (next > x ? low : high) = x;
      x = next;
      turn = nextTurn;
      fx = fn;
      first = nextFirst;
      second = nextSecond;
      if (last) break;
    } else {
      (next > x ? high : low) = next;
    }
  }
  return turn;
}

// The angles of `from` where its distance to `to` can change faster than even samples show:
// its closest approaches to the axis of `to` (the distance peaks sharply there), and where its
// height h over the plane of `to`, h0 + a cos + b sin, crosses zero or is extreme (two nearly
// meeting circles have their narrow dips there, since the distance is at least |h|).
int featureTurns(const KrCircle& from, const KrCircle& to, KrTurn* turns) {
  int count = krLineCircleMinima(from, to.center, to.n, true, turns);
  const double h0 = (from.center - to.center).dotProduct(to.n);
  const double a = from.u.dotProduct(to.n) * from.radius, b = from.v.dotProduct(to.n) * from.radius;
  const double amplitude = krNorm(a, b);
  if (!(amplitude > 0.0)) return count;
  const double c = a / amplitude, s = b / amplitude;
  turns[count++] = krTurnTowards(c, s);
  turns[count++] = krTurnTowards(-c, -s);
  const double cosine = -h0 / amplitude;
  if (!(std::fabs(cosine) <= 1.0)) return count;
  const double sine = std::sqrt((1.0 - cosine) * (1.0 + cosine));
  turns[count++] = krTurnTowards(c * cosine - s * sine, s * cosine + c * sine);
  turns[count++] = krTurnTowards(c * cosine + s * sine, s * cosine - c * sine);
  return count;
}

// Skew planes: seeds from the sampled distance of the smaller arc to the other (see arc_arc.h).
// The even samples advance by the rotation recurrence (two trigonometric calls in all).
void sampledSeeds(const KrCircle& c1, const KrCircle& c2, NearestPair& nearest) {
  const bool swap = c2.radius < c1.radius;
  const KrCircle& from = swap ? c2 : c1;
  const KrCircle& to = swap ? c1 : c2;
  const ArcDistance distance{from, to};
  const int intervals =
      from.full ? kSamplesPerTurn : std::max(4, (int)std::ceil(kSamplesPerTurn * from.sweep / kKrRelTwoPi));
  constexpr int kMaxSamples = kSamplesPerTurn + 1 + 8;
  double offsets[kMaxSamples];
  KrTurn turns[kMaxSamples];
  int count = from.full ? intervals : intervals + 1;
  const double step = (from.full ? kKrRelTwoPi : from.sweep) / intervals;
  const KrTurn rotation = krTurnOf(step);
  KrTurn turn = krTurnOf(from.start);
  for (int i = 0; i < count; ++i) {
    offsets[i] = i * step;
    turns[i] = KrTurn{from.start + offsets[i], turn.cosine, turn.sine};
    turn = KrTurn{0.0, turn.cosine * rotation.cosine - turn.sine * rotation.sine,
                  turn.sine * rotation.cosine + turn.cosine * rotation.sine};
  }
  KrTurn extra[8];
  const int extras = featureTurns(from, to, extra);
  for (int i = 0; i < extras; ++i) {
    const double offset = krArcOffset(from, extra[i].angle);
    if (!from.full && offset > from.sweep) continue;
    int at = count++;
    for (; at > 0 && offsets[at - 1] > offset; --at) {
      offsets[at] = offsets[at - 1];
      turns[at] = turns[at - 1];
    }
    offsets[at] = offset;
    turns[at] = KrTurn{from.start + offset, extra[i].cosine, extra[i].sine};
  }
  double values[kMaxSamples];
  for (int i = 0; i < count; ++i) values[i] = distance.sample(turns[i]);

  // The sampled local minima (cyclic on a full circle), least first.
  int minima[kMaxSamples];
  int found = 0;
  for (int i = 0; i < count; ++i) {
    const bool hasLeft = from.full || i > 0, hasRight = from.full || i + 1 < count;
    const int left = (i + count - 1) % count, right = (i + 1) % count;
    if ((hasLeft && values[left] < values[i]) || (hasRight && values[right] < values[i])) continue;
    int at = found++;
    for (; at > 0 && values[minima[at - 1]] > values[i]; --at) minima[at] = minima[at - 1];
    minima[at] = i;
  }
  // The distance (not squared) is R-Lipschitz in the angle (R the sampled radius), and inside
  // a bracket every angle is within half the wider gap of a sample no nearer than the least one:
  // a bracket whose bound is not below the nearest pair found cannot hold a nearer one.
  for (int k = 0; k < found && k < kRefinedMinima; ++k) {
    const int i = minima[k];
    const double low = i > 0 ? offsets[i - 1] : (from.full ? offsets[count - 1] - kKrRelTwoPi : offsets[0]);
    const double high = i + 1 < count ? offsets[i + 1] : (from.full ? kKrRelTwoPi : offsets[i]);
    const double bound = std::sqrt(values[i]) - 0.5 * from.radius * std::max(offsets[i] - low, high - offsets[i]);
    if (nearest.any && bound * std::fabs(bound) >= nearest.value) continue;
    const KrTurn best = bracketedMinimum(distance, low, high, offsets[i], turns[i]);
    const KrGePoint3d point = from.at(best);
    const KrTurn onTo = krClosestArcTurn(to, point);
    // Only a pair inside both arcs is a critical point of the whole distance, a seed; a pair on
    // an edge is exact already.
    const double offset = best.angle - from.start;
    const bool interior =
        (from.full || (offset > 0.0 && offset < from.sweep)) && distance.nearestInside(point - to.center);
    swap ? nearest.consider(onTo, best, interior) : nearest.consider(best, onTo, interior);
  }
}

bool isPointLike(const KrCircle& circle, double magnitude) { return !(circle.radius > 1e-15 * magnitude); }

}  // namespace

void krArcArcClosest(const KrArcFrame& arc1, const KrArcFrame& arc2, double& theta1, double& theta2, KrGePoint3d& on1,
                     KrGePoint3d& on2) {
  const KrCircle c1 = krCircleOf(arc1), c2 = krCircleOf(arc2);
  const auto answer = [&](const KrTurn& turn1, const KrTurn& turn2) {
    theta1 = krArcParam(c1, turn1.angle);
    theta2 = krArcParam(c2, turn2.angle);
    on1 = c1.at(turn1);
    on2 = c2.at(turn2);
  };
  if (!krIsFinite(c1) || !krIsFinite(c2)) {
    theta1 = std::isfinite(arc1.startAng) ? arc1.startAng : 0.0;
    theta2 = std::isfinite(arc2.startAng) ? arc2.startAng : 0.0;
    on1 = arc1.pointAt(theta1);
    on2 = arc2.pointAt(theta2);
    return;
  }
  const double magnitude = std::max({krMagnitude(c1.center), krMagnitude(c2.center), c1.radius, c2.radius});
  const bool point1 = isPointLike(c1, magnitude), point2 = isPointLike(c2, magnitude);
  if (point1 || point2) {
    const KrTurn start1 = krTurnOf(c1.start);
    const KrTurn turn2 = krClosestArcTurn(c2, c1.at(start1));
    return answer(point1 ? start1 : krClosestArcTurn(c1, c2.at(turn2)), turn2);
  }
  NearestPair nearest(c1, c2);
  if (c1.n.crossProduct(c2.n).lengthSqrd() <= 1e-24)
    parallelSeeds(c1, c2, nearest);
  else
    sampledSeeds(c1, c2, nearest);
  if (!c1.full)
    for (const double end : {c1.start, c1.start + c1.sweep}) {
      const KrTurn turn = krTurnOf(end);
      nearest.consider(turn, krClosestArcTurn(c2, c1.at(turn)));
    }
  if (!c2.full)
    for (const double end : {c2.start, c2.start + c2.sweep}) {
      const KrTurn turn = krTurnOf(end);
      nearest.consider(krClosestArcTurn(c1, c2.at(turn)), turn);
    }
  if (!nearest.any) {
    const KrTurn start = krTurnOf(c1.start);
    nearest.consider(start, krClosestArcTurn(c2, c1.at(start)));
  }
  nearest.refine();
  answer(nearest.theta1, nearest.theta2);
}

namespace krrelation {

bool closestArcArc(const KrGeCurve3dImpl& first, const KrGeCurve3dImpl& second, KrGePoint3d& onFirst,
                   KrGePoint3d& onSecond, const KrGeTol&) {
  double theta1 = 0.0, theta2 = 0.0;
  krArcArcClosest(static_cast<const KrCircArc3dImpl&>(first).frame(),
                  static_cast<const KrCircArc3dImpl&>(second).frame(), theta1, theta2, onFirst, onSecond);
  return true;
}

}  // namespace krrelation
