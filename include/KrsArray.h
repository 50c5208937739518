// Growable array of the library's interface: raw heap storage moved with realloc, elements
// constructed in place, so TYPE must be bitwise relocatable (plain values and pointers).
//
// Contract violations are assertions from source "KrsTempl" (once per check site, only while
// the module's assertion state is on); the operation then does the safe thing (returns without
// change). An index outside [0, size) yields the recognisable bad address 0xFDFD2006 instead of
// an element address. A new block that cannot be allocated reports "E_CHECK_OUT_OF_MEMORY" and
// throws KrsException(0x8007000E); a growth whose reallocation fails throws the same exception
// without a report and leaves the existing block and elements exactly as they were.
//
// The template is compiled into each module that uses it; its checks and the switches
// "JumpArrOnAdd", "JumpArrOnRemove" and "DefecateMem" are those that module captured at load.
//
// Sizes, indices and counts are ints: a negative one is reported and ignored, and a request
// whose end would pass INT_MAX is ignored (nothing is allocated for it). Within the int range
// the only limit is memory, met as the exception above: it is the one exception of the library,
// and every operation of the interface that grows an array says so in its contract.
#pragma once

#include "KrGeLExport.h"
#include "KrsDiagnostics.h"
#include "KrsException.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

// Scalars travel by value, class types by reference: KrsArray<double> is KrsArray<double, double>
// and KrsArray<KrGePoint3d> is KrsArray<KrGePoint3d, KrGePoint3d&>.
template <class TYPE>
struct KrsDefaultArgType {
  using type = std::conditional_t<std::is_scalar<TYPE>::value, TYPE, TYPE&>;
};

// True when `bytes` bytes from `block` can be read, as far as the platform can tell.
KRGEL_API bool KrsIsReadableMemory(const void* block, std::size_t bytes);

namespace KrsArrayDetail {
constexpr std::uintptr_t kInvalidAddress = 0xFDFD2006u;
constexpr unsigned char kFreedByte = 0xFC;
constexpr int kMaxStepBytes = 1048576;

// Readability probe of the element routines. A null block of nonzero size is always refused;
// in assertion mode the platform's own test runs as well (on Windows it walks the address space
// for committed, readable, non-guard pages; POSIX has no such test and accepts any other block).
inline bool isReadable(const void* block, std::size_t bytes) {
  return bytes == 0 || (block != nullptr && (!KrsModule::assertOn || KrsIsReadableMemory(block, bytes)));
}
inline bool defecateMem() { return (KrsModule::arraySwitches & kKrsDefecateMem) != 0; }

// A reference-typed ARG_TYPE is taken as a const reference, so temporaries can be stored.
template <class ARG_TYPE>
using In = std::conditional_t<std::is_reference<ARG_TYPE>::value,
                              const std::remove_reference_t<ARG_TYPE>&, ARG_TYPE>;
}  // namespace KrsArrayDetail

// Element routines: construct zero-fills and default-constructs, destruct runs destructors and
// then (DefecateMem) fills with 0xFC, copy assigns element by element.
template <class TYPE>
inline void KrsConstructElements(TYPE* pElements, int nCount) {
  KRS_FAIL_IF_AT(nCount<0, "KrsTempl", __LINE__);
  if (nCount <= 0) return;
  KRS_CHECK_TEXT_AT(KrsArrayDetail::isReadable(pElements, nCount * sizeof(TYPE)),
                    "((!IsBadReadPtr((const void*)(pElements), nCount * sizeof(TYPE))))", "KrsTempl", __LINE__);
  std::memset(static_cast<void*>(pElements), 0, static_cast<std::size_t>(nCount) * sizeof(TYPE));
  for (int i = 0; i < nCount; ++i) ::new (static_cast<void*>(pElements + i)) TYPE;
}

template <class TYPE>
inline void KrsDestructElements(TYPE* pElements, int nCount) {
  KRS_FAIL_IF_AT(nCount<0, "KrsTempl", __LINE__);
  if (nCount <= 0) return;
  KRS_CHECK_TEXT_AT(nCount == 0 || KrsArrayDetail::isReadable(pElements, nCount * sizeof(TYPE)),
                    "(nCount == 0 || (!IsBadReadPtr((const void*)(pElements), nCount * sizeof(TYPE))))", "KrsTempl",
                    __LINE__);
  try {
    for (int i = 0; i < nCount; ++i) pElements[i].~TYPE();
  } catch (...) {
    KRS_REPORT_ONCE_AT("(\"FATAL in KrsDestructElements\")", "KrsTempl", __LINE__);
  }
  if (KrsArrayDetail::defecateMem())
    std::memset(static_cast<void*>(pElements), KrsArrayDetail::kFreedByte, static_cast<std::size_t>(nCount) * sizeof(TYPE));
}

