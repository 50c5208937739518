// Affine transformation of 3D space stored as a 4x4 row-major matrix.
#pragma once

#include "KrGeContext.h"
#include "KrGeLExport.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

class KrGeLine3d;
class KrGePlane;

// Points and vectors are column vectors multiplied from the right: columns 0, 1, 2 of the 3x3
// block are the images of the X, Y, Z axes and column 3 (rows 0 to 2) is the translation. The
// fourth row is stored and copied but never read by products with points or vectors (no
// homogeneous division). Plain data: 16 doubles, trivially copyable, never allocates. Products
// go through a temporary, so the result may alias an operand.
class KRGEL_API KrGeMatrix3d {
public:
  static const KrGeMatrix3d kIdentity;

  // The identity.
  constexpr KrGeMatrix3d() noexcept
      : entry{{1.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0}, {0.0, 0.0, 0.0, 1.0}} {}

  // Entry (row, column); an index above 3 stands for 3 (no check, no report).
  double operator()(unsigned row, unsigned column) const { return entry[clamp(row)][clamp(column)]; }
  double& operator()(unsigned row, unsigned column) { return entry[clamp(row)][clamp(column)]; }

  KrGeMatrix3d& setToIdentity();
  // Columns 0, 1, 2 := the axes as given (not normalised), column 3 := origin, fourth row :=
  // (0, 0, 0, 1).
  KrGeMatrix3d& setCoordSystem(const KrGePoint3d& origin, const KrGeVector3d& xAxis,
                               const KrGeVector3d& yAxis, const KrGeVector3d& zAxis);
  void getCoordSystem(KrGePoint3d& origin, KrGeVector3d& xAxis, KrGeVector3d& yAxis,
                      KrGeVector3d& zAxis) const;
  // (entry[0][3], entry[1][3], entry[2][3]).
  KrGeVector3d translation() const { return KrGeVector3d(entry[0][3], entry[1][3], entry[2][3]); }
  // Writes the translation column only.
  KrGeMatrix3d& setTranslation(const KrGeVector3d& v) {
    entry[0][3] = v.x; entry[1][3] = v.y; entry[2][3] = v.z; return *this;
  }
  KrGeMatrix3d& setToTranslation(const KrGeVector3d& v);
  // s on the first three diagonal entries, translation centre - s * centre.
  KrGeMatrix3d& setToScaling(double scaleFactor, const KrGePoint3d& center = KrGePoint3d::kOrigin);

  // this := a * b, the full 4x4 product.
  KrGeMatrix3d& setToProduct(const KrGeMatrix3d& a, const KrGeMatrix3d& b);
  KrGeMatrix3d operator*(const KrGeMatrix3d& b) const { KrGeMatrix3d r; r.setToProduct(*this, b); return r; }
  KrGeMatrix3d& operator*=(const KrGeMatrix3d& b) { return setToProduct(*this, b); }
  // this := this * b.
  KrGeMatrix3d& postMultBy(const KrGeMatrix3d& b) { return setToProduct(*this, b); }
  // this := a * this.
  KrGeMatrix3d& preMultBy(const KrGeMatrix3d& a) { return setToProduct(a, *this); }
  // Full 4x4 transpose, as a copy or in place.
  KrGeMatrix3d transpose() const;
  KrGeMatrix3d& transposeIt();

  // Image of a point: 3x3 block times p plus the translation.
  KrGePoint3d operator*(const KrGePoint3d& p) const {
    return KrGePoint3d(entry[0][0] * p.x + entry[0][1] * p.y + entry[0][2] * p.z + entry[0][3],
                       entry[1][0] * p.x + entry[1][1] * p.y + entry[1][2] * p.z + entry[1][3],
                       entry[2][0] * p.x + entry[2][1] * p.y + entry[2][2] * p.z + entry[2][3]);
  }
  // Image of a vector: 3x3 block only.
  KrGeVector3d operator*(const KrGeVector3d& v) const {
    return KrGeVector3d(entry[0][0] * v.x + entry[0][1] * v.y + entry[0][2] * v.z,
                        entry[1][0] * v.x + entry[1][1] * v.y + entry[1][2] * v.z,
                        entry[2][0] * v.x + entry[2][1] * v.y + entry[2][2] * v.z);
  }

  // Each of the four columns (rows 0 to 2) compared as vectors: distance <= equalVector, the
  // translation column included; the fourth row is not compared.
  bool isEqualTo(const KrGeMatrix3d& m, const KrGeTol& tol = KrGeContext::gTol) const;
  bool operator==(const KrGeMatrix3d& m) const { return isEqualTo(m, KrGeContext::gTol); }
  bool operator!=(const KrGeMatrix3d& m) const { return !isEqualTo(m, KrGeContext::gTol); }

  // Determinant of the 3x3 block.
  double det() const;
  // Largest absolute entry of the 3x3 block (0 for a zero block).
  double norm() const;
  // Largest length of the three axis columns.
  double scale() const;
  // True when an axis column is of zero length or two columns are parallel (0-1, 1-2, 2-0).
  // Pairwise on purpose, not a determinant test: three distinct coplanar axes are not singular.
  bool isSingular(const KrGeTol& tol = KrGeContext::gTol) const;
  // Every axis column strictly longer than equalVector and the columns pairwise perpendicular
  // (KrGeVector3d::isPerpendicularTo, a cosine test).
  bool isScaledOrtho(const KrGeTol& tol = KrGeContext::gTol) const;
  // As isScaledOrtho, and the column lengths equal within equalVector as absolute differences
  // (|lx - ly| <= e and |lx - lz| <= e; not relative to the lengths).
  bool isUniScaledOrtho(const KrGeTol& tol = KrGeContext::gTol) const;

