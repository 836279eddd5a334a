#pragma once

#include "CleanUp/CompiledVocabulary.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

/// The names in the user's vocabulary (what its lines put in place of a term, where it has a capital letter),
/// for recognisers that hear a name better when they are told of it. Short ones and few: more of them help no
/// more, and make ordinary words worse.
std::vector<std::string> vocabularyHints(std::string_view vocabulary);

}  // namespace murmel
