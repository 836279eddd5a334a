#include "Workers/Common/Isolation.h"
#include "Workers/Common/WorkerOutput.h"
#include "Workers/SpeechWorker/EngineModule.h"
#include "Workers/SpeechWorker/PocketSphinxEngine.h"
#include "Workers/SpeechWorker/RequestLoop.h"
#include "Workers/SpeechWorker/WorkerArguments.h"

#include <csignal>
#include <cstdlib>
#include <optional>
#include <utility>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

using namespace murmel;
using namespace murmel::worker;

std::expected<std::unique_ptr<SpeechEngine>, std::string> prepare(std::span<char* const> arguments) {
  const auto parsed = WorkerArguments::parse(arguments);
  if (!parsed) return std::unexpected(parsed.error());
  const auto model = modelIn(parsed->modelDirectory);
  std::optional<EngineModule> module;
  if (!model.engine->loader.empty()) {
    auto opened = EngineModule::open(*model.engine);
    if (!opened) return std::unexpected(opened.error());
    module = *opened;
  }
  // Before the model is read: a model that attacks its reader finds the doors closed.
  if (auto isolated = isolate(parsed->modelDirectory); !isolated) return std::unexpected(isolated.error());
  LoadedEngine engine = module ? module->load(model.file) : PocketSphinxEngine::load(parsed->modelDirectory);
  if (!engine) return std::unexpected(engine.error());
  if (auto closed = closeDoors(); !closed) return std::unexpected(closed.error());
  return *std::move(engine);
}

}  // namespace

/// Recognises speech for the application: requests on standard input, replies on standard output, one JSON
/// object a line. Ends with 0 when its input ends, with 1 when it could not begin.
int main(int argumentCount, char** arguments) {
  std::signal(SIGPIPE, SIG_IGN);
  ::prctl(PR_SET_NAME, "mrm-fluidaudio");
  const auto protocol = takeStandardOutput();
  if (!protocol) return EXIT_FAILURE;
  ReplyWriter replies(protocol.get());
  const std::span<char* const> all(arguments, static_cast<std::size_t>(argumentCount));
  const auto engine = prepare(all.empty() ? all : all.subspan(1));
  if (!engine) {
    replies.error(std::nullopt, engine.error());
    return EXIT_FAILURE;
  }
  LineReader requests(STDIN_FILENO, longestRequest);
  if (replies.ready()) serveRequests(requests, replies, **engine);
  // At once: the kernel takes a large model back faster than its destructors do.
  ::_exit(EXIT_SUCCESS);
}
