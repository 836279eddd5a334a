#include "Foundation/Json/Json.h"
#include "Foundation/Text/Text.h"
#include "Support/Testing.h"
#include "Workers/SageWorker/AnswerDraft.h"

using namespace murmel::worker;

namespace {

constexpr std::int64_t ending = 2;

/// Tokens as they are in the corrector's files: every byte, and each of these words with the space before it.
ByteLevelBPE tokensFor(const std::vector<std::string>& words) {
  std::vector<std::string> bytes;
  for (int byte = 0, following = 0x100; byte < 0x100; ++byte) {
    const bool isVisible = (byte > 0x20 && byte < 0x7F) || (byte > 0xA0 && byte != 0xAD);
    text::appendScalar(bytes.emplace_back(), static_cast<char32_t>(isVisible ? byte : following++));
  }
  Json vocabulary{{"<pad>", 0}, {"<unk>", 1}, {"</s>", ending}};
  const auto add = [&vocabulary](const std::string& token) {
    if (vocabulary.contains(token)) return false;
    vocabulary[token] = vocabulary.size();
    return true;
  };
  for (const auto& byte : bytes) add(byte);
  std::string merges = "#version: 0.2\n";
  for (const auto& word : words) {
    std::string token;
    for (const char byte : word) {
      const auto& next = bytes[static_cast<unsigned char>(byte)];
      if (!token.empty() && add(token + next)) merges += token + " " + next + "\n";
      token += next;
    }
  }
  return ByteLevelBPE::create(jsonText(vocabulary), merges).value();
}

}  // namespace

TEST(AnswerDraft, FindsWhereTheAnswerHasArrived) {
  const auto tokens = tokensFor({});
  const AnswerDraft draft(tokens, "привет мир, как дела", ending);
  EXPECT_EQ(draft.rest(""), "Привет мир, как дела");
  EXPECT_EQ(draft.rest("Привет,"), " мир, как дела");
  EXPECT_EQ(draft.rest("Привет, мир!"), " Как дела") << "its own mark instead of the question's";
  EXPECT_EQ(draft.rest("Привет, м"), "ир, как дела");
  EXPECT_EQ(draft.rest("Привет, дорогой мир"), ", как дела") << "a word was added";
  EXPECT_EQ(draft.rest("Привет. Как"), " дела") << "a word was dropped";
  EXPECT_EQ(draft.rest("Привет, мир, как дела?"), "");
}

TEST(AnswerDraft, NeedsAFifthOfThePassesForFortyWords) {
  const std::string question =
      "добрый день уважаемые коллеги сегодня мы обсудим план работы на следующий месяц во первых нужно "
      "закончить "
      "отчёт который мы начали на прошлой неделе во вторых иван подготовит список вопросов для встречи с "
      "заказчиком "
      "если у вас есть замечания напишите мне пожалуйста до пятницы спасибо";
  const std::string answer =
      "Добрый день, уважаемые коллеги! Сегодня мы обсудим план работы на следующий месяц. Во-первых, нужно "
      "закончить "
      "отчёт, который мы начали на прошлой неделе. Во-вторых, Иван подготовит список вопросов для встречи с "
      "заказчиком. "
      "Если у вас есть замечания, напишите мне, пожалуйста, до пятницы. Спасибо.";
  // Two tokens a word, as a vocabulary of fifty thousand has them.
  std::vector<std::string> parts;
  for (const auto& words : {text::words(question), text::words(answer)}) {
    for (const auto word : words) {
      const auto half = word.size() / 4 * 2;
      parts.push_back(" " + std::string(word.substr(0, half)));
      parts.emplace_back(word.substr(half));
    }
  }
  const auto tokens = tokensFor(parts);
  ASSERT_GE(text::words(question).size(), 40U);
  const auto right = tokens.encode(answer).value();
  const AnswerDraft draft(tokens, question, ending);
  // A corrector that knows the answer, whatever is guessed.
  std::vector<std::int64_t> written;
  std::size_t passes = 0;
  for (bool hasEnded = false; !hasEnded; ++passes) {
    for (const auto guess : draft.after(written)) {
      hasEnded = written.size() == right.size();
      if (hasEnded) break;
      written.push_back(right[written.size()]);
      if (guess != written.back()) break;
    }
  }
  EXPECT_LE(5 * passes, right.size() + 1) << passes << " passes for " << right.size() << " tokens";
}
