#pragma once

#include "Foundation/Async/Clock.h"

#include <algorithm>
#include <optional>

namespace murmel {

/// When the keys of a paste may be pressed after the text was put on the clipboard. Some applications look at
/// every new clipboard and switch Paste off until they know what it is; others read the text at once and
/// paste later, and that first read must not be taken for the paste. Times are values.
struct PasteReadiness {
  /// For an application that asks for nothing.
  static constexpr Duration patience = std::chrono::milliseconds(30);
  /// For one that is known to look: it may be busy.
  static constexpr Duration patienceWithLookers = std::chrono::milliseconds(500);
  /// Between one question of the application and the next.
  static constexpr Duration quietTime = std::chrono::milliseconds(8);
  /// For an application that goes on asking, after its first question at the latest.
  static constexpr Duration longest = std::chrono::milliseconds(100);

  /// When the keys may be pressed, as far as is known by now.
  static Instant ready(Instant copiedAt, std::optional<Instant> lastAsked, bool looksFirst) {
    const auto first = looksFirst ? patienceWithLookers : patience;
    if (!lastAsked) return copiedAt + first;
    return std::min(*lastAsked + quietTime, copiedAt + first + longest);
  }
};

/// When the previous clipboard may come back after a paste, decided by what the target has read. A pure state
/// machine; the times are values.
class PasteReceipts {
 public:
  /// Applications read more than once for one paste (terminals twice within a millisecond, some toolkits in
  /// several forms): the restore waits for this much silence after the last read.
  static constexpr Duration quietTime = std::chrono::milliseconds(200);
  /// The same when something waits for the restore: enough for a read that follows at once.
  static constexpr Duration hurriedQuietTime = std::chrono::milliseconds(20);
  /// The same for an application that has read less often than it did for the paste before. Browsers read in
  /// one process to see what there is and in another one to insert it, which may be busy.
  static constexpr Duration missingReadTime = std::chrono::seconds(1);
  /// After this the user may want to paste something else, whatever the target does.
  static constexpr Duration latestRestore = std::chrono::seconds(2);

  enum class Step {
    wait,       ///< look again at `until`, or when something happens
    restore,    ///< the target has read the text
    neverRead,  ///< it has not, and nobody waits any longer
  };
  struct Verdict {
    Step step = Step::wait;
    Instant until{};
  };

  /// `usualReads`: how often the application has read for the paste before this one. One that is not known
  /// yet may read a second time.
  explicit PasteReceipts(Instant postedAt, std::optional<int> usualReads = std::nullopt)
      : postedAt_(postedAt), usualReads_(usualReads) {}

  /// The target read the text. A read from before the paste proves nothing and is not counted.
  void noteRead(Instant at);
  /// Something waits for the restore: it comes as soon as it can without harm.
  void hurry() { hurried_ = true; }

  [[nodiscard]] bool wasRead() const { return lastRead_.has_value(); }
  [[nodiscard]] int reads() const { return reads_; }
  [[nodiscard]] Verdict verdict(Instant now) const;

 private:
  [[nodiscard]] Duration quiet() const;

  Instant postedAt_;
  std::optional<int> usualReads_;
  int reads_ = 0;
  std::optional<Instant> lastRead_;
  bool hurried_ = false;
};

}  // namespace murmel
