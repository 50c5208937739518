// The default arbitrary-axis rule of KrGeContext::gOrthoVector (library-internal), so that
// callers can recognise it and take an inlined path when the host has not replaced it.
#pragma once

class KrGeVector3d;

namespace krge {
void defaultOrthoVector(const KrGeVector3d& input, KrGeVector3d& output);
// Strict bound of the rule: a unit direction within 1/64 of the Z axis in both x and y is
// crossed with Y instead of Z.
constexpr double kArbitraryAxisBound = 1.0 / 64.0;
}  // namespace krge
