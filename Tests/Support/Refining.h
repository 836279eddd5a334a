#pragma once

#include "Refinement/RefinementProvider.h"

#include <string>
#include <utility>

namespace murmel {

/// `refine` in characters that a test can compare.
inline Task<Result<std::string>> refining(RefinementProvider& refiner, std::string text) {
  auto asking = refiner.refine(SpokenText(std::move(text)));
  auto refined = co_await asking;
  if (!refined) co_return std::unexpected(refined.error());
  co_return std::move(*refined).reveal();
}

}  // namespace murmel
