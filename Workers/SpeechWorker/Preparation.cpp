#include "Workers/SpeechWorker/Preparation.h"

#include "Workers/Common/Isolation.h"
#include "Workers/SpeechWorker/PocketSphinxEngine.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace murmel::worker {

namespace {

/// What the worker is started with: "--model-dir DIR --precision int8", nothing else. The folder; the error
/// is a short reason.
std::expected<std::filesystem::path, std::string> modelDirectoryOf(std::span<char* const> arguments) {
  std::optional<std::string> modelDirectory;
  std::optional<std::string> precision;
  for (std::size_t index = 0; index < arguments.size(); index += 2) {
    const std::string_view name = arguments[index];
    auto* const target = name == "--model-dir"   ? &modelDirectory
                         : name == "--precision" ? &precision
                                                 : nullptr;
    if (target == nullptr) return std::unexpected("unknown argument");
    if (index + 1 == arguments.size()) return std::unexpected("argument without a value");
    if (target->has_value()) return std::unexpected("repeated argument");
    target->emplace(arguments[index + 1]);
  }
  if (!modelDirectory || !std::filesystem::path(*modelDirectory).is_absolute())
    return std::unexpected("no model directory");
  if (precision != "int8") return std::unexpected("unsupported precision");
  return *modelDirectory;
}

}  // namespace

LoadedEngine preparedEngine(std::span<char* const> all) {
  if (all.empty()) return std::unexpected("unknown arguments");
  const auto folder = modelDirectoryOf(all.subspan(1));
  if (!folder) return std::unexpected(folder.error());
  const auto model = modelIn(*folder);
  std::optional<EngineModule> module;
  if (!model.engine->loader.empty()) {
    auto opened = EngineModule::open(*model.engine, std::filesystem::path(all[0]).parent_path());
    if (!opened) return std::unexpected(opened.error());
    module = *opened;
  }
  // Before the model is read: a model that attacks its reader finds the doors closed.
  if (auto isolated = isolate(*folder); !isolated) return std::unexpected(isolated.error());
  LoadedEngine engine = module ? module->load(model.file) : PocketSphinxEngine::load(*folder);
  if (!engine) return std::unexpected(engine.error());
  if (auto closed = closeDoors(); !closed) return std::unexpected(closed.error());
  return *std::move(engine);
}

}  // namespace murmel::worker