template <class TYPE>
inline void KrsCopyElements(TYPE* pDest, const TYPE* pSrc, int nCount) {
  KRS_FAIL_IF_AT(nCount<0, "KrsTempl", __LINE__);
  if (nCount <= 0) return;
  KRS_CHECK_TEXT_AT(KrsArrayDetail::isReadable(pSrc, nCount * sizeof(TYPE)),
                    "((!IsBadReadPtr((const void*)(pSrc), nCount * sizeof(TYPE))))", "KrsTempl", __LINE__);
  KRS_CHECK_TEXT_AT(KrsArrayDetail::isReadable(pDest, nCount * sizeof(TYPE)),
                    "((!IsBadReadPtr((const void*)(pDest), nCount * sizeof(TYPE))))", "KrsTempl", __LINE__);
  for (int i = 0; i < nCount; ++i) pDest[i] = pSrc[i];
}

template <class TYPE, class ARG_TYPE = typename KrsDefaultArgType<TYPE>::type>
class KrsArray {
  static_assert(std::is_nothrow_destructible<TYPE>::value, "elements are destroyed in raw storage");
  using In = KrsArrayDetail::In<ARG_TYPE>;

public:
  KrsArray() = default;
  // Copies are deep (the source's grow-by step is kept).
  KrsArray(const KrsArray& other) : m_nGrowBy(other.m_nGrowBy) { Copy(other); }
  KrsArray& operator=(const KrsArray& other) {
    if (this != &other) Copy(other);
    return *this;
  }
  ~KrsArray() {
    if (m_pData) {
      KrsDestructElements(m_pData, m_nSize);
      std::free(m_pData);
    }
  }

  int GetSize() const { return m_nSize; }
  int GetCount() const { return m_nSize; }
  int GetUpperBound() const { return m_nSize - 1; }
  bool IsEmpty() const { return m_nSize == 0; }
  int GetMaxSize() const { return m_nMaxSize; }
  int GetGrowBy() const { return m_nGrowBy; }
  TYPE* GetData() { return m_pData; }
  const TYPE* GetData() const { return m_pData; }

  // Element access; an index outside [0, size) asserts "(nIndex >= 0 && nIndex < m_nSize)" and
  // yields the address 0xFDFD2006.
  KRS_NO_SANITIZE_ALIGNMENT TYPE& ElementAt(int nIndex) {
    KRS_ASSERT_AT(nIndex >= 0 && nIndex < m_nSize, "KrsTempl", __LINE__);
    if (nIndex < 0 || nIndex >= m_nSize) return *reinterpret_cast<TYPE*>(KrsArrayDetail::kInvalidAddress);
    return m_pData[nIndex];
  }
  KRS_NO_SANITIZE_ALIGNMENT const TYPE& GetAt(int nIndex) const {
    KRS_ASSERT_AT(nIndex >= 0 && nIndex < m_nSize, "KrsTempl", __LINE__);
    if (nIndex < 0 || nIndex >= m_nSize) return *reinterpret_cast<const TYPE*>(KrsArrayDetail::kInvalidAddress);
    return m_pData[nIndex];
  }
  TYPE& operator[](int nIndex) { return ElementAt(nIndex); }
  const TYPE& operator[](int nIndex) const { return GetAt(nIndex); }
  // First and last element; on an empty array they assert "(m_nSize<=0)" and yield 0xFDFD2006.
  KRS_NO_SANITIZE_ALIGNMENT const TYPE& GetFirst() const {
    KRS_FAIL_IF_AT(m_nSize<=0, "KrsTempl", __LINE__);
    return m_nSize <= 0 ? *reinterpret_cast<const TYPE*>(KrsArrayDetail::kInvalidAddress) : m_pData[0];
  }
  KRS_NO_SANITIZE_ALIGNMENT const TYPE& GetLast() const {
    KRS_FAIL_IF_AT(m_nSize<=0, "KrsTempl", __LINE__);
    return m_nSize <= 0 ? *reinterpret_cast<const TYPE*>(KrsArrayDetail::kInvalidAddress) : m_pData[m_nSize - 1];
  }

  // Assigns element `nIndex`, which must exist (asserts the index like ElementAt).
  void SetAt(int nIndex, In newElement) {
    KRS_ASSERT_AT(nIndex >= 0 && nIndex < m_nSize, "KrsTempl", __LINE__);
    if (nIndex >= 0 && nIndex < m_nSize) m_pData[nIndex] = newElement;
  }

