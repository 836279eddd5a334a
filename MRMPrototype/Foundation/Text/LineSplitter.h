#pragma once

#include <algorithm>
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
    const auto used = std::exchange(consumed_, 0);
    buffer_.erase(0, used);
    searched_ -= std::min(searched_, used);
    buffer_.append(bytes);
  }

  /// Gives up the memory of what has been given out.
  void forgetUsed() {
    append({});
    buffer_.shrink_to_fit();
  }

  /// Bytes that are held, and those of them that have not been given out.
  [[nodiscard]] std::size_t held() const { return buffer_.size(); }
  [[nodiscard]] std::size_t waiting() const { return buffer_.size() - consumed_; }

  std::optional<Line> next() {
    while (true) {
      const auto feed = buffer_.find('\n', std::max(consumed_, searched_));
      const auto size = (feed == std::string::npos ? buffer_.size() : feed) - consumed_;
      const bool isTooLong = size > longestLine_;
      if (feed == std::string::npos) {
        searched_ = buffer_.size();
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
  std::size_t searched_ = 0;  ///< no line feed between `consumed_` and here
  bool skips_ = false;        ///< inside a line that has been announced as too long
};

}  // namespace murmel
