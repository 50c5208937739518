// The knot sequence of a spline: a growable array of doubles, normally non-decreasing, and a knot
// tolerance (default 1e-9, unrelated to the interval tolerance 1e-12). Storage never merges
// knots; the multiplicity queries count knots within the tolerance ("<=") as one knot of higher
// multiplicity. Order is not enforced: only insert() chooses a position that keeps it.
//
// An index outside [0, length()) reports an assertion and reads as 0.0. The operations marked
// "not implemented" report "(((HRESULT)0x80004001L))" once per process and return a neutral value.
// Hostile input: a range whose count does not fit an int is reported by the array's range checks
// and ignored; a multiplicity (insertAt, the raising constructor, split) above 1024 is reported
// and nothing is added for it. Sizes are limited only by memory: an operation that grows the
// knots throws KrsException(kOutOfMemory) when the array cannot grow (the vector stays valid);
// nothing else throws.
#pragma once

#include "KrGeLExport.h"
#include "KrsArray.h"

class KrGeInterval;

class KRGEL_API KrGeKnotVector {
public:
  // Empty, tolerance 1e-9.
  KrGeKnotVector();
  // Empty, tolerance `tol`.
  explicit KrGeKnotVector(double tol);
  // `size` knots of value 0.0, grow-by step `growSize` (0 selects the array's automatic step).
  KrGeKnotVector(int size, int growSize, double tol = 1e-9);
  // `size` knots copied from `source` (a null source with size > 0 asserts and leaves zeros).
  KrGeKnotVector(int size, const double* source, double tol = 1e-9);
  explicit KrGeKnotVector(const KrsArray<double>& source, double tol = 1e-9);
  KrGeKnotVector(const KrGeKnotVector& source);
  // Every distinct knot of `source` with its multiplicity raised by `plusMult` (nothing added when
  // plusMult <= 0 or, reported as "(plusMult>kMaxMultiplicity)", above 1024). A group is a knot and the knots that follow it within the tolerance of it;
  // every member is replaced by the group's first value. The tolerance is copied from `source`.
  KrGeKnotVector(int plusMult, const KrGeKnotVector& source);
  virtual ~KrGeKnotVector();

  // Copies knots and tolerance; self-assignment does nothing.
  KrGeKnotVector& operator=(const KrGeKnotVector& source);
  // Copies the knots; the tolerance is kept.
  KrGeKnotVector& operator=(const KrsArray<double>& source);

  // Knot i. An invalid index asserts "(!isValid(i))" and the array's index check, then reads 0.0
  // (the writable form hands out a per-thread scratch value whose writes are discarded).
  double operator[](int i) const;
  double& operator[](int i);
  bool isValid(int i) const { return i >= 0 && i < m_knots.GetSize(); }

  // First / last knot (0.0 after the array's index assertion on an empty vector).
  double startParam() const;
  double endParam() const;
  int length() const { return m_knots.GetSize(); }
  int logicalLength() const { return m_knots.GetSize(); }
  bool isEmpty() const { return m_knots.GetSize() == 0; }
  // Allocated capacity / reallocate to exactly n places, dropping knots beyond n.
  int physicalLength() const { return m_knots.GetMaxSize(); }
  KrGeKnotVector& setPhysicalLength(int n);
  // Resize to n knots (new knots are 0.0); the grow-by step is kept.
  KrGeKnotVector& setLogicalLength(int n);
  // Keep the knots, set the grow-by step.
  KrGeKnotVector& setGrowLength(int growLength);
  // Not implemented: returns 0.
  int growLength() const;

  double tolerance() const { return m_tolerance; }
  KrGeKnotVector& setTolerance(double tol);

  // Resizes to `size` and copies `source`; `tol` is ignored and the tolerance stays as it was.
  KrGeKnotVector& set(int size, const double* source, double tol = 1e-9);
  // Adds the knot at the end; answers the new length.
  int append(double knot);
  // Not implemented: the vector is returned unchanged.
  KrGeKnotVector& append(KrGeKnotVector& tail, double knotRatio);
  // Inserts one copy before the first knot >= knot (at the end if none), no tolerance merging;
  // answers the index of the new knot.
  int insert(double knot);
  // Inserts `multiplicity` copies of `knot` at `index` (array insertion rules); above 1024 copies
  // it reports "(multiplicity>kMaxMultiplicity)" and inserts nothing.
  KrGeKnotVector& insertAt(int index, double knot, int multiplicity = 1);
  KrGeKnotVector& removeAt(int index);
  // Removes the knots startIndex..endIndex, both inclusive; a range that does not fit (also one
  // whose count overflows an int) is reported by the array and ignored.
  KrGeKnotVector& removeSubVector(int startIndex, int endIndex);

  // 0 for an invalid index; else 1 plus the neighbours on each side, taken outwards while they lie
  // within the tolerance of knot `index` itself (not of the previous neighbour).
  int multiplicityAt(int index) const;
  // Number of adjacent pairs farther apart than the tolerance (strictly); 0 below two knots.
  int numIntervals() const;
  // The first knot, then every knot farther than the tolerance (strictly) from the last one kept;
  // answers how many were written. `out` is emptied first.
  int getDistinctKnots(KrsArray<double>& out) const;
  // Whether x lies within the tolerance of a knot, by binary search on the sorted knots; false on
  // an empty vector (after the array's index assertion).
  bool isOn(double x) const;
  // x >= startParam() - tol, or else x <= endParam() - tol; false when empty. On a non-decreasing
  // vector this always answers true: it is not a range test.
  bool contains(double x) const;
  // The knots of the reparametrisation t -> -t: k'[j] = -k[length-1-j], in a freshly allocated
  // block of the same capacity.
  KrGeKnotVector& reverse();
  // Affine map sending the first knot to `lower` and the last to `upper`. Nothing changes when
  // upper <= lower (or either is NaN) or the vector is empty; equal end knots are not guarded.
  KrGeKnotVector& setRange(double lower, double upper);
  // Exact equality: same tolerance, same length, every knot bit-for-bit equal as a double.
  bool isEqualTo(const KrGeKnotVector& other) const;

  // Not implemented: returns 0 and leaves `interval` untouched.
  int getInterval(int order, double param, KrGeInterval& interval) const;
  // Reports itself as not implemented, then fills `head` with every knot farther than the
  // tolerance from `param` (on both sides, in order) plus `multLast` copies of `param`, and `tail`
  // with `multFirst` copies of `param` only (each above 1024 is reported and taken as 0). The
  // head is exactly what inserting its knots one by one with insert() would give, built in
  // O(n log n). A null output is skipped. Returns 0.
  int split(double param, KrGeKnotVector* head, int multLast, KrGeKnotVector* tail, int multFirst) const;

private:
  bool checkIndex(int i) const;  // the one report site of a bad index
  double knotAt(int i) const;

  KrsArray<double> m_knots;
  double m_tolerance;
};
