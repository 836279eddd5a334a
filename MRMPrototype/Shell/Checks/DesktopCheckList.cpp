#include "Platform/KeyModifiers.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Shell/Checks/Checks.h"
#include "Shell/IntelCommand.h"
#include "Shortcut/HotkeyService.h"

#include <QDBusConnection>
#include <utility>

namespace murmel {

namespace {

Task<CheckResult> checkSession(CheckedServices services) {
  const auto plan = planDesktop(services.facts);
  if (services.desktop == nullptr) {
    co_return CheckResult{CheckState::broken,
                          services.desktopFailure + " “murmel transcribe FILE” works without a desktop."};
  }
  co_return CheckResult{CheckState::works, sessionTitle(plan.session) + "."};
}

Task<CheckResult> checkBus(CheckedServices /*services*/) {
  if (QDBusConnection::sessionBus().isConnected())
    co_return CheckResult{CheckState::works, "Commands like “murmel toggle” reach the running Murmel."};
  co_return CheckResult{
      CheckState::limited,
      "There is none, or it does not answer: commands like “murmel toggle” cannot reach the running Murmel."};
}

Task<CheckResult> checkTray(CheckedServices services) {
  if (services.facts.tray) co_return CheckResult{CheckState::works, "The icon is shown in it."};
  co_return CheckResult{CheckState::limited,
                        "This desktop has none. Use the shortcut or commands like “murmel settings”."};
}

Task<CheckResult> checkShortcut(CheckedServices services) {
  const auto shortcut = services.shortcut();
  if (shortcut.kind == ShortcutConfiguration::Kind::disabled) {
    co_return CheckResult{CheckState::works,
                          "No shortcut is set. The tray icon and “murmel toggle” start dictation."};
  }
  if (services.desktop == nullptr)
    co_return CheckResult{CheckState::limited, "There is no desktop to hear it on."};
  auto notice = shortcutNotice(services.desktop->shortcuts, shortcut);
  if (!notice.empty()) co_return CheckResult{CheckState::limited, std::move(notice)};
  co_return CheckResult{CheckState::works, "The shortcut is heard while other applications are in front."};
}

Task<CheckResult> checkPaste(CheckedServices services) {
  if (services.desktop == nullptr)
    co_return CheckResult{CheckState::limited, "There is no desktop to paste on."};
  auto& keyboard = services.desktop->keyboard;
  const auto plan = planDesktop(services.facts);
  const auto obstacle = pasteObstacle(plan);
  // GNOME's extension may have been enabled since.
  const bool hasGone = plan.session == SessionKind::gnome && keyboard.mayPost();
  if (!obstacle.empty() && !hasGone)
    co_return CheckResult{CheckState::limited, obstacle + " Text is copied, for you to paste."};
  auto* const portal = services.desktop->portalPaste;
  if (portal != nullptr && !keyboard.mayPost())
    co_return CheckResult{CheckState::limited, portal->obstacle() + " Text is copied, for you to paste."};
  if (portal != nullptr && portal->isInUse()) {
    co_return CheckResult{CheckState::works,
                          "Text is pasted through the desktop's portal, into applications that tell of their "
                          "windows on the accessibility bus."};
  }
  if (!keyboard.mayPost()) {
    co_return CheckResult{CheckState::limited,
                          "The desktop does not let this program press keys after all. Text is copied, for "
                          "you to paste."};
  }
  if (!keyboard.canPost(PasteChord::controlV) && !keyboard.canPost(PasteChord::shiftInsert)) {
    co_return CheckResult{CheckState::limited,
                          "The keyboard layout has no keys to paste with. Text is copied, for you to paste."};
  }
  co_return CheckResult{CheckState::works, "Text is pasted into the application in front."};
}

Task<CheckResult> checkPasswordFields(CheckedServices services) {
  if (services.desktop == nullptr)
    co_return CheckResult{CheckState::limited, "There is no desktop with applications that tell of them."};
  switch (services.desktop->focusedField.tellers()) {
    case FieldTellers::all:
      co_return CheckResult{CheckState::works,
                            "Applications can tell of them; nothing is pasted into those that do."};
    case FieldTellers::some:
      co_return CheckResult{CheckState::limited,
                            "GTK programs tell of them, Qt programs and browsers only while assistive "
                            "technologies are switched on. Prompts that take the keyboard for themselves "
                            "are seen in any case."};
    case FieldTellers::nobody:
      break;
  }
  co_return CheckResult{CheckState::limited,
                        "They look like other fields: the accessibility bus (at-spi2-core) does not run. "
                        "Prompts that take the keyboard for themselves are seen all the same."};
}

}  // namespace

std::string shortcutNotice(ShortcutSource& source, const ShortcutConfiguration& shortcut) {
  if (shortcut.kind == ShortcutConfiguration::Kind::disabled) return {};
  const auto access = source.permission(shortcutRequest(shortcut));
  if (!access.reason.empty()) return access.reason;
  const bool hasFunctionKey = (shortcut.modifierRawValue & keyModifier::function) != 0;
  return std::string(hasFunctionKey ? functionKeyNotice : "");
}

std::vector<CheckDefinition> desktopChecks(const CheckedServices& services) {
  const auto with = [&services](Task<CheckResult> (*check)(CheckedServices)) {
    return [services, check] { return check(services); };
  };
  const auto leadTo = [&services](IntelCommand command) -> std::function<void()> {
    if (!services.perform) return {};
    return [perform = services.perform, command] { perform(command); };
  };
  return {
      {"edition", "Edition", with(&checkEdition)},
      {"session", "Desktop", with(&checkSession)},
      {.identifier = "speech-model",
       .name = "Speech model",
       .attempt = with(&checkSpeechModel),
       .cureTitle = "Download",
       .cure = leadTo(IntelCommand::downloadSpeechModel),
       .hanging = CheckState::broken},
      {.identifier = "speech-recognition",
       .name = "Speech recognition",
       .attempt = with(&checkSpeechRecognition),
       .hanging = CheckState::broken},
      {.identifier = "microphone",
       .name = "Microphone",
       .attempt = with(&checkMicrophone),
       .cureTitle = "Sound Settings",
       .cure = leadTo(IntelCommand::openMicrophoneSettings),
       .hanging = CheckState::broken},
      {.identifier = "shortcut",
       .name = "Global shortcut",
       .attempt = with(&checkShortcut),
       .cureTitle = "Choose Shortcut",
       .cure = leadTo(IntelCommand::requestInputMonitoring)},
      {.identifier = "paste",
       .name = "Automatic paste",
       .attempt = with(&checkPaste),
       .cureTitle = "Allow",
       .cure = leadTo(IntelCommand::requestAutomaticPaste)},
      {"password-fields", "Password fields", with(&checkPasswordFields)},
      {"key-ring", "Key ring", with(&checkKeyRing)},
      {"folders", "Files", with(&checkFolders)},
      {"swap", "Swap", with(&checkSwap)},
      {"confinement", "Confinement", with(&checkConfinement)},
      {"refiners", "Formatting", with(&checkRefiners)},
      {"session-bus", "Session bus", with(&checkBus)},
      {"tray", "Tray", with(&checkTray)},
  };
}

}  // namespace murmel
