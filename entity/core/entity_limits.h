// Limits on the counts and orders that hosts pass to entity operations. A request beyond them is
// a programming error: the operation reports it at its check site and answers a neutral value,
// so a hostile count can neither exhaust memory nor overflow the index arithmetic behind it.
#pragma once

namespace krge {

// Highest derivative order evaluated: numDeriv of a curve, the order of a point on a curve, and
// derivOrd of a surface (whose array then holds 256 * 259 / 2 = 33152 partial derivatives).
constexpr int kMaxDerivOrder = 256;
// Most points one sampling call produces (24 MiB of points).
constexpr int kMaxSampleCount = 1 << 20;

}  // namespace krge
