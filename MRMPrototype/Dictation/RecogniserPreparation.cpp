#include "Dictation/RecogniserPreparation.h"

#include <utility>

namespace murmel {

RecogniserPreparation::RecogniserPreparation(SpeechModelStore& models, TranscriptionProviderFactory& factory,
                                             RuntimePriority& priority)
    : models_(models), factory_(factory), priority_(priority) {}

RecogniserPreparation::Outcome RecogniserPreparation::prepareProviderIfPossible() {
  const auto state = models_.state();
  if (state == SpeechModelState::missing) {
    provider_.reset();
    warmupPriority_.reset();
    return Outcome::missing;
  }
  // A recogniser checks its model itself before it loads it, so one that exists is kept meanwhile.
  if (state == SpeechModelState::verifying) return provider_ ? Outcome::ready : Outcome::verifying;
  auto model = models_.activeModelURL();
  if (provider_ && model == preparedModel_) return Outcome::ready;

  provider_.reset();
  warmupPriority_ = std::make_shared<Registration>(priority_.hold());
  auto made = factory_.make([weak = std::weak_ptr(warmupPriority_)](bool) {
    if (const auto held = weak.lock()) held->reset();
  });
  if (!made) {
    warmupPriority_.reset();
    failure_ = made.error();
    return made.error().which() == MRMError::Case::modelMissing ? Outcome::missing : Outcome::failed;
  }
  failure_.reset();
  provider_ = *std::move(made);
  preparedModel_ = std::move(model);
  return Outcome::ready;
}

}  // namespace murmel
