// Linked into a program, this overwrites all memory of its heap that is given back: the program's own, that
// of the C++ library, of Qt and of every other library, whose copies of what was said no type of ours could
// reach.

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <malloc.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

// The C library's own functions, under the names by which it knows them beside those that are replaced here.
extern "C" {
void* __libc_malloc(std::size_t size);                 // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* memory, std::size_t size);  // NOLINT(bugprone-reserved-identifier)
void __libc_free(void* memory);                        // NOLINT(bugprone-reserved-identifier)
}

namespace {

/// From here on pages are given back to the system, which clears them before anybody gets them again: those
/// that were never used are not fetched to be overwritten.
constexpr std::size_t large = 1 << 20;

void overwrite(char* begin, std::size_t size) {
  if (size >= large) {
    static const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto first = (reinterpret_cast<std::uintptr_t>(begin) + page - 1) & ~(page - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(begin) + size) & ~(page - 1);
    if (::madvise(reinterpret_cast<void*>(first), end - first, MADV_DONTNEED) == 0) {
      const auto before = first - reinterpret_cast<std::uintptr_t>(begin);
      ::explicit_bzero(begin, before);
      ::explicit_bzero(reinterpret_cast<void*>(end), size - before - (end - first));
      return;
    }
    // Locked pages stay.
  }
  ::explicit_bzero(begin, size);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void free(void* memory) noexcept {
  if (memory == nullptr) return;
  const int error = errno;
  overwrite(static_cast<char*>(memory), ::malloc_usable_size(memory));
  ::__libc_free(memory);
  errno = error;
}

extern "C" __attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) noexcept {
  if (memory == nullptr) return ::__libc_malloc(size);
  if (size == 0) {
    ::free(memory);
    return nullptr;
  }
  const auto usable = ::malloc_usable_size(memory);
  if (size <= usable) {
    overwrite(static_cast<char*>(memory) + size, usable - size);
    return ::__libc_realloc(memory, size);  // gives the rest back, or keeps it
  }
  // The library's own would leave a copy behind.
  void* const larger = ::__libc_malloc(size);
  if (larger == nullptr) return nullptr;
  std::memcpy(larger, memory, usable);
  ::free(memory);
  return larger;
}
