#pragma once

#include "Platform/Fake/FakeKeyboardPoster.h"
#include "Platform/Fake/FakePasteboard.h"
#include "Platform/Linux/Gnome/GnomeKeyboard.h"
#include "Platform/Linux/KWin/FakeInputKeyboard.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/Linux/Wayland/VirtualKeyboard.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Support/Wayland/WaylandTargetDesk.h"
#include "Support/X11/DesktopOfTargets.h"
#include "Support/X11/UsersKeyboard.h"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace murmel::test {

class FakeKeyboardDesk : public FakeTargetDesk {
 public:
  static constexpr bool waitsForModifiers = true, letsGoOfModifiers = true;
  FakeKeyboardPoster fakePoster{loop.executor, fake};
  KeyboardPoster& poster() { return fakePoster; }
  void holdShift(const Application&) { fakePoster.holdModifierFor(std::chrono::hours(1)); }
  std::size_t chordsSeenBy(const Application&) { return fakePoster.posted().size(); }
};

class X11KeyboardDesk : public X11TargetDesk {
 public:
  static constexpr bool waitsForModifiers = true, letsGoOfModifiers = true;
  explicit X11KeyboardDesk(InjectedKeys* injectedKeys = nullptr) {
    auto opened = X11KeyboardPoster::open(loop.executor, injectedKeys);
    if (!opened) throw std::runtime_error(opened.error());
    x11Poster = *std::move(opened);
  }
  KeyboardPoster& poster() { return *x11Poster; }
  void holdShift(const Application&) { user.press(50, true); }
  /// What an application saw as chords: it prints what it pastes.
  std::size_t chordsSeenBy(const Application& application) { return application->told("pasted").size(); }

  UsersKeyboard user;
  std::unique_ptr<X11KeyboardPoster> x11Poster;
};

class WaylandKeyboardDesk : public WaylandTargetDesk {
 public:
  WaylandKeyboardDesk() {
    if (isGnome || isKWin) keymap = *UsersKeymap::open(loop.executor);
    if (isGnome) {
      loop.await(clipboard.mrmReplace({{{{{"UTF8_STRING", "words", "", 8}}}}}));
      keyboard = std::make_unique<GnomeKeyboard>(loop.executor, *bus, *keymap, clipboard);
    } else if (isKWin) {
      keep(FakeInputKeyboard::open(workspace(), *keymap));
    } else {
      keep(VirtualKeyboard::open(workspace()));
    }
  }
  ~WaylandKeyboardDesk() { play("up 42"); }
  KeyboardPoster& poster() { return *keyboard; }
  void holdShift(const Application& application) {
    play("down 42");
    loop.waitUntil([&] { return !application->told("shift").empty(); });
  }
  /// The application reads what it pastes, on GNOME through the shell.
  std::size_t chordsSeenBy(const Application& application) {
    const auto chords = application->told("pasted").size();
    if (chords > 0) clipboard.readBy(pasteReader(known.at(application->identifier())), "UTF8_STRING");
    return chords;
  }

  /// On sway the user holds it on another keyboard; KWin does not tell.
  bool waitsForModifiers = isGnome;
  /// GNOME Shell does not let programs take a key from the user.
  bool letsGoOfModifiers = !isGnome;
  FakePasteboard clipboard{loop.executor, loop.clock};
  std::unique_ptr<UsersKeymap> keymap;
  std::unique_ptr<KeyboardPoster> keyboard;

 private:
  template <class Opened>
  void keep(Opened opened) {
    if (!opened) throw std::runtime_error(opened.error());
    keyboard = *std::move(opened);
  }
  static void play(const char* line) {
    std::ofstream(sessionVariable("MURMEL_KEYBOARD")) << line << std::endl;
  }
};

}  // namespace murmel::test
