#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <array>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace murmel {

struct Pipe {
  explicit Pipe(int flags = 0) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | flags) != 0) throw std::runtime_error("no pipe");
    readEnd = UniqueDescriptor(ends[0]);
    writeEnd = UniqueDescriptor(ends[1]);
  }
  UniqueDescriptor readEnd, writeEnd;
};

}  // namespace murmel
