#include "Refinement/TextLanguageRouter.h"

#include "Foundation/Text/Text.h"

namespace murmel {

namespace {

struct Scripts {
  bool cyrillic = false;
  bool latin = false;
};

Scripts scriptsIn(std::string_view text) {
  Scripts found;
  for (std::size_t position = 0; position < text.size() && !(found.cyrillic && found.latin);) {
    const auto scalar = text::nextScalar(text, position);
    if (scalar >= 0x400 && scalar <= 0x52F) found.cyrillic = true;
    if ((scalar >= U'a' && scalar <= U'z') || (scalar >= U'A' && scalar <= U'Z')) found.latin = true;
  }
  return found;
}

}  // namespace

RefinementRoute TextLanguageRouter::classify(std::string_view text, const LanguageRecognizer& recognizer) {
  const auto scripts = scriptsIn(text);
  if (!scripts.cyrillic) return scripts.latin ? RefinementRoute::english : RefinementRoute::none;
  if (!scripts.latin) return RefinementRoute::russian;

  const auto dominant = recognizer.dominantLanguage(text);
  if (dominant == "ru") return RefinementRoute::russian;
  // Without a verdict and with another language's the words decide, a tie for Russian.
  const auto words = scriptWordCounts(text);
  return words.cyrillic >= words.latin ? RefinementRoute::russian : RefinementRoute::multilingual;
}

TextLanguageRouter::ScriptWordCounts TextLanguageRouter::scriptWordCounts(std::string_view text) {
  ScriptWordCounts counts;
  for (const auto word : text::words(text)) {
    const auto scripts = scriptsIn(word);
    if (scripts.cyrillic) ++counts.cyrillic;
    if (scripts.latin) ++counts.latin;
  }
  return counts;
}

}  // namespace murmel
