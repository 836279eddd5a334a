#pragma once

#include "Foundation/Async/Clock.h"
#include "Workers/SageWorker/OnnxRuntime.h"

#include <cstdint>
#include <expected>
#include <functional>
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

/// Guesses what follows the tokens that are written so far, the one that starts an answer left out.
using TokenDraft = std::function<std::vector<std::int64_t>(std::span<const std::int64_t> written)>;

/// A model of two parts: the encoder reads a whole sentence, the decoder writes the answer token by token,
/// each time the most likely one, so that the same sentence always has the same answer.
///
/// The decoder keeps no state, and says in one pass what follows each token that it is given. So it is given
/// a guess of the whole answer, and what it would have written is taken up to the first token that differs.
/// The answer is the same as without: a guess changes how many passes it takes, not what is written.
class EncoderDecoder {
 public:
  /// The models must have the inputs and outputs "input_ids", "attention_mask" → "last_hidden_state", and
  /// "input_ids", "encoder_hidden_states", "encoder_attention_mask" → "logits". `vocabularySize` is how many
  /// tokens can be written. The error is a short reason.
  static std::expected<EncoderDecoder, std::string> create(std::unique_ptr<OnnxSession> encoder,
                                                           std::unique_ptr<OnnxSession> decoder,
                                                           std::size_t vocabularySize);

  /// A score that is this close to the best one, as a share of how far the best is above the worst, leaves
  /// the choice open while a guess follows: models with rounded numbers round by all that they are given.
  static constexpr float closeScores = 0.05F;

  /// The answer to `tokens`, without the token that starts it and the one that ends it. The errors are
  /// "model failed", "answer is too long" and "no answer in time".
  std::expected<std::vector<std::int64_t>, std::string> generate(std::span<const std::int64_t> tokens,
                                                                 std::int64_t start, std::int64_t end,
                                                                 const GenerationLimits& limits,
                                                                 const Clock& clock, const TokenDraft& draft);

 private:
  EncoderDecoder(std::unique_ptr<OnnxSession> encoder, std::unique_ptr<OnnxSession> decoder,
                 std::size_t vocabularySize);

  struct Choice {
    std::int64_t token = 0;
    bool isClose = false;
  };

  [[nodiscard]] bool fitsTokens(const OnnxOutput& logits, std::size_t count) const;
  [[nodiscard]] Choice mostLikely(const OnnxOutput& logits, std::size_t count) const;

  std::unique_ptr<OnnxSession> encoder_;
  std::unique_ptr<OnnxSession> decoder_;
  std::size_t vocabularySize_;
};

}  // namespace murmel::worker
