#include "Workers/ModelImport/WhisperConversion.h"

#include "Workers/ModelImport/NumberFormats.h"

#include <algorithm>
#include <cstring>

namespace murmel::import {

namespace {

constexpr std::int32_t magic = 0x67676d6c;
// ggml's numbers of the types of a tensor, and of a file by what most of its weights are.
constexpr std::int32_t tensorFloat32 = 0;
constexpr std::int32_t tensorFloat16 = 1;
constexpr std::int32_t tensorQ8 = 8;
constexpr std::int32_t fileFloat16 = 1;
constexpr std::int32_t fileQ8 = 2'007;

constexpr std::uint32_t headSize = 64;  // in every Whisper model
constexpr std::int32_t melBands = 80;
constexpr std::int32_t spectrumBins = 201;
constexpr std::size_t chunk = std::size_t{1} << 16U;  // numbers that are converted at once

/// What a tensor's numbers become.
enum class Shape {
  vector,  ///< 32-bit
  column,  ///< the same, written as a matrix with one column
  table,   ///< a matrix that stays exact: 32-bit
  matrix,  ///< q8_0 if asked for, else 16-bit
  kernel,  ///< 16-bit
};

class Conversion {
 public:
  Conversion(const WeightFile& weights, WeightForm form, ModelWriter& output)
      : weights_(weights), form_(form), output_(output) {}

  std::expected<void, std::string> run(const std::vector<std::string>& words) {
    header(words);
    tensor("decoder.positional_embedding", "decoder/position_encodings/encodings", Shape::table);
    tensor("encoder.positional_embedding", "encoder/position_encodings/encodings", Shape::table);
    tensor("decoder.token_embedding.weight", "decoder/embeddings/weight", Shape::matrix);
    for (int layer = 0; layer < layers("decoder"); ++layer) block("decoder", layer);
    norm("decoder.ln", "decoder/layer_norm");
    for (const char* conv : {"conv1", "conv2"}) {
      tensor(std::string("encoder.") + conv + ".weight", std::string("encoder/") + conv + "/weight",
             Shape::kernel);
      tensor(std::string("encoder.") + conv + ".bias", std::string("encoder/") + conv + "/bias",
             Shape::column);
    }
    for (int layer = 0; layer < layers("encoder"); ++layer) block("encoder", layer);
    norm("encoder.ln_post", "encoder/layer_norm");
    if (!problem_.empty()) return std::unexpected(problem_);
    return {};
  }

 private:
  void header(const std::vector<std::string>& words) {
    const auto audio = sizes("encoder/position_encodings/encodings", 2);
    const auto text = sizes("decoder/position_encodings/encodings", 2);
    const auto vocabulary = sizes("decoder/embeddings/weight", 2);
    if (!problem_.empty()) return;
    const auto number = [](std::uint32_t value) { return static_cast<std::int32_t>(value); };
    for (const auto value :
         {magic, number(vocabulary[0]), number(audio[0]), number(audio[1]), number(audio[1] / headSize),
          layers("encoder"), number(text[0]), number(text[1]), number(text[1] / headSize), layers("decoder"),
          melBands, form_ == WeightForm::q8 ? fileQ8 : fileFloat16, melBands, spectrumBins})
      output_.write(value);
    const auto filters = melFilters();
    output_.write({reinterpret_cast<const std::uint8_t*>(filters.data()), filters.size() * sizeof(float)});
    output_.write(static_cast<std::int32_t>(words.size()));
    for (const auto& word : words) {
      output_.write(static_cast<std::int32_t>(word.size()));
      output_.write(word);
    }
  }

  [[nodiscard]] int layers(const std::string& half) const {
    int count = 0;
    while (weights_.find(half + "/layer_" + std::to_string(count) + "/ffn/linear_0/weight") != nullptr)
      ++count;
    return count;
  }

  void block(const std::string& half, int layer) {
    const auto to = half + ".blocks." + std::to_string(layer) + ".";
    const auto from = half + "/layer_" + std::to_string(layer) + "/";
    norm(to + "mlp_ln", from + "ffn/layer_norm");
    linear(to + "mlp.0", from + "ffn/linear_0");
    linear(to + "mlp.2", from + "ffn/linear_1");
    norm(to + "attn_ln", from + "self_attention/layer_norm");
    // Query, key and value lie in one matrix, below each other. The key's bias is zero and left out.
    third(to + "attn.query", from + "self_attention/linear_0", 0, 3, true);
    third(to + "attn.key", from + "self_attention/linear_0", 1, 3, false);
    third(to + "attn.value", from + "self_attention/linear_0", 2, 3, true);
    linear(to + "attn.out", from + "self_attention/linear_1");
    if (half != "decoder") return;
    norm(to + "cross_attn_ln", from + "attention/layer_norm");
    linear(to + "cross_attn.query", from + "attention/linear_0");
    third(to + "cross_attn.key", from + "attention/linear_1", 0, 2, false);
    third(to + "cross_attn.value", from + "attention/linear_1", 1, 2, true);
    linear(to + "cross_attn.out", from + "attention/linear_2");
  }

