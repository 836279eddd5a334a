#include "Shell/MicrophoneTest.h"

#include <chrono>
#include <utility>

namespace murmel {

namespace {

constexpr auto tickInterval = std::chrono::milliseconds(50);

}  // namespace

MicrophoneTest::MicrophoneTest(Executor& executor, AudioInput& input, MicrophoneAuthorization& authorization,
                               const std::filesystem::path& temporaryFolder)
    : executor_(executor), capture_(executor, input, authorization, temporaryFolder) {
  capture_.setOnConfigurationChange([this] { tasks_.start(goOn()); });
}

Registration MicrophoneTest::listen(std::function<void(double level)> level,
                                    std::function<void(const std::string&)> failed) {
  end();
  level_ = std::move(level);
  failed_ = std::move(failed);
  trial_ = std::make_shared<int>();
  tasks_.start(begin());
  return Registration([this, weak = std::weak_ptr(trial_)] {
    if (!weak.expired()) end();
  });
}

void MicrophoneTest::end() {
  trial_.reset();
  timer_ = {};
  tasks_.cancelAll();
  capture_.discardCapturedAudio();
  level_ = {};
  failed_ = {};
}

Task<void> MicrophoneTest::begin() {
  auto starting = capture_.start();
  const auto started = co_await starting;
  if (!started)
    fail(started.error().localizedDescription());
  else
    timer_ = executor_.after(Duration::zero(), [this] { tick(); });
}

Task<void> MicrophoneTest::goOn() {
  auto restarting = capture_.restart();
  const auto goesOn = co_await restarting;
  if (!goesOn) fail(goesOn.error().localizedDescription());
}

void MicrophoneTest::fail(const std::string& sentence) {
  // Not from inside the task: whoever is told may end the trial.
  timer_ = executor_.after(Duration::zero(), [failed = failed_, sentence] { failed(sentence); });
}

void MicrophoneTest::tick() {
  static_cast<void>(capture_.takePendingAudio());  // not kept
  timer_ = executor_.after(tickInterval, [this] { tick(); });
  const auto level = level_;
  level(capture_.normalizedLevel());
}

}  // namespace murmel
