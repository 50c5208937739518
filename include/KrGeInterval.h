// A parameter range on the real line: two bounds, each present or absent (absent = open towards
// minus or plus infinity on that side), and a tolerance of its own that widens containment and
// equality tests. A polymorphic value type: it owns no memory, and every operation that uses
// another operation calls it through the virtual table, so an override changes both.
//
// Nothing keeps lower <= upper; an inverted interval is representable (only the three-value
// constructor warns). An absent bound keeps the value last stored in it (0.0 after set() or the
// one-sided constructor); operator== and subtract() read those stored values on purpose.
#pragma once

#include "KrGeLExport.h"

#include <type_traits>

class KRGEL_API KrGeInterval {
  // Enables the integer forwarding overloads: an integral, non-bool lower bound.
  template <class Lower, class Upper>
  using IntegerBounds = std::enable_if_t<std::is_integral<Lower>::value && !std::is_same<Lower, bool>::value &&
                                             std::is_arithmetic<Upper>::value,
                                         int>;

public:
  // Unbounded on both sides, both stored bounds 0.0, tolerance 1e-12.
  KrGeInterval();
  // Unbounded on both sides, both stored bounds 0.0, tolerance `tol`. Explicit so that a lone
  // double never turns into an interval by accident.
  explicit KrGeInterval(double tol);
  // Copy made through operator=.
  KrGeInterval(const KrGeInterval& source);
  // [lower, upper] with both flags set. The values are stored unchanged; when upper < lower - tol
  // (strict) the warning "KrGeInterval: lower-tol>upper - some functions may fail" is sent and the
  // inverted interval is kept.
  KrGeInterval(double lower, double upper, double tol = 1e-12);
  // The same from an integer lower bound, so that KrGeInterval(0, 1) means [0, 1] and is not
  // ambiguous with the one-sided form (which takes a bool first).
  template <class Lower, class Upper, IntegerBounds<Lower, Upper> = 0>
  KrGeInterval(Lower lower, Upper upper, double tol = 1e-12)
      : KrGeInterval(static_cast<double>(lower), static_cast<double>(upper), tol) {}
  // One-sided: [bound, +inf) when boundedBelow, else (-inf, bound]. The absent side stores 0.0.
  KrGeInterval(bool boundedBelow, double bound, double tol = 1e-12);

  virtual ~KrGeInterval();

  // Copies tolerance, both stored bounds and both flags; self-assignment does nothing.
  virtual KrGeInterval& operator=(const KrGeInterval& source);

  // The lower bound, or -1.7976931348623157e308 (-DBL_MAX) when unbounded below.
  virtual double lowerBound() const;
  // The upper bound, or 1.7976931348623157e308 (DBL_MAX) when unbounded above.
  virtual double upperBound() const;
  // A representative value: the upper bound if present, else the lower bound, else 0.0.
  virtual double element() const;
  // Writes lowerBound() and upperBound().
  virtual void getBounds(double& lower, double& upper) const;
  // |upper - lower| when isBounded() (positive also for an inverted interval), else DBL_MAX.
  virtual double length() const;
  virtual double tolerance() const;

  // Clears both flags and stores 0.0 in both bounds; the tolerance is kept.
  virtual KrGeInterval& set();
  // set(), then setLower(bound) when boundedBelow, else setUpper(bound).
  virtual KrGeInterval& set(bool boundedBelow, double bound);
  // setLower(lower), then setUpper(upper); no ordering check and no warning.
  virtual KrGeInterval& set(double lower, double upper);
  // set(lower, upper) for an integer lower bound (not a virtual slot; it calls the one above).
  template <class Lower, class Upper, IntegerBounds<Lower, Upper> = 0>
  KrGeInterval& set(Lower lower, Upper upper) {
    return set(static_cast<double>(lower), static_cast<double>(upper));
  }
  // Store the bound and set its flag.
  virtual KrGeInterval& setUpper(double upper);
  virtual KrGeInterval& setLower(double lower);
  // Changes the tolerance only.
  virtual KrGeInterval& setTolerance(double tol);

