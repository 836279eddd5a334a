#include "Models/ModelCatalog.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/SpeechEngines.h"

#include <algorithm>

#include <fmt/core.h>
#include <unistd.h>

namespace murmel {

namespace {

constexpr std::uint64_t megabyte = 1'000'000;
constexpr std::string_view russianName = "sage";

}  // namespace

const std::vector<CatalogModel>& modelCatalog() {
  using enum MRMModelDownloadImportance;
  static const std::vector<CatalogModel> models{
      {"parakeet",
       "Parakeet TDT 0.6B v3 Q8 · Recommended",
       {"parakeet-ggml:q8_0"},
       required,
       "Hears 25 languages, the best of those that run here.",
       "CC-BY-4.0",
       0,
       1'300 * megabyte,
       speechEngine("parakeet").processorLevel},
      {"parakeet-small",
       "Parakeet TDT 0.6B v3 Q4 · Small",
       {"parakeet-ggml:q4_0"},
       required,
       "The same in half the space, with a few more mistakes.",
       "CC-BY-4.0",
       0,
       900 * megabyte,
       speechEngine("parakeet").processorLevel},
      {speechEngine("whisper-base").identifier,
       "Whisper base Q8 · Smallest",
       {"whisper-ggml:base-q8_0"},
       required,
       "Hears about a hundred languages, and runs on older machines.",
       "MIT",
       0,
       300 * megabyte,
       speechEngine("whisper-base").processorLevel},
      {"gemma-4-e2b",
       "Gemma 4 E2B Q4 · Recommended",
       {"gemma:4-e2b"},
       optional,
       "Punctuation and capitals in many languages.",
       "Apache-2.0",
       3'200 * megabyte,
       4'500 * megabyte},
      {"qwen-0.6b",
       "Qwen3 0.6B Q8 · Fast baseline",
       {"qwen:0.6b"},
       optional,
       "Punctuation and capitals on a small machine.",
       "Apache-2.0",
       640 * megabyte,
       1'500 * megabyte},
      {"qwen-1.7b",
       "Qwen3 1.7B Q8 · Balanced",
       {"qwen:1.7b"},
       optional,
       "Punctuation and capitals, between fast and good.",
       "Apache-2.0",
       1'830 * megabyte,
       3'000 * megabyte},
      {"qwen-4b",
       "Qwen3 4B Q4 · Best quality",
       {"qwen:4b"},
       optional,
       "Punctuation and capitals, slower and better.",
       "Apache-2.0",
       2'500 * megabyte,
       4'000 * megabyte},
      {russianName,
       "SAGE 95M · Russian",
       {"sage:encoder_model_quantized.onnx", "sage:decoder_model_quantized.onnx", "sage:vocab.json",
        "sage:merges.txt"},
       optional,
       "Corrects Russian.",
       "MIT",
       0,
       1'000 * megabyte},
  };
  return models;
}

std::uint64_t installedMemory() {
  return static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES)) *
         static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

std::string whyUnusable(const CatalogModel& model, const ModelMachine& machine) {
  const auto cannot = [](std::string_view reason) { return fmt::format("Cannot run here: {}.", reason); };
  if (model.importance == MRMModelDownloadImportance::required) {
    if (machine.speechEngineLevel < std::max(1, model.speechEngineLevel))
      return cannot("its engine is not in this build, or this processor is too old for it");
  } else {
    const auto& obstacle =
        model.name == russianName ? machine.russianObstacle : machine.languageModelObstacle;
    if (!obstacle.empty()) return cannot(obstacle);
  }
  if (model.memory <= machine.memory) return {};
  return cannot(fmt::format("it needs {:.1f} GB of memory, and this computer has {:.1f} GB",
                            static_cast<double>(model.memory) / 1e9,
                            static_cast<double>(machine.memory) / 1e9));
}

std::uint64_t downloadSize(const CatalogModel& model) {
  std::uint64_t size = 0;
  for (const auto& identifier : model.identifiers) {
    const auto* const asset = MRMDownloadManifest::asset(identifier);
    size += asset == nullptr ? 0 : static_cast<std::uint64_t>(asset->byteCount.value_or(0));
  }
  return size > 0 ? size : model.about;
}

std::string whyNotDownloadable(const CatalogModel& model) {
  const bool isConfirmed = std::ranges::all_of(model.identifiers, [](const auto& identifier) {
    const auto* const asset = MRMDownloadManifest::asset(identifier);
    return asset == nullptr || asset->isHostConfirmed;
  });
  return isConfirmed ? std::string()
                     : "Where this model is published has never been confirmed, so it cannot be downloaded.";
}

const CatalogModel* catalogModel(std::string_view name) {
  const auto& models = modelCatalog();
  const auto found = std::ranges::find(models, name, &CatalogModel::name);
  return found == models.end() ? nullptr : &*found;
}

}  // namespace murmel
