#pragma once

#include "Foundation/RawValue.h"

#include <optional>
#include <string_view>

namespace murmel {

/// What menus, key bindings of the desktop and `murmel <command>` can ask the running application for.
enum class IntelCommand {
  toggleDictation,
  startDictation,
  stopDictation,
  cancelDictation,
  retryDictation,
  copyLastTranscript,
  pasteLastTranscript,
  openSettings,
  openHistory,
  openAbout,
  openCredits,
  openSetup,
  revealApplication,
  downloadSpeechModel,
  cancelSpeechModelDownload,
  requestMicrophone,
  openMicrophoneSettings,
  requestInputMonitoring,
  requestAutomaticPaste,
  quit,
};

/// The names under which the commands are announced inside the application.
template <>
inline constexpr auto rawValueTable<IntelCommand> = std::to_array<RawValueRow<IntelCommand>>({
    {IntelCommand::toggleDictation, "MRM.Intel.ToggleDictation"},
    {IntelCommand::startDictation, "MRM.Intel.StartDictation"},
    {IntelCommand::stopDictation, "MRM.Intel.StopDictation"},
    {IntelCommand::cancelDictation, "MRM.Intel.CancelDictation"},
    {IntelCommand::retryDictation, "MRM.Intel.RetryDictation"},
    {IntelCommand::copyLastTranscript, "MRM.Intel.CopyLastTranscript"},
    {IntelCommand::pasteLastTranscript, "MRM.Intel.PasteLastTranscript"},
    {IntelCommand::openSettings, "MRM.Intel.OpenSettings"},
    {IntelCommand::openHistory, "MRM.Intel.OpenHistory"},
    {IntelCommand::openAbout, "MRM.Intel.OpenAbout"},
    {IntelCommand::openCredits, "MRM.Intel.OpenCredits"},
    {IntelCommand::openSetup, "MRM.Intel.OpenSetup"},
    {IntelCommand::revealApplication, "MRM.Intel.RevealApplication"},
    {IntelCommand::downloadSpeechModel, "MRM.Intel.DownloadSpeechModel"},
    {IntelCommand::cancelSpeechModelDownload, "MRM.Intel.CancelSpeechModelDownload"},
    {IntelCommand::requestMicrophone, "MRM.Intel.RequestMicrophone"},
    {IntelCommand::openMicrophoneSettings, "MRM.Intel.OpenMicrophoneSettings"},
    {IntelCommand::requestInputMonitoring, "MRM.Intel.RequestInputMonitoring"},
    {IntelCommand::requestAutomaticPaste, "MRM.Intel.RequestAutomaticPaste"},
    {IntelCommand::quit, "MRM.Intel.Quit"},
});

/// A command as other programs say it: the action name on D-Bus, which is also the word on the command line,
/// and one line of help.
struct IntelCommandAction {
  IntelCommand command;
  std::string_view action;
  std::string_view help;
};

inline constexpr auto intelCommandActions = std::to_array<IntelCommandAction>({
    {IntelCommand::toggleDictation, "toggle", "Start dictating, or stop and deliver"},
    {IntelCommand::startDictation, "start", "Start dictating"},
    {IntelCommand::stopDictation, "stop", "Stop and deliver"},
    {IntelCommand::cancelDictation, "cancel", "Throw away what is being dictated"},
    {IntelCommand::retryDictation, "retry", "Try the last failed or cancelled dictation again"},
    {IntelCommand::copyLastTranscript, "copy-last", "Copy the last dictation to the clipboard"},
    {IntelCommand::pasteLastTranscript, "paste-last", "Paste the last dictation again"},
    {IntelCommand::openSettings, "settings", "Open the settings"},
    {IntelCommand::openHistory, "open-history", "Open the history"},
    {IntelCommand::openAbout, "about", "Tell which Murmel this is"},
    {IntelCommand::openCredits, "credits", "Show what Murmel is made of, and the licenses"},
    {IntelCommand::openSetup, "setup", "Open the setup and permissions"},
    {IntelCommand::revealApplication, "reveal", "Bring Murmel's window to the front"},
    {IntelCommand::downloadSpeechModel, "download-speech-model", "Download the speech model"},
    {IntelCommand::cancelSpeechModelDownload, "cancel-speech-model-download", "Cancel that download"},
    {IntelCommand::requestMicrophone, "request-microphone", "Ask for the microphone permission"},
    {IntelCommand::openMicrophoneSettings, "microphone-settings", "Open the system's sound settings"},
    {IntelCommand::requestInputMonitoring, "request-input-monitoring", "Ask to see the global shortcut"},
    {IntelCommand::requestAutomaticPaste, "request-automatic-paste", "Ask for the permission to paste"},
    {IntelCommand::quit, "quit", "Quit Murmel"},
});

constexpr std::string_view actionName(IntelCommand command) {
  for (const auto& row : intelCommandActions) {
    if (row.command == command) return row.action;
  }
  return {};
}

constexpr std::optional<IntelCommand> commandForAction(std::string_view action) {
  for (const auto& row : intelCommandActions) {
    if (row.action == action) return row.command;
  }
  return std::nullopt;
}

}  // namespace murmel
