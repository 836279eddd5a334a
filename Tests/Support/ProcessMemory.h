#pragma once

#include "Foundation/Crypto/Base64.h"
#include "Foundation/UniqueDescriptor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

namespace murmel::test {

/// Everything that a process can write to, with what is left out of core dumps.
class ProcessMemory {
 public:
  explicit ProcessMemory(pid_t process)
      : folder_("/proc/" + std::to_string(process)),
        memory_(::open((folder_ + "/mem").c_str(), O_RDONLY | O_CLOEXEC)) {}

  /// Not everybody may look into a process that does not want it.
  [[nodiscard]] bool isReadable() const { return static_cast<bool>(memory_); }

  /// How often each of them is there, all together; `where` gets the lines of the memory map.
  int count(const std::vector<std::string>& needles, std::string* where = nullptr) const {
    std::ifstream maps(folder_ + "/maps");
    int count = 0;
    std::string block(blockSize, '\0');
    for (std::string line; std::getline(maps, line);) {
      std::size_t begin = 0;
      std::size_t end = 0;
      std::array<char, 5> access{};
      if (std::sscanf(line.c_str(), "%zx-%zx %4s", &begin, &end, access.data()) != 3 || access[1] != 'w')
        continue;
      const int before = count;
      for (bool isLast = false; !isLast; begin += blockSize - longestNeedle) {
        isLast = end - begin <= blockSize;
        const auto size =
            ::pread(memory_.get(), block.data(), std::min(blockSize, end - begin), static_cast<off_t>(begin));
        if (size > 0) count += countIn({block.data(), static_cast<std::size_t>(size)}, needles, isLast);
      }
      if (where != nullptr && count > before) *where += std::to_string(count - before) + " in " + line + "\n";
    }
    return count;
  }

 private:
  static constexpr std::size_t blockSize = 1 << 20;
  /// Blocks overlap by that much.
  static constexpr std::size_t longestNeedle = 256;

  static int countIn(std::string_view block, const std::vector<std::string>& needles, bool isLast) {
    // Most memory was never used.
    if (block[0] == 0 && std::memcmp(block.data(), block.data() + 1, block.size() - 1) == 0) return 0;
    int count = 0;
    for (const auto& needle : needles) {
      const char* at = block.data();
      const auto next = [&] {
        return ::memmem(at, static_cast<std::size_t>(block.data() + block.size() - at), needle.data(),
                        needle.size());
      };
      while ((at = static_cast<const char*>(next())) != nullptr) {
        // The next block begins with what overlaps.
        if (isLast || at < block.data() + block.size() - longestNeedle) ++count;
        ++at;
      }
    }
    return count;
  }

  std::string folder_;
  UniqueDescriptor memory_;
};

/// Pieces of a text, as UTF-8 and as UTF-16: freed memory is often overwritten in part. Single words stand in
/// dictionaries.
inline std::vector<std::string> piecesOfText(std::string_view text, std::size_t size = 12) {
  std::vector<std::string> pieces;
  for (std::size_t start = 0; start + size <= text.size(); start += size / 2) {
    const std::string piece(text.substr(start, size));
    if (!piece.contains(' ')) continue;
    std::string wide;
    for (const char letter : piece) wide += {letter, '\0'};
    pieces.insert(pieces.end(), {piece, wide});
  }
  return pieces;
}

/// Pieces of a second of sound in every shape that it takes on its way: whole numbers with either full scale,
/// fractions, base64.
inline std::vector<std::string> piecesOfSound(std::span<const std::int16_t> second) {
  constexpr std::size_t size = 30;
  constexpr std::size_t step = 4'000;
  std::vector<std::string> pieces;
  const auto add = [&pieces](const auto& samples) {
    pieces.emplace_back(reinterpret_cast<const char*>(samples.data()), sizeof samples);
  };
  for (std::size_t start = 0; start + size <= second.size(); start += step) {
    std::array<std::int16_t, size> whole{};
    std::array<std::int16_t, size> other{};
    std::array<float, size> fractions{};
    for (std::size_t index = 0; index < size; ++index) {
      whole[index] = second[start + index];
      fractions[index] = static_cast<float>(whole[index]) / 32'768;
      other[index] = static_cast<std::int16_t>(std::lround(fractions[index] * 32'767));
    }
    add(whole);
    add(fractions);
    add(other);
    // What stands before it decides where the groups of three bytes begin.
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(other.data()), sizeof other);
    for (const std::size_t skipped : {0, 1, 2})
      pieces.push_back(base64::encoded(bytes.subspan(skipped, sizeof other - 3)));
  }
  return pieces;
}

}  // namespace murmel::test
