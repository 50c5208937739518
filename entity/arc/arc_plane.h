// Where a circular arc given as plain data meets a plane.
#pragma once

#include "entity/arc/arc_extent.h"
#include "entity/arc/arc_frame.h"

struct KrArcCrossings {
  // The heights above the plane over the arc's range, with where they are reached.
  KrArcExtent heights;
  // Every point of the arc lies within the tolerance of the plane: no points are listed.
  bool inPlane = false;
  // 0, 1 (a touching, or an end point resting on the plane) or 2, in increasing parameter.
  int count = 0;
  double params[2] = {0.0, 0.0};
  KrGePoint3d points[2];
};

// The points where the arc meets the plane through `origin` with unit normal `normal`, tol being
// a model-space distance ("<=" counts as within). The plane cuts the arc's plane in a line, met
// by the circle in closed form: two crossings when their chord is longer than tol, one touching
// point (the circle point nearest the line) when the chord is shorter or the circle passes within
// tol of the plane; only those within the sweep are kept (angle tolerance tol / radius). When
// none is, the end points within tol of the plane are listed instead, or else the arc's point
// nearest the plane when it is within tol. The crossing points lie on the circle, within rounding
// of the plane.
KrArcCrossings krArcPlaneCrossings(const KrArcFrame& arc, const KrGePoint3d& origin, const KrGeVector3d& normal,
                                   double tol);
