#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace murmel::worker {

/// A dense tensor as a model takes or gives it. `shape` multiplies to the number of elements.
struct OnnxInput {
  const char* name = nullptr;
  std::variant<std::span<const std::int64_t>, std::span<const float>> data;
  std::span<const std::int64_t> shape;
};

/// A tensor that a model has given; the owner keeps its numbers where they are, because they are many.
struct OnnxOutput {
  std::shared_ptr<const void> owner;
  std::span<const float> data;
  std::vector<std::int64_t> shape;
};

/// A model that is loaded. Its runtime must outlive it. One thread at a time.
class OnnxSession {
 public:
  virtual ~OnnxSession() = default;
  [[nodiscard]] virtual const std::vector<std::string>& inputNames() const = 0;
  [[nodiscard]] virtual const std::vector<std::string>& outputNames() const = 0;
  /// The error is a short reason that quotes nothing of the input.
  virtual std::expected<OnnxOutput, std::string> run(std::span<const OnnxInput> inputs,
                                                     const char* outputName) = 0;
};

/// The ONNX Runtime, from its shared library at run time: the function table that it hands out only ever
/// grows at its end, so the places that are used here are the same in every version.
class OnnxRuntime {
 public:
  virtual ~OnnxRuntime() = default;

  /// Loads the library and starts its environment, which looks at the machine's processors: before the doors
  /// are closed. The error is a short reason.
  static std::expected<std::unique_ptr<OnnxRuntime>, std::string> load(const std::filesystem::path& library);

  /// Loads a model from the content of its file. It may not refer to other files.
  virtual std::expected<std::unique_ptr<OnnxSession>, std::string> makeSession(
      std::span<const std::byte> model) = 0;
};

}  // namespace murmel::worker
