#pragma once

#include "Foundation/Registration.h"

#include <filesystem>
#include <functional>

namespace murmel {

/// How far the required speech model is.
enum class SpeechModelState {
  missing,    ///< not there, incomplete, or it failed verification
  verifying,  ///< there; its contents are being checked
  ready,      ///< installed and verified
};

/// The store of the installed speech model. Main thread, except `verifyArtifacts`.
class SpeechModelStore {
 public:
  virtual ~SpeechModelStore() = default;

  [[nodiscard]] virtual SpeechModelState state() const = 0;
  /// The folder of the active speech model, whether or not it is complete.
  [[nodiscard]] virtual std::filesystem::path activeModelURL() const = 0;
  /// Whether the required files lie in `folder`. Looks at names and sizes only; fast.
  [[nodiscard]] virtual bool requiredItemsPresent(const std::filesystem::path& folder) const = 0;
  /// Whether the contents of `folder` are what they must be. May read every byte; any thread.
  [[nodiscard]] virtual bool verifyArtifacts(const std::filesystem::path& folder) const = 0;
  /// Looks again at what is installed and verifies it; `onInventoryChange` follows when the answer is
  /// another.
  virtual void validate() = 0;
  /// Tells when what is installed, or its state, has changed.
  [[nodiscard]] virtual Registration onInventoryChange(std::function<void()> handler) = 0;
};

}  // namespace murmel
