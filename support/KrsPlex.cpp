#include "KrsPlex.h"

#include <cstdint>
#include <cstdlib>

KrsPlex* KrsPlex::Create(KrsPlex*& head, std::size_t count, std::size_t elementSize) {
  if (count == 0 || elementSize == 0 || count > (SIZE_MAX - sizeof(KrsPlex)) / elementSize) return nullptr;
  auto* block = static_cast<KrsPlex*>(std::malloc(sizeof(KrsPlex) + count * elementSize));
  if (!block) return nullptr;
  block->pNext = head;
  head = block;
  return block;
}

void KrsPlex::FreeDataChain() {
  KrsPlex* block = this;
  while (block) {
    KrsPlex* next = block->pNext;
    std::free(block);
    block = next;
  }
}
