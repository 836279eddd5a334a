#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Refinement/AutomaticLanguageRefinementProvider.h"
#include "Refinement/BoundedRefinementProvider.h"
#include "Refinement/RefinementSource.h"
#include "Support/Refining.h"
#include "Support/Testing.h"

namespace {

using Refined = Result<std::string>;

/// Answers by a function, at once or when the test lets it.
class ScriptedRefiner final : public RefinementProvider {
 public:
  explicit ScriptedRefiner(std::function<Refined(const std::string&)> script) : script_(std::move(script)) {}

  [[nodiscard]] const std::string& providerID() const override { return providerID_; }

  Task<Result<SpokenText>> refine(SpokenText text) override {
    asked.push_back(text.reveal());
    if (holdAnswers) {
      auto [sender, receiver] = makeOneShot<bool>();
      release.emplace(std::move(sender));
      co_await receiver;
    }
    auto refined = script_(text.reveal());
    if (!refined) co_return std::unexpected(refined.error());
    co_return SpokenText(*std::move(refined));
  }

  std::vector<std::string> asked;
  bool holdAnswers = false;
  std::optional<OneShotSender<bool>> release;

 private:
  std::string providerID_ = "scripted";
  std::function<Refined(const std::string&)> script_;
};

Task<void> keep(RefinementProvider& provider, std::string text, std::optional<Refined>& result) {
  auto answer = refining(provider, std::move(text));
  result = co_await answer;
}

std::optional<Refined> refined(RefinementProvider& provider, std::string text) {
  std::optional<Refined> result;
  Scope scope;
  scope.start(keep(provider, std::move(text), result));
  return result;
}

Refined bracketed(const std::string& text) {
  return "[" + text + "]";
}

Refined failure(const std::string&) {
  return std::unexpected(MRMError(MRMError::Case::smartRefinementFailed));
}

std::string manyWords(int count, const std::string& separator = " ") {
  std::string text;
  for (int word = 1; word <= count; ++word) text += (word > 1 ? separator : "") + "w" + std::to_string(word);
  return text;
}

}  // namespace

TEST(BoundedRefinementProvider, CutsAfterFortyWords) {
  using Piece = BoundedRefinementProvider::Piece;
  const auto pieces = BoundedRefinementProvider::pieces;
  EXPECT_EQ(pieces(""), (std::vector<Piece>{{"", ""}}));
  const auto forty = "  " + manyWords(40) + "\n";
  EXPECT_EQ(pieces(forty), (std::vector<Piece>{{"", forty}})) << "as it stands";
  EXPECT_EQ(pieces(" " + manyWords(40) + "\r\n\u00A0last one "),
            (std::vector<Piece>{{"", manyWords(40)}, {"\r\n\u00A0", "last one"}}));
  EXPECT_EQ(pieces(manyWords(121)).size(), 4U);
}

TEST(BoundedRefinementProvider, JoinsWhatComesBack) {
  BoundedRefinementProvider provider(
      std::make_unique<ScriptedRefiner>([](const std::string& text) -> Refined {
        if (text == "w41") return "\n\u00A0 ";
        return " " + text + ".\n";
      }));
  EXPECT_EQ(provider.providerID(), "scripted");
  EXPECT_EQ(refined(provider, manyWords(41)), Refined(manyWords(40) + ". w41")) << "white space is no answer";
  EXPECT_EQ(refined(provider, manyWords(40) + "\n\nlast"), Refined(manyWords(40) + ".\n\nlast."));
  EXPECT_EQ(refined(provider, "one\ntwo"), Refined("one\ntwo."));
}

TEST(BoundedRefinementProvider, StopsAtTheFirstFailureAndWhenCancelled) {
  auto owned = std::make_unique<ScriptedRefiner>(failure);
  auto& inner = *owned;
  BoundedRefinementProvider provider(std::move(owned));
  EXPECT_EQ(refined(provider, manyWords(100)), failure(""));
  EXPECT_EQ(inner.asked.size(), 1U);

  inner.asked.clear();
  inner.holdAnswers = true;
  std::optional<Refined> result;
  {
    Scope scope;
    scope.start(keep(provider, manyWords(100), result));
    EXPECT_EQ(inner.asked.size(), 1U);
  }
  inner.release->send(true);
  EXPECT_EQ(inner.asked.size(), 1U) << "a destroyed task asks for no more pieces";
  EXPECT_FALSE(result);
}

