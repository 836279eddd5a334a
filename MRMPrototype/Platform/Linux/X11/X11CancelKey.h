#pragma once

#include "Foundation/Async/Executor.h"
#include "Platform/CancelKey.h"
#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/X11KeyboardMap.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// A passive grab of Escape, with whatever modifiers are held: the shortcut's own may be one of them. While
/// it is pressed nobody else sees the key; at all other times nothing is changed.
class X11CancelKey final : public CancelKey {
 public:
  static std::expected<std::unique_ptr<X11CancelKey>, std::string> open(Executor& executor,
                                                                        const std::string& display = {});

  [[nodiscard]] Registration take(std::function<void()> pressed) override;

 private:
  X11CancelKey(Executor& executor, std::unique_ptr<X11Connection> connection);
  [[nodiscard]] bool grab(xcb_keycode_t key, std::uint16_t modifiers);
  void drain();

  Executor& executor_;
  std::unique_ptr<X11Connection> connection_;
  std::unique_ptr<X11KeyboardMap> keyboard_;
  std::function<void()> pressed_;
  Registration watch_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

}  // namespace murmel
