// A small host program: links the library as any CAD application would and exercises it.
#include <cstdio>

void runDiagnosticsTour();
#if defined(KRGEL_DEMO_GEOMETRY)
void runGeometrySession();
#endif

int main() {
  runDiagnosticsTour();
#if defined(KRGEL_DEMO_GEOMETRY)
  runGeometrySession();
#endif
  return 0;
}
