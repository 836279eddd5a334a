#include "Platform/Linux/Process/MappedMemory.h"

#include <sys/mman.h>

namespace murmel {

Registration MappedMemory::reserve(std::size_t bytes) {
  void* const memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return {};
  return Registration([memory, bytes] { ::munmap(memory, bytes); });
}

}  // namespace murmel
