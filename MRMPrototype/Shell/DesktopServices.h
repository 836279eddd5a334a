#pragma once

#include "Foundation/Environment.h"
#include "Platform/AudioInput.h"
#include "Platform/CancelKey.h"
#include "Platform/ClipboardPasteboard.h"
#include "Platform/DesktopProbe.h"
#include "Platform/FocusedField.h"
#include "Platform/IndicatorSurface.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/KeyboardProbe.h"
#include "Platform/MicrophoneAuthorization.h"
#include "Platform/SecureInput.h"
#include "Platform/SessionGuard.h"
#include "Platform/ShortcutSource.h"
#include "Platform/SoundPlayer.h"
#include "Platform/Workspace.h"
#include "Shell/Installation.h"
#include "Shell/ProcessServices.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace murmel {

/// What a dictation uses of a desktop, whichever desktop it is.
struct DesktopServices {
  AudioInput& microphone;
  MicrophoneAuthorization& microphoneAuthorization;
  SoundPlayer& sounds;
  ShortcutSource& shortcuts;
  Workspace& workspace;
  KeyboardPoster& keyboard;
  SecureInput& secureInput;
  FocusedField& focusedField;
  SessionGuard& session;
  CancelKey& cancelKey;
  ClipboardPasteboard& clipboard;
  KeyboardProbe* keyboardProbe = nullptr;           ///< where keys can be asked about
  ClipboardPasteboard* primarySelection = nullptr;  ///< where the desktop has one
  IndicatorSurface* indicator = nullptr;            ///< null: a window of its own
  /// The desktop lets a process press keys only when it did so from its start.
  bool pasteNeedsFreshProcess = false;
  /// Asks the desktop for what it gives with the user's word alone; empty where there is nothing to ask for.
  std::function<void()> askForAccess{};
};

/// Holds the adapters of one desktop. Main thread.
class DesktopConnection {
 public:
  virtual ~DesktopConnection() = default;
  [[nodiscard]] virtual DesktopServices services() = 0;
};

struct DesktopParameters {
  ProcessServices process;
  const Installation& installation;
  const Environment& environment;
  std::string displayName;  ///< under which the sound server lists us
};

/// Connects to the desktop as the plan says. The error is one sentence for the user.
std::expected<std::unique_ptr<DesktopConnection>, std::string> connectToDesktop(
    const DesktopPlan& plan, const DesktopParameters& parameters);

}  // namespace murmel
