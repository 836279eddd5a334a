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

/// The member or element, when there is one.
const Json* child(const Json* parent, const char* key) {
  if (parent == nullptr || !parent->is_object()) return nullptr;
  const auto found = parent->find(key);
  return found == parent->end() ? nullptr : &*found;
}

const Json* first(const Json* array) {
  return array != nullptr && array->is_array() && !array->empty() ? &array->front() : nullptr;
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
  const auto* const content = child(child(first(child(&body, "choices")), "message"), "content");
  if (content == nullptr || !content->is_string()) return std::nullopt;
  return content->get<std::string>();
}

std::optional<std::string> QwenChat::sanitizeResponse(std::string_view response) {
  const auto answer = reasoningBlock().replacingMatches(response, "");
  if (!answer) return std::nullopt;
  return std::string(text::trimmed(*answer));
}

}  // namespace murmel
