#pragma once

#include "Delivery/LiveDictationDelivery.h"
#include "Dictation/DictationOperationTracker.h"
#include "Dictation/KeptRecording.h"
#include "Dictation/SpeechlessTime.h"
#include "Foundation/Registration.h"
#include "Segmentation/DictationSession.h"
#include "Segmentation/RecordingMemory.h"

#include <memory>
#include <optional>

namespace murmel {

/// What one dictation holds from the start of its recording until its text is delivered. Every lease is given
/// back by its destructor, so whatever way a dictation ends, it ends in the destruction of this.
struct Recording {
  OperationIdentifier operation = 0;
  Registration updateActivity;    ///< keeps updates from being installed
  Registration runtimePriority;   ///< holds optional downloads back
  Registration insertionSession;  ///< the remembered target application
  /// Present in live mode. Declared before the session, whose phrases it takes.
  std::unique_ptr<LiveDictationDelivery> live;
  std::unique_ptr<DictationSession> session;
  Instant begun{};
  std::optional<RecordingMemory> memory;  ///< until the recording ends
  bool memoryWasShort = false;
  std::unique_ptr<KeptRecording> kept;  ///< for another try, should this one fail
  SpeechlessTime speechless;
  bool deviceChanged = false;
  bool opensAnotherDevice = false;  ///< so far nothing was said
  /// The session was locked or left meanwhile: what was in front then may not be what is in front now.
  bool clipboardOnly = false;
  std::optional<SpokenText> text;  ///< known once everything is recognised
};

}  // namespace murmel
