#pragma once

#include "CleanUp/CompiledVocabulary.h"

#include <memory>
#include <string>
#include <string_view>

namespace murmel {

/// Applies the user's vocabulary, and keeps its compiled form from one dictation to the next. Main thread.
class PersonalVocabulary {
 public:
  /// `vocabulary` has one "term = replacement" a line.
  std::string apply(std::string_view vocabulary, std::string_view text);

 private:
  std::string source_;
  std::unique_ptr<const CompiledVocabulary> compiled_;
};

}  // namespace murmel
