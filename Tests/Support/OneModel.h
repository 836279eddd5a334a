#pragma once

#include "LocalModels/SmartModelFiles.h"

#include <filesystem>
#include <optional>
#include <utility>

namespace murmel {

/// One model that is installed, in two names: the stub's script.
class OneModel final : public SmartModelFiles {
 public:
  explicit OneModel(std::filesystem::path file) : model(std::move(file)) {}
  [[nodiscard]] std::optional<std::filesystem::path> modelFile(SmartLocalModel asked) const override {
    if (asked != SmartLocalModel::qwen06 && asked != SmartLocalModel::qwen17) return std::nullopt;
    return model;
  }
  [[nodiscard]] std::optional<std::filesystem::path> russianModelDirectory() const override { return {}; }

  std::filesystem::path model;
};

}  // namespace murmel
