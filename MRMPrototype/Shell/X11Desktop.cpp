#include "Shell/X11Desktop.h"

#include "Platform/Linux/Accessibility/AccessibleFocusedField.h"
#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Platform/Linux/PulseAudio/PulseAudioSoundPlayer.h"
#include "Platform/Linux/X11/X11KeyboardPoster.h"
#include "Platform/Linux/X11/X11Pasteboards.h"
#include "Platform/Linux/X11/X11SecureInput.h"
#include "Platform/Linux/X11/X11Workspace.h"
#include "Platform/Linux/X11Keys/InjectedKeyList.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"

#include <utility>

namespace murmel {

namespace {

/// What had to be opened and could fail.
struct Opened {
  std::unique_ptr<InjectedKeyList> injectedKeys;
  std::unique_ptr<X11Pasteboards> pasteboards;
  std::unique_ptr<X11Workspace> workspace;
  std::unique_ptr<X11KeyboardPoster> keyboard;
  std::unique_ptr<X11SecureInput> secureInput;
};

class Connection final : public DesktopConnection {
 public:
  Connection(const DesktopParameters& parameters, Opened opened)
      : microphone_(parameters.process.executor, {parameters.displayName, std::nullopt}),
        authorization_(PulseAudioAuthorization::Environment::from(parameters.environment)),
        sounds_({parameters.displayName, std::nullopt}),
        opened_(std::move(opened)),
        taps_(parameters.process.executor, *opened_.injectedKeys,
              X11KeyEnvironment::from(parameters.environment)),
        shortcuts_(taps_, [this] { taps_.resync(); }),
        focusedField_(parameters.process.executor) {}

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
        .clipboard = opened_.pasteboards->general(),
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
  AccessibleFocusedField focusedField_;
};

}  // namespace

std::expected<std::unique_ptr<DesktopConnection>, std::string> X11Desktop::open(
    const DesktopParameters& parameters) {
  auto& [executor, clock, log, launcher] = parameters.process;
  auto injectedKeys = std::make_unique<InjectedKeyList>(clock);
  auto pasteboards = X11Pasteboards::open(executor, clock);
  if (!pasteboards) return std::unexpected(pasteboards.error());
  auto workspace = X11Workspace::open(executor);
  if (!workspace) return std::unexpected(workspace.error());
  auto keyboard = X11KeyboardPoster::open(executor, injectedKeys.get());
  if (!keyboard) return std::unexpected(keyboard.error());
  auto secureInput = X11SecureInput::open();
  if (!secureInput) return std::unexpected(secureInput.error());
  return std::make_unique<Connection>(
      parameters, Opened{std::move(injectedKeys), *std::move(pasteboards), *std::move(workspace),
                         *std::move(keyboard), *std::move(secureInput)});
}

}  // namespace murmel
