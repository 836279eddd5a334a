#include "Audio/CaptureHealth.h"

#include <algorithm>

namespace murmel {

namespace {

using namespace std::chrono_literals;

/// A monitor that wakes up takes up to two seconds for a fragment; a microphone delivers fifty a second.
constexpr Duration stalledAfter = 2500ms;
constexpr Duration levelLasts = 300ms;
/// A device that opens and then is silent is dead or muted. Once there has been sound, zeros may as well be a
/// noise gate that closes between the phrases.
constexpr double deadAtStartSeconds = 1;
constexpr double deadLaterSeconds = 5;
/// So much is looked at for clipping and for lost sound; a finding lasts until the next look.
constexpr Duration stretchLength = 3s;
constexpr double lostSeconds = 0.5;
constexpr double clippedShare = 0.005;
/// -40 dBFS: the quietest speech that was ever understood peaks above it.
constexpr float quietPeak = 0.01F;
constexpr double quietAfterSeconds = 4;

}  // namespace

void CaptureHealth::begin(Instant now, bool hearsSpeakers) {
  *this = {};
  hearsSpeakers_ = hearsSpeakers;
  lastFrame_ = stretch_.begin = now;
}

CaptureCondition CaptureHealth::observe(const CaptureFigures& arrived, Instant now) {
  if (arrived.frames > 0 && arrived.sampleRate > 0) follow(arrived, now);
  // A gap may be a stall; what it is shows when it is over.
  if (now - stretch_.begin >= stretchLength && !levelIsStale(now)) closeStretch(now);
  return condition_ = judged(now);
}

bool CaptureHealth::levelIsStale(Instant now) const {
  return now - lastFrame_ >= levelLasts;
}

void CaptureHealth::follow(const CaptureFigures& arrived, Instant now) {
  // What comes after a stall is whole again: the stall itself was said.
  if (now - lastFrame_ >= stalledAfter) stretch_ = {.begin = now};
  lastFrame_ = now;
  const double seconds = static_cast<double>(arrived.frames) / arrived.sampleRate;
  stretch_.seconds += seconds;
  stretch_.frames += arrived.frames;
  stretch_.clippedFrames += arrived.clippedFrames;
  recordedSeconds_ += seconds;
  const double zeros = static_cast<double>(arrived.trailingZeros) / arrived.sampleRate;
  zeroSeconds_ = arrived.trailingZeros == arrived.frames ? zeroSeconds_ + zeros : zeros;
  peak_ = std::max(peak_, arrived.peak);
}

void CaptureHealth::closeStretch(Instant now) {
  lagging_ = stretch_.seconds > 0 && durationToSeconds(now - stretch_.begin) - stretch_.seconds > lostSeconds;
  clipping_ =
      static_cast<double>(stretch_.clippedFrames) > clippedShare * static_cast<double>(stretch_.frames);
  stretch_ = {.begin = now};
}

CaptureCondition CaptureHealth::judged(Instant now) const {
  if (now - lastFrame_ >= stalledAfter) return CaptureCondition::stalled;
  if (zeroSeconds_ >= (peak_ > 0 ? deadLaterSeconds : deadAtStartSeconds)) return CaptureCondition::silent;
  if (lagging_) return CaptureCondition::lagging;
  if (clipping_) return CaptureCondition::clipping;
  if (hearsSpeakers_) return CaptureCondition::speakers;
  if (recordedSeconds_ >= quietAfterSeconds && peak_ < quietPeak) return CaptureCondition::tooQuiet;
  return CaptureCondition::fine;
}

}  // namespace murmel
