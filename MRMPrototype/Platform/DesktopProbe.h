#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace murmel {

/// The versions of the portal's interfaces; 0 where there is none, or none is needed.
struct PortalVersions {
  std::uint32_t shortcuts = 0;
  std::uint32_t keyboard = 0;   ///< RemoteDesktop, where it has a keyboard
  std::uint32_t clipboard = 0;  ///< which belongs to the keyboard's session

  friend bool operator==(const PortalVersions&, const PortalVersions&) = default;
};

/// What was found out about the session that this process is in. Nothing was changed to find it out.
struct SessionFacts {
  struct X11 {
    bool named = false;      ///< the environment names a server
    bool reachable = false;  ///< it answers
    bool rootless = false;   ///< it serves X programs inside a Wayland session
    bool injectsKeys = false;
    bool hearsKeys = false;
    bool namesActiveWindow = false;  ///< its window manager does
    bool ownsTray = false;           ///< some program shows the icons of X programs
  };
  struct Wayland {
    bool named = false;
    bool reachable = false;
    std::set<std::string> interfaces{};  ///< what the compositor offers
  };

  X11 x11{};
  Wayland wayland{};
  bool swaySocket = false;           ///< sway's own interface answers
  std::set<std::string> busNames{};  ///< on the session bus, those that `desktopBusNames` lists
  PortalVersions portals{};
  bool tray = false;  ///< somebody shows tray icons
};

/// The names whose owners a plan depends on.
namespace desktopBusName {
inline constexpr const char* globalAccel = "org.kde.kglobalaccel";
inline constexpr const char* gnomeShell = "org.gnome.Shell";
inline constexpr const char* shellExtension = "app.murmel.Shell";  ///< Murmel's extension of GNOME Shell
inline constexpr const char* accessibility = "org.a11y.Bus";
inline constexpr const char* trayWatcher = "org.kde.StatusNotifierWatcher";
}  // namespace desktopBusName

enum class SessionKind { none, x11, sway, wlroots, kwin, gnome, otherWayland };

/// Who tells that the shortcut was pressed.
enum class ShortcutRoad {
  none,  ///< a key binding of the desktop that runs `murmel toggle`
  keyTap,
  swayBindings,
  globalAccel,
  shellExtension,
  gnomeKeyBinding,  ///< one that Murmel makes, and that runs `murmel toggle`
  portal,
};
/// Who presses the paste keys.
enum class PasteRoad { none, xTest, virtualKeyboard, fakeInput, shellExtension, portal };
/// How the clipboard is read and written.
enum class ClipboardRoad { none, x11, dataControl, portal };
/// Who tells which application is in front.
enum class WindowRoad {
  none,
  x11,
  swayTree,
  foreignToplevel,
  plasmaWindows,
  shellExtension,
  accessibility,  ///< the applications themselves, those that do
};
/// How the indicator is put on the screen without taking the keyboard.
enum class IndicatorRoad { none, x11, layerSurface };

/// How this session is served, each service by the best road that it has.
struct DesktopPlan {
  SessionKind session = SessionKind::none;
  ShortcutRoad shortcut = ShortcutRoad::none;
  PasteRoad paste = PasteRoad::none;
  ClipboardRoad clipboard = ClipboardRoad::none;
  WindowRoad windows = WindowRoad::none;
  IndicatorRoad indicator = IndicatorRoad::none;
  /// Why there is no desktop at all, in a sentence for the user; empty when there is one.
  std::string failure{};
  PortalVersions portals{};

  friend bool operator==(const DesktopPlan&, const DesktopPlan&) = default;
};

/// Pure.
DesktopPlan planDesktop(const SessionFacts& facts);

/// Why texts are copied there and not pasted, and how that is to be had, in sentences for the user; empty
/// where they are pasted.
std::string pasteObstacle(const DesktopPlan& plan);

/// "X11", "Wayland (sway)", …
std::string sessionTitle(SessionKind session);

}  // namespace murmel
