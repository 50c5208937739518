#include "support/KrsLibraryLoad.h"

void KrGeInitContext() {}
