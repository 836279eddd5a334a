#include "Workers/SageWorker/SageModel.h"

#include "Foundation/Text/Text.h"
#include "Workers/SageWorker/AnswerDraft.h"

#include <fstream>
#include <optional>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

namespace murmel::worker {

namespace {

/// Four times the largest file of the model.
constexpr std::uintmax_t largestFile = std::uintmax_t{1} << 30;

std::optional<std::string> contents(const std::filesystem::path& path) {
  std::error_code failure;
  const auto size = std::filesystem::file_size(path, failure);
  if (failure || size > largestFile) return std::nullopt;
  std::string bytes(size, '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) return std::nullopt;
  return bytes;
}

std::expected<std::unique_ptr<OnnxSession>, std::string> session(OnnxRuntime& runtime,
                                                                 const std::filesystem::path& path) {
  const auto bytes = contents(path);
  if (!bytes) return std::unexpected("model file is missing");
  return runtime.makeSession(std::as_bytes(std::span(*bytes)));
}

}  // namespace

std::expected<std::unique_ptr<SageModel>, std::string> SageModel::load(OnnxRuntime& runtime,
                                                                       const std::filesystem::path& folder,
                                                                       const Clock& clock) {
  const auto vocabulary = contents(folder / "vocab.json");
  const auto merges = contents(folder / "merges.txt");
  if (!vocabulary || !merges) return std::unexpected("model file is missing");
  auto tokens = ByteLevelBPE::create(*vocabulary, *merges);
  if (!tokens) return std::unexpected(tokens.error());
  // Models of this family begin an answer with what fills up a short one.
  const auto start = tokens->token("<pad>");
  const auto end = tokens->token("</s>");
  if (!start || !end) return std::unexpected("model vocabulary is not understood");
  auto encoder = session(runtime, folder / "encoder_model_quantized.onnx");
  if (!encoder) return std::unexpected(encoder.error());
  auto decoder = session(runtime, folder / "decoder_model_quantized.onnx");
  if (!decoder) return std::unexpected(decoder.error());
  auto model = EncoderDecoder::create(*std::move(encoder), *std::move(decoder), tokens->size());
  if (!model) return std::unexpected(model.error());
  return std::unique_ptr<SageModel>(
      new SageModel(*std::move(tokens), *std::move(model), *start, *end, clock));
}

SageModel::SageModel(ByteLevelBPE tokens, EncoderDecoder model, std::int64_t start, std::int64_t end,
                     const Clock& clock)
    : tokens_(std::move(tokens)), model_(std::move(model)), start_(start), end_(end), clock_(clock) {}

std::expected<std::string, std::string> SageModel::correct(std::string_view text, Duration limit) {
  const auto deadline = clock_.now() + limit;
  const auto question = tokens_.encode(text::trimmed(text));
  if (!question) return std::unexpected("text cannot be encoded");
  if (question->size() > mostTokens) return std::unexpected("text is too long");
  if (question->empty()) return std::string();
  // Punctuation makes a text longer, but never twice as long; a model that goes on is lost.
  constexpr std::size_t spare = 8;
  const auto most = question->size() + question->size() / 2 + spare;
  const AnswerDraft draft(tokens_, text::trimmed(text), end_);
  const auto answer =
      model_.generate(*question, start_, end_, {most, deadline}, clock_,
                      [&draft](std::span<const std::int64_t> written) { return draft.after(written); });
  if (!answer) return std::unexpected(answer.error());
  return tokens_.decode(*answer);
}

}  // namespace murmel::worker
