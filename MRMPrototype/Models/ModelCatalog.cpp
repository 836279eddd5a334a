#include "Models/ModelCatalog.h"

#include <algorithm>

namespace murmel {

const std::vector<CatalogModel>& modelCatalog() {
  using enum MRMModelDownloadImportance;
  static const std::vector<CatalogModel> models{
      {"parakeet", "Parakeet TDT 0.6B v3 Q8 · Recommended", {"parakeet-ggml:q8_0"}, required},
      {"parakeet-small", "Parakeet TDT 0.6B v3 Q4 · Small", {"parakeet-ggml:q4_0"}, required},
      {"gemma-4-e2b", "Gemma 4 E2B Q4 · Recommended", {"gemma:4-e2b"}, optional},
      {"qwen-0.6b", "Qwen3 0.6B Q8 · Fast baseline", {"qwen:0.6b"}, optional},
      {"qwen-1.7b", "Qwen3 1.7B Q8 · Balanced", {"qwen:1.7b"}, optional},
      {"qwen-4b", "Qwen3 4B Q4 · Best quality", {"qwen:4b"}, optional},
      {"sage",
       "SAGE 95M · Russian",
       {"sage:encoder_model_quantized.onnx", "sage:decoder_model_quantized.onnx", "sage:vocab.json",
        "sage:merges.txt"},
       optional},
  };
  return models;
}

const CatalogModel* catalogModel(std::string_view name) {
  const auto& models = modelCatalog();
  const auto found = std::ranges::find(models, name, &CatalogModel::name);
  return found == models.end() ? nullptr : &*found;
}

}  // namespace murmel
