#include "Platform/DesktopProbe.h"
#include "Support/Testing.h"

TEST(DesktopPlan, ServesEachSessionByTheBestRoadThatItHas) {
  const SessionFacts::X11 server{
      .named = true, .reachable = true, .injectsKeys = true, .hearsKeys = true, .namesActiveWindow = true};
  auto xwayland = server;
  xwayland.rootless = true;
  const auto wayland = [](std::set<std::string> interfaces) {
    return SessionFacts::Wayland{true, true, std::move(interfaces)};
  };
  const std::set<std::string> wlrootsInterfaces{"zwp_virtual_keyboard_manager_v1",
                                                "zwlr_data_control_manager_v1", "zwlr_layer_shell_v1",
                                                "zwlr_foreign_toplevel_manager_v1"};
  const std::set<std::string> plasma{"org_kde_plasma_shell", "zwlr_data_control_manager_v1"};
  auto plasmaGranted = plasma;
  plasmaGranted.insert({"org_kde_kwin_fake_input", "org_kde_plasma_window_management"});
  const std::set<std::string> gnomeNames{desktopBusName::gnomeShell, desktopBusName::shellExtension};
  const auto planned = [](SessionKind kind, ShortcutRoad shortcut, PasteRoad paste, ClipboardRoad clipboard,
                          WindowRoad window, IndicatorRoad indicator, PortalVersions portals = {}) {
    return DesktopPlan{kind, shortcut, paste, clipboard, window, indicator, {}, portals};
  };
  struct Row {
    std::string what;
    SessionFacts facts;
    DesktopPlan plan;
  };
  using enum SessionKind;
  for (const auto& [what, facts, plan] : std::vector<Row>{
           {"X11",
            {.x11 = server},
            planned(x11, ShortcutRoad::keyTap, PasteRoad::xTest, ClipboardRoad::x11, WindowRoad::x11,
                    IndicatorRoad::x11)},
           {"a bare X server",
            {.x11 = {.named = true, .reachable = true}},
            planned(x11, {}, {}, ClipboardRoad::x11, {}, IndicatorRoad::x11)},
           {"sway with XWayland",
            {.x11 = xwayland, .wayland = wayland(wlrootsInterfaces), .swaySocket = true},
            planned(sway, ShortcutRoad::swayBindings, PasteRoad::virtualKeyboard, ClipboardRoad::dataControl,
                    WindowRoad::swayTree, IndicatorRoad::x11)},
           {"another wlroots",
            {.wayland = wayland(wlrootsInterfaces)},
            planned(wlroots, {}, PasteRoad::virtualKeyboard, ClipboardRoad::dataControl,
                    WindowRoad::foreignToplevel, IndicatorRoad::layerSurface)},
           {"Plasma that has not granted us its own protocols",
            {.x11 = xwayland, .wayland = wayland(plasma), .busNames = {desktopBusName::globalAccel}},
            planned(kwin, ShortcutRoad::globalAccel, {}, ClipboardRoad::dataControl, {}, IndicatorRoad::x11)},
           {"Plasma that has",
            {.x11 = xwayland, .wayland = wayland(plasmaGranted), .busNames = {desktopBusName::globalAccel}},
            planned(kwin, ShortcutRoad::globalAccel, PasteRoad::fakeInput, ClipboardRoad::dataControl,
                    WindowRoad::plasmaWindows, IndicatorRoad::x11)},
           {"GNOME",
            {.x11 = xwayland, .wayland = wayland({}), .busNames = {desktopBusName::gnomeShell}},
            planned(gnome, ShortcutRoad::gnomeKeyBinding, {}, ClipboardRoad::x11, {}, IndicatorRoad::x11)},
           {"GNOME with the extension",
            {.x11 = xwayland, .wayland = wayland({}), .busNames = gnomeNames},
            planned(gnome, ShortcutRoad::shellExtension, PasteRoad::shellExtension, ClipboardRoad::x11,
                    WindowRoad::shellExtension, IndicatorRoad::x11)},
           {"GNOME with another desktop's portals",
            {.x11 = xwayland,
            .wayland = wayland({}),
            .busNames = {desktopBusName::gnomeShell, desktopBusName::accessibility},
            .portals = {1, 1, 0}},
            planned(gnome, ShortcutRoad::gnomeKeyBinding, PasteRoad::portal, ClipboardRoad::x11,
                    WindowRoad::accessibility, IndicatorRoad::x11, {1, 1, 0})},
           {"an unknown compositor with portals",
            {.wayland = wayland({}), .portals = {1, 2, 1}},
            planned(otherWayland, ShortcutRoad::portal, PasteRoad::portal, ClipboardRoad::portal, {}, {},
                    {1, 2, 1})},
           {"an unknown compositor", {.wayland = wayland({})}, planned(otherWayland, {}, {}, {}, {}, {})},
           {"nothing", {}, {.failure = "There is no display."}},
           {"a display that is gone",
            {.x11 = {.named = true}},
            {.failure = "The X server that DISPLAY names cannot be reached."}},
       }) {
    EXPECT_EQ(planDesktop(facts), plan) << what;
  }
}
