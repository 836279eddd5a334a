#include "Platform/Linux/PulseAudio/PulseAudioInput.h"

#include "Foundation/Async/OneShot.h"
#include "Platform/Linux/PulseAudio/PulseRecording.h"

#include <chrono>
#include <utility>

namespace murmel {

namespace {

// Bluetooth microphones have been seen to need four seconds.
constexpr auto openingLimit = std::chrono::seconds(5);
constexpr auto drainLimit = std::chrono::milliseconds(100);

}  // namespace

/// A start that does not succeed leaves no recording behind.
class PulseAudioInput::StartGuard {
 public:
  explicit StartGuard(PulseAudioInput& input) : input_(input) { input_.starting_ = true; }
  StartGuard(const StartGuard&) = delete;
  StartGuard& operator=(const StartGuard&) = delete;
  ~StartGuard() {
    input_.starting_ = false;
    if (!succeeded_) input_.recording_.reset();
  }
  void succeed() { succeeded_ = true; }

 private:
  PulseAudioInput& input_;
  bool succeeded_ = false;
};

PulseAudioInput::PulseAudioInput(Executor& executor, PulseServer server)
    : executor_(executor), server_(std::move(server)) {}

PulseAudioInput::~PulseAudioInput() = default;

Task<std::expected<AudioFormat, AudioInputError>> PulseAudioInput::start(
    FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) {
  using Outcome = PulseRecording::Outcome;
  if (recording_ || starting_) co_return std::unexpected(AudioInputError::notStarted);
  StartGuard guard(*this);
  auto [sender, receiver] = makeOneShot<Outcome>();
  const auto answer = std::make_shared<OneShotSender<Outcome>>(std::move(sender));
  auto send = [weak = std::weak_ptr(answer)](Outcome outcome) {
    if (const auto waiting = weak.lock()) waiting->send(outcome);
  };
  PulseRecording::Handlers handlers;
  handlers.onFragment = std::move(onFragment);
  handlers.onConfigurationChange = std::move(onConfigurationChange);
  handlers.onBegun = [executor = &executor_, send](Outcome outcome) {
    executor->post([send, outcome] { send(outcome); });
  };
  const auto limit =
      executor_.after(openingLimit, [send] { send(std::unexpected(AudioInputError::notStarted)); });
  recording_ = PulseRecording::open(server_, std::move(handlers));
  if (!recording_) co_return std::unexpected(AudioInputError::notStarted);
  const auto outcome = co_await receiver;
  if (!outcome) co_return std::unexpected(AudioInputError::notStarted);
  if (*outcome) guard.succeed();
  co_return *outcome;
}

void PulseAudioInput::stop() {
  if (!recording_ || starting_) return;
  recording_->drain(drainLimit);
  recording_.reset();
}

}  // namespace murmel
