#include "Foundation/Crypto/Wipe.h"

#include <string.h>

namespace murmel {

void wipe(std::span<std::uint8_t> bytes) noexcept {
  ::explicit_bzero(bytes.data(), bytes.size());
}

void wipe(std::string& text) noexcept {
  text.resize(text.capacity());  // never allocates
  ::explicit_bzero(text.data(), text.size());
  text.clear();
}

[[gnu::noinline]] void wipeStack() noexcept {
  constexpr std::size_t depth = 32 * 1'024;
  std::uint8_t below[depth];  // an array object would be used before it has a value
  ::explicit_bzero(below, sizeof below);
}

void wipeVectorRegisters() noexcept {
#if defined(__x86_64__)
  // Those that only AVX-512 has are cleared with them where it is: copies use the second half of the file
  // there.
  if (__builtin_cpu_supports("avx512vl")) {
    asm volatile(
        "vpxord %%xmm16, %%xmm16, %%xmm16\n vpxord %%xmm17, %%xmm17, %%xmm17\n"
        "vpxord %%xmm18, %%xmm18, %%xmm18\n vpxord %%xmm19, %%xmm19, %%xmm19\n"
        "vpxord %%xmm20, %%xmm20, %%xmm20\n vpxord %%xmm21, %%xmm21, %%xmm21\n"
        "vpxord %%xmm22, %%xmm22, %%xmm22\n vpxord %%xmm23, %%xmm23, %%xmm23\n"
        "vpxord %%xmm24, %%xmm24, %%xmm24\n vpxord %%xmm25, %%xmm25, %%xmm25\n"
        "vpxord %%xmm26, %%xmm26, %%xmm26\n vpxord %%xmm27, %%xmm27, %%xmm27\n"
        "vpxord %%xmm28, %%xmm28, %%xmm28\n vpxord %%xmm29, %%xmm29, %%xmm29\n"
        "vpxord %%xmm30, %%xmm30, %%xmm30\n vpxord %%xmm31, %%xmm31, %%xmm31" ::
            : "memory");
  }
  if (__builtin_cpu_supports("avx")) {
    asm volatile("vzeroall" ::
                     : "memory", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8",
                       "xmm9", "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15");
  }
#endif
}

}  // namespace murmel
