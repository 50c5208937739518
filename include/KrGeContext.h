// The process-wide defaults of the library: the tolerance used when none is passed and two
// replaceable callbacks. Unguarded globals: a host that changes them while other threads
// compute must serialise that itself.
#pragma once

#include "KrGeLExport.h"
#include "KrGeTol.h"

class KrGeVector3d;

struct KRGEL_API KrGeContext {
  // Default tolerance. Defined with KrGeTol's own 1e-9; the load step sets both fields to
  // 1e-10 before any caller runs, and a host may overwrite it at any time.
  static KrGeTol gTol;
  // Client callback of no arguments; the library never calls it. Default: does nothing.
  static void (*gErrorFunc)();
  // Writes a unit vector orthogonal to `input` into `output` (zero input gives zero output).
  // Default, the arbitrary-axis rule: n = input normalised; if |n.x| < 1/64 and |n.y| < 1/64
  // (strictly) the output is Y x n = (n.z, 0, -n.x), otherwise Z x n = (-n.y, n.x, 0); the
  // output is then normalised. KrGeVector3d::perpVector goes through this pointer.
  static void (*gOrthoVector)(const KrGeVector3d& input, KrGeVector3d& output);

  // Copies nothing: the members are static.
  KrGeContext& operator=(const KrGeContext&) { return *this; }
};
