#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Repairs a known weakness of the speech model: it writes its unknown-token marker where a Russian ё
/// belongs. Stateless.
struct ParakeetUnknownTokenRecovery {
  /// `text` is UTF-8. Each "<unk>" becomes Ё or ё where the text is Russian, and nothing elsewhere; then runs
  /// of blanks become one and the ends are trimmed. Text without the marker comes back as it is.
  static std::string apply(std::string_view text, const std::optional<std::string>& forcedLanguage);
};

}  // namespace murmel
