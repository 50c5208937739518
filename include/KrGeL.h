// Umbrella header: the whole public interface of the library.
#pragma once

#include "KrGeLExport.h"
#include "KrsArray.h"
#include "KrsDiagnostics.h"
#include "KrsException.h"
#include "KrsPlex.h"
#include "KrsStringW.h"
