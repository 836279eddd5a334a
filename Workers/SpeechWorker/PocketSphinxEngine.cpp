#include "Workers/SpeechWorker/PocketSphinxEngine.h"

#include "Foundation/Text/Ascii.h"
#include "Workers/SpeechWorker/Pronunciation.h"
#include "Workers/SpeechWorker/QuietCut.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

namespace murmel::worker {

namespace {

// Language weight and word insertion penalty with the fewest wrong words on natural speech.
constexpr const char* languageWeight = "5.5";
constexpr const char* wordInsertionPenalty = "0.2";

/// Each word that is added makes every other a little less likely.
constexpr std::size_t mostLearned = 100;

}  // namespace

void PocketSphinxEngine::Deleter::operator()(ps_decoder_s* decoder) const {
  ps_free(decoder);
}

std::expected<std::unique_ptr<PocketSphinxEngine>, std::string> PocketSphinxEngine::load(
    const std::filesystem::path& modelDirectory) {
  err_set_logfp(nullptr);  // its log quotes what was recognised
  const auto acoustic = (modelDirectory / "en-us").string();
  const auto language = (modelDirectory / "en-us.lm.bin").string();
  const auto dictionary = (modelDirectory / "cmudict-en-us.dict").string();
  cmd_ln_t* const settings = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", acoustic.c_str(), "-lm",
                                         language.c_str(), "-dict", dictionary.c_str(), "-lw", languageWeight,
                                         "-wip", wordInsertionPenalty, "-logfn", "/dev/null", nullptr);
  if (settings == nullptr) return std::unexpected("speech recogniser refused its settings");
  ps_decoder_t* const decoder = ps_init(settings);
  cmd_ln_free_r(settings);  // the decoder keeps its own reference
  if (decoder == nullptr) return std::unexpected("speech model could not be loaded");
  return std::unique_ptr<PocketSphinxEngine>(new PocketSphinxEngine(decoder));
}

std::expected<std::string, std::string> PocketSphinxEngine::recognise(std::span<const std::int16_t> samples,
                                                                      const SpeechHints& hints) {
  learn(hints.words);
  return inPieces(samples, {}, [&](auto piece) { return recognisePiece(piece); });
}

void PocketSphinxEngine::forget() {
  // A little silence takes the place of the last sound; the words go when an utterance begins. As a whole, as
  // all that is recognised: what is estimated on the way would change how the next recording is understood.
  constexpr std::array<std::int16_t, 1'600> silence{};
  constexpr int noSearch = TRUE;
  constexpr int fullUtterance = TRUE;
  if (ps_start_utt(decoder_.get()) < 0) return;
  ps_process_raw(decoder_.get(), silence.data(), silence.size(), noSearch, fullUtterance);
  ps_end_utt(decoder_.get());
}

void PocketSphinxEngine::learn(const std::vector<std::string>& names) {
  const auto inDictionary = [this](const std::string& word) -> std::optional<std::string> {
    const std::unique_ptr<char, decltype(&std::free)> sounds(ps_lookup_word(decoder_.get(), word.c_str()),
                                                             &std::free);
    return sounds ? std::optional<std::string>(sounds.get()) : std::nullopt;
  };
  for (const auto& name : names) {
    std::istringstream words(name);
    for (std::string word; words >> word && learned_.size() < mostLearned;) {
      if (!learned_.insert(word).second) continue;
      if (inDictionary(text::asciiLowercased(word))) continue;
      constexpr int atOnce = TRUE;
      if (const auto sounds = guessedPronunciation(word, inDictionary))
        ps_add_word(decoder_.get(), word.c_str(), sounds->c_str(), atOnce);
    }
  }
}

std::expected<std::string, std::string> PocketSphinxEngine::recognisePiece(
    std::span<const std::int16_t> samples) {
  // The whole piece at once: the mean of its spectrum is subtracted before the search, not estimated on the
  // way.
  constexpr int noSearch = FALSE;
  constexpr int fullUtterance = TRUE;
  if (ps_start_stream(decoder_.get()) < 0 || ps_start_utt(decoder_.get()) < 0)
    return std::unexpected("speech recogniser could not begin");
  const int processed =
      ps_process_raw(decoder_.get(), samples.data(), samples.size(), noSearch, fullUtterance);
  if (ps_end_utt(decoder_.get()) < 0 || processed < 0) return std::unexpected("speech recogniser failed");
  const char* const words = ps_get_hyp(decoder_.get(), nullptr);
  return words == nullptr ? "" : words;
}

}  // namespace murmel::worker
