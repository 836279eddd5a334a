// How the application ends, and the session around it: no word is lost to that.

#include "Foundation/Async/OneShot.h"
#include "Shell/MRMPrototypeApp.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QSessionManager>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace murmel {

namespace {

/// Longer than any delivery takes, shorter than sessions wait for their programs to end.
constexpr Duration drainBound = std::chrono::seconds(10);
/// A slow recogniser on a busy computer is waited for as long as the user lets it, in steps of the above.
constexpr int recognitionBounds = 6;
/// For a paste by hand, or to read a message, which the text below tells.
constexpr Duration lastWhile = std::chrono::seconds(10);
constexpr const char* notStored = "The last dictations could not be kept in the history.";
constexpr const char* clipboardIsGoing =
    "This desktop keeps no clipboard of a program that has ended: paste within ten seconds.";

std::string sentence(DrainOutcome outcome) {
  switch (outcome) {
    case DrainOutcome::done:
      return {};
    case DrainOutcome::copied:
      return "Murmel ended before your words could be inserted. They are on the clipboard — press ⌘V.";
    case DrainOutcome::copiedPart:
      return "Murmel ended before everything was recognized. The first part is on the clipboard — press ⌘V.";
    case DrainOutcome::notCopied:
      return "Murmel ended before your words could be inserted, and the clipboard did not take them.";
    case DrainOutcome::lost:
      return "Murmel ended before your last words were recognized.";
  }
  std::unreachable();
}

/// The same where the application goes on after all.
std::string sentenceOfStaying(DrainOutcome outcome) {
  auto copied = DictationState(DictationState::Case::copied).title();
  switch (outcome) {
    case DrainOutcome::done:
      return {};
    case DrainOutcome::copied:
      return copied;
    case DrainOutcome::copiedPart:
      return "Part of the recording was not recognized. " + copied;
    case DrainOutcome::notCopied:
      return notCopiedWarning;
    case DrainOutcome::lost:
      return "The recording could not be recognized. Please try again.";
  }
  std::unreachable();
}

/// The session manager, or the window system, wants the application to end.
class EndRequests final : public QObject {
 public:
  explicit EndRequests(std::function<void()> asked) : asked_(std::move(asked)) {}
  bool eventFilter(QObject* /*receiver*/, QEvent* event) override {
    if (event->type() != QEvent::Quit) return false;
    asked_();
    return true;
  }

 private:
  std::function<void()> asked_;
};

}  // namespace

void MRMPrototypeApp::act(ApplicationLifecycle::Action action) {
  switch (action) {
    case ApplicationLifecycle::Action::none:
      break;
    case ApplicationLifecycle::Action::show:
      commands_.post(requiresSetupWindow() ? IntelCommand::openSetup : IntelCommand::openSettings,
                     [](const CommandOutcome&) {});
      break;
    case ApplicationLifecycle::Action::drain:
      tasks_.start(drain());
      break;
    case ApplicationLifecycle::Action::hurry:
      coordinator_.hurryDrain();
      wasHurried_.emit();
      break;
    case ApplicationLifecycle::Action::end:
      terminate(0);
      break;
  }
}

void MRMPrototypeApp::connectEnd() {
  observers_.push_back(desktop_.session.onEnd([this] { sessionEnds(); }));
  endRequests_ = std::make_unique<EndRequests>([this] { sessionEnds(); });
  qGuiApp->installEventFilter(endRequests_.get());
  // Its own entry in the autostart folder is what starts it: a second start would only show a window.
  const auto restartNever = [](QSessionManager& manager) {
    manager.setRestartHint(QSessionManager::RestartNever);
  };
  QObject::connect(qGuiApp, &QGuiApplication::saveStateRequest, endRequests_.get(), restartNever);
  // A session manager goes on to end the session when this returns.
  QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, endRequests_.get(),
                   [this, restartNever](QSessionManager& manager) {
                     restartNever(manager);
                     sessionMayEnd();
                   });
}

RepeatingTimer MRMPrototypeApp::hurryInTime(std::function<void()> hurry) {
  // A session that cannot wait so long sends a signal, which is a second request.
  return {process_.executor, drainBound, [this, bounds = 0, hurry = std::move(hurry)]() mutable {
            if (++bounds >= recognitionBounds || !coordinator_.isRecognising()) hurry();
          }};
}

