#include "Shell/FileTranscription.h"

#include "Audio/AudioCaptureService.h"
#include "Audio/FileAudioAuthorization.h"
#include "Audio/FileAudioInput.h"
#include "Dictation/DictationCoordinator.h"
#include "Foundation/Async/OneShot.h"

#include <memory>
#include <optional>
#include <utility>

namespace murmel {

namespace {

class NoOverlay final : public OverlayController {
 public:
  void update(const DictationState&) override {}
  void setLevel(double) override {}
  void showCaptureCondition(CaptureCondition) override {}
};

class NoSound final : public SoundPlayer {
 public:
  void play(SystemSound) override {}
};

class NoDownloads final : public ModelDownloadPriorityCoordinator {
 public:
  void notifyOptionalControls(bool) override {}
};

/// One file, dictated.
class FileDictation {
 public:
  FileDictation(FileTranscriptionServices& services, std::string name, std::unique_ptr<FileAudioInput> input)
      : services_(services),
        name_(std::move(name)),
        input_(std::move(input)),
        audio_(services.executor, *input_, authorization_, services.temporaryDirectory),
        coordinator_(DictationServices{
            .executor = services.executor,
            .clock = services.clock,
            .audio = audio_,
            .insertion = services.delivery,
            .settings = services.settings,
            .history = services.history,
            .models = services.models,
            .recognition = services.recognition,
            .refinement = services.refinement,
            .cleanUp = services.cleanUp,
            .sessions = services.sessions,
            .updates = updates_,
            .downloads = downloads_,
            .overlay = overlay_,
            .sounds = sounds_,
            .diagnostic = Logger(services.log, services.applicationIdentifier, "dictation-summary"),
            .stages = Logger(services.log, services.applicationIdentifier, "incremental-stages"),
        }) {
    input_->setOnEnd([this](std::expected<void, std::string> end) {
      if (!end) inputFailure_ = end.error();
      coordinator_.stopAndTranscribe();
    });
  }

  /// What went wrong, in one sentence that names the file, or nothing.
  Task<std::optional<std::string>> run() {
    auto preparing = until([this] { return !isVerifying(); });
    co_await preparing;
    if (coordinator_.state().which() == DictationState::Case::error)
      co_return named(coordinator_.state().title());

    coordinator_.toggle();
    auto dictating = until([this] { return hasEnded(); });
    co_await dictating;
    if (inputFailure_) co_return inputFailure_;
    if (coordinator_.state().which() == DictationState::Case::error)
      co_return named(coordinator_.state().title());
    if (coordinator_.state().which() == DictationState::Case::warning)
      services_.complain(named(coordinator_.state().title()));
    co_return std::nullopt;
  }

 private:
  [[nodiscard]] std::string named(const std::string& message) const { return name_ + ": " + message; }
  [[nodiscard]] bool isVerifying() const { return services_.models.state() == SpeechModelState::verifying; }

  [[nodiscard]] bool hasEnded() const {
    const auto& state = coordinator_.state();
    return !state.isBusy() && (transcribing_ || state.which() == DictationState::Case::error);
  }

  /// Completes once `condition` holds. It is asked after every change of the state, and never from inside the
  /// coordinator, which may be destroyed by whoever waits.
  Task<void> until(std::function<bool()> condition) {
    auto [sender, receiver] = makeOneShot<std::monostate>();
    auto waiting = std::make_shared<OneShotSender<std::monostate>>(std::move(sender));
    const auto look = [this, condition, waiting] {
      transcribing_ = transcribing_ || coordinator_.state().which() == DictationState::Case::transcribing;
      if (!condition()) return;
      services_.executor.post([waiting] { waiting->send({}); });
    };
    const auto observer = coordinator_.onStateChange().subscribe([look](const DictationState&) { look(); });
    look();
    co_await receiver;
  }

  FileTranscriptionServices& services_;
  std::string name_;
  std::unique_ptr<FileAudioInput> input_;
  FileAudioAuthorization authorization_;
  AudioCaptureService audio_;
  NoOverlay overlay_;
  NoSound sounds_;
  NoDownloads downloads_;
  UpdateActivityRegister updates_;
  DictationCoordinator coordinator_;
  std::optional<std::string> inputFailure_;
  bool transcribing_ = false;
};

}  // namespace

Task<int> transcribeFiles(FileTranscriptionServices services, std::vector<std::filesystem::path> files) {
  int status = 0;
  const auto pace = services.realTime ? FileAudioInput::Pace::realTime : FileAudioInput::Pace::asFastAsItCan;
  for (const auto& file : files) {
    auto input = FileAudioInput::open(services.executor, services.clock, file, pace);
    std::optional<std::string> failure;
    if (input) {
      FileDictation dictation(services, file.string(), *std::move(input));
      auto running = dictation.run();
      failure = co_await running;
    } else {
      failure = input.error();
    }
    if (failure) {
      services.complain(*failure);
      status = 1;
    }
  }
  co_return status;
}

}  // namespace murmel
