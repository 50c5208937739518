// Tolerance of geometric comparisons: a distance for points and a length for vectors.
#pragma once

#include "KrGeLExport.h"

// equalPoint: two points at most this far apart are the same point.
// equalVector: a vector at most this long is of zero length; two unit directions whose
// difference is at most this long are the same direction. Every test counts "<=" as within.
// A default tolerance holds 1e-9 in both (ten times coarser than the library default
// KrGeContext::gTol). Trivially copyable; copying copies both fields.
class KRGEL_API KrGeTol {
public:
  constexpr KrGeTol() noexcept : m_equalPoint(1e-9), m_equalVector(1e-9) {}

  double equalPoint() const { return m_equalPoint; }
  double equalVector() const { return m_equalVector; }

  // Stores value when value >= 0; a negative or NaN value stores 0 (silently; the previous
  // value is not kept).
  void setEqualPoint(double value) { m_equalPoint = value >= 0.0 ? value : 0.0; }
  void setEqualVector(double value) { m_equalVector = value >= 0.0 ? value : 0.0; }

private:
  double m_equalPoint;
  double m_equalVector;
};
