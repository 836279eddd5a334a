#include "Workers/SpeechWorker/WorkerArguments.h"

#include <optional>
#include <string_view>

namespace murmel::worker {

std::expected<WorkerArguments, std::string> WorkerArguments::parse(std::span<char* const> arguments) {
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
  return WorkerArguments{*modelDirectory};
}

}  // namespace murmel::worker
