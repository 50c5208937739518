// The segment list of the composite: taking lists over, registering with the segments, releasing
// them, copies, equality, and the operations that change every segment.
#include "entity/composite/KrCompositeCurve3dImpl.h"

#include <algorithm>
#include <cstdint>

#include "KrsDiagnostics.h"

namespace {

const char* const kSource = KrCompositeCurve3dImpl::kReportSource;

KrGeCurve3d* curveAt(const KrsArray<void*>& curves, int index) { return static_cast<KrGeCurve3d*>(curves[index]); }

// Addresses compared as unsigned integers: a total order for sorting and searching pointers.
bool before(const void* a, const void* b) {
  return reinterpret_cast<std::uintptr_t>(a) < reinterpret_cast<std::uintptr_t>(b);
}

// The pointers of `curves`, sorted, for membership tests while an old list is released.
KrsArray<void*> sortedPointers(const KrsArray<void*>* curves) {
  KrsArray<void*> sorted;
  if (!curves) return sorted;
  sorted = *curves;
  std::sort(sorted.GetData(), sorted.GetData() + sorted.GetCount(), [](void* a, void* b) { return before(a, b); });
  return sorted;
}

}  // namespace

KrCompositeCurve3dImpl::KrCompositeCurve3dImpl() : mInterval(0.0, 0.0, 1e-12) { refreshLengths(); }

KrCompositeCurve3dImpl::KrCompositeCurve3dImpl(const KrCompositeCurve3dImpl& source)
    : KrEntityKind(source), mInterval(0.0, 0.0, 1e-12) {
  refreshLengths();
  assignData(source);
}

KrCompositeCurve3dImpl::~KrCompositeCurve3dImpl() { releaseCurves(nullptr); }

KrGeEntity3d* KrCompositeCurve3dImpl::copy() const { return copyInto(new KrGeCompositeCurve3d(), *this); }

// Release runs from the last segment to the first. Unregistering first lets the registry tell
// whether another container still owns (then it deletes the segment) or uses the segment.
// Segments that the incoming list `keep` holds again are unregistered but never deleted.
void KrCompositeCurve3dImpl::releaseCurves(const KrsArray<void*>* keep) {
  const KrsArray<void*> kept = sortedPointers(keep);
  void* const* keptBegin = kept.GetData();
  void* const* keptEnd = keptBegin + kept.GetCount();
  for (int i = mCurveList.GetCount() - 1; i >= 0; --i) {
    KrGeCurve3d* curve = curveAt(mCurveList, i);
    KrEnt3dImpl* impl = implOf(*curve);
    if (impl) impl->removeReference(this);
    const bool relisted = std::binary_search(keptBegin, keptEnd, static_cast<void*>(curve),
                                             [](const void* a, const void* b) { return before(a, b); });
    if (!mOwned[i] || relisted) continue;
    if (impl && impl->isOwned()) continue;
    const bool stillUsed = impl && impl->isReferenced();
    KRS_CHECK_TEXT_AT(!stillUsed, "(pC->m_pImpl->isReferenced())", kSource, 49);
    if (!stillUsed) delete curve;
  }
  mCurveList.RemoveAll();
  mOwned.RemoveAll();
}

// A segment listed twice carries the union of its flags at its first position and is registered
// once from there.
void KrCompositeCurve3dImpl::adoptCurves(const KrsArray<void*>& curves, const KrsArray<bool>& owned) {
  KrsArray<int> first;
  krFirstPositions(curves, first);
  mCurveList = curves;
  mOwned = owned;
  for (int i = 0; i < mCurveList.GetCount(); ++i) {
    if (first[i] == i) continue;
    if (mOwned[i]) mOwned[first[i]] = true;
    mOwned[i] = false;
  }
  for (int i = 0; i < mCurveList.GetCount(); ++i)
    if (first[i] == i)
      if (KrEnt3dImpl* impl = implOf(*curveAt(mCurveList, i))) impl->setReference(this, mOwned[i]);
  mDepth = depthOf(mCurveList);
  setInterval();
}

// 1 + the depth of the deepest composite among `curves`.
int KrCompositeCurve3dImpl::depthOf(const KrsArray<void*>& curves) {
  int deepest = 0;
  for (int i = 0; i < curves.GetCount(); ++i)
    if (const KrCompositeCurve3dImpl* nested = of(*curveImplOf(*curveAt(curves, i))))
      if (nested->depth() > deepest) deepest = nested->depth();
  return deepest + 1;
}

// Every pointer must be a curve facade holding an implementation; a chain may neither hold this
// composite (evaluation would never end) nor nest deeper than kMaxDepth (each level costs stack).
bool KrCompositeCurve3dImpl::acceptable(const KrsArray<void*>& curves) const {
  for (int i = 0; i < curves.GetCount(); ++i) {
    const KrGeEntity3d* entity = static_cast<const KrGeEntity3d*>(curves[i]);
    KRS_CHECK_TEXT_AT(entity != nullptr, "(pC==NULL)", kSource, __LINE__);
    if (!entity) return false;
    const bool curve = implOf(*entity) != nullptr && entity->isKindOf(KrGe::kCurve3d);
    KRS_CHECK_TEXT_AT(curve, "(!pC->isKindOf(kCurve3d))", kSource, __LINE__);
    if (!curve) return false;
  }
  for (int i = 0; i < curves.GetCount(); ++i) {
    const bool cyclic = krChainHolds(*curveAt(curves, i), this);
    KRS_CHECK_TEXT_AT(!cyclic, "(pC->m_pImpl==this)", kSource, __LINE__);
    if (cyclic) return false;
  }
  const bool shallow = depthOf(curves) <= kMaxDepth;
  KRS_CHECK_TEXT_AT(shallow, "(nDepth > 256)", kSource, __LINE__);
  return shallow;
}

