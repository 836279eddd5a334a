#include "Workers/ModelImport/TokenTable.h"
#include "Workers/ModelImport/WhisperConversion.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

using namespace murmel::import;

std::expected<void, std::string> run(std::span<char* const> arguments) {
  constexpr std::size_t fewest = 5;
  if (arguments.size() < fewest ||
      (arguments[0] != std::string_view("f16") && arguments[0] != std::string_view("q8_0")))
    return std::unexpected("usage: mrm-model-import f16|q8_0 OUTPUT SHA256 TOKENIZER.json WEIGHTS...");
  const auto form = arguments[0] == std::string_view("q8_0") ? WeightForm::q8 : WeightForm::float16;
  const auto words = readTokenTable(arguments[3]);
  if (!words) return std::unexpected(words.error());
  const auto parts = arguments.subspan(4);
  const auto weights = WeightFile::open({parts.begin(), parts.end()});
  if (!weights) return std::unexpected(weights.error());
  ModelWriter output(arguments[1]);
  const auto written = writeWhisperModel(*weights, *words, form, output);
  return written ? output.finish(arguments[2]) : written;
}

}  // namespace

/// Turns a Whisper model that was published in CTranslate2's format, in one file or in several, into the form
/// that the speech worker reads, and compares its digest with the published one. Run when Murmel is built or
/// packaged.
int main(int argumentCount, char** arguments) {
  const std::span<char* const> all(arguments, static_cast<std::size_t>(argumentCount));
  const auto done = run(all.empty() ? all : all.subspan(1));
  if (done) return EXIT_SUCCESS;
  std::fprintf(stderr, "%s\n", done.error().c_str());
  return EXIT_FAILURE;
}