Task<DrainOutcome> MRMPrototypeApp::finishWords() {
  auto draining = coordinator_.drain();
  const DrainOutcome outcome = co_await draining;
  std::optional<PasteSettlement> settled;
  const auto settling =
      delivery_.insertion.onPasteSettled([&settled](PasteSettlement how) { settled = how; });
  auto finishing = delivery_.insertion.finishPasteCleanup();
  co_await finishing;
  if (outcome != DrainOutcome::done || !settled || hasArrived(*settled)) co_return outcome;
  co_return settled == PasteSettlement::replacedUnread ? DrainOutcome::notCopied : DrainOutcome::copied;
}

Task<bool> MRMPrototypeApp::tellAtTheEnd(DrainOutcome outcome, ClipboardHandOver left, bool isStored) {
  const bool isGoing = left == ClipboardHandOver::failed;
  const bool hasWords = outcome == DrainOutcome::copied || outcome == DrainOutcome::copiedPart;
  auto told = sentence(outcome);
  if (isGoing && !told.empty()) told += ' ';
  if (isGoing) told += hasWords ? clipboardIsGoing : "Your clipboard could not be kept.";
  if (!isStored) told += (told.empty() ? "" : " ") + std::string(notStored);
  if (told.empty()) co_return false;
  auto [sender, receiver] = makeOneShot<bool>();
  tray_.tellAtTheEnd(told, pasteKeys(),
                     [answer = std::make_shared<OneShotSender<bool>>(std::move(sender))](bool stays) {
                       answer->send(stays);
                     });
  const auto stays = co_await receiver;
  co_return outcome != DrainOutcome::done && ((isGoing && hasWords) || !stays.value_or(false));
}

Task<void> MRMPrototypeApp::stayForAWhile() {
  auto [sender, receiver] = makeOneShot<bool>();
  const auto end = [&executor = process_.executor,
                    answer = std::make_shared<OneShotSender<bool>>(std::move(sender))] {
    executor.post([answer] { answer->send(true); });
  };
  auto& clipboard = desktop_.clipboard;
  const auto pasted = clipboard.onRead([end](const ClipboardRead& read) {
    if (read.kind == ClipboardRead::Kind::text) end();
  });
  const auto replaced = clipboard.onForeignChange([end](std::int64_t) { end(); });
  const auto hurried = wasHurried_.subscribe(end);
  const auto late = process_.executor.after(lastWhile, end);
  co_await receiver;
}

Task<void> MRMPrototypeApp::drain() {
  const auto bound = hurryInTime([this] { act(lifecycle_.drainTimedOut()); });
  auto finishing = finishWords();
  const auto outcome = co_await finishing;
  auto handingOver = desktop_.clipboard.handOver();
  const auto left = co_await handingOver;
  // What waits for the disk blocks the end, not the dictations.
  const bool isStored = storage_.history.finish().has_value();
  auto telling = tellAtTheEnd(outcome, left, isStored);
  const bool stays = co_await telling;
  if (stays) {
    auto staying = stayForAWhile();
    co_await staying;
  }
  act(lifecycle_.drained());
}

Task<void> MRMPrototypeApp::settle() {
  const auto bound = hurryInTime([this] { coordinator_.hurryDrain(); });
  auto finishing = finishWords();
  const auto outcome = co_await finishing;
  if (lifecycle_.isEnding()) {
    isSettling_ = false;  // that end tells
    co_return;
  }
  if (const auto told = sentenceOfStaying(outcome); !told.empty()) tray_.tell(told, pasteKeys());
  (void)storage_.history.finish();
  coordinator_.admit();
  isSettling_ = false;
}

void MRMPrototypeApp::sessionEnds() {
  if (lifecycle_.phase() == ApplicationLifecycle::Phase::running) act(lifecycle_.quitRequested());
}

void MRMPrototypeApp::sessionMayEnd() {
  if (!lifecycle_.isEnding() && !std::exchange(isSettling_, true)) tasks_.start(settle());
  while (isSettling_ || lifecycle_.phase() == ApplicationLifecycle::Phase::draining)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::ExcludeUserInputEvents);
}

}  // namespace murmel
