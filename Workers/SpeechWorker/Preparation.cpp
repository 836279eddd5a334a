#include "Workers/SpeechWorker/Preparation.h"

#include "Workers/Common/Isolation.h"
#include "Workers/SpeechWorker/PocketSphinxEngine.h"
#include "Workers/SpeechWorker/WorkerArguments.h"

#include <optional>

namespace murmel::worker {

LoadedEngine preparedEngine(std::span<char* const> all) {
  if (all.empty()) return std::unexpected("unknown arguments");
  const auto parsed = WorkerArguments::parse(all.subspan(1));
  if (!parsed) return std::unexpected(parsed.error());
  const auto model = modelIn(parsed->modelDirectory);
  std::optional<EngineModule> module;
  if (!model.engine->loader.empty()) {
    auto opened = EngineModule::open(*model.engine, std::filesystem::path(all[0]).parent_path());
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

}  // namespace murmel::worker
