#include "Workers/SageWorker/EncoderDecoder.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace murmel::worker {

namespace {

constexpr const char* inputName = "input_ids";
constexpr const char* maskName = "attention_mask";
constexpr const char* hiddenName = "last_hidden_state";
constexpr const char* encoderHiddenName = "encoder_hidden_states";
constexpr const char* encoderMaskName = "encoder_attention_mask";
constexpr const char* logitsName = "logits";

/// Whether `session` takes exactly these inputs and has that output among others.
bool fits(const OnnxSession& session, std::vector<std::string> inputs, std::string_view output) {
  return std::ranges::is_permutation(session.inputNames(), inputs) &&
         std::ranges::find(session.outputNames(), output) != session.outputNames().end();
}

std::int64_t length(std::span<const std::int64_t> tokens) {
  return static_cast<std::int64_t>(tokens.size());
}

}  // namespace

std::expected<EncoderDecoder, std::string> EncoderDecoder::create(std::unique_ptr<OnnxSession> encoder,
                                                                  std::unique_ptr<OnnxSession> decoder,
                                                                  std::size_t vocabularySize) {
  if (!fits(*encoder, {inputName, maskName}, hiddenName) ||
      !fits(*decoder, {inputName, encoderHiddenName, encoderMaskName}, logitsName)) {
    return std::unexpected("model is of another kind");
  }
  return EncoderDecoder(std::move(encoder), std::move(decoder), vocabularySize);
}

EncoderDecoder::EncoderDecoder(std::unique_ptr<OnnxSession> encoder, std::unique_ptr<OnnxSession> decoder,
                               std::size_t vocabularySize)
    : encoder_(std::move(encoder)), decoder_(std::move(decoder)), vocabularySize_(vocabularySize) {}

std::expected<std::vector<std::int64_t>, std::string> EncoderDecoder::generate(
    std::span<const std::int64_t> tokens, std::int64_t start, std::int64_t end,
    const GenerationLimits& limits, const Clock& clock, const TokenDraft& draft) {
  const std::vector<std::int64_t> mask(tokens.size(), 1);
  const std::array<std::int64_t, 2> shape{1, length(tokens)};
  const std::array<OnnxInput, 2> question{OnnxInput{inputName, tokens, shape},
                                          OnnxInput{maskName, std::span<const std::int64_t>(mask), shape}};
  auto hidden = encoder_->run(question, hiddenName);
  if (!hidden) return std::unexpected(hidden.error());
  constexpr std::size_t hiddenDimensions = 3;
  if (hidden->shape.size() != hiddenDimensions || hidden->shape[0] != 1 || hidden->shape[1] != shape[1])
    return std::unexpected("model failed");

  std::vector<std::int64_t> written{start};
  bool mayGuess = true;
  while (true) {
    if (clock.now() >= limits.deadline) return std::unexpected("no answer in time");
    const auto known = written.size();
    auto given = written;
    if (draft && std::exchange(mayGuess, true)) {
      const auto guess = draft(std::span(written).subspan(1));
      const auto room = limits.tokens + 1 - std::min(limits.tokens + 1, known);
      given.insert(given.end(), guess.begin(),
                   guess.begin() + static_cast<std::ptrdiff_t>(std::min(guess.size(), room)));
    }
    const std::array<std::int64_t, 2> givenShape{1, length(given)};
    const std::array<OnnxInput, 3> inputs{
        OnnxInput{inputName, std::span<const std::int64_t>(given), givenShape},
        OnnxInput{encoderHiddenName, hidden->data, hidden->shape},
        OnnxInput{encoderMaskName, std::span<const std::int64_t>(mask), shape}};
    const auto logits = decoder_->run(inputs, logitsName);
    if (!logits) return std::unexpected(logits.error());
    if (!fitsTokens(*logits, given.size())) return std::unexpected("model failed");
    for (auto count = known; count <= given.size(); ++count) {
      const bool isGuessed = count < given.size();
      const auto next = mostLikely(*logits, count);
      if (isGuessed && next.isClose) {
        mayGuess = false;
        break;
      }
      if (next.token == end) return std::vector(written.begin() + 1, written.end());
      if (written.size() > limits.tokens) return std::unexpected("answer is too long");
      written.push_back(next.token);
      if (isGuessed && given[count] != next.token) break;
    }
  }
}

bool EncoderDecoder::fitsTokens(const OnnxOutput& logits, std::size_t count) const {
  constexpr std::size_t logitsDimensions = 3;
  return logits.shape.size() == logitsDimensions && logits.shape[0] == 1 &&
         logits.shape[1] == static_cast<std::int64_t>(count) && logits.shape[2] > 0 && vocabularySize_ > 0;
}

/// What follows the first `count` tokens of those that `logits` were made of.
EncoderDecoder::Choice EncoderDecoder::mostLikely(const OnnxOutput& logits, std::size_t count) const {
  const auto width = static_cast<std::size_t>(logits.shape[2]);
  // A model may have more places than its vocabulary has tokens, for the machine's convenience.
  const auto row = logits.data.subspan((count - 1) * width, std::min(width, vocabularySize_));
  const auto best = std::ranges::max_element(row);
  float second = std::numeric_limits<float>::lowest();
  float worst = *best;
  for (auto score = row.begin(); score != row.end(); ++score) {
    if (score != best) second = std::max(second, *score);
    worst = std::min(worst, *score);
  }
  return {best - row.begin(), *best - second < closeScores * (*best - worst)};
}

}  // namespace murmel::worker
