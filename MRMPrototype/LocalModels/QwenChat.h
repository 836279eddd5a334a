#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// What is said to the language model, and how its answer is read. Stateless and pure.
struct QwenChat {
  /// Tokens of the answer: 40 words and room for their punctuation in any script.
  static constexpr int maximumTokens = 192;

  static constexpr std::string_view systemPrompt =
      "You format dictated text. Fix only punctuation and capitalization.\n"
      "Preserve every word, spelling, name, number, and the language of every fragment.\n"
      "Every spoken word must remain present. Never remove, replace, reorder, or paraphrase words.\n"
      "Never translate, explain, summarize, or add information. Return only corrected text.";

  /// The JSON body of a chat completion for `text`.
  static std::string requestBody(std::string_view text);
  /// The content of the first choice's message in a response body; nothing when it is missing.
  static std::optional<std::string> answer(std::string_view responseBody);
  /// `response` without its reasoning blocks, trimmed; nothing when they cannot be found in bounded time.
  static std::optional<std::string> sanitizeResponse(std::string_view response);
};

}  // namespace murmel
