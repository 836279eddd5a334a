#include "Audio/AudioCaptureService.h"

#include "Foundation/Async/Timers.h"

#include <cmath>
#include <string>
#include <system_error>
#include <utility>

namespace murmel {

namespace {

// The system's own state follows its dialog with a little delay.
constexpr auto authorizationSettleTime = std::chrono::milliseconds(250);

bool usable(const AudioFormat& format) {
  return std::isfinite(format.sampleRate) && format.sampleRate > 0 && format.channelCount > 0;
}

}  // namespace

/// Lives in the frame of a start. Whatever ends that frame, the service is idle afterwards, unless the start
/// succeeded.
class AudioCaptureService::StartGuard {
 public:
  explicit StartGuard(AudioCaptureService& service) : service_(service) { service_.startUnderWay_ = this; }
  StartGuard(const StartGuard&) = delete;
  StartGuard& operator=(const StartGuard&) = delete;
  ~StartGuard() {
    service_.startUnderWay_ = nullptr;
    if (succeeded_) return;
    service_.configurationMonitor_.disarm();
    service_.tap_->discard();
  }

  void succeed() { succeeded_ = true; }
  void abandon() { abandoned_ = true; }
  [[nodiscard]] bool abandoned() const { return abandoned_; }

 private:
  AudioCaptureService& service_;
  bool succeeded_ = false;
  bool abandoned_ = false;
};

AudioCaptureService::AudioCaptureService(Executor& executor, AudioInput& input,
                                         MicrophoneAuthorization& authorization,
                                         const std::filesystem::path& temporaryDirectory)
    : executor_(executor), input_(input), authorization_(authorization), configurationMonitor_(executor) {
  cleanupTemporaryAudio(temporaryDirectory);
}

AudioCaptureService::~AudioCaptureService() {
  if (recording_) input_.stop();
}

Task<Result<void>> AudioCaptureService::start() {
  if (recording_) co_return Result<void>();
  if (startUnderWay_ != nullptr) co_return std::unexpected(MRMError(MRMError::Case::recordingFailed));
  StartGuard guard(*this);
  tap_->reset();
  const auto notifier = configurationMonitor_.listen();
  AudioInput::FragmentHandler onFragment = [tap = tap_, notifier](std::span<const float> interleaved,
                                                                  AudioFormat format) {
    if (!tap->append(interleaved, format)) notifier();
  };
  std::move_only_function<void()> onChange = notifier;
  auto opening = input_.start(std::move(onFragment), std::move(onChange));
  const auto format = co_await opening;
  if (!format) co_return std::unexpected(MRMError(MRMError::Case::recordingFailed));
  if (!usable(*format) || guard.abandoned()) {
    input_.stop();
    co_return std::unexpected(MRMError(MRMError::Case::recordingFailed));
  }
  guard.succeed();
  recording_ = true;
  healthHasBegun_ = levelIsStale_ = false;
  hearsSpeakers_ = format->hearsSpeakers;
  configurationMonitor_.arm([this] {
    if (onConfigurationChange_) onConfigurationChange_();
  });
  co_return Result<void>();
}

void AudioCaptureService::endRecording() {
  if (startUnderWay_ != nullptr) startUnderWay_->abandon();
  if (!recording_) return;
  configurationMonitor_.disarm();
  input_.stop();
  recording_ = false;
}

std::optional<PendingCapturedAudio> AudioCaptureService::stop() {
  const bool wasRecording = recording_;
  endRecording();
  if (!wasRecording) return std::nullopt;
  return tap_->finish();
}

std::optional<PendingCapturedAudio> AudioCaptureService::takePendingAudio() {
  if (!recording_) return std::nullopt;
  return tap_->takePending();
}

void AudioCaptureService::discardCapturedAudio() {
  endRecording();
  tap_->discard();
}

double AudioCaptureService::normalizedLevel() const {
  return recording_ && !levelIsStale_ ? static_cast<double>(tap_->level()) : 0;
}

CaptureCondition AudioCaptureService::health(Instant now) {
  if (!recording_) return CaptureCondition::fine;
  if (!std::exchange(healthHasBegun_, true)) health_.begin(now, hearsSpeakers_);
  const auto condition = health_.observe(tap_->takeFigures(), now);
  levelIsStale_ = health_.levelIsStale(now);
  return condition;
}

Task<Result<void>> AudioCaptureService::restart() {
  endRecording();
  auto starting = start();
  auto started = co_await starting;
  co_return started;
}

Task<bool> AudioCaptureService::requestPermission() {
  switch (authorization_.phase()) {
    case MicrophonePermissionPhase::authorized:
      co_return true;
    case MicrophonePermissionPhase::denied:
    case MicrophonePermissionPhase::restricted:
      co_return false;
    case MicrophonePermissionPhase::notDetermined:
    case MicrophonePermissionPhase::unknown:
      break;
  }
  auto asking = authorization_.requestAccess();
  const bool granted = co_await asking;
  if (!granted) co_return false;
  auto settling = sleepFor(executor_, authorizationSettleTime);
  co_await settling;
  co_return authorization_.phase() == MicrophonePermissionPhase::authorized;
}

void AudioCaptureService::setOnConfigurationChange(std::function<void()> onConfigurationChange) {
  onConfigurationChange_ = std::move(onConfigurationChange);
}

void AudioCaptureService::cleanupTemporaryAudio(const std::filesystem::path& directory) {
  // Nobody is there to be told, and a file that stays is tried again at the next start.
  std::error_code ignored;
  std::filesystem::directory_iterator entry(directory, ignored);
  while (!ignored && entry != std::filesystem::directory_iterator()) {
    const auto path = entry->path();
    if (path.filename().string().starts_with("mrm-") && path.extension() == ".wav") {
      std::error_code notRemoved;
      std::filesystem::remove(path, notRemoved);
    }
    entry.increment(ignored);
  }
}

}  // namespace murmel
