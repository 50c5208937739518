// Affine transformation of the plane stored as a 3x3 row-major matrix.
#pragma once

#include "KrGeContext.h"
#include "KrGeLExport.h"
#include "KrGePoint2d.h"
#include "KrGeTol.h"
#include "KrGeVector2d.h"

class KrGeLine2d;

// Points are column vectors: image = 2x2 block times (x, y) plus the translation
// (entry[0][2], entry[1][2]); vectors ignore the translation; the third row is never read by
// these products. Plain data, trivially copyable; products go through a temporary.
class KRGEL_API KrGeMatrix2d {
public:
  static const KrGeMatrix2d kIdentity;

  // The identity.
  constexpr KrGeMatrix2d() noexcept : entry{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}} {}

  // Entry (row, column); an index above 2 stands for 2 (no check, no report).
  double operator()(unsigned row, unsigned column) const { return entry[clamp(row)][clamp(column)]; }
  double& operator()(unsigned row, unsigned column) { return entry[clamp(row)][clamp(column)]; }

  KrGeMatrix2d& setToIdentity();
  KrGeVector2d translation() const { return KrGeVector2d(entry[0][2], entry[1][2]); }
  KrGeMatrix2d& setTranslation(const KrGeVector2d& v) { entry[0][2] = v.x; entry[1][2] = v.y; return *this; }
  KrGeMatrix2d& setToTranslation(const KrGeVector2d& v);
  // Identity, then columns 0, 1 := the axes (as given), column 2 := origin.
  KrGeMatrix2d& setCoordSystem(const KrGePoint2d& origin, const KrGeVector2d& xAxis, const KrGeVector2d& yAxis);
  void getCoordSystem(KrGePoint2d& origin, KrGeVector2d& xAxis, KrGeVector2d& yAxis) const;
  // s on entries [0][0] and [1][1], translation centre - s * centre.
  KrGeMatrix2d& setToScaling(double scaleFactor, const KrGePoint2d& center = KrGePoint2d::kOrigin);

  // this := a * b, full 3x3 product.
  KrGeMatrix2d& setToProduct(const KrGeMatrix2d& a, const KrGeMatrix2d& b);
  KrGeMatrix2d operator*(const KrGeMatrix2d& b) const { KrGeMatrix2d r; r.setToProduct(*this, b); return r; }
  KrGeMatrix2d& operator*=(const KrGeMatrix2d& b) { return setToProduct(*this, b); }
  KrGeMatrix2d& preMultBy(const KrGeMatrix2d& a) { return setToProduct(a, *this); }
  KrGeMatrix2d& postMultBy(const KrGeMatrix2d& b) { return setToProduct(*this, b); }
  KrGeMatrix2d transpose() const;
  KrGeMatrix2d& transposeIt();

  KrGePoint2d operator*(const KrGePoint2d& p) const {
    return KrGePoint2d(entry[0][0] * p.x + entry[0][1] * p.y + entry[0][2],
                       entry[1][0] * p.x + entry[1][1] * p.y + entry[1][2]);
  }
  KrGeVector2d operator*(const KrGeVector2d& v) const {
    return KrGeVector2d(entry[0][0] * v.x + entry[0][1] * v.y, entry[1][0] * v.x + entry[1][1] * v.y);
  }

  // Each of the three columns (rows 0 and 1) compared with KrGeVector2d::isEqualTo.
  bool isEqualTo(const KrGeMatrix2d& m, const KrGeTol& tol = KrGeContext::gTol) const;
  bool operator==(const KrGeMatrix2d& m) const { return isEqualTo(m, KrGeContext::gTol); }
  bool operator!=(const KrGeMatrix2d& m) const { return !isEqualTo(m, KrGeContext::gTol); }

  // e00*e11 - e10*e01 (2x2 block).
  double det() const;
  // Larger of the two axis-column lengths.
  double scale() const;
  // Column 0 isParallelTo column 1 (so a column of length <= equalVector is singular too).
  bool isSingular(const KrGeTol& tol = KrGeContext::gTol) const;
  // Neither axis column isZeroLength and the two are perpendicular by the raw-dot test.
  bool isScaledOrtho(const KrGeTol& tol = KrGeContext::gTol) const;
  // isScaledOrtho and |length(x) - length(y)| <= equalVector.
  bool isUniScaledOrtho(const KrGeTol& tol = KrGeContext::gTol) const;
  // True for a similarity: columns perpendicular (raw dot, gTol) and of lengths within a fixed
  // 1e-10 (absolute) of each other. Then scaleFactor = length of column 0, angle = its direction
  // (acos(e00 / scale), negative when e10 < 0), isMirror = det() < 0 and, when mirrored,
  // reflexAxis = column 1 as it stands (not written otherwise). A zero scale answers false with
  // scaleFactor = angle = 0; failed earlier tests leave the outputs untouched.
  bool isConformal(double& scaleFactor, double& angle, bool& isMirror, KrGeVector2d& reflexAxis) const;

  // Starts from the identity; rows 0 and 1 hold the inverse affine map by the 2x2 adjugate over
  // det(). det = 0 is not tested (infinities or NaNs result).
  KrGeMatrix2d inverse() const;
  KrGeMatrix2d& invert();

  // Rotation by angle radians, counterclockwise about center.
  KrGeMatrix2d& setToRotation(double angle, const KrGePoint2d& center = KrGePoint2d::kOrigin);
  // Reflection through a point.
  KrGeMatrix2d& setToMirroring(const KrGePoint2d& point);
  // Not implemented: reports the not-implemented assertion (source Matrix2d, line 358) and,
  // once per process, the self-check notice (line 359); the result is the identity.
  KrGeMatrix2d& setToMirroring(const KrGeLine2d& line);
  // F(to) * F(from).inverse(), F being setCoordSystem of a frame.
  KrGeMatrix2d& setToAlignCoordSys(const KrGePoint2d& fromOrigin, const KrGeVector2d& fromXAxis,
                                   const KrGeVector2d& fromYAxis, const KrGePoint2d& toOrigin,
                                   const KrGeVector2d& toXAxis, const KrGeVector2d& toYAxis);

  // Factories: the identity followed by the matching setTo... operation.
  static KrGeMatrix2d translation(const KrGeVector2d& v);
  static KrGeMatrix2d scaling(double scaleFactor, const KrGePoint2d& center = KrGePoint2d::kOrigin);
  static KrGeMatrix2d rotation(double angle, const KrGePoint2d& center = KrGePoint2d::kOrigin);
  static KrGeMatrix2d mirroring(const KrGePoint2d& point);
  static KrGeMatrix2d mirroring(const KrGeLine2d& line);
  static KrGeMatrix2d alignCoordSys(const KrGePoint2d& fromOrigin, const KrGeVector2d& fromXAxis,
                                    const KrGeVector2d& fromYAxis, const KrGePoint2d& toOrigin,
                                    const KrGeVector2d& toXAxis, const KrGeVector2d& toYAxis);

  double entry[3][3];

private:
  static constexpr unsigned clamp(unsigned index) { return index < 2 ? index : 2; }
};
