#pragma once

#include "Delivery/DeliveryClipboards.h"
#include "Delivery/DictationSpacing.h"
#include "Delivery/InsertionFocusPolicy.h"
#include "Delivery/PasteChordTable.h"
#include "Delivery/PasteCleanup.h"
#include "Delivery/TextInsertion.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Log.h"
#include "Platform/ClipboardPasteboard.h"
#include "Platform/FocusedField.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/SecureInput.h"
#include "Platform/Workspace.h"

#include <deque>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace murmel {

/// What delivery needs of the desktop. Everything outlives the service.
struct TextInsertionDesktop {
  Executor& executor;
  const Clock& clock;
  Workspace& workspace;
  KeyboardPoster& keyboard;
  SecureInput& secureInput;
  ClipboardPasteboard& general;
  ClipboardPasteboard* primary = nullptr;  ///< the primary selection, where the desktop has one
  FocusedField* focusedField = nullptr;    ///< where applications tell of their fields
};

struct TextInsertionOptions {
  std::string applicationIdentifier;
  pid_t ownProcess = 0;
  bool shouldRestorePreviousClipboard = true;
  PasteChordTable pasteChords;
};

/// Puts finished text into the application that the user was working in: through the clipboard and one
/// synthetic paste, never by typing. Main thread.
class TextInsertionService final : public TextInsertion {
 public:
  /// Category of the log lines: "text-insertion".
  TextInsertionService(TextInsertionDesktop desktop, TextInsertionOptions options, Logger logger);

  /// The user's choice; from the next dictation on.
  void setRestoresPreviousClipboard(bool restores) { restoresFromNextSession_ = restores; }

  /// For the space between two dictations.
  [[nodiscard]] DictationSpacing& spacing() { return spacing_; }

  void beginDictationSession() override;
  void recordingEnded() override { recordingHasEnded_ = true; }
  void endDictationSession() override;
  Task<std::optional<TextDeliveryResult>> finishPasteCleanup() override;
  Task<TextDeliveryResult> insertOrCopy(SpokenText text, bool liveOnly) override;
  [[nodiscard]] bool mayInsertLive() override { return !desktop_.keyboard.isHindered(); }
  Task<bool> insertLiveSegment(SpokenText phrase) override;
  [[nodiscard]] std::optional<LiveInsertionBlock> lastBlock() const override { return lastBlock_; }
  [[nodiscard]] std::optional<TextDeliveryResult> lastResult() const override { return lastResult_; }
  Task<bool> writePrivateText(SpokenText text) override;
  [[nodiscard]] Registration onPasteSettled(std::function<void(PasteSettlement)> handler) override;
  [[nodiscard]] bool clipboardWasKept() const override { return clipboardWasKept_; }
  [[nodiscard]] bool lastCopySucceeded() const override { return clipboards_.lastCopySucceeded(); }
  [[nodiscard]] std::string_view pasteKeys() const override { return keysByHand_; }
  [[nodiscard]] bool canBringBackClipboard() const override { return clipboards_.replaced().isAvailable(); }
  [[nodiscard]] Registration onWayBackChange(std::function<void(bool)> handler) override;
  void bringBackClipboard() override;
  /// A window of our own that takes words as other applications do; 0 when there is none.
  void setOwnField(std::uint32_t window) { ownField_ = window; }

  /// Brings `application` to the front when another one is there, and waits a bounded time for it. Does
  /// nothing without an application or when it has terminated.
  Task<void> restoreEditingApplicationIfNeeded(std::optional<RunningApplication> application);

  /// Pastes into `application`, which must be in front, or copies. With `liveOnly` a paste that cannot be
  /// posted leaves the clipboard alone. `lastBlock` gives the reason of `copiedFallback`.
  Task<TextDeliveryResult> dispatchPasteOrCopy(SpokenText text, std::optional<RunningApplication> application,
                                               bool liveOnly);

  /// Where the text of this dictation will go.
  [[nodiscard]] const std::optional<RunningApplication>& target() const { return target_; }

 private:
  /// Where a paste goes, and by which keys.
  struct PasteOrder;

  [[nodiscard]] bool canBeTarget(const RunningApplication& application) const;
  void activated(const RunningApplication& application);
  void setTarget(const RunningApplication& application);
  /// Captures the clipboard once no text of ours stands on it any more.
  Task<void> beginCapture();
  [[nodiscard]] bool isAnotherOfTheUsers(const std::optional<RunningApplication>& front,
                                         const RunningApplication& application) const;
  Task<void> followTheUser();
  /// Until it is given back no other text is delivered: two would stand in each other's place.
  Task<Registration> takeTurn();
  void endTurn();
  Task<TextDeliveryResult> deliver(SpokenText text, bool liveOnly);
  Task<bool> deliverLiveSegment(SpokenText phrase);
  [[nodiscard]] std::optional<PasteMethod> methodFor(const RunningApplication& application);
  [[nodiscard]] PasteObservations observe(const std::optional<RunningApplication>& application,
                                          bool eventsAvailable, FocusedFieldKind field);
  Task<TextDeliveryResult> refuse(LiveInsertionBlock block, SpokenText text, bool liveOnly);
  Task<TextDeliveryResult> takeBack(LiveInsertionBlock block, std::vector<ClipboardTransaction> transactions,
                                    SpokenText text, bool liveOnly);
  Task<void> bringBack();
  [[nodiscard]] Task<FocusedFieldKind> fieldOf(std::optional<RunningApplication> application);
  /// False when somebody goes on holding modifiers.
  Task<bool> awaitFreeKeys();
  /// Nothing when the clipboard could not be taken.
  Task<std::optional<SentPaste>> putForTarget(SpokenText text, PasteOrder order);
  /// Lets the target look at the new clipboard before it is told to paste.
  Task<void> awaitReadiness(TargetReads& reads, PasteOrder order);
  /// Looks once more, then sends the keys; why not, otherwise.
  std::optional<LiveInsertionBlock> pressKeys(const PasteOrder& order, Instant& postedAt);
  Task<TextDeliveryResult> settlePosted(SentPaste paste);

  TextInsertionDesktop desktop_;
  TextInsertionOptions options_;
  Logger logger_;
  bool restoresFromNextSession_;
  DeliveryClipboards clipboards_;
  DictationSpacing spacing_;
  std::uint32_t ownField_ = 0;
  std::optional<RunningApplication> target_;
  std::optional<LiveInsertionBlock> lastBlock_;
  std::optional<TextDeliveryResult> lastResult_;
  bool targetIsFixed_ = false;
  bool userActivatedAnother_ = false;
  bool recordingHasEnded_ = false;
  bool capturesPrevious_ = false;
  bool clipboardWasKept_ = true;
  std::set<std::string> lookers_;  ///< classes of applications that have looked at a new clipboard
  std::string_view keysByHand_ = PasteMethod{}.keysByHand();
  Registration activations_;
  PasteCleanup pasteCleanup_;
  Registration settlements_;
  bool isDelivering_ = false;
  std::deque<OneShotSender<bool>> waiting_;
  Scope capturing_;
  Scope scope_;  // last: the tasks of both use everything above
};

}  // namespace murmel