  // Resizes to nNewSize live elements. Growth without a fixed step adds half the current size,
  // at least 10 elements and at most one megabyte of elements; capacity only shrinks at size 0.
  void SetSize(int nNewSize, int nGrowBy = -1);
  void RemoveAll() { SetSize(0, -1); }
  // Reallocates to exactly nNewMax places; surplus elements beyond it are destroyed.
  void SetCapacity(int nNewMax);
  void FreeExtra() { SetCapacity(m_nSize); }

  // Stores `newElement` at nIndex, growing the array when nIndex is at or past its end.
  void SetAtGrow(int nIndex, In newElement);
  // One-element append (SetAtGrow at the end); answers the index of the new element.
  int Add(In newElement) {
    const int index = m_nSize;
    // Room left and no self-insert to report: construct in place, as SetSize then assignment
    // would. A by-value argument can never lie inside the storage.
    if (index < m_nMaxSize && (!std::is_reference<ARG_TYPE>::value || !owns(&newElement))) {
      ::new (static_cast<void*>(m_pData + index)) TYPE(newElement);
      m_nSize = index + 1;
    } else {
      SetAtGrow(index, newElement);
    }
    return index;
  }
  // Inserts nCount copies of `newElement` at nIndex, shifting the tail up.
  void InsertAt(int nIndex, In newElement, int nCount = 1);
  // Removes nCount elements from nIndex; nothing happens when the range does not fit.
  void RemoveAt(int nIndex, int nCount = 1);
  // Appends the elements; answers the index of the first appended element (0 for no elements).
  int Append(const KrsArray& src) { return Append(src.m_pData, src.m_nSize); }
  int Append(const TYPE* pArr, int nCount);
  // Makes this array a copy of `src` (grow-by step unchanged).
  void Copy(const KrsArray& src);

private:
  bool owns(const void* p) const {
    const auto* byte = static_cast<const unsigned char*>(p);
    const auto* begin = reinterpret_cast<const unsigned char*>(m_pData);
    return m_pData && byte >= begin && byte < begin + static_cast<std::size_t>(m_nMaxSize) * sizeof(TYPE);
  }
  // Moves the live elements to a fresh block of the same capacity and answers the old block,
  // which the caller frees (null when nothing moved).
  [[nodiscard]] TYPE* relocate();
  static TYPE* allocate(int nCount) {
    void* block = std::malloc(static_cast<std::size_t>(nCount) * sizeof(TYPE));
    if (block && KrsArrayDetail::defecateMem())
      std::memset(block, KrsArrayDetail::kFreedByte, static_cast<std::size_t>(nCount) * sizeof(TYPE));
    return static_cast<TYPE*>(block);
  }

  TYPE* m_pData = nullptr;
  int m_nSize = 0;
  int m_nMaxSize = 0;
  int m_nGrowBy = 0;
};

// Moving the contents to a fresh block makes stale element pointers show up while debugging.
// The old block stays allocated until the caller has finished its own reallocation, so that the
// allocator cannot hand the same address back: every growth really moves. A failed allocation
// keeps the present block.
template <class TYPE, class ARG_TYPE>
TYPE* KrsArray<TYPE, ARG_TYPE>::relocate() {
  KRS_ASSERT_AT(m_nMaxSize>=m_nSize, "KrsTempl", __LINE__);
  if (m_nMaxSize < m_nSize || m_nSize == 0) return nullptr;
  TYPE* fresh = allocate(m_nMaxSize);
  if (!fresh) return nullptr;
  KrsConstructElements(fresh, m_nSize);
  KrsCopyElements(fresh, m_pData, m_nSize);
  KrsDestructElements(m_pData, m_nSize);
  TYPE* old = m_pData;
  m_pData = fresh;
  return old;
}

