#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace murmel {

/// The input as a file that has a name and is nowhere on the disk.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) : file_(::memfd_create("input", 0)) {
    while (size > 0) {
      const auto count = ::write(file_, data, size);
      if (count <= 0) break;
      data += count;
      size -= static_cast<std::size_t>(count);
    }
  }
  ~MemoryFile() { ::close(file_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(file_); }

 private:
  int file_;
};

}  // namespace murmel
