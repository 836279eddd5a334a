#include "Foundation/Json/Json.h"
#include "LocalModels/QwenChat.h"
#include "LocalModels/QwenLocalRefinementProvider.h"
#include "Support/Testing.h"

TEST(QwenChat, AsksAsTheModelWasTriedOut) {
  const auto expected = parsedJson(R"({
    "messages": [
      {"role": "system", "content": "You format dictated text. Fix only punctuation and capitalization.\nPreserve every word, spelling, name, number, and the language of every fragment.\nEvery spoken word must remain present. Never remove, replace, reorder, or paraphrase words.\nNever translate, explain, summarize, or add information. Return only corrected text."},
      {"role": "user", "content": "say \"hi\"\nто есть \\"}
    ],
    "temperature": 0,
    "max_tokens": 192,
    "stream": false,
    "chat_template_kwargs": {"enable_thinking": false}
  })");
  EXPECT_EQ(parsedJson(QwenChat::requestBody("say \"hi\"\nто есть \\")), expected);
  EXPECT_TRUE(parsedJson(QwenChat::requestBody("broken \xC3 text")).isObject());
}

TEST(QwenChat, FindsTheAnswer) {
  const auto answer = QwenChat::answer;
  EXPECT_EQ(answer(R"({"choices":[{"message":{"content":"Да.\n"}},{"message":{"content":"No."}}]})"),
            "Да.\n");
  for (const char* body :
       {"", "null", "{}", "[]", R"({"choices":{}})", R"({"choices":[]})", R"({"choices":[1]})",
        R"({"choices":[{"message":"hi"}]})", R"({"choices":[{"message":{"content":["hi"]}}]})",
        R"({"choices":[{"message":{"content":"hi"}}])"}) {
    EXPECT_EQ(answer(body), std::nullopt) << body;
  }
  EXPECT_EQ(answer(std::string(50'000, '[')), std::nullopt) << "depth is no danger";
}

TEST(QwenChat, RemovesTheReasoning) {
  const auto sanitized = QwenChat::sanitizeResponse;
  EXPECT_EQ(sanitized(" Hello.\r\n"), "Hello.");
  EXPECT_EQ(sanitized("<think>\na\n</think>\n\nHello,<think></think> you."), "Hello, you.");
  EXPECT_EQ(sanitized("<think>a</think>b</think>c"), "b</think>c") << "as little as possible";
  EXPECT_EQ(sanitized("<think>no end"), "<think>no end");
  EXPECT_EQ(sanitized("<THINK>a</THINK>"), "<THINK>a</THINK>");
  EXPECT_EQ(sanitized("<think>" + std::string(200'000, 'x') + "</think>a"), "a");
}

TEST(QwenLocalRefinementProvider, KeepsTheRecognisedWordsOrNothing) {
  const auto projected = QwenLocalRefinementProvider::projected;
  EXPECT_EQ(projected("pay 3.50 or 4 today", "Pay 3.50, or 4 today."), "Pay 3.50, or 4 today.");
  EXPECT_EQ(projected("hello world", "Goodbye, moon!"), std::nullopt) << "no projection";
  EXPECT_EQ(projected("a b", "A!!!!!!!! B!!!!!!!!"), std::nullopt) << "too long: the gate is closed";
  EXPECT_EQ(projected("it is 3 4", "It is 3. 4"), "It is 3. 4") << "a point behind a number is none of it";
}
