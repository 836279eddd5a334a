#pragma once

#include "Foundation/Async/Clock.h"
#include "Product/MRMError.h"

#include <optional>

namespace murmel {

/// Decides, failure by failure, what becomes of audio that no recogniser has heard to its end. Two things may
/// be wrong, and one failure does not tell which:
///
/// - The engine does not come up, or dies on whatever it is given. Waiting helps: all audio is kept, and the
///   engine is tried again less and less often, without an end while the user still speaks and for `patience`
///   once somebody waits for the words.
/// - This audio kills the engine. Waiting does not help, and the other audio must not wait for it: it is set
///   aside, tried again when nothing else is left, and given to another engine at last.
///
/// A value with the time as an argument; one of them for a whole dictation.
class RetryPolicy {
 public:
  /// How long an engine that does not come up is waited for, by somebody who waits for the words.
  static constexpr Duration patience = std::chrono::seconds(60);

  /// What has been tried with one piece of audio.
  struct Tries {
    int failures = 0;       ///< with an engine that was up
    Duration spent{};       ///< by these
    bool wasAside = false;  ///< it is being tried last
    bool onNextEngine = false;
  };

  struct Step {
    enum class Kind {
      again,       ///< the same audio, after `pause`
      setAside,    ///< when nothing else is left
      nextEngine,  ///< once, on another engine, if there is one
      giveUp,
    };
    Kind kind = Kind::giveUp;
    Duration pause{};
    friend bool operator==(const Step&, const Step&) = default;
  };

  /// What remains for audio when nothing more is to be expected of its engine.
  [[nodiscard]] static Step lastResort(const Tries& tries);

  /// Somebody waits for the words from now on.
  void hurry(Instant now) { hurriedSince_ = now; }

  /// The engine did not come up.
  [[nodiscard]] Step engineFailed(const Tries& tries, const MRMError& why, Instant now);
  /// The engine was up and failed on this audio, after `took`. `othersMayGoFirst`: the words need not come in
  /// the order of the speech. Counts the failure into `tries`.
  [[nodiscard]] Step audioFailed(Tries& tries, Duration took, bool othersMayGoFirst, Instant now);
  /// The engine heard a piece of audio to its end.
  void answered();
  /// Whether the engine has been waited for long enough: the rest is not even tried.
  [[nodiscard]] bool isHopeless(Instant now) const;

 private:
  [[nodiscard]] Step waitForEngine(const Tries& tries, Instant now);

  std::optional<Instant> hurriedSince_;
  std::optional<Instant> downSince_;  ///< the first failure that no answer has followed
  int engineTries_ = 0;               ///< waits for the engine since then
  int audioFailures_ = 0;             ///< since then, on whatever audio
  int audioFailed_ = 0;               ///< different pieces among them
};

}  // namespace murmel
