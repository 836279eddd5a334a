#include "Workers/Common/AnswerEach.h"

#include "Workers/Common/Isolation.h"

namespace murmel::worker {

void answerEach(LineReader& requests, ReplyWriter& replies, const std::function<bool()>& answer) {
  while (true) {
    bool isHeard = true;
    switch (requests.next()) {
      case LineReader::Outcome::end:
        return;
      case LineReader::Outcome::tooLong:
        isHeard = replies.error(std::nullopt, "request is too long");
        break;
      case LineReader::Outcome::line:
        closeMemory();
        isHeard = answer();
        break;
    }
    if (!isHeard) return;
  }
}

}  // namespace murmel::worker
