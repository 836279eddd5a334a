// Dictation for scripts and remote shells: from the microphone to the standard output, without a desktop.

#include "Audio/AudioCaptureService.h"
#include "Foundation/Async/Timers.h"
#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Segmentation/RecordingMemory.h"
#include "Shell/CommandLineSpeech.h"
#include "Shell/Programs.h"

#include <unistd.h>

namespace murmel {

namespace {

/// Phrases as soon as they are said.
constexpr double livePhraseSeconds = 3;
constexpr Duration pumpInterval = std::chrono::milliseconds(200);

class Listening {
 public:
  Listening(CommandLineSpeech& speech, const ListenRole& role)
      : speech_(speech),
        role_(role),
        input_(speech.executor, {speech.installation.build.displayName, std::nullopt}),
        authorization_(PulseAudioAuthorization::Environment::from(speech.installation.environment)),
        audio_(speech.executor, input_, authorization_, speech.installation.folders.temporary) {
    // The last words still arrive; who is in a hurry asks twice.
    speech_.interrupt.setHandler([this] { ended_ = true; });
  }

  Task<int> run() {
    auto preparing = speech_.prepare();
    const std::expected<void, std::string> prepared = co_await preparing;
    if (!prepared) {
      speech_.output.complain(prepared.error());
      co_return 1;
    }
    auto asking = audio_.requestPermission();
    const bool permitted = co_await asking;
    if (!permitted) co_return failed(MRMError(MRMError::Case::microphoneDenied));
    RecordingMemory memory(speech_.memory);
    if (memory.isShort(0)) {
      speech_.output.complain("There is too little memory to record.");
      co_return 1;
    }
    prepareSession();
    auto starting = audio_.start();
    const Result<void> started = co_await starting;
    if (!started) co_return failed(started.error());
    audio_.setOnConfigurationChange([this] {
      speech_.output.complain("Audio configuration changed. Recording stopped; captured audio processed.");
      ended_ = true;
    });
    speech_.output.progress("Listening… Enter or Ctrl+C ends it.");
    watchEnter();
    while (!ended_) {
      auto pause = sleepFor(speech_.executor, pumpInterval);
      co_await pause;
      if (memory.isShort(audio_.sampleRate())) {
        speech_.output.complain("Memory is running out. Recording stopped; captured audio processed.");
        break;
      }
      if (auto pending = audio_.takePendingAudio()) session_->append(*std::move(pending));
      if (role_.untilSilence && session_->heardSpeech() && session_->quietSeconds() >= *role_.untilSilence)
        ended_ = true;
    }
    memory.release();
    enter_.reset();
    if (auto rest = audio_.stop(); rest && !rest->monoSamples.empty()) session_->append(*std::move(rest));
    auto finishing = session_->finish();
    const Result<DictationSessionResult> result = co_await finishing;
    if (!result && result.error().which() != MRMError::Case::noSpeech) co_return failed(result.error());
    if (result) {
      auto transcript = speech_.services.transcript({}, result->pieces);
      transcript.missing = result->missing;
      speech_.keep(transcript);
    }
    if (result && !result->missing.empty()) {
      speech_.output.complain("Part of the recording was not recognized: " + described(result->missing));
      co_return 1;
    }
    co_return speech_.output.failed() ? 1 : 0;
  }

 private:
  int failed(const MRMError& error) {
    speech_.output.complain(error.localizedDescription());
    return 1;
  }

  void prepareSession() {
    auto configuration = speech_.services.configuration(livePhraseSeconds);
    configuration.draftsInPauses = true;
    configuration.onRecognised = [this](const RecognisedPiece& piece) { span_ = piece.span; };
    configuration.onPhrase = [this](SpokenText text) { return show(std::move(text)); };
    session_ = speech_.services.sessions.make(std::move(configuration));
  }

  Task<void> show(SpokenText text) {
    auto phrase = speech_.services.cleaned(text);
    if (!phrase.empty()) speech_.output.write(formattedPhrase({span_, std::move(phrase)}, role_.form));
    // Nobody reads any more.
    if (speech_.output.failed()) ended_ = true;
    co_return;
  }

  /// A line ends it, from a script as well; the end of the input only where somebody types.
  void watchEnter() {
    enter_ = speech_.executor.watchReadable(STDIN_FILENO, [this] {
      char byte = 0;
      const auto count = ::read(STDIN_FILENO, &byte, 1);
      if (count == 1 && byte != '\n') return;
      if (count == 1 || ::isatty(STDIN_FILENO) != 0) ended_ = true;
      enter_.reset();
    });
  }

  CommandLineSpeech& speech_;
  ListenRole role_;
  PulseAudioInput input_;
  PulseAudioAuthorization authorization_;
  AudioCaptureService audio_;
  std::unique_ptr<DictationSession> session_;
  SpokenSpan span_;
  Registration enter_;
  bool ended_ = false;
};

}  // namespace

int runListen(Arguments arguments, const Installation& installation, const ListenRole& role) {
  CommandLineSpeech speech(arguments, installation, role.speech);
  Listening listening(speech, role);
  return speech.run(listening.run());
}

}  // namespace murmel
