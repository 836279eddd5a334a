#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Recognition/TranscriptionProvider.h"
#include "Segmentation/RetryPolicy.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// What came of one piece of audio.
struct RecognitionOutcome {
  enum class Kind {
    text,
    empty,   ///< the recogniser heard it and made nothing of it
    aside,   ///< it seems to kill the recogniser: to be tried again when nothing else is left
    failed,  ///< no recogniser has heard it to its end
  };
  Kind kind = Kind::empty;
  SpokenText text;
  std::string providerID;
  std::optional<MRMError> error;
  RetryPolicy::Tries tries;
};

/// The recogniser of a dictation, and the one that stands in for it.
struct RecognitionEngines {
  std::shared_ptr<TranscriptionProvider> first;
  /// Asked for when audio is about to be given up; may be absent, or have none.
  std::function<std::shared_ptr<TranscriptionProvider>()> next;
};

/// Gets audio recognised in spite of workers that die, as the retry policy says. Main thread.
class RecognitionRequests {
 public:
  RecognitionRequests(Executor& executor, const Clock& clock, RecognitionEngines engines,
                      std::optional<std::string> language);

  /// Called at the start of each request, and when one begins or ceases to be slower than speech.
  std::function<void()> onRequest;
  std::function<void(bool slow)> onSlow;

  /// Somebody waits for the words now.
  void hurry() { policy_.hurry(clock_.now()); }

  /// `tries` is what has been tried with this audio before.
  Task<RecognitionOutcome> recognise(CapturedAudio audio, bool othersMayGoFirst = false,
                                     RetryPolicy::Tries tries = {});
  /// Without another try: nothing when it fails. Not counted as a request.
  Task<std::optional<RecognitionOutcome>> recogniseOnce(CapturedAudio audio);

 private:
  struct Attempt {
    std::optional<RecognitionOutcome> heard;
    std::optional<MRMError> error;
    RetryPolicy::Step step;
  };
  Task<Attempt> attempt(std::shared_ptr<TranscriptionProvider> engine, CapturedAudio audio,
                        bool othersMayGoFirst, RetryPolicy::Tries* tries);
  Task<Result<TranscriptionResult>> ask(std::shared_ptr<TranscriptionProvider> engine, CapturedAudio audio);

  Executor& executor_;
  const Clock& clock_;
  RecognitionEngines engines_;
  std::optional<std::string> language_;
  RetryPolicy policy_;
  std::optional<MRMError> lastError_;
};

}  // namespace murmel
