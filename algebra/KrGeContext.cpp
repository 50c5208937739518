#include "support/KrsLibraryLoad.h"

#include "KrGeContext.h"
#include "KrGeVector3d.h"
#include "algebra/ortho_vector.h"

namespace {
void doNothing() {}
}  // namespace

// Arbitrary-axis rule: cross the direction with world Z, unless it lies within 1/64 of Z in
// both x and y (then Z x n would be short and ill-conditioned), in which case cross world Y
// with it. The 1/64 threshold is strict: |n.x| = 1/64 exactly takes the Z branch.
void krge::defaultOrthoVector(const KrGeVector3d& input, KrGeVector3d& output) {
  const KrGeVector3d n = input.normal(KrGeContext::gTol);
  if (std::fabs(n.x) < kArbitraryAxisBound && std::fabs(n.y) < kArbitraryAxisBound)
    output.set(n.z, 0.0, -n.x);
  else
    output.set(-n.y, n.x, 0.0);
  output.normalize(KrGeContext::gTol);
}

// Constant-initialised, so valid even before the load hook runs; the hook then sets the
// library defaults.
KrGeTol KrGeContext::gTol;
void (*KrGeContext::gErrorFunc)() = doNothing;
void (*KrGeContext::gOrthoVector)(const KrGeVector3d&, KrGeVector3d&) = krge::defaultOrthoVector;

void KrGeInitContext() {
  KrGeContext::gOrthoVector = krge::defaultOrthoVector;
  KrGeContext::gTol.setEqualPoint(1e-10);
  KrGeContext::gErrorFunc = doNothing;
  KrGeContext::gTol.setEqualVector(1e-10);
}
