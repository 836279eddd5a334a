#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace murmel {

/// Cuts bytes that arrive in pieces into lines, in bounded memory. A line above the bound is announced once
/// and dropped up to its line feed.
class LineSplitter {
 public:
  struct Line {
    std::string_view text;  ///< without the line feed; good until the next call
    bool tooLong = false;   ///< `text` is empty then
  };

  /// `longestLine` in bytes.
  explicit LineSplitter(std::size_t longestLine) : longestLine_(longestLine) {}

  void append(std::string_view bytes) {
    buffer_.erase(0, std::exchange(consumed_, 0));
    buffer_.append(bytes);
  }

  std::optional<Line> next() {
    while (true) {
      const auto feed = buffer_.find('\n', consumed_);
      const auto size = (feed == std::string::npos ? buffer_.size() : feed) - consumed_;
      const bool isTooLong = size > longestLine_;
      if (feed == std::string::npos) {
        if (skips_ || isTooLong) consumed_ = buffer_.size();
        return isTooLong && !std::exchange(skips_, true) ? std::optional(Line{{}, true}) : std::nullopt;
      }
      const Line line{isTooLong ? std::string_view() : std::string_view(buffer_).substr(consumed_, size),
                      isTooLong};
      consumed_ = feed + 1;
      if (!std::exchange(skips_, false)) return line;
    }
  }

 private:
  std::size_t longestLine_;
  std::string buffer_;
  std::size_t consumed_ = 0;
  bool skips_ = false;  ///< inside a line that has been announced as too long
};

}  // namespace murmel
