#pragma once

#include "Audio/CapturedAudio.h"
#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"
#include "Product/MRMError.h"

#include <optional>
#include <string>

namespace murmel {

struct TranscriptionResult {
  SpokenText text;
  std::string providerID;  ///< which recogniser produced it
  int unrecognizedParts =
      0;  ///< pieces of audio that stayed unrecognised; counted in by the dictation session
};

/// A speech recogniser. Main thread; requests are answered one at a time, in order.
class TranscriptionProvider {
 public:
  virtual ~TranscriptionProvider() = default;
  [[nodiscard]] virtual const std::string& providerID() const = 0;
  /// Makes it ready to answer in whatever state it was left; cheap when it is ready. Tells whether it is.
  virtual Task<Result<void>> prepare() { co_return Result<void>(); }
  /// `language` is a two-letter code that forces the language, if any. Tried once: who holds the audio knows
  /// whether another try is worth it.
  virtual Task<Result<TranscriptionResult>> transcribe(CapturedAudio audio,
                                                       std::optional<std::string> language) = 0;
};

}  // namespace murmel
