// Decodes fuzzer bytes into the inputs a hostile host would pass: doubles drawn from the values
// that break geometry code (NaN, infinities, DBL_MAX, subnormals, signed zeros, values at the
// tolerances) or taken raw from eight bytes, ints from the limits of int and of the library
// (INT_MIN, INT_MAX, 46341, 257, 2^20 + 1) or raw, and points and vectors built from those,
// coincident and colinear ones included. An exhausted input reads as zeros, so every decode is
// total and every run ends.
#pragma once

#include <cfloat>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "KrGeL.h"

namespace fuzz {

class Input {
public:
  Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

  bool more() const { return m_used < m_size; }
  std::uint8_t byte() { return m_used < m_size ? m_data[m_used++] : 0; }
  template <class T>
  T raw() {
    T value{};
    unsigned char bytes[sizeof(T)] = {};
    for (unsigned char& b : bytes) b = byte();
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

  double real() {
    static const double kSpecial[] = {
        0.0, -0.0, 1.0, -1.0, 0.5, 2.0, 3.0, -7.0, 1e-9, 1e-10, 2e-10, 1e-12, 1e8, -1e8, 1e-300, 1e300,
        DBL_MAX, -DBL_MAX, DBL_MIN, std::numeric_limits<double>::denorm_min(), DBL_EPSILON,
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN(), 3.141592653589793, 6.283185307179586, 1e12, 46341.0};
    const std::uint8_t selector = byte();
    if (selector < 128) return kSpecial[selector % (sizeof kSpecial / sizeof kSpecial[0])];
    if (selector < 192) return static_cast<double>(static_cast<std::int8_t>(byte()));
    return raw<double>();
  }

  int integer() {
    static const int kSpecial[] = {0, 1, 2, -1, 3, 4, 5, 7, INT_MIN, INT_MAX, INT_MAX - 1, INT_MIN + 1,
                                   46340, 46341, 256, 257, 1 << 20, (1 << 20) + 1, 65536, -2};
    const std::uint8_t selector = byte();
    if (selector < 160) return kSpecial[selector % (sizeof kSpecial / sizeof kSpecial[0])];
    if (selector < 224) return static_cast<std::int8_t>(byte());
    return raw<int>();
  }

  // A storage size: as integer(), but sizes that could be allocated are kept below 4096, so that
  // inputs stay fast; the sizes at the int limits, which must be refused, come as they are.
  int length() {
    const int n = integer();
    return n > 4096 && n < INT_MAX - 1 ? n % 4096 : n;
  }

  // A derivative order: as integer(), but only the first few orders of an input may reach the
  // library's cap of 2^20 (each costs a cap-sized array); later ones are kept below 4096.
  int order() {
    const int n = integer();
    if (n <= 4096 || n >= INT_MAX - 1) return n;
    return m_hugeOrders++ < 4 ? n : n % 4096;
  }

  bool flag() { return (byte() & 1) != 0; }
  unsigned below(unsigned bound) { return bound ? byte() % bound : 0; }

  KrGePoint3d point() {
    // One in four points lies on the coordinate axes or is the origin: coincidences and colinear
    // triples come up often.
    if (below(4) == 0) {
      KrGePoint3d p;
      p[below(3)] = real();
      return p;
    }
    const double x = real(), y = real();
    return KrGePoint3d(x, y, real());
  }
  KrGeVector3d vector() { return point().asVector(); }
  KrGePoint2d point2d() {
    const double x = real();
    return KrGePoint2d(x, real());
  }
  KrGeVector2d vector2d() { return point2d().asVector(); }
  KrGeTol tol() {
    KrGeTol tol;
    tol.setEqualPoint(real());
    tol.setEqualVector(real());
    return tol;
  }
  KrGeInterval interval() {
    switch (below(4)) {
      case 0: return KrGeInterval(real());
      case 1: {
        const bool boundedBelow = flag();
        const double bound = real();
        return KrGeInterval(boundedBelow, bound, real());
      }
      default: {
        const double lower = real(), upper = real();
        return KrGeInterval(lower, upper, real());
      }
    }
  }
  KrGeMatrix3d matrix() {
    KrGeMatrix3d m;
    const unsigned entries = below(13);
    for (unsigned k = 0; k < entries; ++k) {
      const unsigned row = below(3), column = below(4);
      m(row, column) = real();
    }
    return m;
  }

private:
  const std::uint8_t* m_data;
  std::size_t m_size;
  std::size_t m_used = 0;
  int m_hugeOrders = 0;
};

// Results are kept, so that no computation is optimised away.
inline volatile double g_sink;
inline void keep(double value) { g_sink = value; }
inline void keep(const KrGePoint3d& p) { keep(p.x + p.y + p.z); }
inline void keep(const KrGeVector3d& v) { keep(v.x + v.y + v.z); }

// Runs an operation whose contract allows the one exception of the library (a KrsArray that
// cannot get memory); any other escape is a finding.
template <class Operation>
void mayRunOutOfMemory(Operation operation) {
  try {
    operation();
  } catch (const KrsException& error) {
    if (error.code() != KrsException::kOutOfMemory) std::abort();
  }
}

}  // namespace fuzz

// Allocations beyond 64 MiB fail (as on a host that is out of memory) instead of being made, so
// the fuzzer meets the out-of-memory contract rather than the machine's limits.
#define KRGEL_FUZZ_SANITIZER_OPTIONS                                                          \
  extern "C" const char* __asan_default_options() {                                         \
    return "allocator_may_return_null=1:max_allocation_size_mb=64:detect_leaks=1";           \
  }                                                                                          \
  extern "C" const char* __ubsan_default_options() { return "halt_on_error=1:print_stacktrace=1"; }

// The entry point of a target: a fresh State per input and at most 128 steps, each decoded by
// step(Input&, State&) from the bytes that are left.
#define KRGEL_FUZZ_STEPS(State, step)                                                        \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {        \
    fuzz::Input in(data, size);                                                               \
    State state;                                                                              \
    for (int steps = 0; in.more() && steps < 128; ++steps) step(in, state);                   \
    return 0;                                                                                 \
  }
