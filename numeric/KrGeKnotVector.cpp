#include "KrGeKnotVector.h"

#include "KrGeInterval.h"
#include "KrsDiagnostics.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

// Most copies of one knot that a single call adds. A spline never needs more copies of a knot
// than its order, and orders stay far below this; a larger count is a bad argument.
constexpr int kMaxMultiplicity = 1024;

// Index of the first knot >= value, scanning from the start (knots that compare false with it,
// NaN, are passed over); the length when there is none.
int firstAtOrAbove(const KrsArray<double>& knots, double value) {
  const int count = knots.GetSize();
  const double* data = knots.GetData();
  int index = 0;
  while (index < count && !(data[index] >= value)) ++index;
  return index;
}

// Writes to `out` (empty) the order that inserting `arrivals` one by one with insert() leaves,
// in O(n log n) rather than the O(n^2) of the insertions. insert() puts a value before the first
// knot >= it, passing over NaN knots, so the numbers end sorted, equal ones in reverse order of
// arrival (only -0.0 and 0.0 tell them apart); a NaN goes to the end, right after the knot that
// was last then (the first-arrived of the largest so far), and stays there, since every later
// number goes either before that knot or before a knot after the NaN; NaNs that came before any
// number lead.
void placeAsInserted(const KrsArray<double>& arrivals, KrsArray<double>& out) {
  const int count = arrivals.GetSize();
  const double* value = arrivals.GetData();
  KrsArray<int> numbers, anchor, nextNan;
  anchor.SetSize(count + 1);  // per arrival: its first anchored NaN, or -1; slot `count` leads
  nextNan.SetSize(count);
  int* first = anchor.GetData();
  int* next = nextNan.GetData();
  for (int i = 0; i <= count; ++i) first[i] = -1;
  KrsArray<int> lastNan;
  lastNan.SetSize(count + 1);
  int* last = lastNan.GetData();
  int largest = count;
  for (int i = 0; i < count; ++i) {
    next[i] = -1;
    if (std::isnan(value[i])) {
      (first[largest] < 0 ? first[largest] : next[last[largest]]) = i;
      last[largest] = i;
    } else {
      numbers.Add(i);
      if (largest == count || value[i] > value[largest]) largest = i;
    }
  }
  int* order = numbers.GetData();
  std::sort(order, order + numbers.GetSize(), [value](int a, int b) {
    return value[a] < value[b] || (!(value[b] < value[a]) && a > b);
  });
  out.SetSize(count);
  double* target = out.GetData();
  int placed = 0;
  for (int nan = first[count]; nan >= 0; nan = next[nan]) target[placed++] = value[nan];
  for (int k = 0; k < numbers.GetSize(); ++k) {
    target[placed++] = value[order[k]];
    for (int nan = first[order[k]]; nan >= 0; nan = next[nan]) target[placed++] = value[nan];
  }
}

}  // namespace

KrGeKnotVector::KrGeKnotVector() : m_tolerance(1e-9) {}

KrGeKnotVector::KrGeKnotVector(double tol) : m_tolerance(tol) {}

KrGeKnotVector::KrGeKnotVector(int size, int growSize, double tol) : m_tolerance(tol) {
  m_knots.SetSize(size, growSize);
}

KrGeKnotVector::KrGeKnotVector(int size, const double* source, double tol) : m_tolerance(tol) {
  set(size, source, tol);
}

KrGeKnotVector::KrGeKnotVector(const KrsArray<double>& source, double tol) : m_knots(source), m_tolerance(tol) {}

KrGeKnotVector::KrGeKnotVector(const KrGeKnotVector& source)
    : m_knots(source.m_knots), m_tolerance(source.m_tolerance) {}

KrGeKnotVector::KrGeKnotVector(int plusMult, const KrGeKnotVector& source) : m_tolerance(source.m_tolerance) {
  KRS_FAIL_IF(plusMult>kMaxMultiplicity);
  if (plusMult > kMaxMultiplicity) plusMult = 0;
  const int count = source.m_knots.GetSize();
  const double* knots = source.m_knots.GetData();
  int next = 0;
  while (next < count) {
    // The head always belongs to its own group (also a NaN head), so every pass advances.
    const double head = knots[next];
    m_knots.Add(head);
    ++next;
    while (next < count && std::fabs(knots[next] - head) <= m_tolerance) {
      m_knots.Add(head);
      ++next;
    }
    if (plusMult > 0) m_knots.InsertAt(m_knots.GetSize(), head, plusMult);
  }
}

KrGeKnotVector::~KrGeKnotVector() = default;

KrGeKnotVector& KrGeKnotVector::operator=(const KrGeKnotVector& source) {
  if (this != &source) {
    m_knots.RemoveAll();
    m_knots.Append(source.m_knots);
    m_tolerance = source.m_tolerance;
  }
  return *this;
}

KrGeKnotVector& KrGeKnotVector::operator=(const KrsArray<double>& source) {
  if (&source != &m_knots) {
    m_knots.RemoveAll();
    m_knots.Append(source);
  }
  return *this;
}

