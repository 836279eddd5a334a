#include "Shell/MicrophoneTest.h"

#include <chrono>
#include <utility>

namespace murmel {

namespace {

constexpr auto tickInterval = std::chrono::milliseconds(50);

}  // namespace

MicrophoneTest::MicrophoneTest(Executor& executor, AudioInput& input, MicrophoneAuthorization& authorization,
                               const std::filesystem::path& temporaryFolder,
                               std::function<std::string()> name)
    : executor_(executor),
      capture_(executor, input, authorization, temporaryFolder),
      name_(std::move(name)) {}

std::expected<Registration, std::string> MicrophoneTest::listen(std::function<void(double level)> level) {
  level_ = std::move(level);
  tasks_.start(begin());
  return Registration([this, weak = std::weak_ptr(alive_)] {
    if (weak.expired()) return;
    level_ = {};
    timer_ = {};
    capture_.discardCapturedAudio();
  });
}

Task<void> MicrophoneTest::begin() {
  auto starting = capture_.start();
  const auto started = co_await starting;
  if (!started || !level_) co_return;  // the level stays at nothing, and the page says what that may mean
  tick();
}

void MicrophoneTest::tick() {
  static_cast<void>(capture_.takePendingAudio());  // not kept
  if (level_) level_(capture_.normalizedLevel());
  timer_ = executor_.after(tickInterval, [this] { tick(); });
}

}  // namespace murmel
