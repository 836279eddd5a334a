#pragma once

#include "Foundation/Async/SerialQueue.h"
#include "Models/ModelManager.h"
#include "Models/SmartModelManager.h"
#include "Platform/AudioInput.h"
#include "Platform/DesktopProbe.h"
#include "Platform/MicrophoneAuthorization.h"
#include "Platform/ProcessLauncher.h"
#include "Platform/SecretStore.h"
#include "Recognition/TranscriptionProviderFactory.h"
#include "Shell/Checks/CheckRunner.h"
#include "Shell/DesktopServices.h"
#include "Shell/Installation.h"
#include "Shell/IntelCommand.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// What the checks try. Everything outlives them.
struct CheckedServices {
  Executor& executor;
  SerialQueue& queue;  ///< for what blocks
  const Installation& installation;
  const SessionFacts& facts;
  const DesktopServices* desktop = nullptr;  ///< nothing where no desktop could be connected to
  std::string desktopFailure{};              ///< why not
  AudioInput& microphone;
  MicrophoneAuthorization& microphoneAuthorization;
  /// Whether a dictation has the microphone at this moment.
  std::function<bool()> isRecording;
  ModelManager& models;
  TranscriptionProviderFactory& recognition;
  SmartModelManager& smartModels;
  SecretStore& secrets;
  ProcessLauncher& launcher;
  std::function<ShortcutConfiguration()> shortcut;
  std::function<bool()> smartFormatting;
  /// Carries out the command that leads to a cure; empty where nobody can.
  std::function<void(IntelCommand)> perform{};
};

/// Every check, in the order in which they are shown. What they try leaves nothing behind.
std::vector<CheckDefinition> desktopChecks(const CheckedServices& services);

/// Why this desktop may not hear the shortcut, in words for the user; empty when it does, and for the
/// disabled one.
std::string shortcutNotice(ShortcutSource& source, const ShortcutConfiguration& shortcut);

/// Under which the preferences keep what was found out about the shortcut (`ShortcutTrials::memory`).
inline constexpr std::string_view shortcutTrialKey = "shortcut.trial";

/// How far what is said stays out of a swap on a disk. `swaps`: as in /proc/swaps. `deviceKind`: what the
/// kernel calls a mapped device ("dm-0"), "CRYPT-…" for an encrypted one. `lockable`: bytes that this process
/// may lock in memory.
CheckResult swapResult(std::string_view swaps,
                       const std::function<std::string(std::string_view device)>& deviceKind,
                       std::uint64_t lockable);

/// The single ones, in files of their own.
Task<CheckResult> checkEdition(CheckedServices services);
Task<CheckResult> checkSpeechModel(CheckedServices services);
Task<CheckResult> checkSpeechRecognition(CheckedServices services);
Task<CheckResult> checkMicrophone(CheckedServices services);
Task<CheckResult> checkKeyRing(CheckedServices services);
Task<CheckResult> checkFolders(CheckedServices services);
Task<CheckResult> checkSwap(CheckedServices services);
Task<CheckResult> checkConfinement(CheckedServices services);
Task<CheckResult> checkRefiners(CheckedServices services);

}  // namespace murmel