double KrGeKnotVector::knotAt(int i) const {
  if (isValid(i)) return m_knots.GetData()[i];
  // Let the array raise its own index assertion; the bad address it answers is never read.
  static_cast<void>(&m_knots.GetAt(i));
  return 0.0;
}

bool KrGeKnotVector::checkIndex(int i) const {
  KRS_FAIL_IF_AT(!isValid(i), "krkvec", 113);
  return isValid(i);
}

double KrGeKnotVector::operator[](int i) const {
  checkIndex(i);
  return knotAt(i);
}

double& KrGeKnotVector::operator[](int i) {
  if (checkIndex(i)) return m_knots.GetData()[i];
  static_cast<void>(&m_knots.ElementAt(i));
  thread_local double scratch = 0.0;
  scratch = 0.0;
  return scratch;
}

double KrGeKnotVector::startParam() const { return knotAt(0); }

double KrGeKnotVector::endParam() const { return knotAt(m_knots.GetSize() - 1); }

KrGeKnotVector& KrGeKnotVector::setPhysicalLength(int n) {
  m_knots.SetCapacity(n);
  return *this;
}

KrGeKnotVector& KrGeKnotVector::setLogicalLength(int n) {
  m_knots.SetSize(n);
  return *this;
}

KrGeKnotVector& KrGeKnotVector::setGrowLength(int growLength) {
  m_knots.SetSize(m_knots.GetSize(), growLength);
  return *this;
}

int KrGeKnotVector::growLength() const {
  KRS_NOT_IMPLEMENTED_AT("KnotVector", 352);
  return 0;
}

KrGeKnotVector& KrGeKnotVector::setTolerance(double tol) {
  m_tolerance = tol;
  return *this;
}

KrGeKnotVector& KrGeKnotVector::set(int size, const double* source, double /*tol: the tolerance is kept*/) {
  KRS_FAIL_IF(size > 0 && source == nullptr);
  m_knots.SetSize(size);
  if (source != nullptr && size > 0 && m_knots.GetSize() == size) KrsCopyElements(m_knots.GetData(), source, size);
  return *this;
}

int KrGeKnotVector::append(double knot) {
  m_knots.Add(knot);
  return m_knots.GetSize();
}

KrGeKnotVector& KrGeKnotVector::append(KrGeKnotVector& /*tail*/, double /*knotRatio*/) {
  KRS_NOT_IMPLEMENTED_AT("KnotVector", 260);
  return *this;
}

int KrGeKnotVector::insert(double knot) {
  const int index = firstAtOrAbove(m_knots, knot);
  m_knots.InsertAt(index, knot, 1);
  return index;
}

KrGeKnotVector& KrGeKnotVector::insertAt(int index, double knot, int multiplicity) {
  KRS_FAIL_IF(multiplicity>kMaxMultiplicity);
  if (multiplicity > kMaxMultiplicity) return *this;
  m_knots.InsertAt(index, knot, multiplicity);
  return *this;
}

KrGeKnotVector& KrGeKnotVector::removeAt(int index) {
  m_knots.RemoveAt(index, 1);
  return *this;
}

KrGeKnotVector& KrGeKnotVector::removeSubVector(int startIndex, int endIndex) {
  // The count is formed in wide arithmetic and clamped to the int range: indices near the int
  // limits must not wrap into a count that looks valid. A clamped count never fits, so the
  // array's own range checks report it and nothing is removed.
  const long long count = static_cast<long long>(endIndex) - startIndex + 1;
  m_knots.RemoveAt(startIndex, static_cast<int>(count > INT_MAX ? INT_MAX : count < INT_MIN ? INT_MIN : count));
  return *this;
}

int KrGeKnotVector::multiplicityAt(int index) const {
  if (!isValid(index)) return 0;
  const int count = m_knots.GetSize();
  const double* knots = m_knots.GetData();
  const double own = knots[index];
  int multiplicity = 1;
  for (int after = index + 1; after < count && std::fabs(own - knots[after]) <= m_tolerance; ++after) ++multiplicity;
  for (int before = index - 1; before >= 0 && std::fabs(own - knots[before]) <= m_tolerance; --before) ++multiplicity;
  return multiplicity;
}

int KrGeKnotVector::numIntervals() const {
  const int count = m_knots.GetSize();
  if (count < 2) return 0;
  const double* knots = m_knots.GetData();
  int intervals = 0;
  for (int i = 0; i + 1 < count; ++i)
    if (std::fabs(knots[i + 1] - knots[i]) > m_tolerance) ++intervals;
  return intervals;
}

int KrGeKnotVector::getDistinctKnots(KrsArray<double>& out) const {
  out.SetSize(0);
  const int count = m_knots.GetSize();
  if (count == 0) return 0;
  const double* knots = m_knots.GetData();
  double lastKept = knots[0];
  out.Add(lastKept);
  for (int i = 1; i < count; ++i) {
    if (std::fabs(knots[i] - lastKept) > m_tolerance) {
      lastKept = knots[i];
      out.Add(lastKept);
    }
  }
  return out.GetSize();
}

