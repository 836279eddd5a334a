#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Recognition/FluidAudioProvider.h"
#include "Support/Awaiting.h"
#include "Support/ProcessTraces.h"
#include "Support/RoomyLauncher.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace murmel {

/// A provider that starts the scripted worker through the real launcher. When a test is over, no child and no
/// descriptor may be left.
class ProviderWithWorker : public ::testing::Test {
 protected:
  using Answer = Result<TranscriptionResult>;

  /// What the worker does from its `start`-th start on; 0 for every start without a script of its own.
  void script(std::string_view commands, int start = 0) {
    const auto name = start == 0 ? std::string("script") : "script." + std::to_string(start);
    model.write(name, {reinterpret_cast<const std::uint8_t*>(commands.data()), commands.size()});
  }

  [[nodiscard]] std::size_t starts() const {
    std::error_code none;
    const auto size = std::filesystem::file_size(model.path() / "starts", none);
    return none ? 0 : static_cast<std::size_t>(size);
  }

  FluidAudioProvider& provider() {
    if (!provider_) {
      const FluidAudioProvider::Services services{executor, clock, launcher, [this] { return idleLimit; }};
      provider_ = std::make_unique<FluidAudioProvider>(services, "test", configuration);
    }
    return *provider_;
  }
  void releaseProvider() { provider_.reset(); }

  std::unique_ptr<Awaiting<Answer>> start(std::size_t byteCount = 3'200,
                                          std::optional<std::string> language = {}) {
    CapturedAudio audio{decltype(CapturedAudio::pcm16LE)(byteCount)};
    return std::make_unique<Awaiting<Answer>>(provider().transcribe(std::move(audio), std::move(language)));
  }

  Answer await(Awaiting<Answer>& request) {
    if (!executor.waitUntil([&] { return request.done(); }))
      return std::unexpected(MRMError::workerFailed("HANGS"));
    return *request;
  }

  /// The text, or the error's detail in angle brackets.
  std::string ask(std::size_t byteCount = 3'200, std::optional<std::string> language = {}) {
    return described(await(*start(byteCount, std::move(language))));
  }

  static std::string described(const Answer& answer) {
    if (answer) return answer->text.reveal();
    if (answer.error().which() == MRMError::Case::workerFailed) return "<" + answer.error().detail() + ">";
    return "<" + answer.error().localizedDescription() + ">";
  }

  void TearDown() override {
    provider_.reset();
    EXPECT_FALSE(hasChildren()) << "a worker is left behind";
    EXPECT_EQ(openDescriptorCount(), descriptorsBefore_) << "descriptors have leaked";
  }

  TemporaryFolder model;
  ManualExecutor executor;
  SystemClock clock;
  RoomyLauncher launcher{model.path()};
  Duration idleLimit{};
  SpeechWorkerConfiguration configuration{
      .workerURL = MURMEL_SCRIPTED_WORKER,
      .modelURL = model.path(),
      .modelIntegrityCheck = [](const std::filesystem::path&) { return true; },
      .mayExecute = [](const std::filesystem::path&) { return true; },
      .runningProcessIntegrityCheck = [](const ChildProcess&, const std::filesystem::path&) { return true; },
      .limits = {},
  };

 private:
  std::size_t descriptorsBefore_ = openDescriptorCount();
  std::unique_ptr<FluidAudioProvider> provider_;
};

}  // namespace murmel
