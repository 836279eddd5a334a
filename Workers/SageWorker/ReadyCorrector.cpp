#include "Workers/SageWorker/ReadyCorrector.h"

#include "Workers/Common/Isolation.h"

#include <chrono>
#include <filesystem>
#include <string_view>
#include <utility>

namespace murmel::worker {

namespace {

struct Arguments {
  std::filesystem::path modelDirectory;
  std::filesystem::path runtime;
};

std::expected<Arguments, std::string> parse(std::span<char* const> given) {
  constexpr std::size_t count = 4;
  if (given.size() != count || given[0] != std::string_view("--model-dir") ||
      given[2] != std::string_view("--runtime")) {
    return std::unexpected("unknown arguments");
  }
  Arguments arguments{given[1], given[3]};
  if (!arguments.modelDirectory.is_absolute() || !arguments.runtime.is_absolute())
    return std::unexpected("path is not absolute");
  return arguments;
}

}  // namespace

std::expected<ReadyCorrector, std::string> ReadyCorrector::prepare(std::span<char* const> given) {
  const auto arguments = parse(given);
  if (!arguments) return std::unexpected(arguments.error());
  auto runtime = OnnxRuntime::load(arguments->runtime);
  if (!runtime) return std::unexpected(runtime.error());
  // Before the model is read: a model that attacks its reader finds the doors closed.
  if (auto isolated = isolate(arguments->modelDirectory); !isolated) return std::unexpected(isolated.error());
  auto clock = std::make_unique<SystemClock>();
  auto model = SageModel::load(**runtime, arguments->modelDirectory, *clock);
  if (!model) return std::unexpected(model.error());
  // What the libraries put off until they are first used is done before they can open nothing any more, and
  // the first dictation does not pay for it. The answer does not matter.
  constexpr auto firstLimit = std::chrono::seconds(5);
  (void)(*model)->correct("привет", firstLimit);
  if (auto closed = closeDoors(); !closed) return std::unexpected(closed.error());
  return ReadyCorrector{std::move(clock), *std::move(runtime), *std::move(model)};
}

}  // namespace murmel::worker
