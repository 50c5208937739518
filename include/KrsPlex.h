// Block pool behind the node-based containers: blocks of `count` nodes of `elementSize` bytes,
// chained through a header word; nodes are handed out by the container that owns the chain.
#pragma once

#include "KrGeLExport.h"

#include <cstddef>

struct KRGEL_API KrsPlex {
  KrsPlex* pNext;  // next block of the chain

  // The nodes of this block follow the header.
  void* data() { return this + 1; }

  // Allocates a block of `count` nodes of `elementSize` bytes, links it in front of the chain
  // at `head` and returns it. Answers null (chain unchanged) when memory is exhausted or the sizes
  // overflow.
  static KrsPlex* Create(KrsPlex*& head, std::size_t count, std::size_t elementSize);
  // Frees this block and every block after it.
  void FreeDataChain();
};
