#pragma once

#include "Delivery/ClipboardTransaction.h"
#include "Delivery/PasteReceipts.h"
#include "Delivery/PasteSettlement.h"
#include "Delivery/ReplacedClipboard.h"
#include "Delivery/TargetReads.h"
#include "Delivery/TextDeliveryResult.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Signal.h"
#include "Foundation/Log.h"
#include "Foundation/Uuid.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// A paste that was sent, until it is known what became of it.
struct SentPaste {
  std::vector<ClipboardTransaction> transactions;  ///< the general pasteboard's first
  std::unique_ptr<TargetReads> reads;              ///< collecting since before the paste was sent
  Instant postedAt{};
  std::string application;  ///< the target's name, by which its habits are known
  /// False: the transcript stays on the general pasteboard, and only its arrival is watched.
  bool restoresPrevious = true;
  /// Somebody has written to the general pasteboard since.
  bool generalChanged = false;
  /// False: the target told that nothing that takes text had the keyboard. Then its read proves nothing.
  bool hasField = true;
};

/// Brings the previous clipboard back after a paste, once the target has read the text. Holds at most one
/// pending paste. Main thread; the pasteboards must outlive it.
class PasteCleanup {
 public:
  /// The log gets one line about each paste, without its words.
  /// `replaced` is offered what a text that nobody took has replaced.
  PasteCleanup(Executor& executor, const Clock& clock, ReplacedClipboard& replaced, Logger logger);

  /// Takes over from here; a paste that is still pending is forgotten.
  void schedule(SentPaste paste);

  /// Ends the wait: restores at once when the target has read the text. When it has not, the old clipboard
  /// would be pasted instead of the text, so the answer waits for the read, at most until 2 s after the
  /// paste. Nothing when no restore was pending.
  Task<std::optional<TextDeliveryResult>> finish();

  /// Whether the paste was read by the target: as soon as it is, or false when it is settled without.
  Task<bool> arrival();

  /// Waits until no paste is pending.
  Task<void> idle();

  /// Tells how each paste turned out.
  [[nodiscard]] Registration onSettled(std::function<void(PasteSettlement)> handler) {
    return settled_.subscribe(std::move(handler));
  }

 private:
  struct Pending {
    Uuid identifier;
    SentPaste paste;
    PasteReceipts receipts;
    std::size_t countedReads = 0;
    bool settling = false;
    std::optional<bool> previousWasComplete;  ///< once that has been waited for
    std::vector<Registration> changes;
    Registration timer;
    std::vector<OneShotSender<PasteSettlement>> finishers;
    std::vector<OneShotSender<bool>> arrivalWaiters;
  };

  static void countReads(Pending& pending);
  void evaluate();
  void settle();
  [[nodiscard]] bool hasArrived() const;
  void answerArrival(bool arrived);
  Task<void> cleanUp(Uuid identifier);
  [[nodiscard]] Task<PasteSettlement> cleanUpGeneral(std::shared_ptr<Pending> pending);
  void log(const Pending& pending, PasteSettlement settlement) const;
  void conclude(Uuid identifier, PasteSettlement settlement);

  Executor& executor_;
  const Clock& clock_;
  ReplacedClipboard& replaced_;
  Logger logger_;
  std::shared_ptr<Pending> pending_;
  bool lastWasRead_ = false;
  std::map<std::string, int> usualReads_;  ///< by application, since the start
  Signal<PasteSettlement> settled_;
  Scope scope_;  // last: its tasks use everything above
};

}  // namespace murmel
