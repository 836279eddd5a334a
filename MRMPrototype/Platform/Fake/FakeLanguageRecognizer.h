#pragma once

#include "Platform/LanguageRecognizer.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Knows Russian by its script and takes all other letters for English, unless a test has said otherwise.
class FakeLanguageRecognizer final : public LanguageRecognizer {
 public:
  [[nodiscard]] std::optional<std::string> dominantLanguage(std::string_view text) const override;

  /// From now on the answer for exactly this text.
  void answer(std::string text, std::optional<std::string> language);
  /// How often anybody has asked.
  [[nodiscard]] std::size_t questions() const { return questions_; }

 private:
  std::map<std::string, std::optional<std::string>, std::less<>> answers_;
  mutable std::size_t questions_ = 0;
};

}  // namespace murmel
