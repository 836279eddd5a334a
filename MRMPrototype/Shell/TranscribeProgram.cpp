// Audio files to text, without a desktop.

#include "Foundation/Async/Timers.h"
#include "Shell/CommandLineSpeech.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

/// Long segments are recognised best; subtitles and phrases for somebody who watches are short.
constexpr double textSeconds = 15;
constexpr double subtitleSeconds = 5;
constexpr double phraseSeconds = 3;
/// What a shell makes of an interruption.
constexpr int interruptedStatus = 130;

class TranscribeProgram {
 public:
  TranscribeProgram(CommandLineSpeech& speech, const TranscribeRole& role) : speech_(speech), role_(role) {
    speech_.interrupt.setHandler([this] { interrupted(); });
  }

  Task<int> run() {
    auto preparing = speech_.prepare();
    const std::expected<void, std::string> prepared = co_await preparing;
    if (!prepared) {
      speech_.output.complain(prepared.error());
      co_return 1;
    }
    bool complete = true;
    for (const auto& file : role_.files) {
      auto transcribing = transcribe(file.string());
      const bool whole = co_await transcribing;
      complete = complete && whole;
      if (isInterrupted_) co_return interruptedStatus;
      if (speech_.output.failed()) break;
    }
    co_return complete && !speech_.output.failed() ? 0 : 1;
  }

 private:
  Task<bool> transcribe(std::string name) {
    auto reader = AudioFileReader::open(name, speech_.interrupt.descriptor());
    // The interruption that ended a wait is told in the next turn of the loop, and ends this, too.
    for (Duration turnTime{}; speech_.interrupt.isPending(); turnTime = std::chrono::milliseconds(1)) {
      auto turn = sleepFor(speech_.executor, turnTime);
      co_await turn;
    }
    if (isInterrupted_) co_return false;
    if (!reader) {
      speech_.output.complain(reader.error());
      co_return false;
    }
    current_.emplace(speech_.services, name, *std::move(reader), options(name));
    auto running = current_->run();
    const FileTranscription::Outcome outcome = co_await running;
    if (!role_.live) write(outcome.transcript);
    if (outcome.problem) speech_.output.complain(*outcome.problem);
    speech_.keep(outcome.transcript);
    current_.reset();
    co_return !outcome.problem;
  }

  FileTranscription::Options options(const std::string& name) {
    FileTranscription::Options options;
    const bool subtitles = role_.form != TranscriptForm::text;
    options.targetSegmentSeconds = role_.live ? phraseSeconds : subtitles ? subtitleSeconds : textSeconds;
    options.realTime = role_.realTime;
    if (role_.live) {
      options.onPhrase = [this](const RecognisedPiece& phrase) {
        speech_.output.write(formattedPhrase(phrase, role_.form));
      };
    }
    options.onProgress = [this, name](double done) {
      const double all = std::max(current_ ? current_->expectedSeconds() : 0, done);
      if (std::exchange(shownSeconds_, static_cast<long>(done)) == static_cast<long>(done)) return;
      speech_.output.progress(fmt::format("{}: {:.0f} % ({} of {})", name, all > 0 ? 100 * done / all : 0,
                                          clockTime(done), clockTime(all)));
    };
    return options;
  }

  void write(const Transcript& transcript) {
    speech_.output.write(formatted(transcript, role_.form, role_.files.size() > 1));
  }

  /// What is there is worth having; the rest is not waited for.
  void interrupted() {
    isInterrupted_ = true;
    if (current_) {
      auto transcript = current_->soFar();
      transcript.interrupted = true;
      if (!role_.live) write(transcript);
      speech_.output.complain(transcript.name + ": interrupted; the text ends before the recording does");
    }
    speech_.leave(interruptedStatus);
  }

  CommandLineSpeech& speech_;
  TranscribeRole role_;
  std::optional<FileTranscription> current_;
  long shownSeconds_ = -1;
  bool isInterrupted_ = false;
};

}  // namespace

int runTranscribe(Arguments arguments, const Installation& installation, const TranscribeRole& role) {
  CommandLineSpeech speech(arguments, installation, role.speech);
  TranscribeProgram program(speech, role);
  return speech.run(program.run());
}

}  // namespace murmel
