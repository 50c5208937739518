#include "entity/spline/spline_neutral.h"

#include "KrsDiagnostics.h"

namespace {
constexpr const char* kSource = "krsent3d";
}

namespace krspline {

void notImplemented(int line) {
  // One check site per reporting line, each with its own once-only flag.
  switch (line) {
    case 12: KRS_NOT_IMPLEMENTED_AT(kSource, 12); break;
    case 18: KRS_NOT_IMPLEMENTED_AT(kSource, 18); break;
    case 24: KRS_NOT_IMPLEMENTED_AT(kSource, 24); break;
    case 30: KRS_NOT_IMPLEMENTED_AT(kSource, 30); break;
    case 36: KRS_NOT_IMPLEMENTED_AT(kSource, 36); break;
    case 43: KRS_NOT_IMPLEMENTED_AT(kSource, 43); break;
    case 49: KRS_NOT_IMPLEMENTED_AT(kSource, 49); break;
    case 55: KRS_NOT_IMPLEMENTED_AT(kSource, 55); break;
    case 61: KRS_NOT_IMPLEMENTED_AT(kSource, 61); break;
    case 67: KRS_NOT_IMPLEMENTED_AT(kSource, 67); break;
    case 73: KRS_NOT_IMPLEMENTED_AT(kSource, 73); break;
    case 79: KRS_NOT_IMPLEMENTED_AT(kSource, 79); break;
    case 85: KRS_NOT_IMPLEMENTED_AT(kSource, 85); break;
    case 91: KRS_NOT_IMPLEMENTED_AT(kSource, 91); break;
    case 97: KRS_NOT_IMPLEMENTED_AT(kSource, 97); break;
    case 103: KRS_NOT_IMPLEMENTED_AT(kSource, 103); break;
    case 109: KRS_NOT_IMPLEMENTED_AT(kSource, 109); break;
    default: break;
  }
}

const KrGeKnotVector& emptyKnots() {
  static const KrGeKnotVector empty(1e-9);
  return empty;
}

}  // namespace krspline
