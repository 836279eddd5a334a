#include "Shell/WaylandDesktop.h"

#include "Platform/Linux/Accessibility/AccessibleFocusedField.h"
#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/Linux/Gnome/BridgedPasteboard.h"
#include "Platform/Linux/Gnome/GnomeKeyboard.h"
#include "Platform/Linux/Gnome/GnomeShortcuts.h"
#include "Platform/Linux/Gnome/GnomeWorkspace.h"
#include "Platform/Linux/Gnome/ShellExtension.h"
#include "Platform/Linux/Gnome/ShellLockNotice.h"
#include "Platform/Linux/KWin/FakeInputKeyboard.h"
#include "Platform/Linux/KWin/GlobalAccel.h"
#include "Platform/Linux/KWin/PlasmaWindows.h"
#include "Platform/Linux/KWin/XWaylandWindows.h"
#include "Platform/Linux/Portal/AccessibleWorkspace.h"
#include "Platform/Linux/Portal/Either.h"
#include "Platform/Linux/Portal/PortalKeyboard.h"
#include "Platform/Linux/Portal/PortalPasteboard.h"
#include "Platform/Linux/Portal/TriedShortcuts.h"
#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Platform/Linux/PulseAudio/PulseAudioSoundPlayer.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Platform/Linux/Session/SessionProbe.h"
#include "Platform/Linux/Sway/SwayBindings.h"
#include "Platform/Linux/Sway/SwayWorkspace.h"
#include "Platform/Linux/Wayland/ForeignToplevels.h"
#include "Platform/Linux/Wayland/LayerSurface.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/Linux/Wayland/VirtualKeyboard.h"
#include "Platform/Linux/Wayland/WaylandPasteboards.h"
#include "Platform/Linux/X11/X11Pasteboards.h"
#include "Platform/Qt/DesktopSessionGuard.h"
#include "Shell/AbsentServices.h"
#include "Shell/ClipboardKeeping.h"

#include <utility>

namespace murmel {

namespace {

/// The portal's session, and what it needs.
class PortalAccess final : public PortalPaste {
 public:
  PortalAccess(const DesktopParameters& parameters, Portal& portal, const DesktopPlan& plan)
      : token_(parameters.process.executor, secrets_, parameters.installation.identifier + ".portal"),
        session(portal, token_, plan.portals),
        version_(plan.portals.keyboard) {}

  void restore() override { session.restore(); }
  [[nodiscard]] bool isInUse() override { return session.isOpen(); }
  [[nodiscard]] Signal<>& didChange() override { return session.didChange(); }
  [[nodiscard]] std::string obstacle() override {
    using Standing = RemoteDesktopSession::Standing;
    switch (session.standing()) {
      case Standing::open:
        return {};
      case Standing::asking:
        return "The desktop is asking you whether Murmel may press keys.";
      case Standing::refused:
        return "The desktop did not let Murmel press keys when it was asked to.";
      case Standing::ended:
        return "The desktop lets Murmel press keys no more: its permission was ended.";
      case Standing::closed:
        break;
    }
    // Only from its second version on the portal knows a permission that lasts.
    return version_ > 1
               ? "The desktop lets Murmel press keys once you have allowed it: it asks you then. A Murmel "
                 "that runs may have been allowed already."
               : "The desktop lets Murmel press keys once you have allowed it, after each start of Murmel.";
  }

 private:
  SecretServiceStore secrets_;
  PortalToken token_;

 public:
  RemoteDesktopSession session;

