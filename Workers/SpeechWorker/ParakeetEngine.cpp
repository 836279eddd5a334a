#include "Workers/SpeechWorker/ParakeetEngine.h"

#include "Workers/SpeechWorker/EngineModule.h"
#include "Workers/SpeechWorker/ModelReader.h"
#include "Workers/SpeechWorker/QuietCut.h"

#include <algorithm>
#include <vector>

#include <parakeet.h>

namespace murmel::worker {

namespace {

/// The model is made for 50 s; seconds. A cut within the last 20 s finds a pause nearly always.
constexpr QuietCutLimits pieces{.longest = 48, .earliest = 28, .shortestLast = 5};

constexpr float fullScale = 32'768;

}  // namespace

void ParakeetEngine::Deleter::operator()(parakeet_context* context) const {
  parakeet_free(context);
}

void ParakeetEngine::Deleter::operator()(parakeet_state* state) const {
  parakeet_free_state(state);
}

std::expected<std::unique_ptr<ParakeetEngine>, std::string> ParakeetEngine::load(
    const std::filesystem::path& modelFile, int threads) {
  // Its log quotes what was recognised. The first parameter's type has another name in each build of the
  // library.
  parakeet_log_set([](auto, const char*, void*) {}, nullptr);
  auto settings = parakeet_context_default_params();
  settings.use_gpu = false;
  ModelReader reader(modelFile);
  if (!reader.isOpen()) return std::unexpected("speech model could not be loaded");
  auto loader = reader.loader<parakeet_model_loader>();
  parakeet_context* const context = parakeet_init_with_params_no_state(&loader, settings);
  if (context == nullptr) return std::unexpected("speech model could not be loaded");
  std::unique_ptr<ParakeetEngine> engine(new ParakeetEngine(context, threads));
  engine->forget();
  if (!reader.sawWholeFile() || !engine->state_) return std::unexpected("speech model could not be loaded");
  return engine;
}

std::expected<std::string, std::string> ParakeetEngine::recognise(std::span<const std::int16_t> samples,
                                                                  const SpeechHints&) {
  if (!state_) return std::unexpected("not enough memory");
  return inPieces(samples, pieces, [&](auto piece) { return recognisePiece(piece); });
}

void ParakeetEngine::forget() {
  state_.reset();  // the spectrum, the words, and whatever was computed in between
  state_.reset(parakeet_init_state(context_.get()));
}

std::expected<std::string, std::string> ParakeetEngine::recognisePiece(
    std::span<const std::int16_t> samples) {
  std::vector<float> scaled(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) scaled[i] = static_cast<float>(samples[i]) / fullScale;
  auto settings = parakeet_full_default_params(PARAKEET_SAMPLING_GREEDY);
  settings.n_threads = threads_;
  settings.no_context = true;
  if (parakeet_full_with_state(context_.get(), state_.get(), settings, scaled.data(),
                               static_cast<int>(scaled.size())) != 0)
    return std::unexpected("speech recogniser failed");
  std::string text;
  for (int i = 0; i < parakeet_full_n_segments_from_state(state_.get()); ++i)
    text += parakeet_full_get_segment_text_from_state(state_.get(), i);
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace murmel::worker

/// What the worker looks up in this module.
extern "C" __attribute__((visibility("default"))) murmel::worker::LoadedEngine mrmLoadParakeet(
    const std::filesystem::path& modelFile, int threads) {
  return murmel::worker::ParakeetEngine::load(modelFile, threads);
}
