// Process attach and detach of the library, called by the platform's load and unload hooks.
#pragma once

// Writes "KRGEL.DLL process attach\n", keeps the module identity and runs KrGeInitContext.
void KrsOnProcessAttach();
// Writes "KRGEL.DLL process detach\n".
void KrsOnProcessDetach();
// The module identity kept at attach (null before).
const void* KrsLibraryModule();

// Sets the global context to its load-time values (tolerances, callbacks).
void KrGeInitContext();
