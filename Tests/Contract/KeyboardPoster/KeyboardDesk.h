#pragma once

#include "Platform/Fake/FakeKeyboardPoster.h"
#include "Platform/Linux/Wayland/VirtualKeyboard.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Support/Wayland/SwayTargetDesk.h"
#include "Support/X11/DesktopOfTargets.h"
#include "Support/X11/UsersKeyboard.h"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace murmel::test {

class FakeKeyboardDesk : public FakeTargetDesk {
 public:
  static constexpr bool sharesModifiers = true;
  FakeKeyboardPoster fakePoster{loop.executor, fake};
  KeyboardPoster& poster() { return fakePoster; }
  void holdShift() { fakePoster.holdModifierFor(std::chrono::hours(1)); }
  std::size_t chordsSeenBy(const Application&) { return fakePoster.posted().size(); }
};

class X11KeyboardDesk : public X11TargetDesk {
 public:
  static constexpr bool sharesModifiers = true;
  explicit X11KeyboardDesk(InjectedKeys* injectedKeys = nullptr) {
    auto opened = X11KeyboardPoster::open(loop.executor, injectedKeys);
    if (!opened) throw std::runtime_error(opened.error());
    x11Poster = *std::move(opened);
  }
  KeyboardPoster& poster() { return *x11Poster; }
  void holdShift() { user.press(50, true); }
  /// What an application saw as chords: it prints what it pastes.
  std::size_t chordsSeenBy(const Application& application) { return application->told("pasted").size(); }

  UsersKeyboard user;
  std::unique_ptr<X11KeyboardPoster> x11Poster;
};

class SwayKeyboardDesk : public SwayTargetDesk {
 public:
  /// What the user holds down on their keyboard does not count on another one.
  static constexpr bool sharesModifiers = false;

  SwayKeyboardDesk() {
    auto opened = VirtualKeyboard::open(workspace());
    if (!opened) throw std::runtime_error(opened.error());
    keyboard = *std::move(opened);
  }
  ~SwayKeyboardDesk() { play("up 42"); }
  KeyboardPoster& poster() { return *keyboard; }
  void holdShift() { play("down 42"); }
  std::size_t chordsSeenBy(const Application& application) { return application->told("pasted").size(); }

  std::unique_ptr<VirtualKeyboard> keyboard;

 private:
  static void play(const char* line) { std::ofstream(std::getenv("MURMEL_KEYBOARD")) << line << std::endl; }
};

}  // namespace murmel::test
