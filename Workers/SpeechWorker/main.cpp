#include "Workers/Common/Isolation.h"
#include "Workers/Common/WorkerOutput.h"
#include "Workers/SpeechWorker/Preparation.h"
#include "Workers/SpeechWorker/RequestLoop.h"

#include <csignal>
#include <cstdlib>
#include <optional>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

/// Recognises speech for the application: requests on standard input, replies on standard output, one JSON
/// object a line. Ends with 0 when its input ends, with 1 when it could not begin.
int main(int argumentCount, char** arguments) {
  using namespace murmel;
  using namespace murmel::worker;
  std::signal(SIGPIPE, SIG_IGN);
  endWhenAsked();
  ::prctl(PR_SET_NAME, "mrm-fluidaudio");
  const auto protocol = takeStandardOutput();
  if (!protocol) return EXIT_FAILURE;
  ReplyWriter replies(protocol.get());
  const std::span<char* const> all(arguments, static_cast<std::size_t>(argumentCount));
  const auto engine = preparedEngine(all);
  if (!engine) {
    replies.error(std::nullopt, engine.error());
    return EXIT_FAILURE;
  }
  LineReader requests(STDIN_FILENO, longestRequest);
  if (replies.ready()) serveRequests(requests, replies, **engine);
  // At once: the kernel takes a large model back faster than its destructors do.
  ::_exit(EXIT_SUCCESS);
}
