#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace murmel::worker {

/// Cuts what arrives at a descriptor into lines, in bounded memory.
class LineReader {
 public:
  enum class Outcome {
    line,     ///< `line()` has it
    tooLong,  ///< a line above the bound has gone by, up to and with its line feed
    end,      ///< nothing more comes; an incomplete last line is dropped
  };

  /// `descriptor` stays the caller's. `longestLine` in bytes.
  LineReader(int descriptor, std::size_t longestLine) : descriptor_(descriptor), longestLine_(longestLine) {}

  /// Blocks until there is one of them.
  Outcome next();
  /// The last line, without its line feed; good until `next` or `release`.
  [[nodiscard]] std::string_view line() const { return {buffer_.data(), lineSize_}; }
  /// Forgets the last line and gives its memory back.
  void release();

 private:
  bool receive();

  int descriptor_;
  std::size_t longestLine_;
  std::string buffer_;
  std::size_t lineSize_ = 0;
  std::size_t consumed_ = 0;  ///< bytes of `buffer_` that belong to the last line
};

}  // namespace murmel::worker
