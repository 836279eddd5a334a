#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/MicrophoneAuthorization.h"
#include "Shell/DesktopServices.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <functional>

namespace murmel {

/// What the desktop lets this application do.
struct Permissions {
  MicrophonePermissionPhase microphone = MicrophonePermissionPhase::notDetermined;
  bool shortcut = false;        ///< the shortcut is heard while other applications are in front
  bool automaticPaste = false;  ///< paste keys may be pressed

  [[nodiscard]] bool mayRecord() const {
    return microphone != MicrophonePermissionPhase::denied &&
           microphone != MicrophonePermissionPhase::restricted;
  }
  friend bool operator==(const Permissions&, const Permissions&) = default;
};

/// Knows the permissions, and tells when one of them has changed. Nobody is asked anything. Main thread.
class PermissionService {
 public:
  /// The services outlive this.
  PermissionService(const DesktopServices& desktop, std::function<ShortcutConfiguration()> shortcut);

  /// Looks again: at launch, when the user comes back to a window of ours, and on request.
  void refresh();

  [[nodiscard]] const Permissions& current() const { return current_; }
  /// What it was before, and what it is now.
  [[nodiscard]] Signal<const Permissions&, const Permissions&>& didChange() { return didChange_; }
  /// For who listens for the shortcut.
  [[nodiscard]] Signal<>& inputMonitoringDidChange() { return inputMonitoringDidChange_; }

 private:
  [[nodiscard]] Permissions look();

  DesktopServices desktop_;
  std::function<ShortcutConfiguration()> shortcut_;
  Permissions current_;
  Signal<const Permissions&, const Permissions&> didChange_;
  Signal<> inputMonitoringDidChange_;
  Registration sourceObserver_;
};

}  // namespace murmel
