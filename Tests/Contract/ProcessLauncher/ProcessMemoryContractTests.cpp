#include "Platform/Fake/FakeProcessMemory.h"
#include "Platform/Linux/Process/MappedMemory.h"
#include "Support/Testing.h"

#include <sys/resource.h>

namespace {

constexpr std::size_t megabyte = 1 << 20;

/// `memory` has 64 MB.
void keepsTheContract(ProcessMemory& memory) {
  auto aside = memory.reserve(40 * megabyte);
  ASSERT_TRUE(aside);
  EXPECT_FALSE(memory.canHave(32 * megabyte));
  EXPECT_FALSE(memory.reserve(32 * megabyte));
  aside.reset();
  EXPECT_TRUE(memory.canHave(32 * megabyte));
}

}  // namespace

TEST(ProcessMemoryContract, WhatIsPutAsideIsGoneUntilItIsGivenBack) {
  FakeProcessMemory fake;
  fake.room = 64 * megabyte;
  keepsTheContract(fake);
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  rlimit before{};
  ::getrlimit(RLIMIT_AS, &before);
  const rlimit limit{pages * static_cast<std::size_t>(::getpagesize()) + 64 * megabyte, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &limit), 0);
  MappedMemory mapped;
  keepsTheContract(mapped);
  ::setrlimit(RLIMIT_AS, &before);
}
