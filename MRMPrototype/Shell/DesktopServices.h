#pragma once

#include "Audio/AudioCaptureService.h"
#include "Delivery/TextInsertionService.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Log.h"
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
#include "Shell/ApplicationFolders.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// What a dictation uses of an X desktop: microphone and sounds, clipboard and paste, the keys. Main thread.
class DesktopServices {
 public:
  struct Parameters {
    Executor& executor;
    const Clock& clock;
    LogSink& log;
    const ApplicationFolders& folders;
    std::string applicationIdentifier;
    std::string displayName;
    bool restorePreviousClipboard = true;
  };

  /// The error is one sentence for the user: the desktop cannot be reached.
  static std::expected<std::unique_ptr<DesktopServices>, std::string> open(Parameters parameters);

  /// Asks a clipboard manager to keep what we have put on the clipboard; at most a second. Before the end.
  Task<void> handOverClipboard();

 private:
  explicit DesktopServices(const Parameters& parameters);

  PulseAudioInput microphone_;
  PulseAudioAuthorization authorization_;
  InjectedKeyList injectedKeys_;
  std::unique_ptr<X11Pasteboards> pasteboards_;
  std::unique_ptr<X11Workspace> workspace_;
  std::unique_ptr<X11KeyboardPoster> keyboard_;
  std::unique_ptr<X11SecureInput> secureInput_;
  AccessibleFocusedField focusedField_;

 public:
  AudioCaptureService audio;
  PulseAudioSoundPlayer sounds;
  X11KeyEventTap keys;
  std::unique_ptr<TextInsertionService> insertion;
};

}  // namespace murmel
