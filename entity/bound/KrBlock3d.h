// The solid of a bounding block, as a plain value: either an axis-aligned box held by its two
// corners, or a parallelepiped held by a base point and three direction vectors, or empty.
//
// The parallelepiped is the set base + s1*dir1 + s2*dir2 + s3*dir3 with every si in [0, 1]; its
// directions may be of zero length (a flat block, a segment, a point). The box is the same set
// with base = minimum corner and diri = (extent along axis i) * axis i, but it keeps its two
// corners exactly so that a point it was extended by stays exactly on it at any magnitude.
//
// Queries take a model-space tolerance: a point is contained when it lies within it of every
// face plane (a box: of every slab). Data with a NaN coordinate contains nothing and is
// disjoint from everything.
#pragma once

#include "KrGeMatrix3d.h"
#include "KrGePoint3d.h"
#include "KrGeTol.h"
#include "KrGeVector3d.h"

class KrBlock3d {
public:
  // Empty.
  KrBlock3d() = default;

  bool isEmpty() const { return m_isEmpty; }
  bool isBox() const { return m_isBox; }

  // Nothing inside; a box again.
  void setEmpty();
  // The axis-aligned box spanned by two opposite corners, in any order.
  void setBox(const KrGePoint3d& corner1, const KrGePoint3d& corner2);
  // The parallelepiped of base and three directions, stored as given.
  void setParallelepiped(const KrGePoint3d& base, const KrGeVector3d& dir1, const KrGeVector3d& dir2,
                         const KrGeVector3d& dir3);

  // Base and directions (a box: its minimum corner and its three axis-aligned edges). Empty:
  // the origin and three zero vectors.
  void get(KrGePoint3d& base, KrGeVector3d& dir1, KrGeVector3d& dir2, KrGeVector3d& dir3) const;
  // Corners of the axis-aligned box around the block. Empty: the inverted pair
  // (+DBL_MAX, +DBL_MAX, +DBL_MAX), (-DBL_MAX, -DBL_MAX, -DBL_MAX).
  void getMinMax(KrGePoint3d& minPoint, KrGePoint3d& maxPoint) const;

  // true: replaced by its axis-aligned box (may grow). false: the same solid held as a
  // parallelepiped. Empty stays empty either way.
  void setToBox(bool toBox);

  // Smallest growth of the block, in its own directions, that takes the point in: a box grows
  // its corners; a parallelepiped widens the parameter ranges of its directions. Empty becomes
  // the point. A point with a NaN or infinite coordinate is ignored.
  void extend(const KrGePoint3d& point);
  // Moves every face outward by `distance` measured along its normal (inward when negative); a
  // pair of faces that would cross collapses onto its middle plane. Zero-length directions are
  // thickened along the normals of the others. Non-finite distances and empty blocks are left.
  void swell(double distance);

  bool contains(const KrGePoint3d& point, double tolerance) const;
  // No point of one is within `tolerance` of the other (a separating axis exists with a gap
  // larger than the tolerance). Symmetric. Empty blocks are disjoint from everything.
  bool isDisjoint(const KrBlock3d& other, double tolerance) const;

  // A box stays a box under maps that send each axis onto an axis (scalings, axis swaps,
  // mirrors in coordinate planes, translations); under other maps it becomes the parallelepiped
  // image, so that a transformation followed by its inverse gives the block back.
  void transformBy(const KrGeMatrix3d& matrix);

  // Same kind, bases (or corners) within equalPoint, directions within equalVector; two empty
  // blocks are equal.
  bool isEqualTo(const KrBlock3d& other, const KrGeTol& tol) const;

private:
  // Frame of a parallelepiped for growth: three independent vectors f with parameter ranges
  // [lo, hi] such that the solid is base + sum of si*fi, si in [loi, hii]. Zero directions are
  // completed with unit vectors of range [0, 0]. False when non-zero directions are linearly
  // dependent (only singular maps produce those).
  bool growthFrame(KrGeVector3d frame[3], double lo[3], double hi[3]) const;
  void setFromFrame(const KrGeVector3d frame[3], const double lo[3], const double hi[3]);
  // Parallelepiped generators and centre of either kind of non-empty block.
  void generators(KrGeVector3d dirs[3], KrGePoint3d& centre) const;
  bool isFinite() const;

  KrGePoint3d m_base;       // box: minimum corner
  KrGePoint3d m_max;        // box only: maximum corner
  KrGeVector3d m_dir[3];    // parallelepiped only
  bool m_isBox = true;
  bool m_isEmpty = true;
};
