#include "CleanUp/PersonalVocabulary.h"

#include "Foundation/Text/Text.h"

#include <algorithm>

namespace murmel {

namespace {

constexpr std::size_t mostHints = 10;
constexpr std::size_t longestHint = 40;  // bytes

}  // namespace

std::string PersonalVocabulary::apply(std::string_view vocabulary, std::string_view text) {
  if (!compiled_ || vocabulary != source_) {
    compiled_ = std::make_unique<CompiledVocabulary>(vocabulary);
    source_ = vocabulary;
  }
  return compiled_->apply(text);
}

std::vector<std::string> vocabularyHints(std::string_view vocabulary) {
  std::vector<std::string> hints;
  while (!vocabulary.empty() && hints.size() < mostHints) {
    const auto line = vocabulary.substr(0, vocabulary.find('\n'));
    vocabulary.remove_prefix(std::min(line.size() + 1, vocabulary.size()));
    const auto equals = line.find('=');
    if (equals == std::string_view::npos || !text::isValidUtf8(line)) continue;
    std::string name(text::trimmed(line.substr(equals + 1)));
    const bool isName = name.size() <= longestHint && name != text::lowercased(name);
    if (isName && std::ranges::find(hints, name) == hints.end()) hints.push_back(std::move(name));
  }
  return hints;
}

}  // namespace murmel
