#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Recognition/TranscriptionProvider.h"

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
    failed,  ///< no recogniser has heard it to its end
  };
  Kind kind = Kind::empty;
  SpokenText text;
  std::string providerID;
  std::optional<MRMError> error;
};

/// Gets audio recognised in spite of workers that die: the same audio goes to the next worker until one
/// answers or there is no hope. One piece of audio at a time; main thread.
class RecognitionRequests {
 public:
  RecognitionRequests(Executor& executor, const Clock& clock, std::shared_ptr<TranscriptionProvider> provider,
                      std::optional<std::string> language);

  /// Called at the start of each request, and when one begins or ceases to be slower than speech.
  std::function<void()> onRequest;
  std::function<void(bool slow)> onSlow;

  /// Somebody waits for the words now: a recogniser that keeps failing is given up soon.
  void hurry() { hurried_ = true; }

  /// Whatever has failed before, the workers get one more chance.
  void hopeAgain();

  Task<RecognitionOutcome> recognise(CapturedAudio audio);

 private:
  Task<RecognitionOutcome> recogniseOnce(CapturedAudio audio);
  [[nodiscard]] int attempts() const;

  Executor& executor_;
  const Clock& clock_;
  std::shared_ptr<TranscriptionProvider> provider_;
  std::optional<std::string> language_;
  bool hurried_ = false;
  int failuresInARow_ = 0;  ///< pieces of audio that no worker survived
  std::optional<MRMError> lastError_;
};

}  // namespace murmel
