// Class-level allocation shared by the value types and the entities: every form takes memory
// from the general heap (malloc) and gives it back with free, so objects cross module
// boundaries freely. The plain forms are noexcept and answer null when the heap is exhausted
// (a new-expression then yields null instead of throwing); the placement form returns `place`;
// the debug form ignores file and line. An empty base: it adds no bytes to its classes.
#pragma once

#include "KrGeLExport.h"

#include <cstddef>
#include <cstdlib>

class KRGEL_API KrsHeapObject {
public:
  static void* operator new(std::size_t size) noexcept { return std::malloc(size ? size : 1); }
  static void* operator new[](std::size_t size) noexcept { return std::malloc(size ? size : 1); }
  static void operator delete(void* memory) noexcept { std::free(memory); }
  static void operator delete[](void* memory) noexcept { std::free(memory); }
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void*, void*) noexcept {}
  static void* operator new(std::size_t size, const char*, int) noexcept { return std::malloc(size ? size : 1); }
  static void operator delete(void* memory, const char*, int) noexcept { std::free(memory); }
};
