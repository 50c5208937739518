// The infinite line: origin + t * direction for every real t.
#pragma once

#include "KrGeLinearEnt3d.h"

class KrLinearEnt3dImpl;

// type() is kLine3d; isKindOf is true for kLine3d, kLinearEnt3d, kCurve3d and kEntity3d. The
// interval is unbounded on both sides and stays so: setInterval(range) answers whether range
// is unbounded on both sides and never changes it. length() of the line is the largest finite
// double.
class KRGEL_API KrGeLine3d : public KrGeLinearEnt3d {
public:
  // The X, Y and Z axes: lines through the origin along the unit axes.
  static const KrGeLine3d kXAxis;
  static const KrGeLine3d kYAxis;
  static const KrGeLine3d kZAxis;

  // Through the origin along the X axis.
  KrGeLine3d();
  KrGeLine3d(const KrGeLine3d& line);
  // Through pnt with direction vec (stored unchanged; a zero vector is kept and gives a
  // degenerate line).
  KrGeLine3d(const KrGePoint3d& pnt, const KrGeVector3d& vec);
  // Through pnt1 (parameter 0) and pnt2 (parameter 1).
  KrGeLine3d(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2);

  using KrGeLinearEnt3d::operator=;
  KrGeLine3d& operator=(const KrGeLine3d& line);

  KrGeLine3d& set(const KrGePoint3d& pnt, const KrGeVector3d& vec);
  KrGeLine3d& set(const KrGePoint3d& pnt1, const KrGePoint3d& pnt2);

private:
  KrLinearEnt3dImpl* impl() const;
};
