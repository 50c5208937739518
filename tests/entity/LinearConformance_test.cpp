// The generic curve contract for lines and segments.
#include "testkit/CurveConformance.h"

namespace testkit {

template <>
struct CurveSamples<KrGeLine3d> {
  static std::vector<KrGeLine3d> make() {
    return {KrGeLine3d(KrGePoint3d(1, 2, 3), KrGeVector3d(0.3, -0.4, 0.5)),
            KrGeLine3d(KrGePoint3d(-4, 0.5, 2), KrGePoint3d(6, 1, -2)),
            KrGeLine3d(KrGePoint3d(1e3, -2e3, 5e2), KrGeVector3d(0, 0, 7))};
  }
};

// Plain, on another interval, reversed, and far out.
template <>
struct CurveSamples<KrGeLineSeg3d> {
  static std::vector<KrGeLineSeg3d> make() {
    KrGeLineSeg3d ranged(KrGePoint3d(0, 1, 0), KrGeVector3d(1, 1, 1)),
        reversed(KrGePoint3d(-1, -1, 2), KrGePoint3d(3, 5, 0));
    ranged.setInterval(KrGeInterval(-2.0, 0.5));
    reversed.reverseParam();
    return {KrGeLineSeg3d(KrGePoint3d(1, 2, 3), KrGePoint3d(4, -2, 7)), ranged, reversed,
            KrGeLineSeg3d(KrGePoint3d(1e4, 1e4, -1e4), KrGeVector3d(-3, 0.25, 8))};
  }
};

using LinearKinds = ::testing::Types<KrGeLine3d, KrGeLineSeg3d>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linear, CurveConformance, LinearKinds);

}  // namespace testkit
