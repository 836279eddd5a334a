#include "Dictation/MemoryReserve.h"

#include <cstddef>

#include <sys/mman.h>

namespace murmel {

namespace {

// The longest segment: it grows by doubling, and is converted once it is cut.
constexpr std::size_t largestPiece = 24 << 20;
constexpr std::size_t reserveSize = 48 << 20;

void* map(std::size_t size) {
  return ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
}

}  // namespace

Registration reserveMemory() {
  void* const memory = map(reserveSize);
  if (memory == MAP_FAILED) return {};
  return Registration([memory] { ::munmap(memory, reserveSize); });
}

bool memoryIsShort() {
  void* const memory = map(largestPiece);
  if (memory == MAP_FAILED) return true;
  ::munmap(memory, largestPiece);
  return false;
}

}  // namespace murmel
