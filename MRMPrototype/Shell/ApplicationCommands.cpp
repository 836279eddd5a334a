// What the commands of menus and of other programs do.

#include "Foundation/Async/Timers.h"
#include "Interface/PlatformWords.h"
#include "Shell/MRMPrototypeApp.h"

#include <utility>

namespace murmel {

namespace {

/// In which the window manager brings another application to the front.
constexpr auto pasteAgainDelay = std::chrono::milliseconds(250);
constexpr const char* stillTranscribing = "The last dictation is still being transcribed.";

/// Whoever asked is told that they were heard before they stop waiting.
CommandReply inTime(Executor& executor, CommandReply reply) {
  struct Waiting {
    CommandReply reply;
    Registration limit;
    void tell(const CommandOutcome& outcome) {
      limit.reset();
      if (const auto told = std::exchange(reply, nullptr)) told(outcome);
    }
  };
  const auto waiting = std::make_shared<Waiting>(Waiting{std::move(reply), {}});
  waiting->limit = executor.after(StartReplies::limit, [weak = std::weak_ptr(waiting)] {
    if (const auto alive = weak.lock()) alive->tell({});
  });
  return [waiting](const CommandOutcome& outcome) { waiting->tell(outcome); };
}

}  // namespace

void MRMPrototypeApp::connectCommands() {
  connectDictationCommands();
  connectWindowCommands();
  connectModelCommands();
  observers_.push_back(commands_.answer(IntelCommand::revealApplication, [this]() -> CommandOutcome {
    reopen();
    return {};
  }));
  observers_.push_back(commands_.answer(IntelCommand::quit, [this]() -> CommandOutcome {
    act(lifecycle_.quitRequested());
    return {};
  }));
}

void MRMPrototypeApp::connectDictationCommands() {
  using Handler = IntelCommandTarget::Handler;
  using LateHandler = IntelCommandTarget::LateHandler;
  const std::pair<IntelCommand, Handler> atOnce[] = {
      {IntelCommand::stopDictation,
       [this]() -> CommandOutcome {
         if (!coordinator_.stop()) return std::unexpected("Nothing is being recorded.");
         return {};
       }},
      {IntelCommand::cancelDictation, [this] { return coordinator_.cancel(); }},
      {IntelCommand::retryDictation, [this] { return coordinator_.retry(); }},
  };
  const std::pair<IntelCommand, LateHandler> later[] = {
      {IntelCommand::toggleDictation,
       [this](CommandReply reply) {
         if (!coordinator_.state().isRecording()) return startDictation(std::move(reply));
         coordinator_.toggle();
         reply({});
       }},
      {IntelCommand::startDictation, [this](CommandReply reply) { startDictation(std::move(reply)); }},
      {IntelCommand::copyLastTranscript,
       [this](CommandReply reply) { tasks_.start(copyLast(std::move(reply))); }},
      {IntelCommand::pasteLastTranscript, [this](CommandReply reply) { pasteLast(std::move(reply)); }},
  };
  for (const auto& [command, run] : atOnce) observers_.push_back(commands_.answer(command, run));
  for (const auto& [command, run] : later) observers_.push_back(commands_.answerLater(command, run));
}

void MRMPrototypeApp::connectWindowCommands() {
  using Step = FirstRunWindow::Step;
  // Few desktops can be asked for a permission: what is missing, and what to do about it, stands in the
  // setup.
  const auto lead = [this](Step step) {
    if (desktop_.askForAccess) desktop_.askForAccess();
    permissions_.refresh();
    openSetupWindow(step);
  };
  const std::pair<IntelCommand, std::function<void()>> windows[] = {
      {IntelCommand::openSettings, [this] { windows_.openSettings(); }},
      {IntelCommand::openHistory, [this] { windows_.openHistory(); }},
      {IntelCommand::openAbout, [this] { windows_.openAbout(); }},
      {IntelCommand::openCredits, [this] { windows_.openCredits(); }},
      {IntelCommand::openMicrophoneSettings,
       [this] {
         if (!openSoundSettings()) windows_.openSettings(SettingsWindow::Page::audio);
       }},
      {IntelCommand::openSetup,
       [this] {
         permissions_.refresh();
         openSetupWindow(Step::welcome);
       }},
      {IntelCommand::requestInputMonitoring, [lead] { lead(Step::shortcut); }},
      {IntelCommand::requestAutomaticPaste, [lead] { lead(Step::tryIt); }},
  };
  for (const auto& [command, open] : windows) {
    observers_.push_back(commands_.answer(command, [this, open = open]() -> CommandOutcome {
      tasks_.start(afterTheAnswer(open));
      return {};
    }));
  }
  observers_.push_back(commands_.answerLater(IntelCommand::requestMicrophone, [this](CommandReply reply) {
    permissions_.refresh();
    // A sound server that refuses does so for good; its settings are where that is changed.
    const bool mayRecord = permissions_.current().mayRecord();
    commands_.post(mayRecord ? IntelCommand::openSetup : IntelCommand::openMicrophoneSettings,
                   std::move(reply));
  }));
}

void MRMPrototypeApp::connectModelCommands() {
  observers_.push_back(commands_.answer(IntelCommand::downloadSpeechModel, [this]() -> CommandOutcome {
    if (models_.downloadSpeechModel()) return {};
    const std::string reason = "There is no other speech model for this computer.";
    tell(reason);
    return std::unexpected(reason);
  }));
  observers_.push_back(commands_.answer(IntelCommand::cancelSpeechModelDownload, [this]() -> CommandOutcome {
    models_.cancelSpeechModelDownload();
    return {};
  }));
  if (!models_.downloads) return;
  observers_.push_back(
      models_.downloads->onChange([this](const std::string&, const ModelDownloadStatus& status) {
        if (status.state == ModelDownloadStatus::State::failed) tell(status.message);
        if (status.state == ModelDownloadStatus::State::installed) tell("The model is installed.");
      }));
}

void MRMPrototypeApp::startDictation(CommandReply reply) {
  const auto& state = coordinator_.state();
  if (state.isRecording()) return reply(std::unexpected("Murmel is listening already."));
  if (state.isBusy()) return reply(std::unexpected(stillTranscribing));
  // Whether a dictation begins shows a little later.
  startReplies_.await(std::move(reply));
  coordinator_.toggle();
}

Task<void> MRMPrototypeApp::copyLast(CommandReply reply) {
  if (!coordinator_.hasLastTranscript()) {
    reply(std::unexpected("There is no dictation to copy."));
    co_return;
  }
  auto copying = coordinator_.copyLastTranscript();
  const bool copied = co_await copying;
  reply(copied ? CommandOutcome() : std::unexpected(notCopiedWarning));
}

void MRMPrototypeApp::pasteLast(CommandReply reply) {
  const auto& words = coordinator_.lastTranscript();
  if (!words) return reply(std::unexpected("There is no dictation to paste."));
  if (coordinator_.state().isBusy()) return reply(std::unexpected(stillTranscribing));
  tasks_.start(pasteAgain(*words, inTime(process_.executor, std::move(reply))));
}

Task<void> MRMPrototypeApp::copy(SpokenText text, std::function<void(bool)> told) {
  auto copying = delivery_.insertion.writePrivateText(std::move(text));
  const bool copied = co_await copying;
  if (!copied) tell("The text could not be put on the clipboard.");
  if (told) told(copied);
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
  commands_.post(command, std::move(reply));
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

Task<void> MRMPrototypeApp::pasteAgain(SpokenText words, CommandReply reply) {
  const auto isDictating = [this] { return coordinator_.state().isBusy() || coordinator_.isStarting(); };
  // Until the window that asked for it has gone and another application is in front.
  auto waiting = sleepFor(process_.executor, pasteAgainDelay);
  co_await waiting;
  if (isDictating()) {
    reply(std::unexpected("A dictation is under way."));
    co_return;
  }
  delivery_.insertion.beginDictationSession();
  auto inserting = delivery_.insertion.insertOrCopy(std::move(words), false);
  const auto result = co_await inserting;
  const bool isCopied = delivery_.insertion.lastCopySucceeded();
  // A dictation that has begun meanwhile has a session of its own.
  if (!isDictating()) delivery_.insertion.endDictationSession();
  if (result != TextDeliveryResult::copiedFallback) {
    reply({});
    co_return;
  }
  const auto keys = pasteKeys();
  const auto told = isCopied ? DictationState(DictationState::Case::copied).title() : notCopiedWarning;
  tray_.tell(told, keys);
  reply(std::unexpected(inPlatformWords(told, keys).toStdString()));
}

}  // namespace murmel
