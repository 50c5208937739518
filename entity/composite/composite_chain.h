// Stateless pieces of the composite curve: the summed segment lengths behind the arc-length
// mapping, and the checks a new segment list goes through.
#pragma once

#include "KrGeCurve3d.h"
#include "KrsArray.h"

// The length a segment with an unbounded range counts as.
constexpr double kKrUnboundedLength = 1.7976931348623157e308;

// S(0) = 0, S(i + 1) = S(i) + len(i), summed in chain order exactly as a running sum would be,
// so a binary search over S gives the very segment a linear walk would choose.
class KrCompositeLengths {
public:
  // Sums the segments' lengths over their own ranges (accuracy `tol`); kKrUnboundedLength for an
  // unbounded one. Answers the sum over the bounded segments only; `unbounded` tells whether
  // there was another.
  double rebuild(const KrsArray<void*>& curves, double tol, bool& unbounded);
  // The first segment i < count - 1 with param <= S(i + 1) + slack, else the last one (0 for none).
  // NaN chooses the last one, as the walk does.
  int locate(double param, double slack) const;
  // S(i), i in [0, count].
  double before(int index) const { return m_sums[index]; }
  int count() const { return m_sums.GetCount() - 1; }

private:
  KrsArray<double> m_sums;
  // Some length was NaN or negative: S is not monotone and the search walks instead.
  bool m_walk = false;
};

// The length of a segment over its own range, as the mapping counts it.
double krSegmentLength(const KrGeCurve3d& curve, double tol);

// True when `curve` is the composite whose implementation is `composite`, or holds it among its
// segments at any depth. The walk visits each composite once and stops after 1048576 visits.
bool krChainHolds(const KrGeCurve3d& curve, const void* composite);

// For each position, the first position holding the same pointer (itself when it is the first):
// a segment listed twice is released, copied and transformed once, there. O(n log n).
void krFirstPositions(const KrsArray<void*>& curves, KrsArray<int>& first);
