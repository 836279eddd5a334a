#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Environment.h"
#include "Platform/KeyEventTap.h"
#include "Platform/Linux/X11Keys/InjectedKeyList.h"

#include <memory>
#include <string>
#include <string_view>

namespace murmel {

/// What the session's environment says about its display.
struct X11KeyEnvironment {
  std::string display;         ///< DISPLAY
  std::string waylandDisplay;  ///< WAYLAND_DISPLAY
  std::string sessionType;     ///< XDG_SESSION_TYPE

  static X11KeyEnvironment from(const Environment& environment);
  static X11KeyEnvironment fromProcess() { return from(Environment::ofThisProcess()); }
};

/// What a user has to know who chooses Fn as the shortcut, or whose shortcut it is by default.
inline constexpr std::string_view functionKeyNotice =
    "Most keyboards keep the Fn key to themselves, and X11 cannot carry it. If holding Fn does nothing, "
    "choose Ctrl, Alt or a key combination as the shortcut.";

/// Hears every key of an X11 session through XInput2's raw events, on a connection of its own. On Wayland no
/// program may do that: X clients there hear only the keys of other X clients, so the permission is not
/// granted even where XWayland answers.
///
/// A connection that breaks disables the tap for good; a new one can be created as soon as the server is
/// back.
class X11KeyEventTap final : public KeyEventTap {
 public:
  /// Both must outlive this and its tap.
  X11KeyEventTap(Executor& executor, InjectedKeyList& injectedKeys, X11KeyEnvironment environment);
  ~X11KeyEventTap() override;
  X11KeyEventTap(const X11KeyEventTap&) = delete;
  X11KeyEventTap& operator=(const X11KeyEventTap&) = delete;

  /// Connects for a moment unless a tap is in place.
  [[nodiscard]] ListenEventAccess permission() override;
  [[nodiscard]] std::unique_ptr<InstalledKeyEventTap> create(Handler handler) override;

  /// Asks the server which keys are down and makes up for what was missed, soon. For the moments that the
  /// tap cannot see itself, like the end of a suspend.
  void resync();

 private:
  class Installed;
  class Tap;

  Executor& executor_;
  InjectedKeyList& injectedKeys_;
  X11KeyEnvironment environment_;
  std::weak_ptr<Tap> tap_;
};

}  // namespace murmel
