#include "Shell/X11Desktop.h"

#include "Platform/Linux/Accessibility/AccessibleFocusedField.h"
#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Platform/Linux/PulseAudio/PulseAudioSoundPlayer.h"
#include "Platform/Linux/X11/X11CancelKey.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Platform/Linux/X11/X11Pasteboards.h"
#include "Platform/Linux/X11/X11ScreenLock.h"
#include "Platform/Linux/X11/X11SecureInput.h"
#include "Platform/Linux/X11/X11Workspace.h"
#include "Platform/Linux/X11Keys/InjectedKeyList.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Platform/Linux/X11Keys/X11KeyboardProbe.h"
#include "Platform/Qt/DesktopSessionGuard.h"
#include "Shell/ClipboardKeeping.h"

#include <utility>

namespace murmel {

namespace {

/// What had to be opened and could fail.
struct Opened {
  std::unique_ptr<InjectedKeyList> injectedKeys;
  std::unique_ptr<ClipboardKeeperProcess> keeper;
  std::unique_ptr<X11Pasteboards> pasteboards;
  std::unique_ptr<X11Workspace> workspace;
  std::unique_ptr<X11KeyboardPoster> keyboard;
  std::unique_ptr<X11SecureInput> secureInput;
  std::unique_ptr<X11ScreenLock> screenLock;
  std::unique_ptr<X11CancelKey> cancelKey;
};

class Connection final : public DesktopConnection {
 public:
  Connection(const DesktopParameters& parameters, Opened opened)
      : microphone_(parameters.process.executor, {parameters.installation.build.displayName, std::nullopt}),
        authorization_(PulseAudioAuthorization::Environment::from(parameters.installation.environment)),
        sounds_({parameters.installation.build.displayName, std::nullopt}),
        opened_(std::move(opened)),
        taps_(parameters.process.executor, *opened_.injectedKeys,
              X11KeyEnvironment::from(parameters.installation.environment)),
        shortcuts_(taps_, [this] { taps_.resync(); }),
        focusedField_(parameters.process.executor),
        session_(parameters.process.executor, [this] { return opened_.screenLock->isLocked(); }) {}

  [[nodiscard]] DesktopServices services() override {
    return {
        .microphone = microphone_,
        .microphoneAuthorization = authorization_,
        .sounds = sounds_,
        .shortcuts = shortcuts_,
        .workspace = *opened_.workspace,
        .keyboard = *opened_.keyboard,
        .secureInput = *opened_.secureInput,
        .focusedField = focusedField_,
        .session = session_,
        .cancelKey = *opened_.cancelKey,
        .clipboard = opened_.pasteboards->general(),
        .keyboardProbe = &keyboardProbe_,
        .primarySelection = &opened_.pasteboards->primary(),
    };
  }

 private:
  PulseAudioInput microphone_;
  PulseAudioAuthorization authorization_;
  PulseAudioSoundPlayer sounds_;
  Opened opened_;
  X11KeyEventTap taps_;
  KeyTapShortcutSource shortcuts_;
  X11KeyboardProbe keyboardProbe_;
  AccessibleFocusedField focusedField_;
  DesktopSessionGuard session_;
};

}  // namespace

std::expected<std::unique_ptr<DesktopConnection>, std::string> X11Desktop::open(
    const DesktopParameters& parameters) {
  auto& [executor, clock, log, launcher, memory] = parameters.process;
  auto injectedKeys = std::make_unique<InjectedKeyList>(clock);
  auto keeper = clipboardKeeper(parameters, {"DISPLAY", "XAUTHORITY", "HOME"});
  auto pasteboards = X11Pasteboards::open(executor, clock, {}, keeper.get());
  if (!pasteboards) return std::unexpected(pasteboards.error());
  auto workspace = X11Workspace::open(executor);
  if (!workspace) return std::unexpected(workspace.error());
  auto keyboard = X11KeyboardPoster::open(executor, injectedKeys.get());
  if (!keyboard) return std::unexpected(keyboard.error());
  auto secureInput = X11SecureInput::open();
  if (!secureInput) return std::unexpected(secureInput.error());
  auto screenLock = X11ScreenLock::open();
  if (!screenLock) return std::unexpected(screenLock.error());
  auto cancelKey = X11CancelKey::open(executor);
  if (!cancelKey) return std::unexpected(cancelKey.error());
  return std::make_unique<Connection>(
      parameters,
      Opened{std::move(injectedKeys), std::move(keeper), *std::move(pasteboards), *std::move(workspace),
             *std::move(keyboard), *std::move(secureInput), *std::move(screenLock), *std::move(cancelKey)});
}

}  // namespace murmel
