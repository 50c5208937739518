// An unbounded line of the plane: a point on it and a direction (not normalised).
#pragma once

#include "KrGeLExport.h"
#include "KrGePoint2d.h"
#include "KrGeVector2d.h"

// Only the shape needed by the 2D signatures: accessors and setters, no tolerance logic.
// Default: the X axis through the origin.
class KRGEL_API KrGeLine2d {
public:
  constexpr KrGeLine2d() noexcept : m_point(), m_direction(1.0, 0.0) {}
  constexpr KrGeLine2d(const KrGePoint2d& point, const KrGeVector2d& direction) noexcept
      : m_point(point), m_direction(direction) {}

  KrGePoint2d pointOnLine() const { return m_point; }
  // The direction as stored.
  KrGeVector2d direction() const { return m_direction; }
  KrGeLine2d& set(const KrGePoint2d& point, const KrGeVector2d& direction) {
    m_point = point; m_direction = direction; return *this;
  }
  KrGeLine2d& setPointOnLine(const KrGePoint2d& point) { m_point = point; return *this; }
  KrGeLine2d& setDirection(const KrGeVector2d& direction) { m_direction = direction; return *this; }

private:
  KrGePoint2d m_point;
  KrGeVector2d m_direction;
};
