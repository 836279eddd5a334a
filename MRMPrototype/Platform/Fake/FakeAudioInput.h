#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Platform/AudioInput.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace murmel {

/// A microphone in the hands of a test. It delivers what the test says, when the test says it, and keeps a
/// list of what its user does wrong. Main thread; must outlive the tasks that it gives.
class FakeAudioInput final : public AudioInput {
 public:
  static constexpr AudioFormat usualFormat{48'000, 2};

  explicit FakeAudioInput(Executor& executor, AudioFormat format = usualFormat);
  ~FakeAudioInput() override;

  Task<std::expected<AudioFormat, AudioInputError>> start(
      FragmentHandler onFragment, std::move_only_function<void()> onConfigurationChange) override;
  void stop() override;

  /// The format of the fragments from now on; a running recording may be given another one.
  void setFormat(AudioFormat format) { format_ = format; }

  /// One fragment, now. The first one completes the start. False when nobody records or waits for a start.
  bool deliver(std::span<const float> interleaved);
  /// What the microphone has heard by the next `stop` and has not delivered before it.
  void hearBeforeStop(std::vector<float> interleaved) { heardBeforeStop_ = std::move(interleaved); }
  /// Makes the start that waits, or else the next one, fail.
  void failStart(AudioInputError error);
  /// The source was exchanged or lost. False when nobody listens.
  bool changeConfiguration();

  [[nodiscard]] bool isStarting() const { return recording_ && !recording_->running; }
  [[nodiscard]] bool isRecording() const { return recording_ && recording_->running; }
  [[nodiscard]] int startCount() const { return startCount_; }
  /// One sentence for each wrong use; empty is right.
  [[nodiscard]] const std::vector<std::string>& violations() const { return violations_; }

 private:
  using Outcome = std::expected<AudioFormat, AudioInputError>;
  struct Recording {
    FragmentHandler onFragment;
    std::move_only_function<void()> onConfigurationChange;
    OneShotSender<Outcome> answer;
    bool begun = false;    // the first fragment was delivered
    bool running = false;  // the start has succeeded
  };
  class StartGuard;

  void answer(Outcome outcome);

  Executor& executor_;
  AudioFormat format_;
  std::optional<AudioInputError> nextFailure_;
  std::vector<float> heardBeforeStop_;
  std::shared_ptr<Recording> recording_;
  int startCount_ = 0;
  std::vector<std::string> violations_;
};

}  // namespace murmel
