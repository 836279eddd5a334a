#pragma once

#include "Audio/CapturedAudio.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// The line, without its line feed, that asks the speech worker for a transcription. The error says why it
/// cannot be written: `language` or a word is not UTF-8. `vocabulary`: see SpeechWorkerClient; left out when
/// empty.
std::expected<std::string, std::string> encodeWorkerRequest(std::int64_t id, const CapturedAudio& audio,
                                                            const std::optional<std::string>& language,
                                                            const std::vector<std::string>& vocabulary = {});

}  // namespace murmel
