#include "Refinement/DisabledRefinementProvider.h"

namespace murmel {

Task<Result<std::string>> DisabledRefinementProvider::refine(std::string text) {
  co_return text;
}

}  // namespace murmel
