#include "LocalModels/QwenChat.h"

#include "Foundation/Json/Json.h"
#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"

#include <utility>

namespace murmel {

namespace {

const text::RegularExpression& reasoningBlock() {
  static const auto pattern = text::RegularExpression::compile("(?s)<think>.*?</think>").value();
  return pattern;
}

}  // namespace

std::string QwenChat::requestBody(std::string_view text) {
  const Json body = {
      {"messages", Json::array({Json{{"role", "system"}, {"content", systemPrompt}},
                                Json{{"role", "user"}, {"content", text}}})},
      {"temperature", 0},
      {"max_tokens", maximumTokens},
      {"stream", false},
      {"chat_template_kwargs", Json{{"enable_thinking", false}}},
  };
  return jsonText(body);
}

std::optional<std::string> QwenChat::answer(std::string_view responseBody) {
  const auto body = parsedJson(responseBody);
  return body["choices"].element(0)["message"]["content"].text();
}

std::optional<std::string> QwenChat::sanitizeResponse(std::string_view response) {
  const auto answer = reasoningBlock().replacingMatches(response, "");
  if (!answer) return std::nullopt;
  return std::string(text::trimmed(*answer));
}

}  // namespace murmel
