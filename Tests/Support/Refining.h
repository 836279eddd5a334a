#pragma once

#include "Platform/Fake/ManualExecutor.h"
#include "Refinement/RefinementProvider.h"
#include "Support/Awaiting.h"

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

/// The formatted text; "RAW" when the recognised one would be delivered.
inline std::string described(ManualExecutor& executor, Awaiting<Result<std::string>>& asking) {
  if (!executor.waitUntil([&] { return asking.done(); })) return "HANGS";
  if (*asking) return **asking;
  const auto& error = asking->error();
  return error.which() == MRMError::Case::smartRefinementFailed ? "RAW" : error.localizedDescription();
}

}  // namespace murmel
