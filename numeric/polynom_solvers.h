// Root finders for single polynomials: closed forms up to degree four, a bounded Newton polish and
// Muller's iteration. Library-internal; the exported entry points are in KrGePolynomRoot.h.
#pragma once

#include "numeric/Complex.h"
#include "numeric/Polynom.h"

#include "KrsArray.h"

namespace PolynomRoot {

// Empties a result array but keeps its block, so that a caller solving in a loop does not pay an
// allocation per call.
inline void clearRoots(KrsArray<double>& roots) {
  if (roots.GetSize() > 0) roots.RemoveAt(0, roots.GetSize());
}

// Roots of c2 x^2 + c1 x + c0 in complex arithmetic, (-b + d)/(2a) then (-b - d)/(2a) with d the
// principal square root of the discriminant. Answers 2, or 0 (outputs untouched) unless degree 2.
int solveQuadratic(const Polynom& p, Complex& root1, Complex& root2);
// Complex Cardano on a normalised copy. Answers 3, or 0 unless degree 3. When s - q/2 is exactly
// zero all three roots are 0 (this also happens for x^3 + 1).
int solveCubic(const Polynom& p, Complex& x1, Complex& x2, Complex& x3);
// Real roots of a quartic by the Descartes-Euler resolvent, appended to `roots` (emptied first) in
// candidate order, unpolished; answers how many. A degree other than 4 raises the E_FAIL assertion
// and answers 0.
int solveQuartic(const Polynom& p, KrsArray<double>& roots);
// solveQuartic on the normalised coefficients c[0..4] (constant first, c[4] the normalised lead):
// writes the real candidates to found[0..3] in candidate order and answers how many.
int solveMonicQuartic(const double* c, double* found);
// At most 10 Newton steps on x; a step whose residual is larger than the current one (or not a
// number) is rejected and ends the polish. Stops early once |step| < 1e-16.
void polishNewton(const Polynom& p, double& x);
// polishNewton on each of x[0..count-1]; the same results as polishing them one by one.
void polishNewtonAll(const Polynom& p, double* x, int count);
// polishNewtonAll for the quartic c[0..4] (constant first), with the same results; residual[i]
// receives p(x[i]) at the polished x[i].
void polishNewtonQuartic(const double* c, double* x, int count, double* residual);
// One Muller step: the root, nearer to x2, of the parabola through the three points (the minus
// root on a tie). A degenerate parabola (straight line or constant) gives its line root, or x2.
Complex mullerStep(const Polynom& p, const Complex& x0, const Complex& x1, const Complex& x2);
// One root: closed form for degrees 1 and 2, else Muller from 0, 1, 2, stopping at |p| < 1e-20, a
// step below 1e-10 or after 10001 steps.
Complex mullerRoot(const Polynom& p);

}  // namespace PolynomRoot
