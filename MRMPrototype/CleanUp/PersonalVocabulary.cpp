#include "CleanUp/PersonalVocabulary.h"

namespace murmel {

std::string PersonalVocabulary::apply(std::string_view vocabulary, std::string_view text) {
  if (!compiled_ || vocabulary != source_) {
    compiled_ = std::make_unique<CompiledVocabulary>(vocabulary);
    source_ = vocabulary;
  }
  return compiled_->apply(text);
}

}  // namespace murmel
