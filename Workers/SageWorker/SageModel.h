#pragma once

#include "Foundation/Async/Clock.h"
#include "Workers/SageWorker/ByteLevelBPE.h"
#include "Workers/SageWorker/EncoderDecoder.h"
#include "Workers/SageWorker/OnnxRuntime.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace murmel::worker {

/// What turns a text into its corrected form, whatever its model.
class TextCorrector {
 public:
  virtual ~TextCorrector() = default;
  /// The error is a short reason for the user. UTF-8.
  virtual std::expected<std::string, std::string> correct(std::string_view text, Duration limit) = 0;
};

/// The corrector for Russian: an encoder and a decoder with a byte-level vocabulary.
class SageModel final : public TextCorrector {
 public:
  /// Longer texts are refused: the decoder reads everything again for each token that it writes.
  static constexpr std::size_t mostTokens = 512;

  /// Loads "encoder_model_quantized.onnx", "decoder_model_quantized.onnx", "vocab.json" and "merges.txt" of
  /// the folder. `runtime` and `clock` must outlive the model. The error is a short reason.
  static std::expected<std::unique_ptr<SageModel>, std::string> load(OnnxRuntime& runtime,
                                                                     const std::filesystem::path& folder,
                                                                     const Clock& clock);

  std::expected<std::string, std::string> correct(std::string_view text, Duration limit) override;

 private:
  SageModel(ByteLevelBPE tokens, EncoderDecoder model, std::int64_t start, std::int64_t end,
            const Clock& clock);

  ByteLevelBPE tokens_;
  EncoderDecoder model_;
  std::int64_t start_;
  std::int64_t end_;
  const Clock& clock_;
};

}  // namespace murmel::worker
