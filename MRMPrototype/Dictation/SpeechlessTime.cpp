#include "Dictation/SpeechlessTime.h"

#include "Segmentation/SegmentLevels.h"

#include <cstddef>
#include <span>

namespace murmel {

namespace {

constexpr std::size_t stretchFrames = 500;
constexpr double stretchSeconds = stretchFrames * FrameLevelMeter::frameSeconds;

}  // namespace

void SpeechlessTime::append(const PendingCapturedAudio& audio) {
  if (!(audio.sampleRate > 0)) return;
  if (!meter_ || sampleRate_ != audio.sampleRate) {
    sampleRate_ = audio.sampleRate;
    meter_.emplace(sampleRate_);
  }
  for (const auto& frame : meter_->append(audio.monoSamples)) {
    frames_.push_back(frame);
    if (frames_.size() < stretchFrames) continue;
    // What is doubtful is recognised, but it does not keep a microphone open that everybody has forgotten.
    seconds_ = speechEvidence(frames_) == SpeechEvidence::clear ? 0 : seconds_ + stretchSeconds;
    frames_.clear();
  }
}

}  // namespace murmel
