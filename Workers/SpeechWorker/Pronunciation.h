#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace murmel::worker {

/// The sounds of a word in the dictionary, separated by blanks; nothing when it is not there.
using DictionaryLookup = std::function<std::optional<std::string>(const std::string& word)>;

/// How an English reader may say a word that no dictionary has: as the fewest words that it can be put
/// together from, and letter by letter where there are none. Nothing for a word that is not written in ASCII
/// letters.
std::optional<std::string> guessedPronunciation(std::string_view word, const DictionaryLookup& lookup);

}  // namespace murmel::worker
