#pragma once

#include "Foundation/Async/Executor.h"
#include "Platform/InjectedKeys.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/X11KeyboardMap.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// Presses keys through the XTest extension. Main thread.
class X11KeyboardPoster final : public KeyboardPoster {
 public:
  /// `injectedKeys`, if given, is told of every key before it is sent; it and the executor outlive this.
  static std::expected<std::unique_ptr<X11KeyboardPoster>, std::string> open(Executor& executor,
                                                                             InjectedKeys* injectedKeys,
                                                                             const std::string& display = {});

  [[nodiscard]] bool mayPost() override;
  [[nodiscard]] bool canPost(PasteChord chord) override;
  Task<void> awaitReleasedModifiers() override;
  void maskHeldModifiers() override;
  PostResult post(PasteChord chord, const RunningApplication& target) override;

 private:
  struct Modifier {
    std::uint16_t mask = 0;
    std::vector<xcb_keycode_t> keys;  ///< on either side of the keyboard
  };
  struct Chord {
    std::vector<Modifier> modifiers;
    X11Key key;
  };

  X11KeyboardPoster(Executor& executor, InjectedKeys* injectedKeys, std::unique_ptr<X11Connection> connection,
                    std::unique_ptr<X11KeyboardMap> map, bool hasTestExtension);
  [[nodiscard]] std::optional<Chord> keysOf(PasteChord chord);
  [[nodiscard]] bool hasKeyboard(const RunningApplication& target);
  [[nodiscard]] bool isWithin(xcb_window_t window, const RunningApplication& target);
  /// Lets go of the modifiers that the user holds; what is to be pressed for the chord besides its key.
  std::vector<xcb_keycode_t> makeWayFor(const Chord& chord);
  void send(xcb_keycode_t key, bool goesDown);
  void pressNeutralKey();

  Executor& executor_;
  InjectedKeys* injectedKeys_;
  std::unique_ptr<X11Connection> connection_;
  std::unique_ptr<X11KeyboardMap> map_;
  bool hasTestExtension_;
  xcb_window_t hiddenWindow_;
};

}  // namespace murmel
