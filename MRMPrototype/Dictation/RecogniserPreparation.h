#pragma once

#include "Dictation/RuntimePriority.h"
#include "Foundation/Registration.h"
#include "Models/SpeechModelStore.h"
#include "Product/MRMError.h"
#include "Recognition/TranscriptionProvider.h"
#include "Recognition/TranscriptionProviderFactory.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace murmel {

/// Keeps a recogniser ready for the speech model that is installed. Main thread.
class RecogniserPreparation {
 public:
  enum class Outcome {
    ready,      ///< there is a recogniser
    verifying,  ///< the model is being verified; the store will tell
    missing,    ///< the model is not installed
    failed,     ///< the model is there, but no recogniser could be made: see `failure`
  };

  RecogniserPreparation(SpeechModelStore& models, TranscriptionProviderFactory& factory,
                        RuntimePriority& priority);

  /// Makes a recogniser when the model is installed and verified and there is none for it yet; its warm-up
  /// holds the runtime priority.
  Outcome prepareProviderIfPossible();

  /// Nothing while no recogniser is ready. A running dictation keeps the one that it began with.
  [[nodiscard]] std::shared_ptr<TranscriptionProvider> provider() const { return provider_; }
  [[nodiscard]] const std::optional<MRMError>& failure() const { return failure_; }

 private:
  SpeechModelStore& models_;
  TranscriptionProviderFactory& factory_;
  RuntimePriority& priority_;
  std::filesystem::path preparedModel_;
  std::optional<MRMError> failure_;
  /// Held while a warm-up runs; shared with its completion, which may come after this object has gone.
  std::shared_ptr<Registration> warmupPriority_;
  std::shared_ptr<TranscriptionProvider> provider_;
};

}  // namespace murmel
