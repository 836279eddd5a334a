#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace murmel {

/// Keeps the pages of a piece of memory out of the swap for as long as it lives, as far as RLIMIT_MEMLOCK
/// goes: what is beyond the limit is used all the same. Pages that several locks share stay locked until the
/// last of them goes. Any thread.
class PageLock {
 public:
  PageLock() = default;
  PageLock(const void* memory, std::size_t size) noexcept;
  PageLock(PageLock&& other) noexcept
      : first_(std::exchange(other.first_, 0)), end_(std::exchange(other.end_, 0)) {}
  PageLock& operator=(PageLock&& other) noexcept {
    std::swap(first_, other.first_);
    std::swap(end_, other.end_);
    return *this;
  }
  ~PageLock();

  /// Bytes that are locked; less than was asked for where the limit was in the way.
  [[nodiscard]] std::size_t size() const { return end_ - first_; }

 private:
  std::uintptr_t first_ = 0;  ///< of the pages that are locked
  std::uintptr_t end_ = 0;
};

/// Memory that is locked, left out of core dumps and wiped before it is given back.
void* allocatePrivate(std::size_t size);
void freePrivate(void* memory, std::size_t size) noexcept;

/// For containers of what somebody said.
template <class T>
struct PrivateAllocator {
  using value_type = T;
  PrivateAllocator() = default;
  template <class Other>
  PrivateAllocator(const PrivateAllocator<Other>&) {}  // as allocators are

  T* allocate(std::size_t count) { return static_cast<T*>(allocatePrivate(count * sizeof(T))); }
  void deallocate(T* memory, std::size_t count) noexcept { freePrivate(memory, count * sizeof(T)); }
  friend bool operator==(PrivateAllocator, PrivateAllocator) { return true; }
};

template <class T>
using PrivateVector = std::vector<T, PrivateAllocator<T>>;

}  // namespace murmel
