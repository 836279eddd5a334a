#include "Platform/Fake/FakeAudioInput.h"

#include <utility>

namespace murmel {

/// A start that does not succeed leaves no recording behind.
class FakeAudioInput::StartGuard {
 public:
  StartGuard(FakeAudioInput& input, std::shared_ptr<Recording> recording)
      : input_(input), recording_(std::move(recording)) {}
  StartGuard(const StartGuard&) = delete;
  StartGuard& operator=(const StartGuard&) = delete;
  ~StartGuard() {
    if (recording_ && input_.recording_ == recording_) input_.recording_.reset();
  }
  void succeed() { recording_.reset(); }

 private:
  FakeAudioInput& input_;
  std::shared_ptr<Recording> recording_;
};

FakeAudioInput::FakeAudioInput(Executor& executor, AudioFormat format)
    : executor_(executor), format_(format) {}

FakeAudioInput::~FakeAudioInput() = default;

Task<std::expected<AudioFormat, AudioInputError>> FakeAudioInput::start(
    FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) {
  ++startCount_;
  if (recording_) {
    violations_.emplace_back("start while another recording runs or begins");
    co_return std::unexpected(AudioInputError::notStarted);
  }
  if (!onFragment || !onConfigurationChange) violations_.emplace_back("start without both handlers");
  auto [sender, receiver] = makeOneShot<Outcome>();
  recording_ =
      std::make_shared<Recording>(std::move(onFragment), std::move(onConfigurationChange), std::move(sender));
  StartGuard guard(*this, recording_);
  if (const auto failure = std::exchange(nextFailure_, std::nullopt)) answer(std::unexpected(*failure));
  const auto outcome = co_await receiver;
  if (!outcome) co_return std::unexpected(AudioInputError::notStarted);
  if (*outcome) {
    guard.succeed();
    recording_->running = true;
  }
  co_return *outcome;
}

void FakeAudioInput::answer(Outcome outcome) {
  // As from another thread: the start never ends inside the call that makes it end.
  executor_.post([weak = std::weak_ptr(recording_), outcome] {
    if (const auto recording = weak.lock()) recording->answer.send(outcome);
  });
}

void FakeAudioInput::stop() {
  const auto recording = isRecording() ? std::exchange(recording_, nullptr) : nullptr;
  const auto last = std::exchange(heardBeforeStop_, {});
  if (recording && !last.empty()) recording->onFragment(last, format_);
}

bool FakeAudioInput::deliver(std::span<const float> interleaved) {
  const auto recording = recording_;
  if (!recording) return false;
  recording->onFragment(interleaved, format_);
  if (!std::exchange(recording->begun, true)) answer(format_);
  return true;
}

void FakeAudioInput::failStart(AudioInputError error) {
  if (isStarting()) {
    answer(std::unexpected(error));
  } else {
    nextFailure_ = error;
  }
}

bool FakeAudioInput::changeConfiguration() {
  const auto recording = recording_;
  if (!recording) return false;
  recording->onConfigurationChange();
  return true;
}

}  // namespace murmel
