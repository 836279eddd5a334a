// The speech worker without any confinement of its own, for the comparison.

#include "Workers/Common/WorkerOutput.h"
#include "Workers/SpeechWorker/EngineModule.h"
#include "Workers/SpeechWorker/PocketSphinxEngine.h"
#include "Workers/SpeechWorker/RequestLoop.h"

#include <filesystem>

#include <unistd.h>

int main(int count, char** arguments) {
  using namespace murmel::worker;
  constexpr int expected = 3;  // itself, the worker whose modules it takes, the model folder
  if (count != expected) return 1;
  const auto protocol = takeStandardOutput();
  ReplyWriter replies(protocol.get());
  const auto model = modelIn(arguments[2]);
  LoadedEngine engine;
  if (model.engine->loader.empty()) {
    engine = PocketSphinxEngine::load(arguments[2]);
  } else {
    const auto module = EngineModule::open(*model.engine, std::filesystem::path(arguments[1]).parent_path());
    if (!module) return 1;
    engine = module->load(model.file);
  }
  if (!engine) return 1;
  LineReader requests(STDIN_FILENO, longestRequest);
  if (replies.ready()) serveRequests(requests, replies, **engine);
  ::_exit(0);
}
