#pragma once

#include "Workers/SpeechWorker/SpeechEngine.h"

#include <filesystem>
#include <memory>

struct whisper_context;
struct whisper_state;

namespace murmel::worker {

/// OpenAI's Whisper through whisper.cpp: a hundred languages, with punctuation and case. Where no language is
/// forced, it listens which one it is, to every recording anew: first it presumes that it is the one of the
/// recording before, and when it is not, listens again. Nothing else is carried from one recording to the
/// next.
class WhisperEngine final : public SpeechEngine {
 public:
  /// The error is a short reason.
  static std::expected<std::unique_ptr<WhisperEngine>, std::string> load(
      const std::filesystem::path& modelFile, int threads);

  std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                    const SpeechHints& hints) override;
  void forget() override;

 private:
  struct Deleter {
    void operator()(whisper_context* context) const;
    void operator()(whisper_state* state) const;
  };
  struct Attempt;
  struct Heard;

  WhisperEngine(whisper_context* context, int threads) : context_(context), threads_(threads) {}
  std::expected<std::string, std::string> recognisePiece(std::span<const std::int16_t> samples,
                                                         const SpeechHints& hints, std::size_t leastToHalve);
  std::expected<std::string, std::string> inHalves(std::span<const std::int16_t> samples,
                                                   const SpeechHints& hints);
  std::expected<std::string, std::string> inWholeWindow(std::span<const float> samples,
                                                        const std::string& language);
  std::expected<Heard, std::string> listen(std::span<const float> samples, const Attempt& attempt);
  /// Forgets what comes after that byte of the text.
  void cutAt(std::size_t byte, Heard& heard) const;
  /// The sample at which the text ends that has just been heard.
  std::optional<std::size_t> endOf(const Heard& heard, const std::string& language);
  /// The code of the language of what has just been listened to.
  std::optional<std::string> spokenLanguage();

  std::unique_ptr<whisper_context, Deleter> context_;
  std::unique_ptr<whisper_state, Deleter>
      state_;  ///< of one request; nothing when there was no memory for it
  int threads_;
  std::string presumedLanguage_ = "en";
};

}  // namespace murmel::worker
