#include "Shell/FileTranscription.h"

#include "Foundation/Async/Timers.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

constexpr double fragmentSeconds = 0.25;
/// So much audio may wait for the recogniser before the reading waits for it, too: enough that it is never
/// idle.
constexpr double mostWaitingSeconds = 60;
constexpr Duration waitingInterval = std::chrono::milliseconds(20);

PrivateVector<float> mixedDown(std::span<const float> interleaved, unsigned channels) {
  PrivateVector<float> mono(interleaved.size() / channels);
  for (std::size_t frame = 0; frame < mono.size(); ++frame) {
    float sum = 0;
    for (unsigned channel = 0; channel < channels; ++channel) sum += interleaved[frame * channels + channel];
    mono[frame] = sum / static_cast<float>(channels);
  }
  return mono;
}

}  // namespace

DictationSessionConfiguration TranscriptionServices::configuration(double targetSegmentSeconds) const {
  DictationSessionConfiguration configuration;
  configuration.transcription = recogniser;
  configuration.nextTranscription = [this] { return recognition.makeNext(settings.workerLanguageCode()); };
  configuration.refinement = refinement.makeRefinementProvider();
  configuration.languageCode = settings.workerLanguageCode();
  configuration.targetSegmentSeconds = targetSegmentSeconds;
  return configuration;
}

SpokenText TranscriptionServices::cleaned(const SpokenText& text) const {
  return SpokenText(std::string(text::trimmed(cleanUp.clean(text.reveal()))));
}

Transcript TranscriptionServices::transcript(std::string name, std::vector<RecognisedPiece> pieces) const {
  Transcript transcript;
  transcript.name = std::move(name);
  std::string whole;
  for (auto& piece : pieces) {
    whole += (whole.empty() ? "" : " ") + piece.text.reveal();
    piece.text = cleaned(piece.text);
    if (!piece.text.empty()) transcript.pieces.push_back(std::move(piece));
  }
  transcript.text = cleaned(SpokenText(std::move(whole)));
  return transcript;
}

FileTranscription::FileTranscription(const TranscriptionServices& services, std::string name,
                                     AudioFileReader reader, Options options)
    : services_(services), name_(std::move(name)), reader_(std::move(reader)), options_(std::move(options)) {
  auto configuration = services_.configuration(options_.targetSegmentSeconds);
  configuration.somebodyWaits = true;
  if (options_.onPhrase) {
    configuration.onRecognised = [this](const RecognisedPiece& piece) { phrase_ = piece.span; };
    configuration.onPhrase = [this](SpokenText text) { return showPhrase(std::move(text)); };
  }
  session_ = services_.sessions.make(std::move(configuration));
}

Task<FileTranscription::Outcome> FileTranscription::run() {
  auto reading = readAll();
  co_await reading;
  auto finishing = session_->finish();
  const Result<DictationSessionResult> result = co_await finishing;
  Outcome outcome{soFar(), problem_};
  const auto add = [&outcome](std::string problem) {
    outcome.problem = outcome.problem ? *outcome.problem + "; " + problem : std::move(problem);
  };
  if (result) {
    outcome.transcript.missing = result->missing;
    if (!result->missing.empty())
      add(fmt::format("{}: not recognized: {}", name_, described(result->missing)));
  } else if (result.error().which() != MRMError::Case::noSpeech) {
    outcome.transcript.missing = {{0, readSeconds_}};
    add(fmt::format("{}: not recognized: {}. {}", name_, described(outcome.transcript.missing),
                    result.error().localizedDescription()));
  }
  co_return outcome;
}

Task<void> FileTranscription::readAll() {
  const double rate = reader_.sampleRate();
  const unsigned channels = reader_.channelCount();
  std::vector<float> fragment(std::max<std::size_t>(static_cast<std::size_t>(rate * fragmentSeconds), 1) *
                              channels);
  const auto begin = services_.clock.now();
  while (true) {
    const auto frames = reader_.read(fragment);
    if (!frames) problem_ = frames.error();
    if (!frames || *frames == 0) break;
    readSeconds_ += static_cast<double>(*frames) / rate;
    session_->append({mixedDown(std::span(fragment).first(*frames * channels), channels), rate});
    reportProgress();
    // Always a turn of the loop: others have to do, too, and an interruption may come.
    Duration wait{};
    if (options_.realTime)
      wait = std::max(begin + secondsToDuration(readSeconds_) - services_.clock.now(), Duration{});
    do {
      auto turn = sleepFor(services_.executor, wait);
      co_await turn;
      wait = waitingInterval;
      reportProgress();
    } while (session_->waitingSeconds() > mostWaitingSeconds);
  }
}

Task<void> FileTranscription::showPhrase(SpokenText text) {
  reportProgress();
  auto phrase = services_.cleaned(text);
  if (!phrase.empty()) options_.onPhrase({phrase_, std::move(phrase)});
  co_return;
}

void FileTranscription::reportProgress() {
  if (options_.onProgress) options_.onProgress(std::max(readSeconds_ - session_->waitingSeconds(), 0.0));
}

Transcript FileTranscription::soFar() const {
  auto transcript = services_.transcript(name_, session_->recognisedSoFar());
  transcript.seconds = readSeconds_;
  return transcript;
}

double FileTranscription::expectedSeconds() const {
  return static_cast<double>(reader_.expectedFrames()) / reader_.sampleRate();
}

}  // namespace murmel
