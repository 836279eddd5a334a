// What the commands of menus and of other programs do.

#include "Foundation/Async/Timers.h"
#include "Shell/MRMPrototypeApp.h"

#include <utility>

namespace murmel {

namespace {

/// In which the window manager brings another application to the front.
constexpr auto pasteAgainDelay = std::chrono::milliseconds(250);
constexpr const char* stillTranscribing = "The last dictation is still being transcribed.";

}  // namespace

void MRMPrototypeApp::connectCommands() {
  const auto on = [this](IntelCommand command, IntelCommandTarget::Handler run) {
    observers_.push_back(commands_.answer(command, std::move(run)));
  };
  on(IntelCommand::toggleDictation, [this]() -> CommandOutcome {
    if (isTranscribing()) return std::unexpected(stillTranscribing);
    coordinator_.toggle();
    return {};
  });
  on(IntelCommand::startDictation, [this]() -> CommandOutcome {
    if (isTranscribing()) return std::unexpected(stillTranscribing);
    if (coordinator_.state().isRecording()) return std::unexpected("Murmel is listening already.");
    coordinator_.toggle();
    return {};
  });
  on(IntelCommand::stopDictation, [this]() -> CommandOutcome {
    if (!coordinator_.stop()) return std::unexpected("Nothing is being recorded.");
    return {};
  });
  on(IntelCommand::cancelDictation, [this] { return coordinator_.cancel(); });
  on(IntelCommand::retryDictation, [this] { return coordinator_.retry(); });
  on(IntelCommand::copyLastTranscript, [this]() -> CommandOutcome {
    if (!coordinator_.hasLastTranscript()) return std::unexpected("There is no dictation to copy.");
    coordinator_.copyLastTranscript();
    return {};
  });
  on(IntelCommand::pasteLastTranscript, [this]() -> CommandOutcome {
    const auto& words = coordinator_.lastTranscript();
    if (!words) return std::unexpected("There is no dictation to paste.");
    if (coordinator_.state().isBusy()) return std::unexpected(stillTranscribing);
    tasks_.start(pasteAgain(*words));
    return {};
  });
  on(IntelCommand::revealApplication, [this]() -> CommandOutcome {
    reopen();
    return {};
  });
  const auto show = [this, &on](IntelCommand command, std::function<void()> run) {
    on(command, [this, run = std::move(run)]() -> CommandOutcome {
      tasks_.start(afterTheAnswer(run));
      return {};
    });
  };
  show(IntelCommand::openSettings, [this] { windows_.openSettings(); });
  show(IntelCommand::openHistory, [this] { windows_.openHistory(); });
  show(IntelCommand::openAbout, [this] { windows_.openAbout(); });
  show(IntelCommand::openCredits, [this] { windows_.openCredits(); });
  show(IntelCommand::openMicrophoneSettings, [this] {
    if (!openSoundSettings()) windows_.openSettings(SettingsWindow::Page::audio);
  });
  // Few desktops can be asked for a permission: what is missing, and what to do about it, stands in the
  // setup.
  using Step = FirstRunWindow::Step;
  for (const auto& [command, step] : {std::pair(IntelCommand::openSetup, Step::welcome),
                                      {IntelCommand::requestInputMonitoring, Step::shortcut},
                                      {IntelCommand::requestAutomaticPaste, Step::tryIt}}) {
    show(command, [this, step] {
      const bool asks = step != Step::welcome && desktop_.askForAccess;
      if (asks) desktop_.askForAccess();
      permissions_.refresh();
      openSetupWindow(step);
    });
  }
  on(IntelCommand::requestMicrophone, [this] {
    permissions_.refresh();
    // A sound server that refuses does so for good; its settings are where that is changed.
    const bool mayRecord = permissions_.current().mayRecord();
    return commands_.post(mayRecord ? IntelCommand::openSetup : IntelCommand::openMicrophoneSettings);
  });
  on(IntelCommand::downloadSpeechModel, [this]() -> CommandOutcome {
    if (models_.downloadSpeechModel()) return {};
    const std::string reason = "There is no other speech model for this computer.";
    tell(reason);
    return std::unexpected(reason);
  });
  on(IntelCommand::cancelSpeechModelDownload, [this]() -> CommandOutcome {
    models_.cancelSpeechModelDownload();
    return {};
  });
  if (models_.downloads) {
    observers_.push_back(
        models_.downloads->onChange([this](const std::string&, const ModelDownloadStatus& status) {
          if (status.state == ModelDownloadStatus::State::failed) tell(status.message);
          if (status.state == ModelDownloadStatus::State::installed) tell("The model is installed.");
        }));
  }
  on(IntelCommand::quit, [this]() -> CommandOutcome {
    act(lifecycle_.quitRequested());
    return {};
  });
}

Task<void> MRMPrototypeApp::afterTheAnswer(std::function<void()> run) {
  auto answering = sleepFor(process_.executor, Duration{});
  co_await answering;
  run();
}

void MRMPrototypeApp::perform(IntelCommand command, CommandReply reply) {
  if (lifecycle_.isEnding() && command != IntelCommand::quit) {
    reply(std::unexpected("Murmel is ending."));
    return;
  }
  const bool isStart = command == IntelCommand::startDictation || command == IntelCommand::toggleDictation;
  if (!isStart || coordinator_.state().isBusy()) {
    reply(commands_.post(command));
    return;
  }
  // Whether a dictation begins shows a little later.
  startReplies_.await(std::move(reply));
  (void)commands_.post(command);  // what is not busy takes a start
}

bool MRMPrototypeApp::isTranscribing() const {
  return coordinator_.state().which() == DictationState::Case::transcribing;
}

Task<void> MRMPrototypeApp::diagnose(std::function<void(const std::string&)> ready) {
  auto [sender, receiver] = makeOneShot<bool>();
  const auto finished = checks_.didChange().subscribe([this, &sender = sender] {
    if (!checks_.isRunning())
      process_.executor.post([given = std::move(sender)]() mutable { given.send(true); });
  });
  checks_.run();
  co_await receiver;
  auto text = versionLine(installation_.build) + '\n';
  for (const auto& report : checks_.reports())
    text += report.name + ": " + std::string(checkStateName(report.state)) + '\n';
  ready(text);
}

Task<void> MRMPrototypeApp::pasteAgain(SpokenText words) {
  const auto isDictating = [this] { return coordinator_.state().isBusy() || coordinator_.isStarting(); };
  // Until the window that asked for it has gone and another application is in front.
  auto waiting = sleepFor(process_.executor, pasteAgainDelay);
  co_await waiting;
  if (isDictating()) co_return;
  delivery_.insertion.beginDictationSession();
  auto inserting = delivery_.insertion.insertOrCopy(std::move(words), false);
  const auto result = co_await inserting;
  const bool isCopied = delivery_.insertion.lastCopySucceeded();
  // A dictation that has begun meanwhile has a session of its own.
  if (!isDictating()) delivery_.insertion.endDictationSession();
  if (result == TextDeliveryResult::copiedFallback && !isCopied)
    tell(notCopiedWarning);
  else if (result == TextDeliveryResult::copiedFallback)
    tray_.tell(DictationState(DictationState::Case::copied).title(),
               QString::fromStdString(std::string(delivery_.insertion.pasteKeys())));
}

}  // namespace murmel
