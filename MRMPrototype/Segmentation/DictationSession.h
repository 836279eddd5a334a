#pragma once

#include "Audio/CapturedAudio.h"
#include "Foundation/SpokenText.h"
#include "Foundation/Task.h"
#include "Product/MRMError.h"
#include "Recognition/TranscriptionProvider.h"
#include "Refinement/RefinementProvider.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// What became of all the audio of one dictation.
struct DictationSessionResult {
  SpokenText text;                 ///< the pieces, in order, joined by single spaces
  std::vector<SpokenText> pieces;  ///< one a recognised segment
  int failedPieces = 0;            ///< segments that stayed unrecognised
  std::string providerID;          ///< which recogniser produced the text
};

/// How one dictation is to be cut and recognised.
struct DictationSessionConfiguration {
  std::shared_ptr<TranscriptionProvider> transcription;
  std::shared_ptr<RefinementProvider> refinement;
  std::optional<std::string> languageCode;
  double targetSegmentSeconds = 0;  ///< infinite: one segment for the whole recording
  /// Called with each recognised and refined phrase, in order, and awaited; absent without live insertion.
  std::function<Task<void>(SpokenText)> onPhrase;
  /// Whether recognition is behind the speech, and a revision that grows with every change.
  std::function<void(bool behind, std::int64_t revision)> onBacklog;
};

/// Cuts the audio of one dictation into segments and has them recognised and refined in order. It owns the
/// audio until its words are safe. Main thread; destroying it gives the audio up.
class DictationSession {
 public:
  virtual ~DictationSession() = default;
  virtual void append(PendingCapturedAudio audio) = 0;
  /// Recognises the rest. Once.
  virtual Task<Result<DictationSessionResult>> finish() = 0;
};

class DictationSessionFactory {
 public:
  virtual ~DictationSessionFactory() = default;
  virtual std::unique_ptr<DictationSession> make(DictationSessionConfiguration configuration) = 0;
};

}  // namespace murmel
