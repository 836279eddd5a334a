#pragma once

#include "Workers/Common/LineReader.h"
#include "Workers/Common/ReplyWriter.h"

#include <functional>

namespace murmel::worker {

/// Has every request answered exactly once, one by one, until the input ends or nobody reads the answers.
/// `answer` takes the line of `requests`, and says whether its reply was written.
void answerEach(LineReader& requests, ReplyWriter& replies, const std::function<bool()>& answer);

}  // namespace murmel::worker