void KrCompositeCurve3dImpl::setCurveList(const KrsArray<void*>& curves, const KrsArray<int>& isOwnerOfCurves) {
  const int nC = curves.GetCount(), nI = isOwnerOfCurves.GetCount();
  KRS_CHECK_TEXT_AT(nC == nI, "(nC!=nI)", kSource, 1376);
  if (nC != nI || !acceptable(curves)) return;
  const KrsArray<void*> incoming(curves);
  KrsArray<bool> owned;
  owned.SetSize(nC);
  for (int i = 0; i < nC; ++i) owned[i] = isOwnerOfCurves[i] != 0;
  releaseCurves(&incoming);
  adoptCurves(incoming, owned);
}

void KrCompositeCurve3dImpl::setCurveList(const KrsArray<void*>& curves) {
  KrsArray<int> flags;
  flags.SetSize(curves.GetCount());
  for (int i = 0; i < flags.GetCount(); ++i) flags[i] = 0;
  setCurveList(curves, flags);
}

void KrCompositeCurve3dImpl::getCurveList(KrsArray<void*>& curves) const { curves = mCurveList; }

// Owned segments are copied (a segment listed twice once) and the copies owned; the others are
// shared. The source may hold this composite among its shared segments: that copy is refused.
void KrCompositeCurve3dImpl::assignData(const KrCompositeCurve3dImpl& source) {
  if (!acceptable(source.mCurveList)) return;
  KrsArray<int> first;
  krFirstPositions(source.mCurveList, first);
  KrsArray<void*> curves(source.mCurveList);
  KrsArray<bool> owned(source.mOwned);
  for (int i = 0; i < curves.GetCount(); ++i) {
    if (first[i] != i) {
      curves[i] = curves[first[i]];
    } else if (owned[i]) {
      KrGeEntity3d* twin = curveAt(source.mCurveList, i)->copy();
      curves[i] = twin;
      owned[i] = twin != nullptr;
      if (!twin) curves[i] = source.mCurveList[i];
    }
  }
  releaseCurves(&curves);
  adoptCurves(curves, owned);
  mInterval = source.mInterval;
}

bool KrCompositeCurve3dImpl::equalData(const KrCompositeCurve3dImpl& other, const KrGeTol& tol) const {
  if (count() != other.count()) return false;
  for (int i = 0; i < count(); ++i)
    if (!segment(i).isEqualTo(other.segment(i), tol)) return false;
  return true;
}

KrEnt3dImpl& KrCompositeCurve3dImpl::transformBy(const KrGeMatrix3d& matrix) {
  KrsArray<int> first;
  krFirstPositions(mCurveList, first);
  for (int i = 0; i < count(); ++i)
    if (first[i] == i) segment(i).transformBy(matrix);
  setInterval();
  return *this;
}

// The chain runs backwards: last segment first, each segment reversed in itself.
KrGeCurve3dImpl& KrCompositeCurve3dImpl::reverseParam() {
  const int n = count();
  for (int i = 0, j = n - 1; i < j; ++i, --j) {
    void* const curve = mCurveList[i];
    mCurveList[i] = mCurveList[j];
    mCurveList[j] = curve;
    const bool owned = mOwned[i];
    mOwned[i] = mOwned[j];
    mOwned[j] = owned;
  }
  KrsArray<int> first;
  krFirstPositions(mCurveList, first);
  for (int i = 0; i < n; ++i) {
    if (first[i] == i) {
      segment(i).reverseParam();
    } else if (mOwned[i]) {  // the union of flags moves to the new first position
      mOwned[first[i]] = true;
      mOwned[i] = false;
    }
  }
  setInterval();
  return *this;
}

void KrCompositeCurve3dImpl::getInterval(KrGeInterval& range) const { range = mInterval; }

bool KrCompositeCurve3dImpl::setInterval(const KrGeInterval& range) {
  if (!range.isBounded() || !(range.lowerBound() <= range.upperBound())) return false;
  mInterval = range;
  return true;
}

KrGeCurve3dImpl& KrCompositeCurve3dImpl::setInterval() {
  refreshLengths();
  return *this;
}

// Unbounded segments keep their place in the mapping (as the largest double) but add nothing to
// the stored interval.
void KrCompositeCurve3dImpl::refreshLengths() {
  bool unbounded = false;
  const double total = mLengths.rebuild(mCurveList, KrGeContext::gTol.equalPoint(), unbounded);
  KRS_CHECK_TEXT_AT(!unbounded, "(!curveInterval.isBounded())", kSource, 196);
  mInterval.set(0.0, total);
}

bool KrCompositeCurve3dImpl::isPeriodic(double& period) const {
  period = 0.0;
  return false;
}
