#include "Refinement/BoundedRefinementProvider.h"

#include "Foundation/Text/Text.h"

#include <algorithm>
#include <utility>

namespace murmel {

BoundedRefinementProvider::BoundedRefinementProvider(std::unique_ptr<RefinementProvider> inner)
    : inner_(std::move(inner)) {}

std::vector<BoundedRefinementProvider::Piece> BoundedRefinementProvider::pieces(std::string_view text) {
  const auto words = text::words(text);
  if (words.size() <= maximumWordsPerPiece) return {Piece{{}, std::string(text)}};
  std::vector<Piece> result;
  const char* previousEnd = words.front().data();
  for (std::size_t first = 0; first < words.size(); first += maximumWordsPerPiece) {
    const auto last = std::min(first + maximumWordsPerPiece, words.size()) - 1;
    const char* begin = words[first].data();
    const char* end = words[last].data() + words[last].size();
    result.push_back({std::string(previousEnd, begin), std::string(begin, end)});
    previousEnd = end;
  }
  return result;
}

Task<Result<SpokenText>> BoundedRefinementProvider::refine(SpokenText text) {
  const auto all = pieces(text.reveal());
  std::string output;
  for (const auto& piece : all) {
    auto refining = inner_->refine(SpokenText(piece.text));
    const auto refined = co_await refining;
    if (!refined) co_return std::unexpected(refined.error());
    const auto useful = text::trimmed(refined->reveal());
    output += piece.precedingWhitespace;
    output += useful.empty() ? std::string_view(piece.text) : useful;
  }
  co_return SpokenText(std::move(output));
}

}  // namespace murmel
