#include "Delivery/TextInsertionService.h"

#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Timers.h"

#include <coroutine>
#include <utility>

namespace murmel {

namespace {

/// How long the workspace takes to tell of a switch, and how often the front is looked at.
constexpr Duration focusPollInterval = std::chrono::milliseconds(75);
constexpr int focusPollCount = 20;

/// Hands the result of a task of the service's own to whoever waits for it, from the loop.
template <class T>
Task<void> answer(Task<T> task, Executor& executor, OneShotSender<T> sender) {
  const T result = co_await task;
  executor.post([sender = std::move(sender), result]() mutable { sender.send(result); });
}

}  // namespace

TextInsertionService::TextInsertionService(TextInsertionDesktop desktop, TextInsertionOptions options,
                                           Logger logger)
    : desktop_(desktop),
      options_(std::move(options)),
      logger_(std::move(logger)),
      restoresFromNextSession_(options_.shouldRestorePreviousClipboard),
      clipboards_(desktop.executor, desktop.general, desktop.primary,
                  ClipboardTransaction::ownershipType(options_.applicationIdentifier), logger_),
      pasteCleanup_(desktop.executor, desktop.clock, clipboards_.replaced(), logger_),
      settlements_(pasteCleanup_.onSettled([this](PasteSettlement settlement) {
        if (lastResult_) lastResult_ = deliveryResult(settlement);
        if (!hasArrived(settlement)) spacing_.forget();
      })) {}

void TextInsertionService::beginDictationSession() {
  endDictationSession();
  options_.shouldRestorePreviousClipboard = restoresFromNextSession_;
  lastBlock_.reset();
  lastResult_.reset();
  clipboardWasKept_ = true;
  const auto front = desktop_.workspace.frontmostApplication();
  if (front && canBeTarget(*front)) setTarget(*front);
  activations_ = desktop_.workspace.onActivation(
      [this](const RunningApplication& application) { activated(application); });
  capturing_.start(beginCapture());
  const auto method = target_ ? methodFor(*target_) : std::nullopt;
  if (!method || !method->takesEveryKey) desktop_.keyboard.maskHeldModifiers();
}

bool TextInsertionService::canBeTarget(const RunningApplication& application) const {
  constexpr pid_t none = 0;
  const bool isOwnField = ownField_ != 0 && application.window == ownField_;
  return InsertionFocusPolicy::canBeTarget(application, isOwnField ? none : options_.ownProcess);
}

Task<void> TextInsertionService::beginCapture() {
  auto finishing = pasteCleanup_.finish();
  co_await finishing;
  if (options_.shouldRestorePreviousClipboard) clipboards_.begin();
  capturesPrevious_ = true;
  if (target_) setTarget(*target_);
}

void TextInsertionService::endDictationSession() {
  activations_.reset();
  capturing_.cancelAll();
  capturesPrevious_ = false;
  clipboards_.end();
  target_.reset();
  targetIsFixed_ = false;
  userActivatedAnother_ = false;
  recordingHasEnded_ = false;
}

void TextInsertionService::setTarget(const RunningApplication& application) {
  target_ = application;
  const auto method = methodFor(application);
  keysByHand_ = method.value_or(PasteMethod{}).keysByHand();
  if (capturesPrevious_ && method && method->usesPrimary) clipboards_.beginPrimary();
  if (desktop_.focusedField != nullptr) desktop_.focusedField->prepare(application);
}

void TextInsertionService::activated(const RunningApplication& application) {
  if (!canBeTarget(application)) return;
  if (targetIsFixed_ && target_) {
    userActivatedAnother_ = !isSameWindow(application, *target_);
    return;
  }
  // The desktop shows the next window when one has gone; that is not where the user wanted the text.
  if (recordingHasEnded_ && target_ && desktop_.workspace.isTerminated(*target_)) return;
  setTarget(application);
}

bool TextInsertionService::isAnotherOfTheUsers(const std::optional<RunningApplication>& front,
                                               const RunningApplication& application) const {
  return front && !isSameWindow(*front, application) && canBeTarget(*front);
}

/// The workspace tells of a switch a moment after it happened: when one is seen, wait for the word of it.
Task<void> TextInsertionService::followTheUser() {
  if (!target_ || userActivatedAnother_) co_return;
  if (!isAnotherOfTheUsers(desktop_.workspace.frontmostApplication(), *target_)) co_return;
  auto waiting = sleepFor(desktop_.executor, focusPollInterval);
  co_await waiting;
}

Task<std::optional<TextDeliveryResult>> TextInsertionService::finishPasteCleanup() {
  return pasteCleanup_.finish();
}

Registration TextInsertionService::onPasteSettled(std::function<void(PasteSettlement)> handler) {
  return pasteCleanup_.onSettled(std::move(handler));
}

Task<void> TextInsertionService::restoreEditingApplicationIfNeeded(
    std::optional<RunningApplication> application) {
  auto& workspace = desktop_.workspace;
  if (!application || workspace.isTerminated(*application)) co_return;
  const auto isInFront = [&workspace](const RunningApplication& wanted) {
    const auto front = workspace.frontmostApplication();
    return front && isSameWindow(*front, wanted);
  };
  if (isInFront(*application)) co_return;
  workspace.activate(*application);
  for (int poll = 0; poll < focusPollCount && !isInFront(*application); ++poll) {
    auto waiting = sleepFor(desktop_.executor, focusPollInterval);
    co_await waiting;
  }
}

Task<TextDeliveryResult> TextInsertionService::insertOrCopy(SpokenText text, bool liveOnly) {
  auto [sender, receiver] = makeOneShot<TextDeliveryResult>();
  scope_.start(answer(deliver(std::move(text), liveOnly), desktop_.executor, std::move(sender)));
  auto waiting = awaitAnswer(std::move(receiver));
  const auto result = co_await waiting;
  co_return result;
}

Task<bool> TextInsertionService::insertLiveSegment(SpokenText phrase) {
  auto [sender, receiver] = makeOneShot<bool>();
  scope_.start(answer(deliverLiveSegment(std::move(phrase)), desktop_.executor, std::move(sender)));
  auto waiting = awaitAnswer(std::move(receiver));
  const bool inserted = co_await waiting;
  co_return inserted;
}

Task<Registration> TextInsertionService::takeTurn() {
  if (std::exchange(isDelivering_, true)) {
    auto [sender, receiver] = makeOneShot<bool>();
    waiting_.push_back(std::move(sender));
    auto waiting = awaitAnswer(std::move(receiver));
    co_await waiting;
  }
  co_return Registration([this] { endTurn(); });
}

void TextInsertionService::endTurn() {
  isDelivering_ = !waiting_.empty();
  if (!isDelivering_) return;
  desktop_.executor.post([next = std::move(waiting_.front())]() mutable { next.send(true); });
  waiting_.pop_front();
}

Task<TextDeliveryResult> TextInsertionService::deliver(SpokenText text, bool liveOnly) {
  auto waiting = takeTurn();
  const auto turn = co_await waiting;
  auto finishing = pasteCleanup_.finish();
  co_await finishing;
  auto following = followTheUser();
  co_await following;
  const auto target = target_;
  auto restoring = restoreEditingApplicationIfNeeded(target);
  co_await restoring;
  auto dispatching = dispatchPasteOrCopy(std::move(text), target, liveOnly);
  const auto result = co_await dispatching;
  co_return result;
}

Task<bool> TextInsertionService::deliverLiveSegment(SpokenText phrase) {
  auto waiting = takeTurn();
  const auto turn = co_await waiting;
  auto finishing = pasteCleanup_.finish();
  co_await finishing;
  auto following = followTheUser();
  co_await following;
  if (target_ && !targetIsFixed_) targetIsFixed_ = true;
  const auto target = target_;
  // Where the user has gone somewhere else, the original application is not forced upon them.
  if (!userActivatedAnother_) {
    auto restoring = restoreEditingApplicationIfNeeded(target);
    co_await restoring;
  }
  auto dispatching = dispatchPasteOrCopy(std::move(phrase), target, true);
  const auto result = co_await dispatching;
  const bool posted = result != TextDeliveryResult::copiedFallback;
  logger_.line(LogLevel::info,
               posted ? PublicText("paste_dispatched=true") : PublicText("paste_dispatched=false"));
  if (!posted) co_return false;
  if (result == TextDeliveryResult::insertionSentClipboardChanged) {
    // Somebody else's contents may have been pasted.
    lastBlock_ = LiveInsertionBlock::unknown;
    co_return false;
  }
  auto arriving = pasteCleanup_.arrival();
  const bool arrived = co_await arriving;
  if (!arrived) lastBlock_ = LiveInsertionBlock::unknown;
  co_return arrived;
}

std::optional<PasteMethod> TextInsertionService::methodFor(const RunningApplication& application) {
  const auto method = options_.pasteChords.method(application.bundleIdentifier, application.instanceName);
  if (desktop_.keyboard.canPost(method.chord)) return method;
  // A layout without Latin letters has no V. Insert is on every keyboard; some applications paste the
  // primary selection with it.
  constexpr PasteMethod withoutLetters{
      .chord = PasteChord::shiftInsert, .usesPrimary = true, .byHand = "Shift+Insert"};
  if (desktop_.keyboard.canPost(withoutLetters.chord)) return withoutLetters;
  return std::nullopt;
}

PasteObservations TextInsertionService::observe(const std::optional<RunningApplication>& application,
                                                bool eventsAvailable, FocusedFieldKind field) {
  PasteObservations seen;
  if (!application) return seen;
  const auto front = desktop_.workspace.frontmostApplication();
  seen.hasTarget = true;
  seen.targetTerminated = desktop_.workspace.isTerminated(*application);
  seen.targetInFront = front && isSameWindow(*front, *application);
  seen.userActivatedAnother = userActivatedAnother_ || isAnotherOfTheUsers(front, *application);
  const bool mayHide = field == FocusedFieldKind::hidden || field == FocusedFieldKind::unanswered;
  seen.secureInput = mayHide || desktop_.secureInput.isEnabled();
  seen.mayPost = desktop_.keyboard.mayPost();
  seen.eventsAvailable = eventsAvailable;
  return seen;
}

Task<bool> TextInsertionService::writePrivateText(SpokenText text) {
  // The keys to tell of are those of the application that the user is in now.
  if (const auto front = desktop_.workspace.frontmostApplication(); front && !target_)
    keysByHand_ = methodFor(*front).value_or(PasteMethod{}).keysByHand();
  auto copying = clipboards_.copy(std::move(text));
  const bool copied = co_await copying;
  co_return copied;
}

Registration TextInsertionService::onWayBackChange(std::function<void(bool)> handler) {
  return clipboards_.replaced().onAvailabilityChange(std::move(handler));
}

void TextInsertionService::bringBackClipboard() {
  scope_.start(bringBack());
}

Task<void> TextInsertionService::bringBack() {
  auto bringing = clipboards_.replaced().bringBack();
  co_await bringing;
}

}  // namespace murmel