template <class TYPE, class ARG_TYPE>
void KrsArray<TYPE, ARG_TYPE>::SetSize(int nNewSize, int nGrowBy) {
  KRS_ASSERT_AT(nNewSize >= 0, "KrsTempl", __LINE__);
  if (nNewSize < 0) return;
  if (nGrowBy != -1) m_nGrowBy = nGrowBy;
  TYPE* moved = nullptr;
  if ((KrsModule::arraySwitches & kKrsJumpArrOnAdd) && nNewSize > m_nMaxSize) moved = relocate();
  // Frees the block left behind by the relocation on every way out, the exception included.
  struct FreeLater {
    TYPE* block;
    ~FreeLater() { std::free(block); }
  } freeLater{moved};

  if (nNewSize == 0) {
    if (m_pData) {
      KrsDestructElements(m_pData, m_nSize);
      std::free(m_pData);
      m_pData = nullptr;
    }
    m_nMaxSize = 0;
  } else if (!m_pData) {
    const int capacity = nNewSize > m_nGrowBy ? nNewSize : m_nGrowBy;
    TYPE* block = allocate(capacity);
    if (!block) KrsThrowOutOfMemory("KrsTempl", __LINE__);
    m_pData = block;
    KrsConstructElements(m_pData, nNewSize);
    m_nMaxSize = capacity;
  } else if (nNewSize <= m_nMaxSize) {
    if (nNewSize > m_nSize)
      KrsConstructElements(m_pData + m_nSize, nNewSize - m_nSize);
    else if (m_nSize > nNewSize)
      KrsDestructElements(m_pData + nNewSize, m_nSize - nNewSize);
  } else {
    long long step = m_nGrowBy;
    if (step == 0) {
      constexpr long long kMaxStep = KrsArrayDetail::kMaxStepBytes / sizeof(TYPE);
      step = m_nSize / 2;
      if (step < 10) step = 10;
      if (step > kMaxStep) step = kMaxStep;
    }
    // The step is taken in wide arithmetic and the capacity capped at the int range, so the new
    // capacity can never wrap below the present one.
    long long wideMax = static_cast<long long>(m_nMaxSize) + step;
    if (wideMax > INT_MAX) wideMax = INT_MAX;
    const int nNewMax = nNewSize > wideMax ? nNewSize : static_cast<int>(wideMax);
    KRS_ASSERT_AT(nNewMax >= m_nMaxSize, "KrsTempl", __LINE__);
    if (nNewMax < m_nMaxSize) return;
    void* grown = std::realloc(m_pData, static_cast<std::size_t>(nNewMax) * sizeof(TYPE));
    if (!grown) throw KrsException(KrsException::kOutOfMemory);  // old block untouched
    m_pData = static_cast<TYPE*>(grown);
    if (KrsArrayDetail::defecateMem())
      std::memset(static_cast<void*>(m_pData + m_nSize), KrsArrayDetail::kFreedByte,
                  static_cast<std::size_t>(nNewMax - m_nSize) * sizeof(TYPE));
    KRS_ASSERT_AT(nNewSize > m_nSize, "KrsTempl", __LINE__);
    KrsConstructElements(m_pData + m_nSize, nNewSize - m_nSize);
    m_nMaxSize = nNewMax;
  }
  m_nSize = nNewSize;
}

template <class TYPE, class ARG_TYPE>
void KrsArray<TYPE, ARG_TYPE>::SetCapacity(int nNewMax) {
  KRS_ASSERT_AT(nNewMax >= 0, "KrsTempl", __LINE__);
  if (nNewMax < 0 || nNewMax == m_nMaxSize) return;
  if (nNewMax == 0) {
    SetSize(0, -1);
    return;
  }
  if (m_nSize > nNewMax) {
    KrsDestructElements(m_pData + nNewMax, m_nSize - nNewMax);
    m_nSize = nNewMax;
  }
  TYPE* block = allocate(nNewMax);
  if (!block) KrsThrowOutOfMemory("KrsTempl", __LINE__);
  if (m_nSize > 0) std::memcpy(static_cast<void*>(block), m_pData, static_cast<std::size_t>(m_nSize) * sizeof(TYPE));
  std::free(m_pData);
  m_pData = block;
  m_nMaxSize = nNewMax;
}

template <class TYPE, class ARG_TYPE>
void KrsArray<TYPE, ARG_TYPE>::SetAtGrow(int nIndex, In newElement) {
  KRS_ASSERT_AT(nIndex >= 0, "KrsTempl", __LINE__);
  if (nIndex < 0 || nIndex == INT_MAX) return;  // the size it needs, nIndex + 1, is beyond an int
  if (nIndex >= m_nSize) {
    if (m_nSize > 0 && owns(&newElement)) {
      KrsReportSelfInsert("KrsArray::SetAtGrow --- Self-insert, can cause problems !", "KrsTempl", __LINE__);
      const TYPE copy = newElement;
      SetSize(nIndex + 1, -1);
      if (nIndex < m_nSize) m_pData[nIndex] = copy;
      return;
    }
    SetSize(nIndex + 1, -1);
    if (nIndex >= m_nSize) return;
  }
  m_pData[nIndex] = newElement;
}

