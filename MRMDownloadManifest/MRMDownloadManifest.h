#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"

#include <algorithm>
#include <array>
#include <span>

namespace murmel {

namespace detail {

inline constexpr std::string_view parakeetRevision = "775be920d492d20e9e522ee0a969414fd6e6e0f7";

/// `identifier` is "parakeet:" and the path, which is the same in the repository and in the model's folder.
constexpr ApprovedModelDownload speechFile(std::string_view identifier, std::int64_t byteCount,
                                           std::string_view sha256) {
  const auto path = identifier.substr(std::string_view("parakeet:").size());
  return {.identifier = identifier,
          .repository = "FluidInference/parakeet-tdt-0.6b-v3-coreml",
          .revision = parakeetRevision,
          .file = path,
          .sha256 = sha256,
          .relativePath = path,
          .byteCount = byteCount,
          .folder = "Parakeet/parakeet-tdt-0.6b-v3-coreml"};
}

/// Where ggml's forms of a speech model are published.
struct GGMLRepository {
  std::string_view name;
  std::string_view revision;
};
inline constexpr GGMLRepository parakeetGGML{"ggml-org/parakeet-GGUF",
                                             "35156454d1a39de06863303dd209fd2bed6ee079"};
inline constexpr GGMLRepository whisperGGML{"ggerganov/whisper.cpp",
                                            "5359861c739e955e79d9a303bcbc70fb988958b1"};

/// One file of ggml's form of a speech model, quantised; each is a whole model in a folder of its own.
constexpr ApprovedModelDownload ggmlFile(std::string_view identifier, const GGMLRepository& repository,
                                         std::string_view file, std::int64_t byteCount,
                                         std::string_view sha256, std::string_view folder) {
  return {.identifier = identifier,
          .repository = repository.name,
          .revision = repository.revision,
          .file = file,
          .sha256 = sha256,
          .relativePath = file,
          .byteCount = byteCount,
          .folder = folder};
}

/// A refinement model: only its digest is known beforehand.
constexpr ApprovedModelDownload refinementFile(std::string_view identifier, std::string_view repository,
                                               std::string_view revision, std::string_view file,
                                               std::string_view sha256,
                                               std::string_view folder = "Refinement") {
  return {.identifier = identifier,
          .repository = repository,
          .revision = revision,
          .file = file,
          .sha256 = sha256,
          .relativePath = std::nullopt,
          .byteCount = std::nullopt,
          .folder = folder};
}

/// A file of the Russian corrector; all of them lie in one folder. The digests bind; the repository's name
/// has not been confirmed against the host.
constexpr ApprovedModelDownload sageFile(std::string_view identifier, std::string_view sha256) {
  auto file =
      refinementFile(identifier, "ai-forever/sage-95m-onnx", "d1081d00b11c11f57fa9853ce914f2d6d4086d50",
                     identifier.substr(std::string_view("sage:").size()), sha256, "Refinement/sage");
  file.largest = std::int64_t{1} << 30;
  file.isHostConfirmed = false;
  return file;
}

// clang-format off: one entry, one digest, one line each.
inline constexpr auto parakeetFiles = std::to_array<ApprovedModelDownload>({
    speechFile("parakeet:Decoder.mlmodelc/analytics/coremldata.bin", 243,
               "4238c4e81ecd0dc94bd7dfbb60f7e2cc824107c1ffe0387b8607b72833dba350"),
    speechFile("parakeet:Decoder.mlmodelc/coremldata.bin", 554,
               "18647af085d87bd8f3121c8a9b4d4564c1ede038dab63d295b4e745cf2d7fb99"),
    speechFile("parakeet:Decoder.mlmodelc/metadata.json", 3427,
               "a39e93cd8371b8ded92635c7804fcd0590f0d1dd9415c6d19a0484be073077d9"),
    speechFile("parakeet:Decoder.mlmodelc/model.mil", 13110,
               "ef2a0a281695398a62fde86ac269c68f73d5b578d7ed3b31f2ba91a2d1ea1f35"),
    speechFile("parakeet:Decoder.mlmodelc/weights/weight.bin", 23604992,
               "48adf0f0d47c406c8253d4f7fef967436a39da14f5a65e66d5a4b407be355d41"),
    speechFile("parakeet:Encoder.mlmodelc/analytics/coremldata.bin", 243,
               "42e638870d73f26b332918a3496ce36793fbb413a81cbd3d16ba01328637a105"),
    speechFile("parakeet:Encoder.mlmodelc/coremldata.bin", 485,
               "d48034a167a82e88fc3df64f60af963ab3983538271175b8319e7d5720a0fb86"),
    speechFile("parakeet:Encoder.mlmodelc/metadata.json", 2921,
               "da24da9cca943fb29d7fa8e376d57fca7cb3aa08ca51b956b0b0e56813f087e9"),
    speechFile("parakeet:Encoder.mlmodelc/model.mil", 959769,
               "ed7b19156ca29fa7dfd6891deb9fda4b0e8893f68597c985d135736546a43808"),
    speechFile("parakeet:Encoder.mlmodelc/weights/weight.bin", 445187200,
               "e2020f323703477a5b21d7c2d282c403e371afb5962e79877e3033e73ba6f421"),
    speechFile("parakeet:JointDecisionv3.mlmodelc/analytics/coremldata.bin", 243,
               "26def4bf73dd56d29dee21c8ef97cb8969e62f6120ed1adc91e46828e2737b6c"),
    speechFile("parakeet:JointDecisionv3.mlmodelc/coremldata.bin", 521,
               "f5fc08b741400f0088492c9e839418b1e18522f19cba28d361dd030c5f398342"),
    speechFile("parakeet:JointDecisionv3.mlmodelc/metadata.json", 3453,
               "d9307211b9a37e0f0ac260c7660b1571a3de25841035cfdf9b58fd40425f890f"),
    speechFile("parakeet:JointDecisionv3.mlmodelc/model.mil", 11775,
               "be60732943389a047175111a83f8839f3eb39d4803adafa828a0871b2f39818d"),
    speechFile("parakeet:JointDecisionv3.mlmodelc/weights/weight.bin", 12642764,
               "4e0e63d840032f7f07ddb1d64446051166281e5491bf22da8a945c41f6eedb3e"),
    speechFile("parakeet:Preprocessor.mlmodelc/analytics/coremldata.bin", 243,
               "c9beeb989c8d66f8be11df59bc6df277ec76cee404f6865b46243835ef562f6d"),
    speechFile("parakeet:Preprocessor.mlmodelc/coremldata.bin", 486,
               "dbde3f2300842c1fd51ef3ff948a0bcffe65ffd2dca10707f2509f32c1d65b1d"),
    speechFile("parakeet:Preprocessor.mlmodelc/metadata.json", 2841,
               "2a98699e22d279dd37fa1d238aeb1c6db1df0d6fad687775324157689d8f3acf"),
    speechFile("parakeet:Preprocessor.mlmodelc/model.mil", 28181,
               "4b8518a956450fec57f06c2a21bdffc26973f7f1fa6842fb38fe917f896b6b93"),
    speechFile("parakeet:Preprocessor.mlmodelc/weights/weight.bin", 491072,
               "129b76e3aeafa8afa3ea76d995b964b145fe83700d579f6ff42c4c38fa0968ea"),
    speechFile("parakeet:config.json", 2, "44136fa355b3678a1146ad16f7e8649e94fb4fc21fe77e8310c060f61caaff8a"),
    speechFile("parakeet:parakeet_v3_vocab.json", 151122,
               "7ec60e05f1b24480736ec0eed40900f4626bce1fa9a60fd700ec7e2a59198735"),
    speechFile("parakeet:parakeet_vocab.json", 151122,
               "7ec60e05f1b24480736ec0eed40900f4626bce1fa9a60fd700ec7e2a59198735"),
});

inline constexpr auto refinementFiles = std::to_array<ApprovedModelDownload>({
    refinementFile("gemma:4-e2b", "ggml-org/gemma-4-E2B-it-GGUF", "b4243c156154b6dca9324415f8c7ccc098b4aed1",
                   "gemma-4-E2B-it-Q4_0.gguf",
                   "8e30dff3ac4c8434c49a7036fa15564bdbb6044e42bf04550bf1a096ad7e6a52"),
    refinementFile("qwen:0.6b", "Qwen/Qwen3-0.6B-GGUF", "ef4088322893040952513f532f736ddeab518403",
                   "Qwen3-0.6B-Q8_0.gguf",
                   "12fae8b8f78f0360b498d04c8db7d33aff29ab7d8080231f93a17c18119e6735"),
    refinementFile("qwen:1.7b", "Qwen/Qwen3-1.7B-GGUF", "90862c4b9d2787eaed51d12237eafdfe7c5f6077",
                   "Qwen3-1.7B-Q8_0.gguf",
                   "061b54daade076b5d3362dac252678d17da8c68f07560be70818cace6590cb1a"),
    refinementFile("qwen:4b", "Qwen/Qwen3-4B-GGUF", "bc640142c66e1fdd12af0bd68f40445458f3869b",
                   "Qwen3-4B-Q4_K_M.gguf",
                   "7485fe6f11af29433bc51cab58009521f205840f5b4ae3a32fa7f92e8534fdf5"),
    sageFile("sage:encoder_model_quantized.onnx",
             "c8fb179fb56ed9c80026891bf7339a5804072bc02351ddf76d792293b70c2821"),
    sageFile("sage:decoder_model_quantized.onnx",
             "062cfd09b268fb9e12dd45ad57bf1a5969956b19094e448321c9e2b431b0e7b2"),
    sageFile("sage:vocab.json", "a7be5387908a52936262a09514bf0a9327ff17981097b6b2225c67120fd905a5"),
    sageFile("sage:merges.txt", "bd05ba8658a199897510cd84cd98ec1424c812259db6e03319c33a5bfcac2b90"),
});

inline constexpr auto ggmlFiles = std::to_array<ApprovedModelDownload>({
    ggmlFile("parakeet-ggml:q8_0", parakeetGGML, "ggml-parakeet-tdt-0.6b-v3-q8_0.bin", 668757119,
             "4d64e9e96c2792186d072fde0034df0ad670cf680a2f53069052ead827fd600e",
             "Parakeet/parakeet-tdt-0.6b-v3-ggml-q8_0"),
    ggmlFile("parakeet-ggml:q4_0", parakeetGGML, "ggml-parakeet-tdt-0.6b-v3-q4_0.bin", 355615679,
             "aa7fe2f5fb47d863ca23e8b1d490632d63a2599f515268b6d6bd656158dad45e",
             "Parakeet/parakeet-tdt-0.6b-v3-ggml-q4_0"),
    ggmlFile("whisper-ggml:base-q8_0", whisperGGML, "ggml-base-q8_0.bin", 81768585,
             "c577b9a86e7e048a0b7eada054f4dd79a56bbfa911fbdacf900ac5b567cbb7d9",
             "Whisper/whisper-base-ggml-q8_0"),
});
// clang-format on

inline constexpr auto allFiles = [] {
  std::array<ApprovedModelDownload, parakeetFiles.size() + refinementFiles.size()> joined{};
  std::ranges::copy(refinementFiles, std::ranges::copy(parakeetFiles, joined.begin()).out);
  return joined;
}();

/// Sum of the sizes that are known.
constexpr std::int64_t totalBytes(std::span<const ApprovedModelDownload> files) {
  std::int64_t total = 0;
  for (const auto& file : files) total += file.byteCount.value_or(0);
  return total;
}

}  // namespace detail

/// The closed list of files that may ever be downloaded. Compile-time data.
struct MRMDownloadManifest {
  /// The speech model in the form that the Apple platforms run.
  static constexpr std::span<const ApprovedModelDownload> parakeet = detail::parakeetFiles;
  /// The refinement models.
  static constexpr std::span<const ApprovedModelDownload> optional = detail::refinementFiles;
  /// `parakeet`, then `optional`.
  static constexpr std::span<const ApprovedModelDownload> all = detail::allFiles;
  /// The speech models in the forms that the Linux engines run, the recommended one first.
  static constexpr std::span<const ApprovedModelDownload> speechGGML = detail::ggmlFiles;
  /// The pinned revision of `parakeet`.
  static constexpr std::string_view parakeetRevision = detail::parakeetRevision;

