#include "support/KrsLibraryLoad.h"

#include "support/KrsPlatform.h"

#include "KrsDiagnostics.h"

namespace {
const void* g_module = nullptr;
}

void KrsOnProcessAttach() {
  KrsPlatform::debugOutput("KRGEL.DLL process attach\n");
  g_module = KrsPlatform::libraryModule();
  KrGeInitContext();
  KrsQueryAssertState();
  KrsQueryArraySwitches();
}

void KrsOnProcessDetach() { KrsPlatform::debugOutput("KRGEL.DLL process detach\n"); }

const void* KrsLibraryModule() { return g_module; }