template <class TYPE, class ARG_TYPE>
void KrsArray<TYPE, ARG_TYPE>::InsertAt(int nIndex, In newElement, int nCount) {
  KRS_ASSERT_AT(nIndex >= 0, "KrsTempl", __LINE__);
  KRS_ASSERT_AT(nCount > 0, "KrsTempl", __LINE__);
  if (nIndex < 0 || nCount <= 0) return;
  if (static_cast<long long>(nIndex > m_nSize ? nIndex : m_nSize) + nCount > INT_MAX) return;
  const TYPE value = newElement;  // the source may move or be overwritten by the shift below
  if (owns(&newElement))
    KrsReportSelfInsert("KrsArray::InsertAt --- Self-insert, can cause problems !", "KrsTempl", __LINE__);
  if (nIndex >= m_nSize) {
    SetSize(nIndex + nCount, -1);
    if (m_nSize != nIndex + nCount) return;
  } else {
    const int nOldSize = m_nSize;
    SetSize(m_nSize + nCount, -1);
    if (m_nSize != nOldSize + nCount) return;
    KrsDestructElements(m_pData + nOldSize, nCount);
    std::memmove(static_cast<void*>(m_pData + nIndex + nCount), m_pData + nIndex,
                 static_cast<std::size_t>(nOldSize - nIndex) * sizeof(TYPE));
    KrsConstructElements(m_pData + nIndex, nCount);
  }
  for (int i = 0; i < nCount; ++i) m_pData[nIndex + i] = value;
}

template <class TYPE, class ARG_TYPE>
void KrsArray<TYPE, ARG_TYPE>::RemoveAt(int nIndex, int nCount) {
  KRS_ASSERT_AT(nIndex >= 0, "KrsTempl", __LINE__);
  KRS_ASSERT_AT(nCount >= 0, "KrsTempl", __LINE__);
  const bool fits = static_cast<long long>(nIndex) + nCount <= m_nSize;
  KRS_CHECK_TEXT_AT(fits, "(nIndex + nCount <= m_nSize)", "KrsTempl", __LINE__);
  if (nIndex < 0 || nCount < 0 || !fits || nCount == 0) return;
  if (KrsModule::arraySwitches & kKrsJumpArrOnRemove) std::free(relocate());
  const int nMoveCount = m_nSize - (nIndex + nCount);
  KrsDestructElements(m_pData + nIndex, nCount);
  if (nMoveCount > 0)
    std::memmove(static_cast<void*>(m_pData + nIndex), m_pData + nIndex + nCount,
                 static_cast<std::size_t>(nMoveCount) * sizeof(TYPE));
  if (KrsArrayDetail::defecateMem())  // the vacated tail holds stale copies: mark it freed too
    std::memset(static_cast<void*>(m_pData + m_nSize - nCount), KrsArrayDetail::kFreedByte,
                static_cast<std::size_t>(nCount) * sizeof(TYPE));
  m_nSize -= nCount;
}

template <class TYPE, class ARG_TYPE>
int KrsArray<TYPE, ARG_TYPE>::Append(const TYPE* pArr, int nCount) {
  KRS_FAIL_IF_AT(nCount<0, "KrsTempl", __LINE__);
  if (nCount <= 0) return 0;
  const bool unreadable = !KrsArrayDetail::isReadable(pArr, sizeof(*pArr) * nCount);
  KRS_CHECK_TEXT_AT(!unreadable, "((IsBadReadPtr((const void*)(pArr), sizeof(*pArr)*nCount)))", "KrsTempl", __LINE__);
  if (unreadable) return 0;
  const int nOldSize = m_nSize;
  if (static_cast<long long>(nOldSize) + nCount > INT_MAX) return nOldSize;
  // A source inside this array survives the growth at the same index, not the same address.
  const bool selfAppend = owns(pArr);
  const std::ptrdiff_t offset = selfAppend ? pArr - m_pData : 0;
  if (selfAppend)
    KrsReportSelfInsert("KrsArray::Append --- Self-append, can cause problems !", "KrsTempl", __LINE__);
  SetSize(nOldSize + nCount, -1);
  if (m_nSize != nOldSize + nCount) return nOldSize;
  KrsCopyElements(m_pData + nOldSize, selfAppend ? m_pData + offset : pArr, nCount);
  return nOldSize;
}

template <class TYPE, class ARG_TYPE>
void KrsArray<TYPE, ARG_TYPE>::Copy(const KrsArray& src) {
  if (this == &src) return;
  SetSize(src.m_nSize, -1);
  if (m_nSize == src.m_nSize) KrsCopyElements(m_pData, src.m_pData, src.m_nSize);
}
