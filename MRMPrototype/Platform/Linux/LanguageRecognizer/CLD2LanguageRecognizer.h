#pragma once

#include "Platform/LanguageRecognizer.h"

namespace murmel {

/// The language recogniser of the library CLD2. Stateless and thread-safe.
class CLD2LanguageRecognizer final : public LanguageRecognizer {
 public:
  [[nodiscard]] std::optional<std::string> dominantLanguage(std::string_view text) const override;
};

}  // namespace murmel
