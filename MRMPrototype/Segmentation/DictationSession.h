#pragma once

#include "Audio/CapturedAudio.h"
#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"
#include "Product/MRMError.h"
#include "Recognition/TranscriptionProvider.h"
#include "Refinement/RefinementProvider.h"
#include "Segmentation/DictationDiagnostics.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// A part of a recording, in seconds from its beginning.
struct SpokenSpan {
  double begin = 0;
  double end = 0;
  friend bool operator==(const SpokenSpan&, const SpokenSpan&) = default;
};

/// The recognised and refined words of one part of a recording.
struct RecognisedPiece {
  SpokenSpan span;
  SpokenText text;
};

/// What became of all the audio of one dictation.
struct DictationSessionResult {
  SpokenText text;                      ///< the pieces, in order, joined by single spaces
  std::vector<RecognisedPiece> pieces;  ///< one a recognised segment, in order
  int failedPieces = 0;                 ///< segments that stayed unrecognised
  std::vector<SpokenSpan> missing;      ///< where these are, in order
  std::string providerID;               ///< which recogniser produced the text
  /// Why the refiner left at least one piece as it was recognised.
  std::optional<MRMError> refinementFailure = std::nullopt;
};

/// How one dictation is to be cut and recognised.
struct DictationSessionConfiguration {
  std::shared_ptr<TranscriptionProvider> transcription;
  /// Gives the recogniser for audio that the first one cannot take; may be absent, or give none.
  std::function<std::shared_ptr<TranscriptionProvider>()> nextTranscription;
  std::shared_ptr<RefinementProvider> refinement;
  std::optional<std::string> languageCode;
  /// Somebody waits for the words from the beginning, as for those of a file.
  bool somebodyWaits = false;
  /// In each pause, what may have been the last words is recognised at once: the user will wait for them.
  bool draftsInPauses = false;
  double targetSegmentSeconds = 0;  ///< infinite: one segment for the whole recording
  /// Called with each recognised and refined phrase, in order, and awaited; absent without live insertion.
  std::function<Task<void>(SpokenText)> onPhrase;
  /// Called with the words of each piece as soon as they are there. Audio that has to be tried again may come
  /// after what was said later. Never leaves the process.
  std::function<void(const RecognisedPiece&)> onRecognised;
  /// Whether recognition is behind the speech, and a revision that grows with every change.
  std::function<void(bool behind, std::int64_t revision)> onBacklog;
};

/// Cuts the audio of one dictation into segments and has them recognised and refined in order. It owns the
/// audio until its words are safe. Main thread; destroying it gives the audio up. Its callbacks must not
/// destroy it; whoever awaits `finish` may.
class DictationSession {
 public:
  virtual ~DictationSession() = default;
  virtual void append(PendingCapturedAudio audio) = 0;
  /// Recognises the rest. Once; nothing may be appended afterwards. Without a single recognised word the
  /// answer is an error: `noSpeech` when nobody seems to have spoken, the recogniser's own when it failed,
  /// `unrecognizedSpeech` when there was speech of which it made nothing.
  virtual Task<Result<DictationSessionResult>> finish() = 0;
  /// Seconds of audio that wait for a recogniser, the piece that it has included.
  [[nodiscard]] virtual double waitingSeconds() const { return 0; }
  /// The words so far, in order.
  [[nodiscard]] virtual std::vector<RecognisedPiece> recognisedSoFar() const { return {}; }
  /// Seconds without speech up to now.
  [[nodiscard]] virtual double quietSeconds() const { return 0; }
  /// Whether somebody has clearly spoken.
  [[nodiscard]] virtual bool heardSpeech() const { return true; }
  /// The figures so far; whole once `finish` has answered, with a result or an error.
  [[nodiscard]] virtual DictationDiagnostics diagnostics() const = 0;
};

class DictationSessionFactory {
 public:
  virtual ~DictationSessionFactory() = default;
  virtual std::unique_ptr<DictationSession> make(DictationSessionConfiguration configuration) = 0;
};

}  // namespace murmel
