#pragma once

#include "Foundation/RawValue.h"

#include <optional>
#include <string_view>

namespace murmel {

/// The language models that can format dictated text.
enum class SmartLocalModel { qwen06, qwen17, qwen4, gemma4E2B };

/// As stored. The last one is shorter than its case: that is the form in which earlier versions stored it.
template <>
inline constexpr auto rawValueTable<SmartLocalModel> = std::to_array<RawValueRow<SmartLocalModel>>({
    {SmartLocalModel::qwen06, "qwen06"},
    {SmartLocalModel::qwen17, "qwen17"},
    {SmartLocalModel::qwen4, "qwen4"},
    {SmartLocalModel::gemma4E2B, "gemma4E2"},
});

/// Reads a stored value; accepts "gemma4E2B" beside the stored form.
constexpr std::optional<SmartLocalModel> smartLocalModelFromStored(std::string_view raw) {
  if (raw == "gemma4E2B") return SmartLocalModel::gemma4E2B;
  return fromRawValue<SmartLocalModel>(raw);
}

/// Where the model comes from and how it is called.
struct SmartLocalModelDescription {
  std::string_view displayName;
  std::string_view repository;
  std::string_view file;
};

constexpr SmartLocalModelDescription describe(SmartLocalModel model) {
  switch (model) {
    case SmartLocalModel::qwen06:
      return {"Qwen3 0.6B Q8 · Fast baseline", "Qwen/Qwen3-0.6B-GGUF", "Qwen3-0.6B-Q8_0.gguf"};
    case SmartLocalModel::qwen17:
      return {"Qwen3 1.7B Q8 · Balanced", "Qwen/Qwen3-1.7B-GGUF", "Qwen3-1.7B-Q8_0.gguf"};
    case SmartLocalModel::qwen4:
      return {"Qwen3 4B Q4 · Best quality", "Qwen/Qwen3-4B-GGUF", "Qwen3-4B-Q4_K_M.gguf"};
    case SmartLocalModel::gemma4E2B:
      break;
  }
  return {"Gemma 4 E2B Q4 · Recommended", "ggml-org/gemma-4-E2B-it-GGUF", "gemma-4-E2B-it-Q4_0.gguf"};
}

}  // namespace murmel
