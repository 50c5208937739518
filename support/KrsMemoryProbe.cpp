#include "KrsArray.h"

#include "support/KrsPlatform.h"

bool KrsIsReadableMemory(const void* block, std::size_t bytes) { return KrsPlatform::isReadable(block, bytes); }
