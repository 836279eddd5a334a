#pragma once

#include "Foundation/Crypto/PrivateMemory.h"
#include "Workers/SpeechWorker/SpeechEngine.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::worker {

/// Why a request is not carried out; `id` when it could be read.
struct RequestRefusal {
  std::optional<std::int64_t> id;
  std::string reason;  ///< short, for the user
};

/// One transcription that is asked for.
struct TranscriptionRequest {
  std::int64_t id = 0;
  PrivateVector<std::int16_t> samples;  ///< mono, 16 kHz
  SpeechHints hints;

  /// Decodes one line without its line feed. Unknown keys are ignored.
  static std::expected<TranscriptionRequest, RequestRefusal> decode(std::string_view line);
};

}  // namespace murmel::worker
