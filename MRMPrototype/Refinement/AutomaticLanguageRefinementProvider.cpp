#include "Refinement/AutomaticLanguageRefinementProvider.h"

#include "Refinement/TextLanguageRouter.h"

#include <utility>

namespace murmel {

AutomaticLanguageRefinementProvider::AutomaticLanguageRefinementProvider(Refiners refiners,
                                                                         const LanguageRecognizer& recognizer)
    : refiners_(std::move(refiners)), recognizer_(recognizer) {}

RefinementProvider* AutomaticLanguageRefinementProvider::refinerFor(std::string_view text) const {
  switch (TextLanguageRouter::classify(text, recognizer_)) {
    case RefinementRoute::russian:
      return refiners_.russian.get();
    case RefinementRoute::english:
      return refiners_.english ? refiners_.english.get() : refiners_.multilingual.get();
    case RefinementRoute::multilingual:
      return refiners_.multilingual.get();
    case RefinementRoute::none:
      return nullptr;
  }
  std::unreachable();
}

Task<Result<SpokenText>> AutomaticLanguageRefinementProvider::refine(SpokenText text) {
  auto* const refiner = refinerFor(text.reveal());
  if (!refiner) co_return text;
  auto refining = refiner->refine(text);
  auto refined = co_await refining;
  // A formatting that failed is no failure of the dictation: the words are all there.
  if (!refined) co_return text;
  co_return refined;
}

}  // namespace murmel
