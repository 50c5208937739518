#include "entity/composite/composite_chain.h"

#include <algorithm>
#include <cstdint>

#include "KrGeCompositeCurve3d.h"
#include "KrGeInterval.h"
#include "entity/core/KrEnt3dImpl.h"

double krSegmentLength(const KrGeCurve3d& curve, double tol) {
  KrGeInterval range(1e-12);
  curve.getInterval(range);
  if (!range.isBounded()) return kKrUnboundedLength;
  return curve.length(range.lowerBound(), range.upperBound(), tol);
}

double KrCompositeLengths::rebuild(const KrsArray<void*>& curves, double tol, bool& unbounded) {
  const int count = curves.GetCount();
  m_sums.SetSize(count + 1);
  m_walk = false;
  unbounded = false;
  double sum = 0.0, boundedSum = 0.0;
  m_sums[0] = 0.0;
  for (int i = 0; i < count; ++i) {
    const double length = krSegmentLength(*static_cast<const KrGeCurve3d*>(curves[i]), tol);
    if (length == kKrUnboundedLength)
      unbounded = true;
    else
      boundedSum += length;
    if (!(length >= 0.0)) m_walk = true;
    sum += length;
    m_sums[i + 1] = sum;
  }
  return boundedSum;
}

// The predicate param <= S(i + 1) + slack is false then true along i when S is monotone, so
// bisection finds its first true position in log2(n) steps.
int KrCompositeLengths::locate(double param, double slack) const {
  const int count = this->count();
  if (count <= 0) return 0;
  const double* sums = m_sums.GetData();
  if (m_walk) {
    for (int i = 0; i < count - 1; ++i)
      if (param <= sums[i + 1] + slack) return i;
    return count - 1;
  }
  int low = 0, high = count - 1;  // the answer lies in [low, high]; high is the fallback
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (param <= sums[middle + 1] + slack)
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

namespace {

bool before(const void* a, const void* b) {
  return reinterpret_cast<std::uintptr_t>(a) < reinterpret_cast<std::uintptr_t>(b);
}

struct Position {
  const void* pointer;
  int index;
};

}  // namespace

// A walk over the nested composites with a sorted list of those already seen. Plain arrays of
// addresses keep the library's exported surface free of standard containers of its own types.
bool krChainHolds(const KrGeCurve3d& curve, const void* composite) {
  constexpr int kMaxVisits = 1048576;
  KrsArray<const void*> pending, seen;
  KrsArray<void*> segments;
  pending.Add(&curve);
  while (!pending.IsEmpty() && seen.GetCount() < kMaxVisits) {
    const KrGeCurve3d* current = static_cast<const KrGeCurve3d*>(pending[pending.GetCount() - 1]);
    pending.SetSize(pending.GetCount() - 1);
    if (current->type() != KrGe::kCompositeCrv3d) continue;
    const void** seenBegin = seen.GetData();
    const void** place = std::lower_bound(seenBegin, seenBegin + seen.GetCount(), static_cast<const void*>(current),
                                          [](const void* a, const void* b) { return before(a, b); });
    const int at = int(place - seenBegin);
    if (at < seen.GetCount() && seen[at] == current) continue;
    seen.InsertAt(at, current);
    const KrGeCompositeCurve3d& chain = static_cast<const KrGeCompositeCurve3d&>(*current);
    if (KrEnt3dImpl::implOf(chain) == composite) return true;
    chain.getCurveList(segments);
    for (int i = 0; i < segments.GetCount(); ++i)
      if (segments[i]) pending.Add(segments[i]);
  }
  return false;
}

void krFirstPositions(const KrsArray<void*>& curves, KrsArray<int>& first) {
  const int count = curves.GetCount();
  first.SetSize(count);
  KrsArray<Position> order;
  order.SetSize(count);
  for (int i = 0; i < count; ++i) order[i] = Position{curves[i], i};
  std::sort(order.GetData(), order.GetData() + count, [](const Position& a, const Position& b) {
    return before(a.pointer, b.pointer) || (a.pointer == b.pointer && a.index < b.index);
  });
  for (int k = 0; k < count; ++k)
    first[order[k].index] =
        (k > 0 && order[k].pointer == order[k - 1].pointer) ? first[order[k - 1].index] : order[k].index;
}