  void norm(const std::string& to, const std::string& from) {
    tensor(to + ".weight", from + "/gamma", Shape::vector);
    tensor(to + ".bias", from + "/beta", Shape::vector);
  }
  void linear(const std::string& to, const std::string& from) { third(to, from, 0, 1, true); }
  void third(const std::string& to, const std::string& from, std::uint32_t index, std::uint32_t parts,
             bool hasBias) {
    tensor(to + ".weight", from + "/weight", Shape::matrix, index, parts);
    if (hasBias) tensor(to + ".bias", from + "/bias", Shape::vector, index, parts);
  }

  /// The part `index` of `parts` equal ones, counted in rows.
  void tensor(const std::string& to, const std::string& from, Shape shape, std::uint32_t index = 0,
              std::uint32_t parts = 1) {
    const bool isVector = shape == Shape::vector || shape == Shape::column;
    auto dimensions = sizes(from, isVector ? 1 : shape == Shape::kernel ? 3 : 2);
    if (!problem_.empty()) return;
    const auto whole = weights_.find(from);
    const auto count = whole->count() / parts;
    const auto type = shape == Shape::kernel    ? tensorFloat16
                      : shape != Shape::matrix  ? tensorFloat32
                      : form_ == WeightForm::q8 ? tensorQ8
                                                : tensorFloat16;
    if (dimensions[0] % parts != 0 || (type == tensorQ8 && dimensions[1] % q8BlockSize != 0))
      return fail(from);
    dimensions[0] /= parts;
    if (shape == Shape::column) dimensions.push_back(1);
    output_.write(static_cast<std::int32_t>(dimensions.size()));
    output_.write(static_cast<std::int32_t>(to.size()));
    output_.write(type);
    for (auto size = dimensions.rbegin(); size != dimensions.rend(); ++size)
      output_.write(static_cast<std::int32_t>(*size));
    output_.write(to);
    numbers(from, whole->offset + index * count * sizeof(std::uint16_t), count, type);
  }

  void numbers(const std::string& from, std::uint64_t offset, std::uint64_t count, std::int32_t type) {
    std::vector<std::uint16_t> halves;
    std::vector<float> floats;
    std::vector<std::uint8_t> bytes;
    while (count > 0) {
      halves.resize(std::min<std::uint64_t>(count, chunk));
      const auto size = halves.size() * sizeof(std::uint16_t);
      const std::span<std::uint8_t> raw(reinterpret_cast<std::uint8_t*>(halves.data()), size);
      if (!weights_.read(offset, raw)) return fail(from);
      offset += size;
      count -= halves.size();
      if (type == tensorFloat16) {
        output_.write(raw);
        continue;
      }
      floats.resize(halves.size());
      std::ranges::transform(halves, floats.begin(), fromHalf);
      bytes.clear();
      if (type == tensorQ8) {
        appendQ8(bytes, floats);
      } else {
        bytes.resize(floats.size() * sizeof(float));
        std::memcpy(bytes.data(), floats.data(), bytes.size());
      }
      output_.write(bytes);
    }
  }

  /// The shape of an array that must be there with so many dimensions.
  std::vector<std::uint32_t> sizes(const std::string& name, std::size_t rank) {
    const auto* const found = weights_.find(name);
    if (found != nullptr && found->shape.size() == rank && found->count() > 0) return found->shape;
    fail(name);
    return std::vector<std::uint32_t>(rank);
  }
  void fail(const std::string& name) {
    if (problem_.empty()) problem_ = "The weights \"" + name + "\" are missing or not as they must be.";
  }

  const WeightFile& weights_;
  WeightForm form_;
  ModelWriter& output_;
  std::string problem_;  ///< the first; nothing is written after it
};

}  // namespace

std::expected<void, std::string> writeWhisperModel(const WeightFile& weights,
                                                   const std::vector<std::string>& words, WeightForm form,
                                                   ModelWriter& output) {
  return Conversion(weights, form, output).run(words);
}

}  // namespace murmel::import
