#pragma once

#include "Foundation/Crypto/Wipe.h"

#include <ostream>
#include <string>
#include <utility>

namespace murmel {

/// Words that somebody dictated, or that stood on their clipboard. Nothing prints or logs this type; whoever
/// needs the characters says so with `reveal`. The memory is wiped when the text goes, so that words that
/// were deleted are not found in a core dump or a swapped page; a revealed copy is its taker's to wipe.
class SpokenText {
 public:
  SpokenText() = default;
  explicit SpokenText(std::string text) : text_(std::move(text)) { wipe(text); }
  SpokenText(const SpokenText&) = default;
  SpokenText(SpokenText&& other) noexcept : text_(std::move(other.text_)) { wipe(other.text_); }
  SpokenText& operator=(const SpokenText& other) {
    if (this != &other) {
      wipe(text_);
      text_ = other.text_;
    }
    return *this;
  }
  SpokenText& operator=(SpokenText&& other) noexcept {
    if (this != &other) {
      wipe(text_);
      text_ = std::move(other.text_);
      wipe(other.text_);  // a short text is copied by the move
    }
    return *this;
  }
  ~SpokenText() { wipe(text_); }

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
