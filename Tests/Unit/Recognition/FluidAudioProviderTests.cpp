#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Recognition/FluidAudioProvider.h"
#include "Support/Awaiting.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <atomic>

namespace {

constexpr const char* ready = "{\"mrm_worker_protocol\":1,\"event\":\"ready\"}\n";

class FakeStore final : public SpeechModelStore {
 public:
  bool present = true;
  std::atomic<bool> valid = true;
  mutable std::atomic<int> verifications = 0;

  [[nodiscard]] SpeechModelState state() const override { return SpeechModelState::ready; }
  [[nodiscard]] std::filesystem::path activeModelURL() const override { return "/models/active"; }
  [[nodiscard]] bool requiredItemsPresent(const std::filesystem::path& folder) const override {
    return present && folder == activeModelURL();
  }
  [[nodiscard]] bool verifyArtifacts(const std::filesystem::path& folder) const override {
    ++verifications;
    return valid && folder == activeModelURL();
  }
  void validate() override {}
  [[nodiscard]] Registration onInventoryChange(std::function<void()>) override { return {}; }
};

/// The application's own provider over fake children.
class ApplicationProvider : public ::testing::Test {
 protected:
  ApplicationProvider() {
    std::filesystem::create_directory(resources.path() / "Workers");
    resources.write("Workers/mrm-fluidaudio-worker", {});
    launcher.install(worker, [](FakeChildSide& side) {
      side.write(ready);
      while (const auto request = side.readLine())
        side.write("{\"mrm_worker_protocol\":1,\"event\":\"result\",\"id\":1,\"text\":\" heard \"}\n");
    });
  }

  Result<std::unique_ptr<FluidAudioProvider>> create() {
    return FluidAudioProvider::create({executor, clock, launcher}, {resources.path(), "test"}, store, policy,
                                      [this](bool isReady) { warmedUp = isReady; });
  }
  std::string ask(FluidAudioProvider& provider) {
    Awaiting<Result<TranscriptionResult>> request(provider.transcribe(CapturedAudio{{0, 0}}, std::nullopt));
    if (!executor.waitUntil([&] { return request.done(); })) return "hangs";
    return request->has_value() ? (*request)->text.reveal() : request->error().detail();
  }

  TemporaryFolder resources;
  const std::filesystem::path worker = resources.path() / "Workers/mrm-fluidaudio-worker";
  FakeStore store;
  ManualExecutor executor;
  SystemClock clock;
  FakeProcessLauncher launcher;
  ExecutableRuntimePolicy policy{resources.path(), std::nullopt, nullptr};
  std::optional<bool> warmedUp;
};

}  // namespace

TEST_F(ApplicationProvider, WarmsTheWorkerUpWithTheArgumentsItKnows) {
  auto provider = create();
  ASSERT_TRUE(provider.has_value());
  EXPECT_EQ((*provider)->providerID(), "parakeet-tdt-0.6b-v3-fluid-audio");
  ASSERT_TRUE(executor.waitUntil([&] { return warmedUp.has_value(); }));
  EXPECT_EQ(warmedUp, true);
  EXPECT_EQ(ask(**provider), "heard");
  const auto requests = launcher.requests();
  ASSERT_EQ(requests.size(), 1);
  EXPECT_EQ(requests[0].executable, worker);
  EXPECT_EQ(requests[0].arguments, (Strings{"--model-dir", "/models/active", "--precision", "int8"}));
  EXPECT_TRUE(requests[0].environment.empty());
  EXPECT_EQ(store.verifications, 1) << "a running worker is not verified again";
  provider->reset();
  EXPECT_EQ(launcher.childCount(), 0);
}

TEST_F(ApplicationProvider, IsNotMadeWithoutItsModelOrItsWorker) {
  store.present = false;
  const auto withoutModel = create();
  ASSERT_FALSE(withoutModel.has_value());
  EXPECT_EQ(withoutModel.error(), MRMError::modelMissing("/models/active"));
  store.present = true;
  std::filesystem::remove(worker);
  const auto withoutWorker = create();
  ASSERT_FALSE(withoutWorker.has_value());
  EXPECT_EQ(withoutWorker.error(), MRMError(MRMError::Case::workerMissing));
  EXPECT_TRUE(launcher.requests().empty());
}

TEST_F(ApplicationProvider, RefusesAModelASignatureOrAProcessThatIsNotTheRightOne) {
  store.valid = false;
  auto provider = create();
  ASSERT_TRUE(provider.has_value());
  EXPECT_EQ(ask(**provider), "model integrity verification failed");
  EXPECT_EQ(warmedUp, false);
  store.valid = true;
  launcher.exchangeAfterLaunch(worker);
  EXPECT_EQ(ask(**provider), "running speech worker identity validation failed");
  EXPECT_EQ(launcher.childCount(), 0);
  policy = ExecutableRuntimePolicy(resources.path(), "us", [](const auto&) { return "others"; });
  provider = create();
  ASSERT_TRUE(provider.has_value());
  EXPECT_EQ(ask(**provider), "speech worker signature validation failed");
  EXPECT_EQ(launcher.requests().size(), 1);
}