  // Writes rows 0 to 2 of result with the inverse affine map: adjugate of the 3x3 block over
  // det(), translation -adjugate * translation divided by det() once (on integer entries each
  // translation entry is the correctly rounded quotient). No pivoting and no singularity test:
  // tol is ignored, the answer is always true, a singular block gives infinities or NaNs. The
  // fourth row of result is not written.
  bool inverse(KrGeMatrix3d& result, const KrGeTol& tol) const;
  // Copy of this matrix (its fourth row kept) with rows 0 to 2 inverted as above.
  KrGeMatrix3d inverse() const;
  KrGeMatrix3d& invert();

  // Frame with Z = normal.normal(gTol), X = Z.perpVector() (gOrthoVector), Y = Z x X, origin 0.
  KrGeMatrix3d& setToPlaneToWorld(const KrGeVector3d& normal);
  // Frame with the plane's origin, its two in-plane axes and its normal as Z.
  KrGeMatrix3d& setToPlaneToWorld(const KrGePlane& plane);
  // The matching setToPlaneToWorld followed by invert().
  KrGeMatrix3d& setToWorldToPlane(const KrGeVector3d& normal);
  KrGeMatrix3d& setToWorldToPlane(const KrGePlane& plane);
  // Rotation by angle radians, counterclockwise seen from the tip of axis, about the line
  // through center along axis. A zero-length axis (gTol) gives the identity. Built by
  // conjugating a rotation about Z into the frame setToPlaneToWorld(axis) translated to center
  // (a unit +Z axis skips the frame); a non-unit axis is normalised by that frame.
  KrGeMatrix3d& setToRotation(double angle, const KrGeVector3d& axis,
                              const KrGePoint3d& center = KrGePoint3d::kOrigin);
  // Reflection through a point (central symmetry).
  KrGeMatrix3d& setToMirroring(const KrGePoint3d& point);
  // Reflection in a plane: planeToWorld(plane) * diag(1, 1, -1) * worldToPlane(plane).
  KrGeMatrix3d& setToMirroring(const KrGePlane& plane);
  // Half turn (pi) about the line: setToRotation(pi, line.direction(), line.pointOnLine()).
  KrGeMatrix3d& setToMirroring(const KrGeLine3d& line);
  // F(to) * F(from).inverse(), F being the setCoordSystem matrix of a frame: maps the from
  // frame onto the to frame.
  KrGeMatrix3d& setToAlignCoordSys(const KrGePoint3d& fromOrigin, const KrGeVector3d& fromXAxis,
                                   const KrGeVector3d& fromYAxis, const KrGeVector3d& fromZAxis,
                                   const KrGePoint3d& toOrigin, const KrGeVector3d& toXAxis,
                                   const KrGeVector3d& toYAxis, const KrGeVector3d& toZAxis);
  // Parallel projection along direction onto the plane a*x + b*y + c*z + d = 0 (the plane's
  // coefficients). Rows 0 to 2 are written, the fourth row is left as it was. A direction
  // parallel to the plane (a*dx + b*dy + c*dz = 0) is not tested and gives infinities.
  KrGeMatrix3d& setToProjection(const KrGePlane& plane, const KrGeVector3d& direction);

  // Factories: the identity followed by the matching setTo... operation.
  static KrGeMatrix3d translation(const KrGeVector3d& v);
  static KrGeMatrix3d scaling(double scaleFactor, const KrGePoint3d& center = KrGePoint3d::kOrigin);
  static KrGeMatrix3d rotation(double angle, const KrGeVector3d& axis,
                               const KrGePoint3d& center = KrGePoint3d::kOrigin);
  static KrGeMatrix3d projection(const KrGePlane& plane, const KrGeVector3d& direction);
  static KrGeMatrix3d mirroring(const KrGePoint3d& point);
  static KrGeMatrix3d mirroring(const KrGePlane& plane);
  static KrGeMatrix3d mirroring(const KrGeLine3d& line);
  static KrGeMatrix3d planeToWorld(const KrGeVector3d& normal);
  static KrGeMatrix3d planeToWorld(const KrGePlane& plane);
  static KrGeMatrix3d worldToPlane(const KrGeVector3d& normal);
  static KrGeMatrix3d worldToPlane(const KrGePlane& plane);
  static KrGeMatrix3d alignCoordSys(const KrGePoint3d& fromOrigin, const KrGeVector3d& fromXAxis,
                                    const KrGeVector3d& fromYAxis, const KrGeVector3d& fromZAxis,
                                    const KrGePoint3d& toOrigin, const KrGeVector3d& toXAxis,
                                    const KrGeVector3d& toYAxis, const KrGeVector3d& toZAxis);

  double entry[4][4];

private:
  static constexpr unsigned clamp(unsigned index) { return index < 3 ? index : 3; }
};

// Matrix products of points and vectors, declared with their classes and defined here, where the
// matrix is complete: inline, so that a host's transformation loop makes no call.
inline KrGePoint3d& KrGePoint3d::setToProduct(const KrGeMatrix3d& matrix, const KrGePoint3d& point) {
  return *this = matrix * point;
}
inline KrGePoint3d& KrGePoint3d::transformBy(const KrGeMatrix3d& matrix) { return *this = matrix * *this; }
inline KrGeVector3d& KrGeVector3d::setToProduct(const KrGeMatrix3d& matrix, const KrGeVector3d& vector) {
  return *this = matrix * vector;
}
inline KrGeVector3d& KrGeVector3d::transformBy(const KrGeMatrix3d& matrix) { return *this = matrix * *this; }
