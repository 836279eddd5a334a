#include "Workers/SpeechWorker/WhisperEngine.h"

#include "Workers/SpeechWorker/EngineModule.h"
#include "Workers/SpeechWorker/ModelReader.h"
#include "Workers/SpeechWorker/QuietCut.h"
#include "Workers/SpeechWorker/WhisperRules.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

#include <whisper.h>

namespace murmel::worker {

namespace {

/// The model hears 30 s; what begins in the last second of them is easily lost.
constexpr QuietCutLimits pieces{.longest = 29, .earliest = 15, .shortestLast = 5};

constexpr float fullScale = 32'768;
constexpr double sampleRate = 16'000;

/// Four seconds: of less a half would be a scrap. A half is halved only when it is long.
constexpr std::size_t shortestToHalve = std::size_t{4} * 16'000;
constexpr std::size_t shortestHalfToHalve = std::size_t{8} * 16'000;
/// What two halves have more than the whole, at least, when the whole has left out a sentence.
constexpr double clearlyMore = 1.25;

/// The part of a recording, at least, that is before a repetition which is believed to be the model's own.
constexpr std::size_t leastBeforeRepetition = 4;

/// What the model tells times in: 20 ms.
constexpr std::size_t samplesPerTime = 320;
/// It likes to tell whole seconds.
constexpr std::size_t timeTolerance = 8'000;

/// Below that a language that the application does not offer is not believed: noise sounds like Welsh.
constexpr float clearMajority = 0.5F;

/// More names do not help more, and each token of the prompt costs time.
constexpr std::size_t mostHints = 10;
constexpr std::string_view hintsTitle = "Glossary: ";

/// What the application offers to choose from.
bool isOffered(const char* code) {
  using namespace std::string_view_literals;
  return knowsLanguage(speechEngine("parakeet"), code) || ("be bs sr "sv.contains(std::string(code) + " "));
}

std::string promptFrom(const std::vector<std::string>& words) {
  std::string prompt;
  for (std::size_t i = 0; i < std::min(words.size(), mostHints); ++i)
    prompt += (i == 0 ? std::string(hintsTitle) : std::string(", ")) + words[i];
  if (!prompt.empty()) prompt += '.';
  return prompt;
}

/// Between two words, as near as the model knows.
std::size_t quietPlaceNear(std::span<const std::int16_t> samples, std::size_t at) {
  const auto first = at - std::min(at, timeTolerance);
  return first + quietestSample(samples.subspan(first, std::min(2 * timeTolerance, samples.size() - first)));
}

/// Ends a text that would only go round and round until it has no more room.
void endLoop(whisper_context* context, whisper_state*, const whisper_token_data* tokens, int count,
             float* logits, void*) {
  std::string text;
  for (int i = 0; i < count; ++i) text += whisper_token_to_str(context, tokens[i].id);
  if (!isLooping(text)) return;
  const auto end = whisper_token_eot(context);
  std::fill_n(logits, whisper_n_vocab(context), -std::numeric_limits<float>::infinity());
  logits[end] = 0;
}

whisper_full_params settingsFor(int threads, int window, const char* language) {
  auto settings = whisper_full_default_params(WHISPER_SAMPLING_GREEDY);
  settings.n_threads = threads;
  settings.no_context = true;
  settings.no_timestamps = true;
  settings.single_segment = true;
  settings.suppress_blank = true;
  settings.suppress_nst =
      false;  // its marks for sounds are what is left out afterwards; without them come words
  settings.greedy.best_of = 1;
  settings.temperature = 0;
  settings.temperature_inc = 0;  // no second guesses: they are slow, and invent endings
  settings.print_special = settings.print_progress = false;
  settings.print_realtime = settings.print_timestamps = false;
  settings.audio_ctx = window;
  settings.language = language;
  return settings;
}

}  // namespace

struct WhisperEngine::Attempt {
  int window;
  int tokenLimit;  ///< 0: as many as there is room for
  const std::string& language;
  std::string prompt;
};

struct WhisperEngine::Heard {
  std::string text;
  std::vector<int> tokens;
  std::string language;  ///< that is spoken, whichever was listened for
};

void WhisperEngine::cutAt(std::size_t byte, Heard& heard) const {
  std::size_t bytes = 0;
  const auto isAfter = [&](int token) {
    return (bytes += std::string_view(whisper_token_to_str(context_.get(), token)).size()) > byte;
  };
  heard.tokens.erase(std::ranges::find_if(heard.tokens, isAfter), heard.tokens.end());
  heard.text.resize(byte);
}

void WhisperEngine::Deleter::operator()(whisper_context* context) const {
  whisper_free(context);
}

void WhisperEngine::Deleter::operator()(whisper_state* state) const {
  whisper_free_state(state);
}

std::expected<std::unique_ptr<WhisperEngine>, std::string> WhisperEngine::load(
    const std::filesystem::path& modelFile, int threads) {
  // Its log quotes what was recognised.
  whisper_log_set([](auto, const char*, void*) {}, nullptr);
  auto settings = whisper_context_default_params();
  settings.use_gpu = false;
  settings.flash_attn = false;  // with it, a shortened window sees what the recording before has left there
  ModelReader reader(modelFile);
  if (!reader.isOpen()) return std::unexpected("speech model could not be loaded");
  auto loader = reader.loader<whisper_model_loader>();
  whisper_context* const context = whisper_init_with_params_no_state(&loader, settings);
  if (context == nullptr) return std::unexpected("speech model could not be loaded");
  std::unique_ptr<WhisperEngine> engine(new WhisperEngine(context, threads));
  engine->forget();
  if (!reader.sawWholeFile() || !engine->state_) return std::unexpected("speech model could not be loaded");
  return engine;
}

std::expected<std::string, std::string> WhisperEngine::recognise(std::span<const std::int16_t> samples,
                                                                 const SpeechHints& hints) {
  if (!state_) return std::unexpected("not enough memory");
  return inPieces(samples, pieces, [&](auto piece) { return recognisePiece(piece, hints, shortestToHalve); });
}

void WhisperEngine::forget() {
  state_.reset();  // the spectrum, the words, and whatever was computed in between
  state_.reset(whisper_init_state(context_.get()));
}

std::expected<std::string, std::string> WhisperEngine::recognisePiece(std::span<const std::int16_t> samples,
                                                                      const SpeechHints& hints,
                                                                      std::size_t leastToHalve) {
  std::vector<float> scaled(samples.size());
  std::ranges::transform(samples, scaled.begin(),
                         [](auto sample) { return static_cast<float>(sample) / fullScale; });

  SpeechHints known = hints;
  const bool isForced = hints.language && whisper_lang_id(hints.language->c_str()) >= 0;
  if (!isForced) known.language = presumedLanguage_;
  Attempt attempt{whisperWindow(samples.size()), whisperTokenLimit(samples.size()), *known.language,
                  promptFrom(hints.words)};
  auto heard = listen(scaled, attempt);
  if (heard && !isForced && heard->language != *known.language) {
    presumedLanguage_ = heard->language;
    known.language = heard->language;
    heard = listen(scaled, attempt);
  }
  if (heard && heard->text.contains(hintsTitle)) {  // it reads the names aloud
    known.words.clear();
    attempt.prompt.clear();
    heard = listen(scaled, attempt);
  }
  if (!heard) return std::unexpected(heard.error());
  const auto repetition = repetitionIn(heard->text);
  const bool isLost = std::ssize(heard->tokens) > attempt.tokenLimit || repetition != std::string::npos;
  const bool isLoop = isLost && isLooping(heard->text);
  if (isLost) cutAt(isLoop ? std::min(repetition, heard->text.size()) : 0, *heard);
  auto text = withoutSoundDescriptions(heard->text);
  const WhisperOmission omission(samples);
  const auto tokens = static_cast<int>(heard->tokens.size());
  const bool mayBeHalved = samples.size() >= leastToHalve;
  if (!isLost && (text.empty() || !mayBeHalved || !omission.isPossible(tokens))) return text;
  const auto end = heard->tokens.empty() ? std::nullopt : endOf(*heard, *known.language);
  // What a loop says again was said once; what is said again just once may have been said twice, and of what
  // comes after it nothing may be missing: in two parts each is heard once.
  if (isLost && end.value_or(0) < samples.size() / leastBeforeRepetition)
    return mayBeHalved ? inHalves(samples, known) : inWholeWindow(scaled, *known.language);
  if (end && omission.isAfter(*end)) {
    // It has stopped at the end of a sentence although somebody speaks on.
    const auto rest = inPieces(samples.subspan(quietPlaceNear(samples, *end)), pieces,
                               [&](auto piece) { return recognisePiece(piece, known, shortestHalfToHalve); });
    if (!rest || text.empty()) return rest;
    return rest->empty() ? text : text + ' ' + *rest;
  }
  if (!mayBeHalved || !omission.isInside(tokens)) return text;
  // It has written once what was said twice; or somebody speaks very slowly, or that is no speech.
  const auto both = inHalves(samples, known);
  const bool isMore =
      both && static_cast<double>(both->size()) >= clearlyMore * static_cast<double>(text.size());
  return isMore ? both : text;
}

std::expected<std::string, std::string> WhisperEngine::inWholeWindow(std::span<const float> samples,
                                                                     const std::string& language) {
  // In a short piece the whole window finds the way nearly always.
  auto heard = listen(samples, {.window = 0, .tokenLimit = 0, .language = language, .prompt = {}});
  if (!heard) return std::unexpected(heard.error());
  if (std::ssize(heard->tokens) >= whisperTokenLimit(static_cast<std::size_t>(-1)))
    heard->text.resize(std::min(heard->text.size(), repetitionIn(heard->text)));
  return withoutSoundDescriptions(heard->text);
}

std::expected<std::string, std::string> WhisperEngine::inHalves(std::span<const std::int16_t> samples,
                                                                const SpeechHints& hints) {
  const auto seconds = static_cast<double>(samples.size()) / sampleRate;
  const QuietCutLimits halves{
      .longest = 0.7 * seconds, .earliest = 0.3 * seconds, .shortestLast = 0.3 * seconds};
  return inPieces(samples, halves,
                  [&](auto half) { return recognisePiece(half, hints, shortestHalfToHalve); });
}

std::expected<WhisperEngine::Heard, std::string> WhisperEngine::listen(std::span<const float> samples,
                                                                       const Attempt& attempt) {
  auto settings = settingsFor(threads_, attempt.window, attempt.language.c_str());
  settings.max_tokens = attempt.tokenLimit;
  if (!attempt.prompt.empty()) settings.initial_prompt = attempt.prompt.c_str();
  bool isEncoded = false;
  settings.encoder_begin_callback_user_data = &isEncoded;
  settings.encoder_begin_callback = [](whisper_context*, whisper_state*, void* encoded) {
    return *static_cast<bool*>(encoded) = true;
  };
  if (attempt.tokenLimit > 0) settings.logits_filter_callback = endLoop;
  if (whisper_full_with_state(context_.get(), state_.get(), settings, samples.data(),
                              static_cast<int>(samples.size())) != 0)
    return std::unexpected("speech recogniser failed");
  Heard heard;
  for (int i = 0; i < whisper_full_n_segments_from_state(state_.get()); ++i) {
    heard.text += whisper_full_get_segment_text_from_state(state_.get(), i);
    for (int token = 0; token < whisper_full_n_tokens_from_state(state_.get(), i); ++token)
      heard.tokens.push_back(whisper_full_get_token_id_from_state(state_.get(), i, token));
  }
  heard.language = isEncoded ? spokenLanguage().value_or(attempt.language) : attempt.language;
  return heard;
}

std::optional<std::size_t> WhisperEngine::endOf(const Heard& heard, const std::string& language) {
  // The encoder's work is still there: read with the text, as if it had been written with times, the decoder
  // tells in one step which time comes next.
  auto* const context = context_.get();
  const auto firstTime = whisper_token_beg(context);
  std::vector<int> text{whisper_token_sot(context),
                        whisper_token_lang(context, whisper_lang_id(language.c_str())),
                        whisper_token_transcribe(context), firstTime};
  std::ranges::copy_if(heard.tokens, std::back_inserter(text),
                       [&](int token) { return token < whisper_token_eot(context); });
  if (whisper_decode_with_state(context, state_.get(), text.data(), static_cast<int>(text.size()), 0,
                                threads_) != 0)
    return std::nullopt;
  const auto words = static_cast<std::size_t>(whisper_n_vocab(context));
  const float* const logits = whisper_get_logits_from_state(state_.get()) + (text.size() - 1) * words;
  const std::span<const float> times(logits + firstTime, words - static_cast<std::size_t>(firstTime));
  // It likes whole seconds too much for the likeliest to be the best: half of its belief is before this one.
  const float highest = std::ranges::max(times);
  std::vector<double> shares;
  double sum = 0;
  for (const float time : times) shares.push_back(sum += std::exp(time - highest));
  return static_cast<std::size_t>(std::ranges::lower_bound(shares, sum / 2) - shares.begin()) *
         samplesPerTime;
}

std::optional<std::string> WhisperEngine::spokenLanguage() {
  // The encoder's work is still there: the decoder tells the language in one step, as the first that it says.
  const auto begin = whisper_token_sot(context_.get());
  if (whisper_decode_with_state(context_.get(), state_.get(), &begin, 1, 0, threads_) != 0)
    return std::nullopt;
  const float* const logits = whisper_get_logits_from_state(state_.get());
  std::vector<float> shares;
  for (int id = 0; id <= whisper_lang_max_id(); ++id)
    shares.push_back(logits[whisper_token_lang(context_.get(), id)]);
  const float highest = std::ranges::max(shares);
  float sum = 0;
  for (auto& share : shares) sum += share = std::exp(share - highest);
  for (auto& share : shares) share /= sum;
  const auto likeliest = std::ranges::max_element(shares);
  int best = static_cast<int>(likeliest - shares.begin());
  if (*likeliest < clearMajority && !isOffered(whisper_lang_str(best))) {
    for (int id = 0; id <= whisper_lang_max_id(); ++id) {
      const auto share = [&](int language) { return shares[static_cast<std::size_t>(language)]; };
      const bool isBetter = !isOffered(whisper_lang_str(best)) || share(id) > share(best);
      if (isOffered(whisper_lang_str(id)) && isBetter) best = id;
    }
  }
  return whisper_lang_str(best);
}

}  // namespace murmel::worker

/// What the worker looks up in this module.
extern "C" __attribute__((visibility("default"))) murmel::worker::LoadedEngine mrmLoadWhisper(
    const std::filesystem::path& modelFile, int threads) {
  return murmel::worker::WhisperEngine::load(modelFile, threads);
}
