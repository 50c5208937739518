// Real roots of real polynomials. Coefficients come constant term first (c0, c1, ...); roots are
// written to `roots`, which is emptied first (keeping its allocated block), in the order found
// (not sorted). Problems are reported through the diagnostics channel and the output holds what
// was found. The solvers work on fixed storage; only the growth of `roots` can throw
// (KrsException(kOutOfMemory)), and it needs at most as many places as the degree.
#pragma once

#include "KrGeLExport.h"
#include "KrsArray.h"

// Distinct real roots of c4 x^4 + ... + c0 in closed form (Descartes-Euler resolvent, complex
// Cardano), answered as their count. Leading coefficients of magnitude <= 1e-10 are dropped first.
// A quartic is solved for x / s, s the power of two just above a bound on its root magnitudes, so
// that the resolvent's test of imaginary parts against 1e-6 is relative to the roots' size (exact
// scaling; without it roots symmetric about their mean are lost beyond a size of about 100).
// A quartic's roots are Newton-polished (at most 10 steps) and each one whose residual |p(x)|
// exceeds 1e-4 (or is not a number) still stays, with the warning "methodDecart fail". Cubic and
// quadratic roots are not polished. A linear polynomial yields no root and a constant the single
// root 0.0, whatever its value; degrees above 4 yield none. Roots within 1e-10 of an earlier one
// are removed, except that the value following a removed one is not compared again. Other than 5
// coefficients raise the E_FAIL assertion and the polynomial of degree size - 1 is solved.
KRGEL_API int methodDecart(const KrsArray<double>& coefficients, KrsArray<double>& roots);

// Real roots of the polynomial of degree size - 1 (no trimming, at most 64: a higher degree
// reports "(degree>kMaxDegree)" and yields no root) by Muller's iteration from 0, 1, 2
// with deflation, answered as their count; a pair of complex roots is removed without output.
// With removeMultiple the polynomial is first divided by gcd(p, p'), so each multiple root comes
// once. Roots are neither polished, sorted nor de-duplicated; a root whose residual on the input
// polynomial exceeds 0.01 (or is not a number) stays, with the warning "methodFindAllRoot fail".
KRGEL_API int methodFindAllRoot(const KrsArray<double>& coefficients, KrsArray<double>& roots,
                                bool removeMultiple);
