#include "Segmentation/SingleSegmentSession.h"

#include <cmath>
#include <utility>

namespace murmel {

namespace {

/// A worker that dies takes nothing with it: the same audio goes once more, to the next worker.
constexpr int attempts = 2;

Result<DictationSessionResult> failure(MRMError error) {
  return std::unexpected(std::move(error));
}

}  // namespace

SingleSegmentSession::SingleSegmentSession(DictationSessionConfiguration configuration,
                                           AudioConversion convert)
    : configuration_(std::move(configuration)), convert_(std::move(convert)) {}

void SingleSegmentSession::append(PendingCapturedAudio audio) {
  if (audio.monoSamples.empty() || !std::isfinite(audio.sampleRate) || audio.sampleRate <= 0) return;
  for (auto& sample : audio.monoSamples)
    if (!std::isfinite(sample)) sample = 0;
  diagnostics_.duration += static_cast<double>(audio.monoSamples.size()) / audio.sampleRate;
  if (!recording_.empty() && recording_.back().sampleRate == audio.sampleRate) {
    auto& samples = recording_.back().monoSamples;
    samples.insert(samples.end(), audio.monoSamples.begin(), audio.monoSamples.end());
  } else {
    recording_.push_back(std::move(audio));
  }
}

CapturedAudio SingleSegmentSession::convertedRecording() const {
  CapturedAudio whole;
  for (const auto& part : recording_) {
    const auto converted = convert_(PendingCapturedAudio{part.monoSamples, part.sampleRate});
    whole.pcm16LE.insert(whole.pcm16LE.end(), converted.pcm16LE.begin(), converted.pcm16LE.end());
  }
  return whole;
}

Task<Result<TranscriptionResult>> SingleSegmentSession::recognise(CapturedAudio audio) {
  for (int attempt = 1;; ++attempt) {
    auto request = configuration_.transcription->transcribe(audio, configuration_.languageCode);
    Result<TranscriptionResult> answer = co_await request;
    if (answer || answer.error().which() != MRMError::Case::workerFailed || attempt == attempts) {
      co_return answer;
    }
  }
}

Task<Result<DictationSessionResult>> SingleSegmentSession::finish() {
  auto audio = convertedRecording();
  if (audio.pcm16LE.empty()) co_return failure(MRMError::Case::noSpeech);

  auto recognition = recognise(std::move(audio));
  Result<TranscriptionResult> answer = co_await recognition;
  if (!answer || answer->text.empty()) {
    const auto error = answer ? MRMError(MRMError::Case::noSpeech) : answer.error();
    if (error == MRMError(MRMError::Case::noSpeech)) {
      diagnostics_.empty = diagnostics_.unresolved = 1;
    }
    diagnostics_.abandonedSeconds = diagnostics_.duration;
    co_return failure(error);
  }

  SpokenText text = answer->text;
  if (configuration_.refinement) {
    auto refinement = configuration_.refinement->refine(text.reveal());
    Result<std::string> refined = co_await refinement;
    // Without a refiner's answer the words are delivered as they were recognised.
    if (refined && !refined->empty()) text = SpokenText(*std::move(refined));
  }
  if (configuration_.onPhrase) {
    auto delivery = configuration_.onPhrase(text);
    co_await delivery;
  }
  DictationSessionResult result;
  result.text = text;
  result.pieces.push_back(text);
  result.providerID = answer->providerID;
  co_return result;
}

DictationDiagnostics SingleSegmentSession::diagnostics() const {
  return diagnostics_;
}

std::unique_ptr<DictationSession> SingleSegmentSessionFactory::make(
    DictationSessionConfiguration configuration) {
  return std::make_unique<SingleSegmentSession>(std::move(configuration), convert_);
}

}  // namespace murmel
