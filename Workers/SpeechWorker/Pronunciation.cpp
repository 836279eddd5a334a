#include "Workers/SpeechWorker/Pronunciation.h"

#include "Foundation/Text/Ascii.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace murmel::worker {

namespace {

constexpr std::size_t longestWord = 40;
constexpr std::size_t shortestPart = 2;

constexpr int costOfPart = 3;
constexpr int costOfLetter = 2;  ///< a part of two letters is better than both of them alone

/// What each letter mostly sounds like.
constexpr auto letterSounds = std::to_array<std::string_view>(
    {"AE", "B",  "K", "D", "EH", "F", "G", "HH", "IH", "JH", "K",   "L", "M",
     "N",  "OW", "P", "K", "R",  "S", "T", "UH", "V",  "W",  "K S", "Y", "Z"});

}  // namespace

std::optional<std::string> guessedPronunciation(std::string_view word, const DictionaryLookup& lookup) {
  std::string letters;
  for (const char letter : text::asciiLowercased(word)) {
    if (letter < 'a' || letter > 'z') return std::nullopt;
    letters += letter;
  }
  if (letters.empty() || letters.size() > longestWord) return std::nullopt;

  struct Beginning {
    int cost = std::numeric_limits<int>::max();
    std::string sounds;
  };
  std::vector<Beginning> best(letters.size() + 1);  // of so many letters
  best[0].cost = 0;
  for (std::size_t end = 1; end <= letters.size(); ++end) {
    const auto offer = [&](std::size_t begin, int cost, std::string_view sounds) {
      if (best[begin].cost + cost >= best[end].cost) return;
      best[end] = {best[begin].cost + cost, best[begin].sounds};
      if (!best[end].sounds.empty()) best[end].sounds += ' ';
      best[end].sounds += sounds;
    };
    offer(end - 1, costOfLetter, letterSounds.at(static_cast<std::size_t>(letters[end - 1] - 'a')));
    for (std::size_t begin = 0; begin + shortestPart <= end; ++begin) {
      if (const auto sounds = lookup(letters.substr(begin, end - begin))) offer(begin, costOfPart, *sounds);
    }
  }
  return best.back().sounds;
}

}  // namespace murmel::worker
