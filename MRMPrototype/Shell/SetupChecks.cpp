#include "Shell/SetupChecks.h"

#include "Foundation/Async/Clock.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Platform/Linux/X11/X11Workspace.h"
#include "Platform/Linux/X11Keys/InjectedKeyList.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Platform/Qt/QtExecutor.h"
#include "Recognition/FluidAudioProvider.h"

#include <QDBusConnection>
#include <string>
#include <utility>

namespace murmel {

namespace {

SetupCheck speechCheck(const ApplicationFolders& folders, const SpeechModelStore& models) {
  const auto worker = folders.resources / "Workers" / FluidAudioProvider::workerName;
  if (!std::filesystem::exists(worker))
    return {"Speech recognition", false, "The worker is missing: " + worker.string()};
  const auto folder = models.activeModelURL();
  if (!models.requiredItemsPresent(folder)) {
    return {"Speech recognition", false,
            "The speech model is not in " + folder.string() + ". Install the package pocketsphinx-en-us."};
  }
  return {"Speech recognition", true, "The speech model is in " + folder.string() + "."};
}

SetupCheck microphoneCheck(const Environment& environment) {
  const PulseAudioAuthorization authorization(PulseAudioAuthorization::Environment::from(environment));
  switch (authorization.phase()) {
    case MicrophonePermissionPhase::denied:
      return {"Microphone", false, "The sound server refuses this user."};
    case MicrophonePermissionPhase::restricted:
      return {"Microphone", false, "This sandbox has no access to the sound server."};
    default:
      return {"Microphone", true, "The default source of the sound server is used."};
  }
}

std::string noticeFor(const ShortcutConfiguration& shortcut, const Environment& environment,
                      Executor& executor, const Clock& clock) {
  if (shortcut.kind == ShortcutConfiguration::Kind::disabled) return {};
  InjectedKeyList injected(clock);
  X11KeyEventTap tap(executor, injected, X11KeyEnvironment::from(environment));
  const auto access = tap.permission();
  if (!access.granted) return access.reason;
  const bool hasFunctionKey = (shortcut.modifierRawValue & keyModifier::function) != 0;
  return std::string(hasFunctionKey ? functionKeyNotice : "");
}

SetupCheck shortcutCheck(const ShortcutConfiguration& shortcut, const Environment& environment,
                         Executor& executor, const Clock& clock) {
  if (shortcut.kind == ShortcutConfiguration::Kind::disabled)
    return {"Global shortcut", true,
            "No shortcut is set. The tray icon and “murmel toggle” start dictation."};
  auto notice = noticeFor(shortcut, environment, executor, clock);
  if (!notice.empty()) return {"Global shortcut", false, std::move(notice)};
  return {"Global shortcut", true, "The keyboard can be heard while other applications are in front."};
}

SetupCheck pasteCheck(Executor& executor) {
  auto keyboard = X11KeyboardPoster::open(executor, nullptr);
  if (!keyboard) return {"Automatic paste", false, keyboard.error()};
  if (!(*keyboard)->mayPost()) return {"Automatic paste", false, "The X server has no XTest extension."};
  auto workspace = X11Workspace::open(executor);
  if (!workspace || !(*workspace)->isSupported()) {
    return {"Automatic paste", false,
            "The window manager does not tell which window is active; text is copied instead."};
  }
  return {"Automatic paste", true, "Text is pasted into the application in front."};
}

SetupCheck keyRingCheck() {
  SecretServiceStore secrets;
  const auto found = secrets.find("app.murmel.setup-check", "none");
  if (found || found.error() == secretStatus::itemNotFound)
    return {"Key ring", true, "History and vocabulary are sealed with keys in it."};
  if (found.error() == secretStatus::interactionNotAllowed) {
    return {"Key ring", false,
            "It is locked. History and vocabulary are kept in memory until it is unlocked."};
  }
  return {"Key ring", false, "No secret service answers. History and vocabulary are kept in memory only."};
}

SetupCheck busCheck() {
  if (QDBusConnection::sessionBus().isConnected())
    return {"Session bus", true, "Commands like “murmel toggle” reach the running Murmel."};
  return {"Session bus", false,
          "There is none: commands like “murmel toggle” cannot reach the running Murmel."};
}

}  // namespace

std::string shortcutNotice(const ShortcutConfiguration& shortcut, const Environment& environment) {
  QtExecutor executor;
  return noticeFor(shortcut, environment, executor, SystemClock());
}

std::vector<SetupCheck> setupChecks(const Installation& installation, const SpeechModelStore& models,
                                    const ShortcutConfiguration& shortcut) {
  QtExecutor executor;
  const SystemClock clock;
  return {speechCheck(installation.folders, models),
          microphoneCheck(installation.environment),
          shortcutCheck(shortcut, installation.environment, executor, clock),
          pasteCheck(executor),
          keyRingCheck(),
          busCheck()};
}

}  // namespace murmel
