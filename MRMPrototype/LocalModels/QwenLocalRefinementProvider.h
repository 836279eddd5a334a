#pragma once

#include "LocalModels/QwenPersistentServer.h"
#include "Refinement/RefinementProvider.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Formats with the local language model. What the model says is only ever looked at for punctuation and
/// capitals. Errors: `smartModelMissing` when its files are not installed, `smartRefinementFailed` for
/// everything else.
class QwenLocalRefinementProvider final : public RefinementProvider {
 public:
  /// `prewarmed` starts the server at once, so that the first dictation does not wait for the model.
  QwenLocalRefinementProvider(std::shared_ptr<QwenPersistentServer> server, bool prewarmed);

  [[nodiscard]] const std::string& providerID() const override { return server_->providerID(); }
  Task<Result<SpokenText>> refine(SpokenText text) override;

  /// The recognised text with the answer's formatting; nothing when it is not shown to be safe. Pure;
  /// done where the answer is waited for, not on the main thread.
  static std::optional<std::string> projected(std::string_view recognized, std::string_view answer);

 private:
  static Task<Result<SpokenText>> run(std::shared_ptr<QwenPersistentServer> server, SpokenText text);

  std::shared_ptr<QwenPersistentServer> server_;
};

}  // namespace murmel
