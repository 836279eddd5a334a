#include "Integration/LanguageModelServer/ServerBench.h"
#include "LocalModels/LocalModelRefiners.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Refinement/RefinementProviderFactory.h"

using namespace murmel;

namespace {

/// The whole of the application's refiners, on the stub that a development build is pointed to.
class Refiners : public ServerBench {
 protected:
  LocalModelRefiners& refiners() {
    if (!refiners_) {
      const ExecutableRuntimePolicy policy(store.path(), std::nullopt, nullptr);
      refiners_ =
          std::make_unique<LocalModelRefiners>(LocalModelRefiners::Services{executor, clock, launcher, files},
                                               "test", locations, policy, settings.limits);
    }
    return *refiners_;
  }
  void TearDown() override {
    refiners_.reset();
    ServerBench::TearDown();
  }

  std::string refined(RefinementProvider& refiner, const std::string& text) {
    Awaiting<Answer> asking(refiner.refine(text));
    return described(asking);
  }

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
  (void)refiners().makeLanguageModelRefiner(model, /*prewarmed=*/true);
  EXPECT_EQ(refiners().preparationStatus(model), "Preparing for fast dictation…");
  int changes = 0;
  const auto observer = refiners().onPreparationChange().subscribe([&] { ++changes; });
  Awaiting<bool> preparing(refiners().prepared(model));
  ASSERT_TRUE(executor.waitUntil([&] { return preparing.done(); }));
  EXPECT_TRUE(*preparing);
  EXPECT_GE(changes, 1);

  const FakeLanguageRecognizer recognizer;
  const RefinementProviderFactory factory(refiners(), recognizer);
  const auto refiner =
      factory.makeRefinementProvider({.smartFormatting = true,
                                      .routing = SmartRefinementRoutingMode::selectedMultilingualModel,
                                      .model = model});
  EXPECT_EQ(refiner->providerID(), "qwen06");
  std::string rest;
  for (int word = 1; word < 40; ++word) rest += " word";
  EXPECT_EQ(refined(*refiner, "one" + rest + "\ntwo words"), "One" + rest + ".\nTwo words.")
      << "in pieces of forty words";
  EXPECT_EQ(count("listening"), 1U);
  EXPECT_EQ(refiners().russianRefiner(), nullptr);
}

TEST_F(Refiners, KeepOneModelInMemoryAndNoneWhenTheyAreSwitchedOff) {
  script("answer format");
  (void)refiners().makeLanguageModelRefiner(SmartLocalModel::qwen17, true);
  const auto chosen = refiners().makeLanguageModelRefiner(model, true);
  EXPECT_EQ(refiners().preparationStatus(SmartLocalModel::qwen17), std::nullopt);
  Awaiting<bool> preparing(refiners().prepared(model));
  ASSERT_TRUE(executor.waitUntil([&] { return preparing.done(); }));
  EXPECT_EQ(refined(*chosen, "hello"), "Hello.");
  refiners().shutdown();
  ASSERT_TRUE(executor.waitUntil([] { return !hasChildren(); }));
  EXPECT_EQ(refined(*chosen, "hello"), "RAW");
}

TEST_F(Refiners, OfAShippedBuildRunItsOwnServerOnly) {
  script("answer format");
  locations.edition = DistributionEdition::complete;
  const auto refiner = refiners().makeLanguageModelRefiner(model, true);
  EXPECT_EQ(refined(*refiner, "hello"), "Smart Local model or runtime is not installed");
  EXPECT_TRUE(notes().empty());
}
