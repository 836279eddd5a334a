#include "Workers/Common/AnswerEach.h"
#include "Workers/Common/Isolation.h"
#include "Workers/Common/WorkerOutput.h"
#include "Workers/SageWorker/CorrectionRequest.h"
#include "Workers/SageWorker/ReadyCorrector.h"

#include <csignal>
#include <cstdlib>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

using namespace murmel;
using namespace murmel::worker;

/// Far more than forty words.
constexpr std::size_t longestRequest = 64 * 1'024;

bool answer(std::string_view line, ReplyWriter& replies, TextCorrector& corrector) {
  const auto request = CorrectionRequest::decode(line);
  if (!request) return replies.error(request.error().id, request.error().reason);
  try {
    const auto text = corrector.correct(request->text, request->limit);
    return text ? replies.result(request->id, *text) : replies.error(request->id, text.error());
  } catch (const std::bad_alloc&) {
    return replies.error(request->id, "not enough memory");
  }
}

std::expected<void, std::string> run(std::span<char* const> given, ReplyWriter& replies) {
  const auto corrector = ReadyCorrector::prepare(given);
  if (!corrector) return std::unexpected(corrector.error());
  LineReader requests(STDIN_FILENO, longestRequest);
  if (replies.ready()) {
    answerEach(requests, replies, [&] {
      const bool isHeard = answer(requests.line(), replies, *corrector->model);
      requests.release();
      return isHeard;
    });
  }
  // At once: the kernel takes a large model back faster than its destructors do.
  ::_exit(EXIT_SUCCESS);
}

}  // namespace

/// Corrects Russian for the application: requests on standard input, replies on standard output, one JSON
/// object a line. Ends with 0 when its input ends, with 1 when it could not begin.
int main(int argumentCount, char** arguments) {
  std::signal(SIGPIPE, SIG_IGN);
  endWhenAsked();
  ::prctl(PR_SET_NAME, "mrm-sage");
  const auto protocol = takeStandardOutput();
  if (!protocol) return EXIT_FAILURE;
  ReplyWriter replies(protocol.get());
  const std::span<char* const> all(arguments, static_cast<std::size_t>(argumentCount));
  if (const auto ended = run(all.empty() ? all : all.subspan(1), replies); !ended)
    replies.error(std::nullopt, ended.error());
  // Not the exit handlers: the runtime's own do not expect a process without descriptors.
  ::_exit(EXIT_FAILURE);
}
