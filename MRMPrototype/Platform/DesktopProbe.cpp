#include "Platform/DesktopProbe.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace murmel {

namespace {

bool offers(const SessionFacts& facts, std::initializer_list<std::string_view> anyOf) {
  for (const auto name : anyOf) {
    if (facts.wayland.interfaces.contains(std::string(name))) return true;
  }
  return false;
}

bool hasName(const SessionFacts& facts, const char* name) {
  return facts.busNames.contains(name);
}

SessionKind sessionKind(const SessionFacts& facts) {
  if (!facts.wayland.reachable) {
    if (!facts.x11.reachable) return SessionKind::none;
    return facts.x11.rootless ? SessionKind::otherWayland : SessionKind::x11;
  }
  if (facts.swaySocket) return SessionKind::sway;
  if (offers(facts, {"org_kde_plasma_shell", "org_kde_kwin_server_decoration_manager"}) &&
      hasName(facts, desktopBusName::globalAccel)) {
    return SessionKind::kwin;
  }
  if (hasName(facts, desktopBusName::gnomeShell)) return SessionKind::gnome;
  if (offers(facts, {"zwp_virtual_keyboard_manager_v1", "zwlr_layer_shell_v1"})) return SessionKind::wlroots;
  return SessionKind::otherWayland;
}

std::string failureOf(const SessionFacts& facts) {
  if (facts.x11.named && facts.wayland.named)
    return "Neither the X server nor the Wayland compositor of this session can be reached.";
  if (facts.x11.named) return "The X server that DISPLAY names cannot be reached.";
  if (facts.wayland.named) return "The Wayland compositor that WAYLAND_DISPLAY names cannot be reached.";
  return "There is no display.";
}

/// By what the compositor and the bus offer, for whatever has no road of its own.
void takeGeneralRoads(const SessionFacts& facts, DesktopPlan& plan) {
  if (plan.shortcut == ShortcutRoad::none && facts.portals.shortcuts > 0)
    plan.shortcut = ShortcutRoad::portal;
  if (plan.paste == PasteRoad::none && offers(facts, {"zwp_virtual_keyboard_manager_v1"}))
    plan.paste = PasteRoad::virtualKeyboard;
  if (plan.clipboard == ClipboardRoad::none && offers(facts, {"zwlr_data_control_manager_v1"})) {
    plan.clipboard = ClipboardRoad::dataControl;
  }
  if (plan.paste == PasteRoad::none && facts.portals.keyboard > 0) plan.paste = PasteRoad::portal;
  // It belongs to the session that presses keys.
  if (plan.clipboard == ClipboardRoad::none && plan.paste == PasteRoad::portal && facts.portals.clipboard > 0)
    plan.clipboard = ClipboardRoad::portal;
  if (plan.windows == WindowRoad::none && offers(facts, {"zwlr_foreign_toplevel_manager_v1"}))
    plan.windows = WindowRoad::foreignToplevel;
  if (plan.windows == WindowRoad::none && hasName(facts, desktopBusName::accessibility))
    plan.windows = WindowRoad::accessibility;
  if (facts.x11.reachable) {
    plan.indicator = IndicatorRoad::x11;
  } else if (offers(facts, {"zwlr_layer_shell_v1"})) {
    plan.indicator = IndicatorRoad::layerSurface;
  }
}

}  // namespace

DesktopPlan planDesktop(const SessionFacts& facts) {
  DesktopPlan plan{.session = sessionKind(facts), .portals = facts.portals};
  switch (plan.session) {
    case SessionKind::none:
      plan.failure = failureOf(facts);
      return plan;
    case SessionKind::x11:
      plan.shortcut = facts.x11.hearsKeys ? ShortcutRoad::keyTap : ShortcutRoad::none;
      plan.paste = facts.x11.injectsKeys ? PasteRoad::xTest : PasteRoad::none;
      plan.clipboard = ClipboardRoad::x11;
      plan.windows = facts.x11.namesActiveWindow ? WindowRoad::x11 : WindowRoad::none;
      plan.indicator = IndicatorRoad::x11;
      return plan;
    case SessionKind::sway:
      plan.shortcut = ShortcutRoad::swayBindings;
      plan.windows = WindowRoad::swayTree;
      break;
    case SessionKind::kwin:
      plan.shortcut = ShortcutRoad::globalAccel;
      // Both are offered to programs only that a desktop file names.
      if (offers(facts, {"org_kde_kwin_fake_input"})) plan.paste = PasteRoad::fakeInput;
      if (offers(facts, {"org_kde_plasma_window_management"})) plan.windows = WindowRoad::plasmaWindows;
      break;
    case SessionKind::gnome:
      // Before its second version other desktops' portals answer there, and tell of no press.
      plan.shortcut = facts.portals.shortcuts > 1 ? ShortcutRoad::portal : ShortcutRoad::gnomeKeyBinding;
      if (hasName(facts, desktopBusName::shellExtension)) {
        plan.shortcut = ShortcutRoad::shellExtension;
        plan.paste = PasteRoad::shellExtension;
        plan.windows = WindowRoad::shellExtension;
      }
      // Its own protocol has no clipboard for programs without a window, but it keeps both sides in step.
      if (facts.x11.reachable) plan.clipboard = ClipboardRoad::x11;
      break;
    case SessionKind::wlroots:
    case SessionKind::otherWayland:
      break;
  }
  takeGeneralRoads(facts, plan);
  return plan;
}

std::string pasteObstacle(const DesktopPlan& plan) {
  if (plan.paste != PasteRoad::none && plan.windows != WindowRoad::none) return {};
  if (plan.paste != PasteRoad::none && plan.portals.keyboard > 0)
    return "Which window is active is told on the accessibility bus (at-spi2-core) alone here, which does "
           "not "
           "run.";
  switch (plan.session) {
    case SessionKind::x11:
      return plan.paste == PasteRoad::none
                 ? "The X server lets no program press keys: its XTest extension is missing."
                 : "No window manager tells which window is active.";
    case SessionKind::kwin:
      return "KWin lets installed programs alone press keys and see which window is active. Install Murmel's "
             "package, or its desktop file in ~/.local/share/applications, and start Murmel anew.";
    case SessionKind::gnome:
      return "GNOME tells programs which window is active through an extension only. Murmel's can be enabled "
             "in "
             "its setup; if GNOME does not know it yet, log in again.";
    case SessionKind::none:
    case SessionKind::sway:
    case SessionKind::wlroots:
    case SessionKind::otherWayland:
      break;
  }
  return "This desktop lets no program press keys or see which window is active.";
}

std::string sessionTitle(SessionKind session) {
  switch (session) {
    case SessionKind::none:
      return "no desktop";
    case SessionKind::x11:
      return "X11";
    case SessionKind::sway:
      return "Wayland (sway)";
    case SessionKind::wlroots:
      return "Wayland (wlroots)";
    case SessionKind::kwin:
      return "Wayland (KWin)";
    case SessionKind::gnome:
      return "Wayland (GNOME)";
    case SessionKind::otherWayland:
      return "Wayland";
  }
  std::unreachable();
}

}  // namespace murmel
