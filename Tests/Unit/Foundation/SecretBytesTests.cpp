#include "Foundation/Crypto/PrivateMemory.h"
#include "Foundation/Crypto/SecretBytes.h"
#include "Support/Testing.h"

#include <sstream>

#include <sys/mman.h>
#include <sys/syscall.h>

namespace {

// What a page holds at the moment when it is given back, for the page that is watched.
const void* watched = nullptr;
std::vector<std::uint8_t> lastContents;

/// What the kernel says about the mapping of an address.
std::string flagsOf(const void* address) {
  std::ifstream maps("/proc/self/smaps");
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  std::uintptr_t from = 0;
  for (std::string line; std::getline(maps, line);) {
    std::istringstream words(line);
    if (std::uintptr_t first = 0; words >> std::hex >> first && words.peek() == '-') from = first;
    if (from == wanted && line.starts_with("VmFlags:")) return line + ' ';
  }
  return {};
}

}  // namespace

extern "C" int munmap(void* address, size_t length) noexcept {
  if (address == watched)
    lastContents.assign(static_cast<std::uint8_t*>(address), static_cast<std::uint8_t*>(address) + length);
  return static_cast<int>(::syscall(SYS_munmap, address, length));
}

TEST(SecretBytes, StaysOutOfDumpsAndIsWipedBeforeItGoes) {
  const murmel::PrivateVector<float> samples(10'000);
  const auto page = reinterpret_cast<std::uintptr_t>(samples.data()) / 4096 * 4096;
  EXPECT_TRUE(contains(flagsOf(reinterpret_cast<const void*>(page)), " dd "));
  {
    const murmel::SecretBytes secret(std::vector<std::uint8_t>(32, 0x5A));
    watched = secret.reveal().data();
    const auto flags = flagsOf(watched);
    EXPECT_NE(flags.find(" dd "), std::string::npos) << flags;
    EXPECT_NE(flags.find(" wf "), std::string::npos) << flags;
  }
  watched = nullptr;
  ASSERT_GE(lastContents.size(), 32U);
  EXPECT_TRUE(std::ranges::all_of(lastContents, [](std::uint8_t byte) { return byte == 0; }));
}
