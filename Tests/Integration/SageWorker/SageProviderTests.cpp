#include "Foundation/Async/Clock.h"
#include "Foundation/Json/Json.h"
#include "LocalModels/SageNativeRefinementProvider.h"
#include "Platform/Fake/FakeProcessLauncher.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Support/Refining.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

#include <atomic>

namespace {

constexpr auto ready = "{\"mrm_worker_protocol\":1,\"event\":\"ready\"}\n";

std::string reply(const Json& id, const std::string& event, const Json& more) {
  Json object{{"mrm_worker_protocol", 1}, {"event", event}, {"id", id}};
  for (const auto& [name, value] : more.members()) object[name] = value;
  return jsonText(object) + '\n';
}

class SageProvider : public ::testing::Test, public SmartModelFiles {
 protected:
  using Answer = Result<std::string>;

  SageProvider() {
    std::filesystem::create_directories(folder.path() / "Workers");
    folder.write("Workers/mrm-sage-worker", {});
    folder.write("runtime.so", {});
  }

  [[nodiscard]] std::optional<std::filesystem::path> modelFile(SmartLocalModel) const override { return {}; }
  [[nodiscard]] std::optional<std::filesystem::path> russianModelDirectory() const override {
    return isInstalled ? std::optional(folder.path()) : std::nullopt;
  }

  /// What workers say to a request, from now on; nothing ends them.
  void answerWith(std::function<std::optional<std::string>(const Json& request)> answer) {
    launcher.install(worker, [this, answer = std::move(answer)](FakeChildSide& side) {
      ++starts;
      side.write(ready);
      while (const auto line = side.readLine()) {
        const auto said = answer(parsedJson(*line));
        if (!said) return;
        side.write(*said);
      }
    });
  }

  SageNativeRefinementProvider& provider() {
    if (!provider_) {
      const SageNativeRefinementProvider::Services services{executor, clock, launcher};
      provider_ = std::make_unique<SageNativeRefinementProvider>(
          services, "test", assets, [this](const auto& file) { return file != refused; }, limits);
    }
    return *provider_;
  }

  std::string refine(const std::string& text) {
    Awaiting<Answer> asking(refining(provider(), text));
    return described(asking);
  }
  std::string described(Awaiting<Answer>& asking) { return murmel::described(executor, asking); }
  /// Asks until the worker has loaded its model.
  std::string refineWhenLoaded(const std::string& text) {
    std::string refined = "RAW";
    executor.waitUntil([&] { return (refined = refine(text)) != "RAW"; });
    return refined;
  }

  TemporaryFolder folder;
  std::filesystem::path worker = folder.path() / "Workers" / "mrm-sage-worker";
  std::filesystem::path refused;
  bool isInstalled = true;
  std::atomic<int> starts = 0;
  SystemClock clock;
  ManualExecutor executor;
  FakeProcessLauncher launcher;
  SageLimits limits{
      .start = 30s, .way = 0ms, .terminationGrace = 0ms, .asking = {.request = 30s, .firstPause = 0s}};
  SageNativeAssets assets{folder.path(), folder.path() / "runtime.so", *this};

 private:
  std::unique_ptr<SageNativeRefinementProvider> provider_;
};

std::optional<std::string> formatted(const Json& request) {
  return reply(request["id"], "result", {{"text", "Привет!"}});
}

}  // namespace

TEST_F(SageProvider, TakesPunctuationAndCapitalsOnly) {
  Json asked;
  answerWith([&](const Json& request) -> std::optional<std::string> {
    asked = request;
    return reply(request["id"], "result", {{"text", "Привет, мой дорогой Мир!"}});
  });
  EXPECT_EQ(refineWhenLoaded("привет мир"), "Привет, Мир!");
  EXPECT_EQ(asked["text"], "привет мир");
  EXPECT_GT(asked["limit_ms"].integer(), 20'000);
  EXPECT_EQ(launcher.requests().front().arguments,
            (Strings{"--model-dir", folder.path(), "--runtime", folder.path() / "runtime.so"}));
  EXPECT_EQ(refine("совсем другие слова"), "RAW") << "nothing of it can be matched";
  EXPECT_EQ(starts, 1);
}

TEST_F(SageProvider, KeepsTheWorkerThatRefusesAndReplacesTheOneThatIsLost) {
  std::string event = "error";
  Json more{{"error_type", "text is too long"}};
  std::int64_t shift = 0;
  bool dies = false;
  answerWith([&](const Json& request) -> std::optional<std::string> {
    if (dies) return std::nullopt;
    if (request["text"] == "привет") return formatted(request);
    return reply(*request["id"].integer() + shift, event, more);
  });
  EXPECT_EQ(refineWhenLoaded("привет"), "Привет!");
  EXPECT_EQ(refine("длинно"), "RAW");
  EXPECT_EQ(refine("привет"), "Привет!");
  EXPECT_EQ(starts, 1) << "a refusal is an answer";

  shift = 1;  // the answer to a question that nobody has asked
  EXPECT_EQ(refine("нет"), "RAW");
  EXPECT_EQ(refineWhenLoaded("привет"), "Привет!");
  EXPECT_EQ(starts, 2);
  shift = 0;
  event = "ready";
  EXPECT_EQ(refine("нет"), "RAW");
  EXPECT_EQ(refineWhenLoaded("привет"), "Привет!");
  EXPECT_EQ(starts, 3);
  dies = true;
  EXPECT_EQ(refine("привет"), "RAW");
  dies = false;
  EXPECT_EQ(refineWhenLoaded("привет"), "Привет!");
  EXPECT_EQ(starts, 4);
}

TEST_F(SageProvider, TakesALateAnswerForNoOther) {
  limits.asking.request = 200ms;
  std::string late;
  answerWith([&](const Json& request) -> std::optional<std::string> {
    if (request["text"] != "тишина") return std::exchange(late, {}) + *formatted(request);
    late = reply(request["id"], "result", {{"text", "Тишина."}});
    return "";
  });
  EXPECT_EQ(refineWhenLoaded("привет"), "Привет!");
  EXPECT_EQ(refine("тишина"), "RAW");
  EXPECT_EQ(refine("привет"), "Привет!");
  EXPECT_EQ(starts, 1) << "one late answer is no reason to load the model again";
}

TEST_F(SageProvider, RunsNothingThatIsNotItsOwn) {
  answerWith(formatted);
  isInstalled = false;
  EXPECT_EQ(refine("привет"), "Smart Local model or runtime is not installed");
  isInstalled = true;
  for (const auto& file : {worker, folder.path() / "runtime.so"}) {
    refused = file;
    EXPECT_EQ(refine("привет"), "RAW");
    executor.runUntilIdle();
  }
  std::filesystem::remove(folder.path() / "runtime.so");
  EXPECT_EQ(refine("привет"), "Smart Local model or runtime is not installed");
  EXPECT_EQ(starts, 0);
}

TEST_F(SageProvider, EndsAWorkerThatRunsAnotherFile) {
  answerWith(formatted);
  launcher.exchangeAfterLaunch(worker);
  EXPECT_EQ(refine("привет"), "RAW");
  ASSERT_TRUE(executor.waitUntil([&] { return starts == 1 && launcher.childCount() == 0; }));
}
