#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace murmel {

/// Words that somebody dictated, or that stood on their clipboard. Nothing prints or logs this type; whoever
/// needs the characters says so with `reveal`.
class SpokenText {
 public:
  SpokenText() = default;
  explicit SpokenText(std::string text) : text_(std::move(text)) {}

  /// UTF-8.
  [[nodiscard]] const std::string& reveal() const& { return text_; }
  [[nodiscard]] std::string reveal() && { return std::move(text_); }
  [[nodiscard]] bool empty() const { return text_.empty(); }

  friend bool operator==(const SpokenText&, const SpokenText&) = default;
  friend std::ostream& operator<<(std::ostream&, const SpokenText&) = delete;

 private:
  std::string text_;
};

}  // namespace murmel