 private:
  std::uint32_t version_;
};

/// What is there of each service, in the order in which they need one another.
struct Roads {
  std::unique_ptr<ClipboardKeeperProcess> keeper{};
  std::unique_ptr<WaylandPasteboards> clipboards{};
  std::unique_ptr<X11Pasteboards> x11Clipboards{};
  std::unique_ptr<BridgedPasteboard> bridged{};
  std::unique_ptr<SessionBus> bus{};
  std::unique_ptr<UsersKeymap> keymap{};
  std::unique_ptr<Portal> portal{};
  std::unique_ptr<PortalAccess> portalAccess{};
  std::unique_ptr<PortalPasteboard> byPortal{};
  std::unique_ptr<ShellLockNotice> shellLock{};
  std::unique_ptr<Workspace> workspace{};
  std::unique_ptr<KeyboardPoster> keyboard{};
  std::unique_ptr<ShortcutSource> shortcuts{};
  std::unique_ptr<CancelKey> cancelKey{};
  std::unique_ptr<IndicatorSurface> indicator{};
  std::function<void()> askForAccess{};

  [[nodiscard]] ClipboardPasteboard& general() const {
    if (byPortal) return *byPortal;
    if (bridged) return *bridged;
    return clipboards ? clipboards->general() : x11Clipboards->general();
  }
  [[nodiscard]] ClipboardPasteboard* primary() const {
    if (clipboards) return clipboards->primary();
    return x11Clipboards ? &x11Clipboards->primary() : nullptr;
  }
};

class WaylandDesktopConnection final : public DesktopConnection {
 public:
  WaylandDesktopConnection(const DesktopParameters& parameters, Roads roads)
      : microphone_(parameters.process.executor, {parameters.installation.build.displayName, std::nullopt}),
        authorization_(PulseAudioAuthorization::Environment::from(parameters.installation.environment)),
        sounds_({parameters.installation.build.displayName, std::nullopt}),
        roads_(std::move(roads)),
        focusedField_(parameters.process.executor),
        session_(parameters.process.executor, [this] {
          return screenLockerRuns() || (roads_.shellLock && roads_.shellLock->isLocking());
        }) {}

  [[nodiscard]] DesktopServices services() override {
    return {
        .microphone = microphone_,
        .microphoneAuthorization = authorization_,
        .sounds = sounds_,
        .shortcuts = *roads_.shortcuts,
        .workspace = *roads_.workspace,
        .keyboard = *roads_.keyboard,
        .secureInput = secureInput_,
        .focusedField = focusedField_,
        .session = session_,
        .cancelKey = *roads_.cancelKey,
        .clipboard = roads_.general(),
        .primarySelection = roads_.primary(),
        .indicator = roads_.indicator.get(),
        .askForAccess = roads_.askForAccess,
        .portalPaste = roads_.portalAccess.get(),
    };
  }

