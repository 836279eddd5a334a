#pragma once

#include "Refinement/RefinementProvider.h"

#include <memory>
#include <string_view>
#include <vector>

namespace murmel {

/// Hands a text to another refiner in pieces that a small model can hold. Each piece is asked for when the
/// one before has come back; a destroyed task asks for no more. A failure of one piece is the failure of all.
///
/// The provider must outlive its tasks.
class BoundedRefinementProvider final : public RefinementProvider {
 public:
  static constexpr std::size_t maximumWordsPerPiece = 40;

  struct Piece {
    std::string precedingWhitespace;
    std::string text;
    friend bool operator==(const Piece&, const Piece&) = default;
  };

  explicit BoundedRefinementProvider(std::unique_ptr<RefinementProvider> inner);

  [[nodiscard]] const std::string& providerID() const override { return inner_->providerID(); }
  Task<Result<SpokenText>> refine(SpokenText text) override;

  /// A short text is one piece as it stands. A longer one is cut after every 40 words; white space before its
  /// first and behind its last word is left out.
  static std::vector<Piece> pieces(std::string_view text);

 private:
  std::unique_ptr<RefinementProvider> inner_;
};

}  // namespace murmel