bool KrGeKnotVector::isOn(double x) const {
  const int count = m_knots.GetSize();
  if (count == 0) {
    static_cast<void>(knotAt(0));  // the array's index assertion, as for any read of knot 0
    return false;
  }
  const double* knots = m_knots.GetData();
  // Lower bound: the first index whose knot is >= x (count when there is none).
  int low = 0;
  int high = count;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (knots[middle] < x)
      low = middle + 1;
    else
      high = middle;
  }
  if (low == 0) return std::fabs(knots[0] - x) <= m_tolerance;
  if (low == count) return std::fabs(knots[count - 1] - x) <= m_tolerance;
  return std::fabs(knots[low - 1] - x) <= m_tolerance || std::fabs(knots[low] - x) <= m_tolerance;
}

bool KrGeKnotVector::contains(double x) const {
  if (m_knots.GetSize() == 0) return false;
  if (x >= startParam() - m_tolerance) return true;
  return x <= endParam() - m_tolerance;
}

KrGeKnotVector& KrGeKnotVector::reverse() {
  const int count = m_knots.GetSize();
  if (count == 0) return *this;
  const int capacity = m_knots.GetMaxSize();
  // A fresh block of the same capacity: stale pointers into the old knots show up at once.
  const KrsArray<double> old(m_knots);
  m_knots.SetSize(0);
  m_knots.SetCapacity(capacity);
  m_knots.SetSize(count);
  const double* source = old.GetData();
  double* target = m_knots.GetData();
  for (int j = 0; j < count; ++j) target[j] = -source[count - 1 - j];
  return *this;
}

KrGeKnotVector& KrGeKnotVector::setRange(double lower, double upper) {
  if (!(upper > lower)) return *this;
  const double& firstRef = m_knots.GetFirst();
  const double& lastRef = m_knots.GetLast();
  if (m_knots.GetSize() == 0) return *this;  // both references are the array's bad address then
  const double first = firstRef;
  const double last = lastRef;
  // k -> k*s + (lower - first*s) maps first to lower and last to upper.
  const double scale = (upper - lower) / (last - first);
  const double offset = lower - first * scale;
  double* knots = m_knots.GetData();
  for (int i = 0; i < m_knots.GetSize(); ++i) knots[i] = knots[i] * scale + offset;
  return *this;
}

bool KrGeKnotVector::isEqualTo(const KrGeKnotVector& other) const {
  if (m_tolerance != other.m_tolerance) return false;
  const int count = m_knots.GetSize();
  if (count != other.m_knots.GetSize()) return false;
  const double* mine = m_knots.GetData();
  const double* theirs = other.m_knots.GetData();
  for (int i = 0; i < count; ++i)
    if (mine[i] != theirs[i]) return false;
  return true;
}

int KrGeKnotVector::getInterval(int /*order*/, double /*param*/, KrGeInterval& /*interval*/) const {
  KRS_NOT_IMPLEMENTED_AT("KnotVector", 168);
  return 0;
}

int KrGeKnotVector::split(double param, KrGeKnotVector* head, int multLast, KrGeKnotVector* tail,
                          int multFirst) const {
  KRS_NOT_IMPLEMENTED_AT("KnotVector", 272);
  KRS_FAIL_IF(multLast>kMaxMultiplicity || multFirst>kMaxMultiplicity);
  if (multLast > kMaxMultiplicity) multLast = 0;
  if (multFirst > kMaxMultiplicity) multFirst = 0;
  // An output that is this vector would be emptied before it is read: work from a copy then.
  const bool aliased = head == this || tail == this;
  const KrGeKnotVector copy(aliased ? *this : KrGeKnotVector(m_tolerance));
  const KrGeKnotVector& source = aliased ? copy : *this;
  const int count = source.m_knots.GetSize();
  const double* knots = source.m_knots.GetData();
  const double tol = source.m_tolerance;

  if (head) head->removeSubVector(0, head->length() - 1);
  if (tail && tail != head) tail->removeSubVector(0, tail->length() - 1);

  // The head receives, one insert() at a time: the leading knots below `param`, multLast copies
  // of `param` (then multFirst more when the tail is the head itself), and every later knot
  // above `param`, each knot only when it lies farther than the tolerance from `param`.
  KrsArray<double> arrivals;
  int stop = 0;
  while (stop < count && knots[stop] < param && std::fabs(param - knots[stop]) > tol) arrivals.Add(knots[stop++]);
  if (multLast > 0) arrivals.InsertAt(arrivals.GetSize(), param, multLast);
  if (tail == head && multFirst > 0) arrivals.InsertAt(arrivals.GetSize(), param, multFirst);
  // Knots beyond `param` go to the head as well: it keeps every knot away from the split.
  for (int i = stop; i < count; ++i)
    if (knots[i] > param && std::fabs(param - knots[i]) > tol) arrivals.Add(knots[i]);
  if (head) placeAsInserted(arrivals, head->m_knots);
  if (tail && tail != head && multFirst > 0) tail->m_knots.InsertAt(0, param, multFirst);
  return 0;
}
