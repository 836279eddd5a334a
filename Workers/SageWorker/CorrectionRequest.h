#pragma once

#include "Foundation/Async/Clock.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace murmel::worker {

/// One correction that is asked for.
struct CorrectionRequest {
  static constexpr std::chrono::milliseconds longestLimit{60'000};

  /// Why a request is not carried out; `id` when it could be read.
  struct Refusal {
    std::optional<std::int64_t> id;
    std::string reason;  ///< short, for the user
  };

  std::int64_t id = 0;
  std::string text;
  Duration limit = longestLimit;

  /// Decodes one line without its line feed. Unknown keys are ignored.
  static std::expected<CorrectionRequest, Refusal> decode(std::string_view line);
};

}  // namespace murmel::worker
