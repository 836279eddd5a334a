// An executable of its own, because it replaces the allocator to count.

#include "Audio/AudioTap.h"
#include "Support/Testing.h"

#include <new>

namespace {

std::size_t allocations = 0;

}  // namespace

// Not inlined: the compiler would see a free() for a new.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

TEST(AudioTap, TheAudioThreadDoesNotAllocate) {
  for (const double rate : {8'000.0, 44'100.0, 48'000.0}) {
    const std::vector<float> fragment(static_cast<std::size_t>(rate / 50) * 2, 0.5F);
    const AudioFormat format{rate, 2};
    const auto allocationsIn = [&](AudioTap& tap, int seconds) {
      const auto before = allocations;
      for (int index = 0; index < seconds * 50; ++index) tap.append(fragment, format);
      return allocations - before;
    };
    AudioTap tap;
    tap.reset();
    EXPECT_EQ(allocationsIn(tap, 60), 0U) << "a minute before the first hand-over";
    for (int second = 0; second < 5; ++second) {
      tap.takePending();
      EXPECT_EQ(allocationsIn(tap, 2), 0U) << "two seconds after each hand-over";
    }
    tap.discard();
    tap.reset();
    EXPECT_EQ(allocationsIn(tap, 60), 0U) << "the next recording";
  }
}
