#pragma once

#include "Workers/SpeechWorker/SpeechEngine.h"

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

struct ps_decoder_s;

namespace murmel::worker {

/// PocketSphinx with its US English model: lower-case words without punctuation. It knows no other language,
/// so that hint is not used; names that its dictionary does not have it learns as they are written. Long
/// recordings are recognised in pieces, which bounds its lattice in memory and time.
class PocketSphinxEngine final : public SpeechEngine {
 public:
  /// `modelDirectory` is laid out as Debian's package pocketsphinx-en-us does. The error is a short reason.
  static std::expected<std::unique_ptr<PocketSphinxEngine>, std::string> load(
      const std::filesystem::path& modelDirectory);

  std::expected<std::string, std::string> recognise(std::span<const std::int16_t> samples,
                                                    const SpeechHints& hints) override;
  void forget() override;

 private:
  struct Deleter {
    void operator()(ps_decoder_s* decoder) const;
  };
  explicit PocketSphinxEngine(ps_decoder_s* decoder) : decoder_(decoder) {}
  std::expected<std::string, std::string> recognisePiece(std::span<const std::int16_t> samples);
  void learn(const std::vector<std::string>& names);

  std::unique_ptr<ps_decoder_s, Deleter> decoder_;
  std::set<std::string> learned_;
};

}  // namespace murmel::worker
