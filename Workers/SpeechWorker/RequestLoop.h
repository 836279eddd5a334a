#pragma once

#include "Workers/Common/LineReader.h"
#include "Workers/Common/ReplyWriter.h"
#include "Workers/SpeechWorker/SpeechEngine.h"

namespace murmel::worker {

/// Half an hour of audio in base64, and room to spare.
inline constexpr std::size_t longestRequest = 80 << 20;

/// Answers requests one by one, every one exactly once, until the input ends or nobody reads the answers.
void serveRequests(LineReader& requests, ReplyWriter& replies, SpeechEngine& engine);

}  // namespace murmel::worker