  /// The entry with that identifier, or nullptr.
  static constexpr const ApprovedModelDownload* asset(std::string_view identifier) {
    for (const auto list : {all, speechGGML}) {
      const auto found = std::ranges::find(list, identifier, &ApprovedModelDownload::identifier);
      if (found != list.end()) return &*found;
    }
    return nullptr;
  }
};

namespace detail {

/// What every entry must be, whoever adds one: findable by its own name, with a digest and a revision in
/// full, and with a place inside the store that no other entry has.
constexpr bool isWellFormed(std::span<const ApprovedModelDownload> files) {
  const auto hexadecimal = [](std::string_view text, std::size_t digits) {
    return text.size() == digits && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
  };
  return std::ranges::all_of(files, [&](const ApprovedModelDownload& entry) {
    const auto path = entry.relativePath.value_or(entry.file);
    return MRMDownloadManifest::asset(entry.identifier) == &entry && hexadecimal(entry.sha256, 64) &&
           hexadecimal(entry.revision, 40) && !path.starts_with('/') && !path.contains("..") &&
           std::ranges::count_if(files, [&](const ApprovedModelDownload& other) {
             return other.folder == entry.folder && other.relativePath.value_or(other.file) == path;
           }) == 1;
  });
}

static_assert(parakeetFiles.size() == 23 && refinementFiles.size() == 8);
static_assert(totalBytes(parakeetFiles) == 483'256'769);
static_assert(isWellFormed(MRMDownloadManifest::all) && isWellFormed(MRMDownloadManifest::speechGGML));

}  // namespace detail

}  // namespace murmel
