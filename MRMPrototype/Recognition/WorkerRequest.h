#pragma once

#include "Audio/CapturedAudio.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>

namespace murmel {

/// The line, without its line feed, that asks the speech worker for a transcription. The error says why it
/// cannot be written: `language` is not UTF-8.
std::expected<std::string, std::string> encodeWorkerRequest(std::int64_t id, const CapturedAudio& audio,
                                                            const std::optional<std::string>& language);

}  // namespace murmel
