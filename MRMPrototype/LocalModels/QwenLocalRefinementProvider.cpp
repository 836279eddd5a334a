#include "LocalModels/QwenLocalRefinementProvider.h"

#include "Refinement/ConservativeFormattingProjection.h"
#include "Refinement/FormattingSafetyGate.h"

#include <utility>

namespace murmel {

QwenLocalRefinementProvider::QwenLocalRefinementProvider(std::shared_ptr<QwenPersistentServer> server,
                                                         bool prewarmed)
    : server_(std::move(server)) {
  if (prewarmed) server_->startIfNeeded();
}

Task<Result<SpokenText>> QwenLocalRefinementProvider::refine(SpokenText text) {
  if (!server_->isInstalled()) co_return std::unexpected(MRMError(MRMError::Case::smartModelMissing));
  // A server that has ended, or was never asked for, is there for the next dictation.
  server_->startIfNeeded();
  auto running = run(server_, std::move(text));
  auto result = co_await running;
  co_return result;
}

Task<Result<SpokenText>> QwenLocalRefinementProvider::run(std::shared_ptr<QwenPersistentServer> server,
                                                          SpokenText text) {
  auto asking = server->refine(std::move(text), &projected);
  auto formatted = co_await asking;
  if (!formatted) co_return std::unexpected(MRMError(MRMError::Case::smartRefinementFailed));
  co_return *std::move(formatted);
}

std::optional<std::string> QwenLocalRefinementProvider::projected(std::string_view recognized,
                                                                  std::string_view answer) {
  auto projection = ConservativeFormattingProjection::project(recognized, answer);
  if (!projection || !FormattingSafetyGate::accepts(recognized, *projection)) return std::nullopt;
  return projection;
}

}  // namespace murmel