  // Hull of the two intervals into `result` (whose tolerance is untouched): a side open in either
  // interval stays open. No overlap is required.
  virtual void getMerge(const KrGeInterval& other, KrGeInterval& result) const;
  // Pieces of this interval left after removing `other`; answers how many were written (0, 1 or
  // 2; a single piece always goes to leftPiece). Bounds are compared strictly, without tolerance,
  // and the pieces get tolerance 1e-12. A piece is not clipped against this interval's far end:
  // [0, 10] minus [20, 30] is the single piece [0, 20]. The right piece is tested with this
  // interval's bounded-below flag against its stored upper bound, even when that bound is absent.
  virtual int subtract(const KrGeInterval& other, KrGeInterval& leftPiece, KrGeInterval& rightPiece) const;
  // Writes the common part to `result` (its own tolerance kept): the smaller upper and the larger
  // lower bound (this interval's on a tie), an open side where both are open. Answers false when
  // the ends are apart by more than the two tolerances; the result, then possibly inverted, is
  // written anyway.
  virtual bool intersectWith(const KrGeInterval& other, KrGeInterval& result) const;

  // Both sides bounded.
  virtual bool isBounded() const;
  virtual bool isBoundedAbove() const;
  virtual bool isBoundedBelow() const;
  // !isBounded(): true as soon as one side is open.
  virtual bool isUnBounded() const;
  // isBounded() and length() < tolerance() (strict).
  virtual bool isSingleton() const;
  // False when either interval is unbounded on both sides or when an end of one lies in the other
  // (within the containing interval's tolerance); true otherwise.
  virtual bool isDisjoint(const KrGeInterval& other) const;
  // x lies within [lower - tol, upper + tol] on the sides that exist ("<=" counts as within).
  virtual bool contains(double x) const;
  // Both ends of `other` inside this one when this one is bounded (this tolerance). A half-open
  // interval checks only its one existing side, with the larger of the two tolerances; an
  // interval unbounded on both sides contains everything.
  virtual bool contains(const KrGeInterval& other) const;
  // This interval ends where `other` begins: |upper - other.lower| <= this tolerance.
  virtual bool isContinuousAtUpper(const KrGeInterval& other) const;
  // This interval's upper part overlaps the start of `other` without `other` swallowing this
  // interval's start, and neither is a singleton; the overlap [other.lower, upper] goes to
  // `overlap` (its tolerance kept).
  virtual bool isOverlapAtUpper(const KrGeInterval& other, KrGeInterval& overlap) const;
  // Flags equal and both stored bounds within the fixed 1e-10 (not the intervals' tolerances,
  // which are not compared); stored values of absent bounds take part.
  virtual bool operator==(const KrGeInterval& other) const;
  virtual bool operator!=(const KrGeInterval& other) const;
  // Bounded above and |upper - x| <= tolerance.
  virtual bool isEqualAtUpper(double x) const;
  // Both open above, or both bounded above within the larger tolerance.
  virtual bool isEqualAtUpper(const KrGeInterval& other) const;
  // Bounded below and |lower - x| <= tolerance.
  virtual bool isEqualAtLower(double x) const;
  // Both open below, or both bounded below within the larger tolerance.
  virtual bool isEqualAtLower(const KrGeInterval& other) const;
  // Moves `param` by the largest whole number k of periods such that param + k*period <=
  // upper + tol, and answers whether it then lies within [lower - tol, upper + tol]. `param` is
  // written also when false is answered. An interval open on a side answers true, param
  // unchanged. The period must be positive: zero is not guarded and leaves param NaN.
  virtual bool isPeriodicallyOn(double period, double& param) const;

private:
  double m_lower;
  double m_upper;
  double m_tol;
  bool m_boundedBelow;
  bool m_boundedAbove;
};
