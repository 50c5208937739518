// A bounding block: an axis-aligned box, or a parallelepiped spanned by a base point and three
// direction vectors, or empty. Curves return them from boundBlock() and orthoBoundBlock().
#pragma once

#include "KrGeEntity3d.h"

class KrBoundBlock3dImpl;

// The parallelepiped is the solid base + s1*dir1 + s2*dir2 + s3*dir3, every si in [0, 1];
// directions may be of zero length (a flat block, a segment, a point) and need not be
// orthogonal. A box is the same solid with axis-aligned directions, held by its two corners
// exactly. A default block is empty: it contains nothing, is disjoint from everything, and the
// first extend() makes it that point.
// Containment and disjointness are solid tests with a model-space slack of
// KrGeContext::gTol.equalPoint() ("<=" counts as inside), widened by a few ulps of the
// coordinates' magnitude for parallelepipeds so that rounding never drops a point that the block
// was extended by. A block with a NaN coordinate contains nothing and is disjoint from everything.
// isOn(point, tol) is the solid test with tol.equalPoint() as the slack. type() is
// kBoundBlock3d; isKindOf is true for kBoundBlock3d and kEntity3d only.
class KRGEL_API KrGeBoundBlock3d : public KrGeEntity3d {
public:
  // Empty.
  KrGeBoundBlock3d();
  KrGeBoundBlock3d(const KrGeBoundBlock3d& block);
  // The box spanned by two opposite corners, in any order.
  KrGeBoundBlock3d(const KrGePoint3d& point1, const KrGePoint3d& point2);
  // The parallelepiped of base and three directions, stored as given (isBox() false).
  KrGeBoundBlock3d(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2,
                   const KrGeVector3d& dir3);

  // Corners of the axis-aligned box around the block (its own corners for a box). An empty
  // block gives the inverted pair (+DBL_MAX, +DBL_MAX, +DBL_MAX) and (-DBL_MAX, -DBL_MAX, -DBL_MAX).
  void getMinMaxPoints(KrGePoint3d& point1, KrGePoint3d& point2) const;
  // Base and directions; a box gives its minimum corner and its three edges along X, Y and Z.
  // An empty block gives the origin and three zero vectors.
  void get(KrGePoint3d& base, KrGeVector3d& dir1, KrGeVector3d& dir2, KrGeVector3d& dir3) const;

  // The box spanned by two opposite corners.
  KrGeBoundBlock3d& set(const KrGePoint3d& point1, const KrGePoint3d& point2);
  // The parallelepiped of base and three directions, as given.
  KrGeBoundBlock3d& set(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2,
                        const KrGeVector3d& dir3);
  // Grows the block just enough to take the point in, along its own directions (a box moves its
  // corners; a parallelepiped widens the ranges of its directions, keeping them). An empty block
  // becomes the point. A point with a NaN or infinite coordinate is ignored. A parallelepiped
  // whose non-zero directions are linearly dependent (only singular maps make one) is first
  // replaced by its axis-aligned box.
  KrGeBoundBlock3d& extend(const KrGePoint3d& point);
  // Moves every face outward by `distance` along its normal (model units; inward when
  // negative). Faces that would cross meet at their middle plane, so the block never inverts.
  // A zero-length direction is thickened along the normal of the other two. Non-finite
  // distances and empty blocks change nothing.
  KrGeBoundBlock3d& swell(double distance);

  // The point lies in the solid within the slack described above.
  bool contains(const KrGePoint3d& point) const;
  // No common point within the slack: touching blocks are not disjoint. Symmetric; exact for
  // boxes and parallelepipeds alike (separating-axis test).
  bool isDisjoint(const KrGeBoundBlock3d& block) const;

  // Deep copy; self-assignment does nothing.
  KrGeBoundBlock3d& operator=(const KrGeBoundBlock3d& block);

  bool isBox() const;
  // true: replaced by its axis-aligned box (which may be larger). false: the same solid held as a
  // parallelepiped. An empty block stays empty.
  KrGeBoundBlock3d& setToBox(bool toBox);
  // Nothing inside (the default state).
  bool isEmpty() const;

private:
  KrBoundBlock3dImpl* impl() const;
};
