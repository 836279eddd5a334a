#include "Foundation/SpokenText.h"
#include "Support/Forks.h"
#include "Support/Testing.h"

#include <sys/resource.h>

namespace {

/// Kilobytes of this process that are locked.
long locked() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != "VmLck:") continue;
    long kilobytes = -1;
    status >> kilobytes;
    return kilobytes;
  }
  return -1;
}

/// In a process of its own, which may lock 256 KB; the number of the first line that is not true, or 0.
int underALimit() {
  constexpr rlimit limit{256 << 10, 256 << 10};
  constexpr uid_t nobody = 65534;
  if (::setrlimit(RLIMIT_MEMLOCK, &limit) != 0) return __LINE__;
  if (::geteuid() == 0 && ::setuid(nobody) != 0) return __LINE__;
  const auto before = locked();
  {
    PrivateVector<float> samples(10'000);
    if (locked() < before + 39) return __LINE__;
    const SpokenText words(std::string(5'000, 'w'));
    const auto copy = words;
    if (locked() < before + 39 + 8) return __LINE__;
    { const SpokenText shortLived = words; }
    samples.resize(1'000'000);  // more than the limit: used all the same
    samples.back() = 1;
    if (locked() > before + 256) return __LINE__;
  }
  if (locked() != before) return __LINE__;
  // Two on one page: it stays locked until both are gone.
  alignas(4096) static std::array<char, 4096> page{};
  auto first = std::make_unique<PageLock>(page.data(), 10);
  const PageLock second(page.data() + 100, 10);
  first.reset();
  return locked() == before + 4 ? 0 : __LINE__;
}

}  // namespace

TEST(PrivateMemory, StaysOutOfTheSwapAsFarAsTheLimitGoes) {
#if defined(MURMEL_SANITIZED)
  GTEST_SKIP() << "the instrumentation lets nobody lock memory";
#endif
  EXPECT_EQ(inAFork(&underALimit), 0) << "the line";
}