 private:
  PulseAudioInput microphone_;
  PulseAudioAuthorization authorization_;
  PulseAudioSoundPlayer sounds_;
  Roads roads_;
  UnseenSecureInput secureInput_;
  AccessibleFocusedField focusedField_;
  DesktopSessionGuard session_;
};

std::expected<void, std::string> openClipboard(const DesktopPlan& plan, const DesktopParameters& parameters,
                                               Roads& roads) {
  auto& process = parameters.process;
  switch (plan.clipboard) {
    case ClipboardRoad::dataControl: {
      roads.keeper = clipboardKeeper(parameters, {"WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "HOME"});
      auto opened = WaylandPasteboards::open(process.executor, process.clock, roads.keeper.get());
      if (!opened) return std::unexpected(opened.error());
      roads.clipboards = *std::move(opened);
      return {};
    }
    case ClipboardRoad::x11: {
      roads.keeper = clipboardKeeper(parameters, {"DISPLAY", "XAUTHORITY", "HOME"});
      auto opened = X11Pasteboards::open(process.executor, process.clock, {}, roads.keeper.get());
      if (!opened) return std::unexpected(opened.error());
      roads.x11Clipboards = *std::move(opened);
      if (plan.session == SessionKind::gnome)
        roads.bridged = std::make_unique<BridgedPasteboard>(roads.x11Clipboards->general());
      return {};
    }
    case ClipboardRoad::portal:
      if (!roads.portalAccess) break;
      roads.byPortal =
          std::make_unique<PortalPasteboard>(process.executor, process.clock, roads.portalAccess->session);
      return {};
    case ClipboardRoad::none:
      break;
  }
  return std::unexpected("This is a session of " + sessionTitle(plan.session) +
                         " without XWayland, which Murmel needs there for the clipboard.");
}

/// The extension may be enabled, or come back after the screen was locked, at any time.
bool isGnome(const DesktopPlan& plan, const Roads& roads) {
  return plan.session == SessionKind::gnome && roads.bus && roads.keymap;
}

/// Who reads the clipboard in an application's stead, where windows are told of by the applications.
std::function<void(RunningApplication&)> clipboardReaders(const DesktopPlan& plan) {
  const bool xServerAnswers = plan.indicator == IndicatorRoad::x11;
  auto connection = WaylandConnection::open();
  const pid_t compositor = connection ? (*connection)->compositor() : 0;
  return [compositor, readsAll = plan.clipboard != ClipboardRoad::dataControl,
          windows = std::make_shared<XWaylandWindows>(xServerAnswers)](RunningApplication& application) {
    const auto names = windows->find(application.client.processIdentifier);
    if (names && !names->windowClass.empty()) application.bundleIdentifier = names->windowClass;
    // By data-control the compositor reads for programs of the X server, otherwise for all others.
    if (names.has_value() != readsAll) application.clipboardProxy = compositor;
    application.proxyLooksFirst = readsAll && !names;
    application.isPanel = application.client.processIdentifier == compositor;
  };
}

std::unique_ptr<Workspace> workspaceFor(const DesktopPlan& plan, const DesktopParameters& parameters,
                                        const Roads& roads) {
  auto& executor = parameters.process.executor;
  std::unique_ptr<Workspace> told;
  if (plan.windows == WindowRoad::accessibility && roads.portalAccess)
    told = AccessibleWorkspace::open(executor, *roads.bus, clipboardReaders(plan));
  if (isGnome(plan, roads)) {
    auto byExtension = std::make_unique<GnomeWorkspace>(executor, *roads.bus);
    if (!told) return byExtension;
    const auto hasExtension = [bus = roads.bus.get()] {
      return !bus->ownerOf(shellExtension.service).empty();
    };
    return std::make_unique<EitherWorkspace>(hasExtension, std::move(byExtension), std::move(told));
  }
  if (told) return told;
  if (plan.windows == WindowRoad::swayTree) {
    if (auto opened =
            SwayWorkspace::open(executor, parameters.installation.environment.value("SWAYSOCK").value_or("")))
      return opened;
  }
  if (plan.windows == WindowRoad::foreignToplevel) {
    if (auto opened = ForeignToplevels::open(executor)) return *std::move(opened);
  }
  if (plan.windows == WindowRoad::plasmaWindows) {
    const bool xServerAnswers = plan.indicator == IndicatorRoad::x11;
    if (auto opened = PlasmaWindows::open(executor, xServerAnswers)) return *std::move(opened);
  }
  return std::make_unique<NoWorkspace>();
}

std::unique_ptr<KeyboardPoster> keyboardFor(const DesktopPlan& plan, const DesktopParameters& parameters,
                                            const Roads& roads) {
  auto& executor = parameters.process.executor;
  std::unique_ptr<KeyboardPoster> byPortal;
  if (roads.portalAccess && roads.keymap)
    byPortal = std::make_unique<PortalKeyboard>(executor, roads.portalAccess->session, *roads.workspace,
                                                *roads.keymap, roads.general());
  if (isGnome(plan, roads)) {
    auto byExtension = std::make_unique<GnomeKeyboard>(executor, *roads.bus, *roads.keymap, roads.general());
    if (!byPortal) return byExtension;
    return std::make_unique<EitherKeyboard>(std::move(byExtension), std::move(byPortal));
  }
  if (byPortal) return byPortal;
  if (plan.paste == PasteRoad::virtualKeyboard) {
    if (auto opened = VirtualKeyboard::open(*roads.workspace)) return *std::move(opened);
  }
  if (plan.paste == PasteRoad::fakeInput && roads.keymap) {
    if (auto opened = FakeInputKeyboard::open(*roads.workspace, *roads.keymap)) return *std::move(opened);
  }
  return std::make_unique<NoKeyboard>();
}

void openShortcuts(const DesktopPlan& plan, const DesktopParameters& parameters, Roads& roads) {
  auto& executor = parameters.process.executor;
  if (plan.shortcut == ShortcutRoad::swayBindings) {
    const auto socket = parameters.installation.environment.value("SWAYSOCK").value_or("");
    roads.shortcuts = std::make_unique<SwayBindings>(executor, socket);
    roads.cancelKey = std::make_unique<SwayCancelKey>(executor, socket);
    return;
  }
  if (isGnome(plan, roads)) {
    roads.shortcuts = std::make_unique<GnomeShortcuts>(*roads.bus, *roads.keymap);
    roads.cancelKey = std::make_unique<GnomeCancelKey>(*roads.bus);
    roads.askForAccess = [bus = roads.bus.get(), portal = roads.portalAccess.get()] {
      if (!enableShellExtension(*bus) && portal != nullptr) portal->session.ask();
    };
  } else if (plan.shortcut == ShortcutRoad::globalAccel && roads.bus && roads.keymap) {
    roads.shortcuts = std::make_unique<GlobalAccelShortcuts>(*roads.bus, *roads.keymap);
    roads.cancelKey = std::make_unique<GlobalAccelCancelKey>(*roads.bus);
  } else {
    roads.cancelKey = std::make_unique<NoCancelKey>();
    roads.shortcuts = std::make_unique<NoShortcuts>(
        "This desktop lets no program hear a shortcut. Bind a key to the command “murmel toggle” in its "
        "settings.");
  }
  if (!roads.askForAccess && roads.portalAccess)
    roads.askForAccess = [portal = roads.portalAccess.get()] { portal->session.ask(); };
  if (plan.shortcut == ShortcutRoad::portal && roads.portal && roads.keymap) {
    roads.shortcuts =
        std::make_unique<TriedShortcuts>(executor, parameters.process.clock, *roads.portal, *roads.keymap,
                                         plan.portals.shortcuts, std::move(roads.shortcuts));
  }
}

std::unique_ptr<IndicatorSurface> indicatorFor(const DesktopPlan& plan, const DesktopParameters& parameters) {
  if (plan.indicator == IndicatorRoad::x11) return nullptr;
  if (plan.indicator == IndicatorRoad::layerSurface) {
    if (auto opened = LayerSurface::open(parameters.process.executor)) return opened;
  }
  // A window of Wayland's would take the keyboard.
  return std::make_unique<NoIndicator>();
}

}  // namespace

std::expected<std::unique_ptr<DesktopConnection>, std::string> WaylandDesktop::open(
    const DesktopPlan& plan, const DesktopParameters& parameters) {
  Roads roads;
  roads.bus = SessionBus::open(parameters.process.executor);
  if (roads.bus && plan.portals != PortalVersions{})
    roads.portal = std::make_unique<Portal>(*roads.bus, parameters.installation.identifier);
  if (roads.portal && plan.paste == PasteRoad::portal)
    roads.portalAccess = std::make_unique<PortalAccess>(parameters, *roads.portal, plan);
  if (const auto opened = openClipboard(plan, parameters, roads); !opened)
    return std::unexpected(opened.error());
  if (auto keymap = UsersKeymap::open(parameters.process.executor)) roads.keymap = *std::move(keymap);
  if (isGnome(plan, roads))
    roads.shellLock = std::make_unique<ShellLockNotice>(*roads.bus, parameters.process.clock);
  roads.workspace = workspaceFor(plan, parameters, roads);
  roads.keyboard = keyboardFor(plan, parameters, roads);
  openShortcuts(plan, parameters, roads);
  roads.indicator = indicatorFor(plan, parameters);
  return std::make_unique<WaylandDesktopConnection>(parameters, std::move(roads));
}

}  // namespace murmel
