#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Segmentation/RecognitionRequests.h"

#include <cstdint>
#include <optional>

namespace murmel {

/// The words of speech that may be finished, recognised in the pause after it: when nobody says more, they
/// need not be waited for. One at a time; main thread.
class SpeechDraft {
 public:
  /// Which speech: the number of its segment, and the first sample of that after which nobody speaks.
  struct Speech {
    std::size_t segment = 0;
    std::int64_t end = 0;
    friend bool operator==(const Speech&, const Speech&) = default;
  };

  /// A pause in which the speech may be at its end, in seconds; and one in which it most likely is.
  static constexpr double leastPause = 0.25;
  static constexpr double longPause = 1;
  /// After a draft that took longer, on a machine as slow as that or as busy, a short pause is no reason for
  /// another: it would only get into the way.
  static constexpr Duration longest = std::chrono::milliseconds(1'500);

  /// Both must outlive it.
  SpeechDraft(RecognitionRequests& requests, const Clock& clock) : requests_(requests), clock_(clock) {}

  /// Whether a draft of that speech would be a new one, and is worth its while.
  [[nodiscard]] bool mayBegin(Speech speech, double pauseSeconds) const;
  /// In place of the last draft.
  void begin(Speech speech, CapturedAudio audio);
  /// The words, when they are those of `speech`; waits for them when they are on their way. Nothing remains.
  Task<std::optional<RecognitionOutcome>> take(Speech speech);
  void giveUp();

 private:
  Task<void> recognise(CapturedAudio audio);

  RecognitionRequests& requests_;
  const Clock& clock_;
  std::optional<Speech> speech_;
  std::optional<RecognitionOutcome> words_;
  bool isUnderWay_ = false;
  std::optional<OneShotSender<bool>> finished_;
  bool isSlow_ = false;
  Scope running_;
};

}  // namespace murmel
