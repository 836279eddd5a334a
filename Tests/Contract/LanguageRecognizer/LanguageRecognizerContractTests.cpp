#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"
#include "Support/Testing.h"

namespace {

template <class Recognizer>
class LanguageRecognizerContract : public ::testing::Test {
 protected:
  Recognizer recognizer;
};

using Recognizers = ::testing::Types<FakeLanguageRecognizer, CLD2LanguageRecognizer>;
TYPED_TEST_SUITE(LanguageRecognizerContract, Recognizers);

constexpr std::string_view russian = "Давайте обсудим это завтра утром и решим, что делать дальше.";
constexpr std::string_view english = "Let us talk about this tomorrow morning and decide what to do next.";

}  // namespace

TYPED_TEST(LanguageRecognizerContract, KnowsRussianAndEnglish) {
  struct Row {
    std::string text;
    const char* language;
  };
  for (const auto& row : std::vector<Row>{
           {std::string(russian), "ru"},
           {std::string(english), "en"},
           {"давайте обсудим roadmap на следующей неделе", "ru"},
           {"please open файл and run all the tests in it", "en"},
           {"line one\nline two\tof the text\x01 with controls", "en"},
           {"\xFF\xC3 " + std::string(english) + " \xED\xA0\x80", "en"},
           {std::string(russian) + std::string("\0", 1) + std::string(russian), "ru"},
       }) {
    EXPECT_EQ(this->recognizer.dominantLanguage(row.text), row.language) << row.text;
  }
}

TYPED_TEST(LanguageRecognizerContract, SaysNothingWithoutLetters) {
  for (const std::string_view text : {"", " \n", "123 !!! 4,5", "+ — %", "\xFF\xFE"})
    EXPECT_EQ(this->recognizer.dominantLanguage(text), std::nullopt) << text;
}

TYPED_TEST(LanguageRecognizerContract, GivesTheSameAnswerForLongTextsAndOnOtherThreads) {
  std::string text;
  while (text.size() < 1'000'000) text += russian;
  std::vector<std::string> answers(3);
  {
    std::vector<std::jthread> threads;
    for (auto& answer : answers) {
      threads.emplace_back([&answer, &text] {
        const TypeParam ownRecognizer;
        answer = ownRecognizer.dominantLanguage(text).value_or("none");
      });
    }
  }
  EXPECT_EQ(answers, std::vector<std::string>(3, "ru"));
}
