#pragma once

#include "Foundation/Crypto/PrivateMemory.h"
#include "Foundation/Crypto/Wipe.h"

#include <ostream>
#include <string>
#include <utility>

namespace murmel {

/// Words that somebody dictated, or that stood on their clipboard. Nothing prints or logs this type; whoever
/// needs the characters says so with `reveal`. The memory is kept out of the swap, and wiped when the
/// text goes, so that words that were deleted are not found in a core dump; a revealed copy is its taker's to
/// wipe.
class SpokenText {
 public:
  SpokenText() = default;
  explicit SpokenText(std::string text) : text_(std::move(text)) {
    wipe(text);
    lock();
  }
  SpokenText(const SpokenText& other) : text_(other.text_) { lock(); }
  SpokenText(SpokenText&& other) noexcept : text_(std::move(other.text_)) {
    wipe(other.text_);
    lock();
  }
  SpokenText& operator=(const SpokenText& other) {
    if (this != &other) {
      wipe(text_);
      text_ = other.text_;
      lock();
    }
    return *this;
  }
  SpokenText& operator=(SpokenText&& other) noexcept {
    if (this != &other) {
      wipe(text_);
      text_ = std::move(other.text_);
      wipe(other.text_);  // a short text is copied by the move
      lock();
    }
    return *this;
  }
  ~SpokenText() { wipe(text_); }

  /// UTF-8.
  [[nodiscard]] const std::string& reveal() const& { return text_; }
  [[nodiscard]] std::string reveal() && { return std::move(text_); }
  [[nodiscard]] bool empty() const { return text_.empty(); }

  friend bool operator==(const SpokenText& left, const SpokenText& right) {
    return left.text_ == right.text_;
  }
  friend std::ostream& operator<<(std::ostream&, const SpokenText&) = delete;

 private:
  void lock() { lock_ = text_.empty() ? PageLock() : PageLock(text_.data(), text_.capacity()); }

  std::string text_;
  PageLock lock_;  ///< of the memory of `text_`
};

}  // namespace murmel
