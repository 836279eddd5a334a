#pragma once

#include "Foundation/SpokenText.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace murmel {

/// Whether a space belongs between two texts that are pasted one after the other: into the same window, where
/// the user has pressed no key and clicked nowhere in between. Where that is not known it never does. Main
/// thread.
class DictationSpacing {
 public:
  /// How often the user has pressed a key or a button that is not Murmel's; nothing where that is not known.
  using UserInput = std::function<std::optional<std::uint64_t>()>;

  void follow(UserInput userInput) { userInput_ = std::move(userInput); }
  void setEnabled(bool enabled) { isEnabled_ = enabled; }

  /// The text as it is to be pasted.
  [[nodiscard]] SpokenText spaced(const SpokenText& text, std::uint32_t window) const;
  /// The keys that paste the text have been pressed.
  void posted(const SpokenText& text, std::uint32_t window);
  /// It has not arrived, or nobody can tell.
  void forget() { last_.reset(); }

 private:
  struct Posted {
    std::uint32_t window = 0;
    std::uint64_t userInput = 0;
    bool takesSpaceBehind = false;
  };

  UserInput userInput_;
  bool isEnabled_ = false;
  std::optional<Posted> last_;
};

}  // namespace murmel
