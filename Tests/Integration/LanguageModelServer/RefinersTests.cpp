#include "Integration/LanguageModelServer/ServerBench.h"
#include "LocalModels/LocalModelRefiners.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Support/MemoryLogSink.h"

namespace {

/// The whole of the application's refiners, on the stub that a development build is pointed to.
class Refiners : public ServerBench {
 protected:
  LocalModelRefiners& refiners() {
    if (!refiners_) {
      const ExecutableRuntimePolicy policy(store.path(), std::nullopt, nullptr);
      refiners_ = std::make_unique<LocalModelRefiners>(
          LocalModelRefiners::Services{executor, clock, launcher, log, files, recognizer}, "test", locations,
          policy, [this] { return choice; }, settings.limits);
    }
    return *refiners_;
  }
  void TearDown() override {
    refiners_.reset();
    ServerBench::TearDown();
  }

  bool prepared() {
    Awaiting<bool> preparing(refiners().prepared());
    return executor.waitUntil([&] { return preparing.done(); }) && *preparing;
  }
  std::string refined(RefinementProvider& refiner, const std::string& text) {
    Awaiting<Answer> asking(refining(refiner, text));
    return described(asking);
  }

  test::MemoryLogSink log;
  FakeLanguageRecognizer recognizer;
  RefinementChoice choice{.smartFormatting = true,
                          .routing = SmartRefinementRoutingMode::selectedMultilingualModel,
                          .model = model};
  RefinerLocations locations{.resourcesDirectory = store.path(),
                             .temporaryDirectory = temporary.path(),
                             .edition = DistributionEdition::development,
                             .languageModelServer = MURMEL_STUB_SERVER,
                             .onnxRuntime = std::nullopt};

 private:
  std::unique_ptr<LocalModelRefiners> refiners_;
};

}  // namespace

TEST_F(Refiners, WarmUpTheModelThatTheFirstDictationUses) {
  script("answer format");
  refiners().warmUp();
  EXPECT_EQ(refiners().preparationStatus(model), "Preparing for fast dictation…");
  ASSERT_TRUE(prepared());
  const auto refiner = refiners().makeRefinementProvider();
  EXPECT_EQ(refiner->providerID(), "qwen06");
  std::string rest;
  for (int word = 1; word < 40; ++word) rest += " word";
  EXPECT_EQ(refined(*refiner, "one" + rest + "\ntwo words"), "One" + rest + ".\nTwo words.")
      << "in pieces of forty words";
  EXPECT_EQ(count("listening"), 1U);
}

TEST_F(Refiners, KeepOneModelInMemoryAndNoneThatNobodyNeeds) {
  script("answer format");
  choice.model = SmartLocalModel::qwen17;
  refiners().warmUp();
  choice.model = model;
  ASSERT_TRUE(prepared());
  EXPECT_EQ(refiners().preparationStatus(SmartLocalModel::qwen17), std::nullopt);
  const auto chosen = refiners().makeRefinementProvider();
  EXPECT_EQ(refined(*chosen, "hello"), "Hello.");

  choice.routing = SmartRefinementRoutingMode::automaticByLanguage;
  choice.otherLanguages = false;
  refiners().warmUp();
  ASSERT_TRUE(executor.waitUntil([] { return !hasChildren(); })) << "Russian has a corrector of its own";
  choice.otherLanguages = true;
  ASSERT_TRUE(prepared());
  refiners().shutdown();
  ASSERT_TRUE(executor.waitUntil([] { return !hasChildren(); }));
  EXPECT_EQ(refined(*chosen, "hello"), "RAW");
}

TEST_F(Refiners, LogWhyAModelIsNotThere) {
  script("start exit 1");
  EXPECT_FALSE(prepared());
  EXPECT_EQ(refiners().failure(model), "inference server exited while starting");
  EXPECT_EQ(
      log.lines,
      std::vector<std::string>{
          "local-models: model_process_failed model=qwen06 reason=inference server exited while starting"});
}

TEST_F(Refiners, OfAShippedBuildRunItsOwnServerOnly) {
  script("answer format");
  locations.edition = DistributionEdition::complete;
  EXPECT_EQ(refined(*refiners().makeRefinementProvider(), "hello"),
            "Smart Local model or runtime is not installed");
  EXPECT_TRUE(notes().empty());
}
