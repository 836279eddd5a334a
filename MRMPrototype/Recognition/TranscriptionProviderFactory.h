#pragma once

#include "Product/MRMError.h"
#include "Recognition/TranscriptionProvider.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// Makes the recogniser for the active speech model. Main thread.
class TranscriptionProviderFactory {
 public:
  virtual ~TranscriptionProviderFactory() = default;
  /// The recogniser starts to load its model at once; `warmupCompletion` is called on the main thread with
  /// true when it is ready, false when that failed.
  virtual Result<std::shared_ptr<TranscriptionProvider>> make(std::function<void(bool)> warmupCompletion) = 0;
  /// The recogniser for audio that this one cannot take, if there is another that knows the language.
  virtual std::shared_ptr<TranscriptionProvider> makeNext(const std::optional<std::string>& /*language*/) {
    return nullptr;
  }
};

}  // namespace murmel
