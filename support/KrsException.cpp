#include "KrsException.h"

#include "KrsDiagnostics.h"

void KrsThrowOutOfMemory(const char* source, int line) {
  KrsReportOutOfMemory(source, line);
  throw KrsException(KrsException::kOutOfMemory);
}
