#pragma once

#include "Foundation/SpokenText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// One reply line of the speech worker.
struct WorkerMessage {
  /// The only version that is spoken.
  static constexpr std::int64_t acceptedProtocolVersion = 1;

  std::int64_t protocolVersion = 0;
  std::string event;  ///< "ready", "result" or "error"
  std::optional<std::int64_t> id;
  std::optional<SpokenText> text;
  std::optional<std::string> errorType;  ///< a short reason for the user

  /// Decodes a line without its line feed. Nothing when it is not a JSON object or lacks the version or the
  /// event: a worker may print other lines. Optional values of another type count as absent.
  static std::optional<WorkerMessage> decode(std::string_view line);
};

}  // namespace murmel
