#include "Support/FileAudioInput.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace murmel {

namespace {

constexpr std::uint64_t fragmentsPerSecond = 50;
// As fast as it can: a second of audio, then the main thread's other jobs.
constexpr std::uint64_t fragmentsPerTurn = 50;
constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;

/// Frames that have passed after `elapsed`, rounded down.
std::uint64_t framesAfter(Duration elapsed, std::uint64_t sampleRate) {
  const auto nanoseconds = static_cast<std::uint64_t>(std::max(elapsed.count(), Duration::rep{0}));
  return nanoseconds / nanosecondsPerSecond * sampleRate +
         nanoseconds % nanosecondsPerSecond * sampleRate / nanosecondsPerSecond;
}

/// When that many frames have passed, rounded up.
Duration timeOfFrames(std::uint64_t frames, std::uint64_t sampleRate) {
  const auto rest = frames % sampleRate * nanosecondsPerSecond;
  return Duration(static_cast<Duration::rep>(frames / sampleRate * nanosecondsPerSecond +
                                             (rest + sampleRate - 1) / sampleRate));
}

}  // namespace

struct FileAudioInput::Recording {
  FragmentHandler onFragment;
  Instant startedAt;
  OneShotSender<bool> begun;
  std::uint64_t delivered = 0;  // frames
  Registration turn;
};

/// A start that does not succeed leaves no recording behind.
class FileAudioInput::StartGuard {
 public:
  StartGuard(FileAudioInput& input, std::shared_ptr<Recording> recording)
      : input_(input), recording_(std::move(recording)) {}
  StartGuard(const StartGuard&) = delete;
  StartGuard& operator=(const StartGuard&) = delete;
  ~StartGuard() {
    if (recording_ && input_.recording_ == recording_) input_.recording_.reset();
  }
  void succeed() { recording_.reset(); }

 private:
  FileAudioInput& input_;
  std::shared_ptr<Recording> recording_;
};

FileAudioInput::FileAudioInput(Executor& executor, Clock& clock, AudioFileReader reader, Pace pace)
    : executor_(executor),
      clock_(clock),
      reader_(std::move(reader)),
      pace_(pace),
      sampleRate_(static_cast<std::uint64_t>(reader_.sampleRate())),
      framesPerFragment_(std::max<std::uint64_t>(sampleRate_ / fragmentsPerSecond, 1)),
      fragment_(framesPerFragment_ * reader_.channelCount()) {}

FileAudioInput::~FileAudioInput() = default;

std::expected<std::unique_ptr<FileAudioInput>, std::string> FileAudioInput::open(
    Executor& executor, Clock& clock, const std::filesystem::path& path, Pace pace) {
  auto reader = AudioFileReader::open(path);
  if (!reader) return std::unexpected(std::move(reader.error()));
  return std::unique_ptr<FileAudioInput>(new FileAudioInput(executor, clock, *std::move(reader), pace));
}

void FileAudioInput::setOnEnd(EndHandler onEnd) {
  onEnd_ = std::make_shared<EndHandler>(std::move(onEnd));
}

AudioFormat FileAudioInput::format() const {
  return {static_cast<double>(sampleRate_), reader_.channelCount()};
}

Duration FileAudioInput::duration() const {
  return timeOfFrames(reader_.expectedFrames(), sampleRate_);
}

Task<std::expected<AudioFormat, AudioInputError>> FileAudioInput::start(
    FragmentHandler onFragment, std::move_only_function<void()> /*a file never changes*/) {
  if (recording_) co_return std::unexpected(AudioInputError::notStarted);
  auto [sender, receiver] = makeOneShot<bool>();
  recording_ = std::make_shared<Recording>(std::move(onFragment), clock_.now(), std::move(sender));
  StartGuard guard(*this, recording_);
  reader_.rewind();
  scheduleNext();
  const std::optional<bool> begun = co_await receiver;
  if (!begun.value_or(false)) co_return std::unexpected(AudioInputError::notStarted);
  guard.succeed();
  co_return format();
}

void FileAudioInput::stop() {
  if (!recording_ || recording_->delivered == 0) return;  // nothing records yet
  const auto recording = std::exchange(recording_, nullptr);
  recording->turn.reset();
  if (pace_ != Pace::realTime) return;
  // What cannot be read any more is lost here as with a microphone; the end handler is for a played file.
  if (!deliverDue(*recording)) return;
  const auto heard = std::min(framesHeard(*recording), reader_.expectedFrames());
  if (heard > recording->delivered) static_cast<void>(deliver(*recording, heard - recording->delivered));
}

void FileAudioInput::scheduleNext() {
  Duration delay{0};
  if (pace_ == Pace::realTime) {
    const auto next = std::min(recording_->delivered + framesPerFragment_, reader_.expectedFrames());
    const auto elapsed = clock_.now() - recording_->startedAt;
    delay = std::max(timeOfFrames(next, sampleRate_) - elapsed, Duration{0});
  }
  recording_->turn = executor_.after(delay, [this] { takeTurn(); });
}

void FileAudioInput::takeTurn() {
  const auto recording = recording_;
  auto result = deliverDue(*recording);
  const bool begun = recording->delivered > 0;
  if (!result || recording->delivered == reader_.expectedFrames()) {
    recording->turn = executor_.after(Duration{0}, [onEnd = onEnd_, result = std::move(result)] {
      if (onEnd && *onEnd) (*onEnd)(result);
    });
  } else {
    scheduleNext();
  }
  // Last, because whoever waits for the start runs now, and may stop or let go of this input.
  recording->begun.send(begun);
}

std::expected<void, std::string> FileAudioInput::deliverDue(Recording& recording) {
  const auto total = reader_.expectedFrames();
  const auto heard = pace_ == Pace::realTime ? framesHeard(recording)
                                             : recording.delivered + fragmentsPerTurn * framesPerFragment_;
  while (recording.delivered < total) {
    const auto frames = std::min(framesPerFragment_, total - recording.delivered);
    if (recording.delivered + frames > heard) break;
    if (auto delivered = deliver(recording, frames); !delivered) return delivered;
  }
  return {};
}

std::expected<void, std::string> FileAudioInput::deliver(Recording& recording, std::uint64_t frames) {
  const auto fragment = std::span(fragment_).first(frames * reader_.channelCount());
  const auto read = reader_.read(fragment);
  if (!read) return std::unexpected(read.error());
  recording.delivered += *read;
  recording.onFragment(fragment, format());
  return {};
}

std::uint64_t FileAudioInput::framesHeard(const Recording& recording) const {
  return framesAfter(clock_.now() - recording.startedAt, sampleRate_);
}

}  // namespace murmel
