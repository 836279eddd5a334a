#pragma once

#include "Foundation/Async/Signal.h"
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

/// Pasting through a portal, which the user allows. Main thread.
class PortalPaste {
 public:
  virtual ~PortalPaste() = default;
  /// At the start: opens it if the user has allowed that for good.
  virtual void restore() = 0;
  /// Whether it is this road by which texts are pasted now.
  [[nodiscard]] virtual bool isInUse() = 0;
  /// Why nothing is pasted on it, in a sentence for the user.
  [[nodiscard]] virtual std::string obstacle() = 0;
  [[nodiscard]] virtual Signal<>& didChange() = 0;
};

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
  /// Where texts are pasted through the desktop's portal.
  PortalPaste* portalPaste = nullptr;
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
};

/// Connects to the desktop as the plan says. The error is one sentence for the user.
std::expected<std::unique_ptr<DesktopConnection>, std::string> connectToDesktop(
    const DesktopPlan& plan, const DesktopParameters& parameters);

}  // namespace murmel
