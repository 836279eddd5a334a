#pragma once

#include "Refinement/SmartLocalModel.h"

#include <filesystem>
#include <optional>

namespace murmel {

/// Which of the optional refinement models are installed and verified. Answers at once, from what is known:
/// no file is read through. Main thread.
class SmartModelFiles {
 public:
  virtual ~SmartModelFiles() = default;
  /// The model's GGUF file; nothing unless it is installed and verified.
  [[nodiscard]] virtual std::optional<std::filesystem::path> modelFile(SmartLocalModel model) const = 0;
  /// The folder of the Russian corrector's model; nothing unless all of its files are installed and verified.
  [[nodiscard]] virtual std::optional<std::filesystem::path> russianModelDirectory() const = 0;
};

}  // namespace murmel
