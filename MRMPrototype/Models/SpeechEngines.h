#pragma once

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>

namespace murmel {

/// What is to be known of a speech engine by others. The engine itself is a file in Workers/SpeechWorker.
struct SpeechEngineRow {
  std::string_view identifier;
  std::string_view title;      ///< as people read it
  std::string_view modelFile;  ///< how the name of a file begins by which its model folders are recognised
  std::string_view loader;     ///< its function in the engine module; empty: it is linked into the worker
  int processorLevel;          ///< the level of x86-64 below which it is too slow; of the engine module only
  std::string_view quality;    ///< as people read it
  std::string_view purpose;    ///< of a packaged one: what it is good for, in a sentence
  std::string_view license;    ///< of its model
  bool takesHints;             ///< names that it may hear better when it is told of them
  bool isPackaged;             ///< its model comes with the application or the distribution
  std::string_view languages;  ///< two- or three-letter codes, with a blank after each
};

/// All engines, the best first: of those whose model is installed and that this machine can run, the first is
/// used.
inline constexpr auto speechEngines = std::to_array<SpeechEngineRow>({
    {.identifier = "parakeet",
     .title = "Parakeet TDT 0.6B v3",
     .modelFile = "ggml-parakeet-",
     .loader = "mrmLoadParakeet",
     .processorLevel = 3,
     .quality = "best",
     .purpose = {},
     .license = "CC-BY-4.0",
     .takesHints = false,
     .isPackaged = false,
     .languages = "bg cs da de el en es et fi fr hr hu it lt lv mt nl pl pt ro ru sk sl sv uk "},
    {.identifier = "whisper-base",
     .title = "Whisper base",
     .modelFile = "ggml-base",
     .loader = "mrmLoadWhisper",
     .processorLevel = 2,
     .quality = "good: 3 words in 100 wrong",
     .purpose = "Hears about a hundred languages; about 3 English words in 100 are wrong.",
     .license = "MIT",
     .takesHints = true,
     .isPackaged = true,
     .languages =
         "af am ar as az ba be bg bn bo br bs ca cs cy da de el en es et eu fa fi fo fr gl gu ha haw he hi "
         "hr "
         "ht hu hy id is it ja jw ka kk km kn ko la lb ln lo lt lv mg mi mk ml mn mr ms mt my ne nl nn no oc "
         "pa pl ps pt ro ru sa sd si sk sl sn so sq sr su sv sw ta te tg th tk tl tr tt uk ur uz vi yi yo "
         "yue "
         "zh "},
    {.identifier = "pocketsphinx",
     .title = "PocketSphinx, US English",
     .modelFile = "en-us",
     .loader = {},
     .processorLevel = 0,
     .quality = "plain: 27 words in 100 wrong, no punctuation",
     .purpose = "Hears US English alone; about 27 words in 100 are wrong, and it sets no punctuation.",
     .license = "BSD-2-Clause",
     .takesHints = true,
     .isPackaged = true,
     .languages = "en "},
});

constexpr const SpeechEngineRow& speechEngine(std::string_view identifier) {
  return *std::ranges::find(speechEngines, identifier, &SpeechEngineRow::identifier);
}

constexpr bool knowsLanguage(const SpeechEngineRow& engine, std::string_view code) {
  const auto place = engine.languages.find(code);
  return !code.empty() && !code.contains(' ') && place != std::string_view::npos &&
         (place == 0 || engine.languages[place - 1] == ' ') &&
         engine.languages.substr(place + code.size()).starts_with(' ');
}

/// The highest level of x86-64 that this processor has; 0 on other architectures.
inline int processorLevel() {
#if defined(__x86_64__)
  __builtin_cpu_init();
  if (__builtin_cpu_supports("x86-64-v4") != 0) return 4;
  if (__builtin_cpu_supports("x86-64-v3") != 0) return 3;
  return __builtin_cpu_supports("x86-64-v2") != 0 ? 2 : 1;
#else
  return 0;
#endif
}

/// The engine module lies beside the worker, once for each level that it was built for.
inline std::filesystem::path engineModule(const std::filesystem::path& workers, int level) {
  return workers / ("mrm-speech-engines-v" + std::to_string(level) + ".so");
}

/// The highest level of the engine module that is there and that a processor of level `highest` runs; 0 when
/// there is none.
inline int engineModuleLevel(const std::filesystem::path& workers, int highest = processorLevel()) {
  std::error_code error;
  for (int level = highest; level > 0; --level) {
    if (std::filesystem::is_regular_file(engineModule(workers, level), error)) return level;
  }
  return 0;
}

}  // namespace murmel
