#pragma once

#include "Platform/KeyboardProbe.h"

#include <string>

namespace murmel {

/// Asks the X server, over a connection that lives as long as the question.
class X11KeyboardProbe final : public KeyboardProbe {
 public:
  /// `display` empty: the environment's.
  explicit X11KeyboardProbe(std::string display = {}) : display_(std::move(display)) {}

  [[nodiscard]] bool isTaken(VirtualKeyCode keyCode, std::uint64_t modifiers) override;
  [[nodiscard]] bool capsLockIsRemapped() override;
  [[nodiscard]] std::string label(VirtualKeyCode keyCode) override;

 private:
  std::string display_;
};

}  // namespace murmel
