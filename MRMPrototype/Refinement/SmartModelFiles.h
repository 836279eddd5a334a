#pragma once

#include "Refinement/SmartLocalModel.h"

#include <filesystem>
#include <optional>

namespace murmel {

/// What of the optional refinement models is installed and verified. Answers at once, from what is known: no
/// file is read through. Main thread.
class SmartModelFiles {
 public:
  virtual ~SmartModelFiles() = default;
  /// The inference server's executable; nothing unless the runtime is installed.
  [[nodiscard]] virtual std::optional<std::filesystem::path> runtimeExecutable() const = 0;
  /// The model's GGUF file; nothing unless it is installed.
  [[nodiscard]] virtual std::optional<std::filesystem::path> modelFile(SmartLocalModel model) const = 0;
};

}  // namespace murmel
