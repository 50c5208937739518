#include "entity/composite/composite_chain.h"

#include <algorithm>
#include <functional>
#include <cmath>
#include <unordered_set>
#include <utility>
#include <vector>

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

bool krChainHolds(const KrGeCurve3d& curve, const void* composite) {
  constexpr std::size_t kMaxVisits = 1048576;
  std::vector<const KrGeCurve3d*> pending{&curve};
  std::unordered_set<const KrGeCurve3d*> seen;
  KrsArray<void*> segments;
  while (!pending.empty() && seen.size() < kMaxVisits) {
    const KrGeCurve3d* current = pending.back();
    pending.pop_back();
    if (current->type() != KrGe::kCompositeCrv3d || !seen.insert(current).second) continue;
    const KrGeCompositeCurve3d& chain = static_cast<const KrGeCompositeCurve3d&>(*current);
    if (KrEnt3dImpl::implOf(chain) == composite) return true;
    chain.getCurveList(segments);
    for (int i = 0; i < segments.GetCount(); ++i)
      if (segments[i]) pending.push_back(static_cast<const KrGeCurve3d*>(segments[i]));
  }
  return false;
}

void krFirstPositions(const KrsArray<void*>& curves, KrsArray<int>& first) {
  const int count = curves.GetCount();
  first.SetSize(count);
  std::vector<std::pair<const void*, int>> order;
  order.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) order.emplace_back(curves[i], i);
  std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
    return std::less<const void*>()(a.first, b.first) || (a.first == b.first && a.second < b.second);
  });
  for (std::size_t k = 0; k < order.size(); ++k)
    first[order[k].second] = (k > 0 && order[k].first == order[k - 1].first) ? first[order[k - 1].second]
                                                                             : order[k].second;
}
