#pragma once

#include "Foundation/Async/Clock.h"
#include "Workers/SageWorker/OnnxRuntime.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace murmel::worker {

/// How long an answer may become, and how long it may take.
struct GenerationLimits {
  std::size_t tokens = 0;
  Instant deadline;
};

/// A model of two parts: the encoder reads a whole sentence, the decoder writes the answer token by token,
/// each time the most likely one, so that the same sentence always has the same answer.
class EncoderDecoder {
 public:
  /// The models must have the inputs and outputs "input_ids", "attention_mask" → "last_hidden_state", and
  /// "input_ids", "encoder_hidden_states", "encoder_attention_mask" → "logits". `vocabularySize` is how many
  /// tokens can be written. The error is a short reason.
  static std::expected<EncoderDecoder, std::string> create(std::unique_ptr<OnnxSession> encoder,
                                                           std::unique_ptr<OnnxSession> decoder,
                                                           std::size_t vocabularySize);

  /// The answer to `tokens`, without the token that starts it and the one that ends it. The errors are
  /// "model failed", "answer is too long" and "no answer in time".
  std::expected<std::vector<std::int64_t>, std::string> generate(std::span<const std::int64_t> tokens,
                                                                 std::int64_t start, std::int64_t end,
                                                                 const GenerationLimits& limits,
                                                                 const Clock& clock);

 private:
  EncoderDecoder(std::unique_ptr<OnnxSession> encoder, std::unique_ptr<OnnxSession> decoder,
                 std::size_t vocabularySize);

  [[nodiscard]] std::expected<std::int64_t, std::string> mostLikely(const OnnxOutput& logits,
                                                                    std::size_t position) const;

  std::unique_ptr<OnnxSession> encoder_;
  std::unique_ptr<OnnxSession> decoder_;
  std::size_t vocabularySize_;
};

}  // namespace murmel::worker
