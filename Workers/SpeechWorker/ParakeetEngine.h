#pragma once

#include "Workers/SpeechWorker/SpeechEngine.h"

#include <filesystem>
#include <memory>

struct parakeet_context;
struct parakeet_state;

namespace murmel::worker {

/// NVIDIA's Parakeet TDT through ggml: 25 European languages, with punctuation and case. It finds the
/// language by itself, so the hint is not used. Long recordings are recognised in pieces: its memory grows
/// with the square of the length.
class ParakeetEngine final : public SpeechEngine {
 public:
  /// The error is a short reason.
  static std::expected<std::unique_ptr<ParakeetEngine>, std::string> load(
      const std::filesystem::path& modelFile, int threads);

  std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                    const SpeechHints& hints) override;
  void forget() override;

 private:
  struct Deleter {
    void operator()(parakeet_context* context) const;
    void operator()(parakeet_state* state) const;
  };
  ParakeetEngine(parakeet_context* context, int threads) : context_(context), threads_(threads) {}
  std::expected<std::string, std::string> recognisePiece(std::span<const std::int16_t> samples);

  std::unique_ptr<parakeet_context, Deleter> context_;
  std::unique_ptr<parakeet_state, Deleter>
      state_;  ///< of one request; nothing when there was no memory for it
  int threads_;
};

}  // namespace murmel::worker
