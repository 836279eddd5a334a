#include "Foundation/Crypto/PrivateMemory.h"

#include "Foundation/Crypto/Wipe.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <new>
#include <span>

#include <sys/mman.h>
#include <unistd.h>

namespace murmel {

namespace {

// A long recording that does not fit under the limit is locked as far as it does.
constexpr std::size_t pagesAtOnce = 64;
// Twenty seconds of sound. Room for more is made in advance, and would leave nothing for keys and words.
constexpr std::size_t mostLockedAtOnce = 4 << 20;

std::size_t pageSize() {
  static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return size;
}

/// The kernel counts no locks of a page, so this process does.
class LockedPages {
 public:
  /// Locks whole pages from `first` on; gives the end of those that are locked.
  std::uintptr_t lock(std::uintptr_t first, std::uintptr_t end) {
    const std::lock_guard guard(mutex_);
    while (first < end) {
      const auto part = std::min(end, first + pagesAtOnce * pageSize());
      // Not before they are written to: room that is never used costs no memory.
      if (::mlock2(asPointer(first), part - first, MLOCK_ONFAULT) != 0) break;
      for (; first < part; first += pageSize()) ++counts_[first];
    }
    return first;
  }

  void unlock(std::uintptr_t first, std::uintptr_t end) {
    const std::lock_guard guard(mutex_);
    auto free = first;
    for (auto page = first; page < end; page += pageSize()) {
      const auto found = counts_.find(page);
      if (--found->second > 0) {
        release(free, page);
        free = page + pageSize();
      } else {
        counts_.erase(found);
      }
    }
    release(free, end);
  }

 private:
  static void* asPointer(std::uintptr_t page) { return reinterpret_cast<void*>(page); }
  static void release(std::uintptr_t first, std::uintptr_t end) {
    if (first < end) ::munlock(asPointer(first), end - first);
  }

  std::mutex mutex_;
  std::map<std::uintptr_t, std::size_t> counts_;
};

LockedPages& lockedPages() {
  // Never destroyed: what is locked may outlive everything else.
  static auto* const pages = new LockedPages;
  return *pages;
}

/// What an allocation of a page or more has of its own, before the bytes that are given out.
struct Header {
  PageLock lock;
};
constexpr std::size_t headerSize = 64;
static_assert(sizeof(Header) <= headerSize);

bool hasPages(std::size_t size) {
  return size >= pageSize();
}

}  // namespace

PageLock::PageLock(const void* memory, std::size_t size) noexcept {
  if (size == 0) return;
  const auto begin = reinterpret_cast<std::uintptr_t>(memory);
  first_ = begin / pageSize() * pageSize();
  end_ = lockedPages().lock(first_, (begin + size + pageSize() - 1) / pageSize() * pageSize());
}

PageLock::~PageLock() {
  if (first_ < end_) lockedPages().unlock(first_, end_);
}

void* allocatePrivate(std::size_t size) {
  if (!hasPages(size)) return ::operator new(size);
  void* const memory =
      ::mmap(nullptr, size + headerSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  (void)::madvise(memory, size + headerSize, MADV_DONTDUMP);  // a request: some kernels do not know it
  new (memory) Header{PageLock(memory, std::min(size + headerSize, mostLockedAtOnce))};
  return static_cast<std::byte*>(memory) + headerSize;
}

void freePrivate(void* memory, std::size_t size) noexcept {
  if (!hasPages(size)) {
    wipe(std::span(static_cast<std::uint8_t*>(memory), size));
    ::operator delete(memory);
    return;
  }
  // The kernel clears pages before anybody else gets them.
  auto* const header = reinterpret_cast<Header*>(static_cast<std::byte*>(memory) - headerSize);
  header->~Header();
  ::munmap(header, size + headerSize);
}

}  // namespace murmel
