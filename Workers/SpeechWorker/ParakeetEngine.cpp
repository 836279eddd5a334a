#include "Workers/SpeechWorker/ParakeetEngine.h"

#include "Workers/SpeechWorker/ParakeetModule.h"
#include "Workers/SpeechWorker/QuietCut.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <vector>

#include <parakeet.h>

namespace murmel::worker {

namespace {

/// The model is made for 50 s; seconds. A cut within the last 20 s finds a pause nearly always.
constexpr QuietCutLimits pieces{.longest = 48, .earliest = 28, .shortestLast = 5};

/// Below a tenth of a second there is no word, and the spectrum wants a few frames.
constexpr std::size_t fewestSamples = 1'600;

constexpr float fullScale = 32'768;

/// Reads a model file for the library, which does not look whether a read succeeded.
class ModelReader {
 public:
  explicit ModelReader(const std::filesystem::path& file) : file_(std::fopen(file.c_str(), "rbe")) {}
  ~ModelReader() {
    if (file_ != nullptr) std::fclose(file_);
  }
  ModelReader(const ModelReader&) = delete;
  ModelReader& operator=(const ModelReader&) = delete;

  [[nodiscard]] bool isOpen() const { return file_ != nullptr; }
  /// Whether what was read is a model to its end: nothing was missing in the middle, and there were weights.
  [[nodiscard]] bool sawWholeModel() const {
    return !isCut_ && readsPastEnd_ == 3 && reads_ > readsBeforeWeights();
  }

  parakeet_model_loader loader() {
    return {.context = this,
            .read = [](void* self, void* output,
                       std::size_t size) { return static_cast<ModelReader*>(self)->read(output, size); },
            .eof = [](void* self) { return std::feof(static_cast<ModelReader*>(self)->file_) != 0; },
            .close = [](void*) {}};
  }

 private:
  std::size_t read(void* output, std::size_t size) {
    const auto count = std::fread(output, 1, size, file_);
    if (count == size) {
      if (++reads_ == 2 && size == sizeof words_)
        std::copy_n(static_cast<const char*>(output), size, reinterpret_cast<char*>(&words_));
      return count;
    }
    // The end is found by asking for the three numbers of one more tensor; whatever else is missing was cut
    // off.
    if (count > 0 || size != sizeof(std::int32_t)) isCut_ = true;
    ++readsPastEnd_;
    std::fill_n(static_cast<char*>(output) + count, size - count, '\0');
    return count;
  }

  /// Magic number, 15 parameters, two tables, durations and the number of words: 23 reads; then two for a
  /// word.
  [[nodiscard]] std::int64_t readsBeforeWeights() const { return 23 + 2 * std::int64_t{words_}; }

  std::FILE* file_;
  std::int64_t reads_ = 0;  ///< that gave what was asked for
  int readsPastEnd_ = 0;
  std::int32_t words_ = std::numeric_limits<std::int32_t>::max();  ///< of the vocabulary: the second number
  bool isCut_ = false;
};

}  // namespace

void ParakeetEngine::Deleter::operator()(parakeet_context* context) const {
  parakeet_free(context);
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
  auto loader = reader.loader();
  parakeet_context* const context = parakeet_init_with_params(&loader, settings);
  if (context == nullptr) return std::unexpected("speech model could not be loaded");
  std::unique_ptr<ParakeetEngine> engine(new ParakeetEngine(context, threads));
  if (!reader.sawWholeModel()) return std::unexpected("speech model could not be loaded");
  return engine;
}

std::expected<std::string, std::string> ParakeetEngine::recognise(std::span<const std::int16_t> samples,
                                                                  const std::optional<std::string>&) {
  std::string text;
  for (const auto piece : cutAtQuietPlaces(samples, pieces)) {
    const auto words = recognisePiece(piece);
    if (!words) return words;
    if (words->empty()) continue;
    if (!text.empty()) text += ' ';
    text += *words;
  }
  return text;
}

std::expected<std::string, std::string> ParakeetEngine::recognisePiece(
    std::span<const std::int16_t> samples) {
  if (samples.size() < fewestSamples) return "";
  std::vector<float> scaled(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i) scaled[i] = static_cast<float>(samples[i]) / fullScale;
  auto settings = parakeet_full_default_params(PARAKEET_SAMPLING_GREEDY);
  settings.n_threads = threads_;
  settings.no_context = true;
  if (parakeet_full(context_.get(), settings, scaled.data(), static_cast<int>(scaled.size())) != 0)
    return std::unexpected("speech recogniser failed");
  std::string text;
  for (int i = 0; i < parakeet_full_n_segments(context_.get()); ++i)
    text += parakeet_full_get_segment_text(context_.get(), i);
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
