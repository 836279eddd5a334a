#pragma once

#include "Platform/Fake/FakeKeyboardPoster.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Support/X11/DesktopOfTargets.h"
#include "Support/X11/UsersKeyboard.h"

#include <memory>
#include <string>
#include <vector>

namespace murmel::test {

class FakeKeyboardDesk : public FakeTargetDesk {
 public:
  FakeKeyboardPoster fakePoster{loop.executor, fake};
  KeyboardPoster& poster() { return fakePoster; }
  void holdShift() { fakePoster.holdModifierFor(std::chrono::hours(1)); }
  std::size_t chordsSeenBy(const Application&) { return fakePoster.posted().size(); }
};

class X11KeyboardDesk : public X11TargetDesk {
 public:
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

}  // namespace murmel::test