TEST(AutomaticLanguageRefinementProvider, RoutesAndNeverFails) {
  const auto named = [](std::string name) {
    return std::make_shared<ScriptedRefiner>([name](const std::string& text) { return name + text; });
  };
  const FakeLanguageRecognizer recognizer;
  AutomaticLanguageRefinementProvider all({named("r:"), named("e:"), named("m:")}, recognizer);
  EXPECT_EQ(all.providerID(), "automatic-language-routing-v1");
  EXPECT_EQ(refined(all, "привет мир"), Refined("r:привет мир"));
  EXPECT_EQ(refined(all, "hello"), Refined("e:hello"));
  EXPECT_EQ(refined(all, "hello nice мир"), Refined("m:hello nice мир"));
  EXPECT_EQ(refined(all, "123 !!!"), Refined("123 !!!"));

  AutomaticLanguageRefinementProvider multilingual({nullptr, nullptr, named("m:")}, recognizer);
  EXPECT_EQ(refined(multilingual, "hello"), Refined("m:hello"));
  EXPECT_EQ(refined(multilingual, "привет"), Refined("привет")) << "Russian never goes to the model";

  const auto failing = std::make_shared<ScriptedRefiner>(failure);
  AutomaticLanguageRefinementProvider broken({failing, failing, failing}, recognizer);
  EXPECT_EQ(refined(broken, "hello"), Refined("hello"));
  AutomaticLanguageRefinementProvider none({}, recognizer);
  EXPECT_EQ(refined(none, "hello мир"), Refined("hello мир"));
}

TEST(RefinementSource, ComposesByTheSettings) {
  using enum SmartRefinementRoutingMode;
  const FakeLanguageRecognizer recognizer;
  std::shared_ptr<RefinementProvider> russian;
  const auto made = [&](const RefinementChoice& choice) {
    return makeRefinementProvider(choice,
                                  {.languageModel =
                                       [] {
                                         return std::make_unique<ScriptedRefiner>(
                                             [](const std::string& text) { return "model:" + text; });
                                       },
                                   .russian = [&] { return russian; }},
                                  recognizer);
  };
  const auto off = made({.smartFormatting = false});
  EXPECT_EQ(off->providerID(), "disabled");
  EXPECT_EQ(refined(*off, " as it is "), Refined(" as it is "));

  const auto selected = made({.smartFormatting = true, .routing = selectedMultilingualModel});
  EXPECT_EQ(refined(*selected, manyWords(41)), Refined("model:" + manyWords(40) + " model:w41"));
  EXPECT_EQ(refined(*selected, "привет"), Refined("model:привет")) << "no routing in this mode";

  const auto automatic = made({.smartFormatting = true});
  EXPECT_EQ(automatic->providerID(), "automatic-language-routing-v1");
  EXPECT_EQ(refined(*automatic, "hello"), Refined("model:hello"));
  EXPECT_EQ(refined(*automatic, "привет"), Refined("привет"));
  russian = std::make_shared<ScriptedRefiner>(bracketed);
  EXPECT_EQ(refined(*made({.smartFormatting = true}), "привет"), Refined("[привет]"));
}

TEST(RefinementSource, NeedsWhatTheLanguagesNeed) {
  struct Row {
    RefinementChoice choice;
    bool russian, model;
  };
  using enum SmartRefinementRoutingMode;
  for (const auto& [choice, russian, model] : std::vector<Row>{
           {{.smartFormatting = false}, false, false},
           {{.smartFormatting = true}, true, true},
           {{.smartFormatting = true, .russian = false}, false, true},
           {{.smartFormatting = true, .otherLanguages = false}, true, false},
           {{.smartFormatting = true, .routing = selectedMultilingualModel, .otherLanguages = false},
            false,
            true},
       }) {
    EXPECT_EQ(choice.needsRussianRefiner(), russian);
    EXPECT_EQ(choice.needsLanguageModel(), model);
  }
}
