#include "Workers/SpeechWorker/WhisperRules.h"

#include "Foundation/Text/Ascii.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace murmel::worker {

namespace {

constexpr double sampleRate = 16'000;

constexpr int stepsPerSecond = 50;
constexpr int wholeWindow = 1'500;  // steps: 30 s
constexpr int leastWindow = 384;    // below it short pieces come out as loops
constexpr int windowMargin = 64;    // steps beyond the end of the speech
constexpr int windowUnit = 8;       // what the library computes in

constexpr int mostTokens = 220;
constexpr int tokensPerSecond = 10;  // English has up to 5, Russian up to 7, a scrap of speech up to 8
constexpr int tokenAllowance = 16;

constexpr std::size_t frameSamples = 320;  // 20 ms
constexpr double quietestSpeech = 0.05;    // of the loudest frame's amplitude: 26 dB below
/// English, which needs the fewest, has 3 to 4.8 a second of speech, slow speakers 2; said twice, half.
constexpr double usualTokensPerSecond = 3;
constexpr double twiceTokensPerSecond = 2.5;
constexpr double leastTokensPerSecond = 1.8;
constexpr double leastSentenceSeconds = 1.5;
constexpr std::size_t leastRepetitionPause = 10;  // steps: 0.2 s
constexpr double sameLength = 0.15;               // of the whole

constexpr std::size_t phraseWords = 3;  ///< that many words said twice are a loop
constexpr std::size_t wordRepeats = 4;  ///< fewer may be said that often: "no, no, no"

constexpr std::size_t loopRounds = 3;       ///< said more often, it is no longer somebody who says it
constexpr std::size_t fewestLoopWords = 7;  ///< "no, no, no, no, no"

constexpr std::size_t stutterBytes = 24;    ///< longer than "aaaaaaaaah" and a row of zeros
constexpr std::size_t longestStutter = 12;  ///< bytes; some scripts have three a letter, and no blanks

struct Word {
  std::size_t begin;
  std::string text;  ///< ASCII in lower case, without punctuation around it
};

std::vector<Word> wordsOf(std::string_view text) {
  constexpr std::string_view blanks = " \t\n";
  constexpr std::string_view punctuation = ".,;:!?\"'()-";
  std::vector<Word> words;
  for (auto begin = text.find_first_not_of(blanks); begin != std::string_view::npos;) {
    const auto end = std::min(text.find_first_of(blanks, begin), text.size());
    auto word = text.substr(begin, end - begin);
    const auto first = word.find_first_not_of(punctuation);
    if (first != std::string_view::npos) {
      word = word.substr(first, word.find_last_not_of(punctuation) - first + 1);
      words.push_back({begin, text::asciiLowercased(word)});
    }
    begin = text.find_first_not_of(blanks, end);
  }
  return words;
}

/// Where the same few letters of one word begin to follow each other without an end, as in "ПППП"; npos
/// without that.
std::size_t stutterIn(std::string_view text) {
  for (std::size_t period = 1; period <= longestStutter; ++period) {
    std::size_t same = 0;  // bytes that are as those one period before
    for (auto at = period; at < text.size(); ++at) {
      same = text[at] == text[at - period] ? same + 1 : 0;
      if (same < std::max(stutterBytes, 3 * period)) continue;
      if (text.substr(at - period, period).contains(' ')) continue;
      auto begin = at + 1 - same - period;
      constexpr unsigned continuationMask = 0xC0;  // of UTF-8
      while (begin > 0 && (static_cast<unsigned char>(text[begin]) & continuationMask) == 0x80) --begin;
      return begin;
    }
  }
  return std::string_view::npos;
}

/// Whether the `length` words at `first` stand there `times` times in a row.
bool standsThere(const std::vector<Word>& words, std::size_t first, std::size_t length, std::size_t times) {
  if (first + length * times > words.size()) return false;
  for (std::size_t i = 0; i < length * (times - 1); ++i) {
    if (words[first + i].text != words[first + length + i].text) return false;
  }
  return true;
}

}  // namespace

int whisperWindow(std::size_t samples) {
  const auto speech = static_cast<int>(std::ceil(static_cast<double>(samples) / sampleRate * stepsPerSecond));
  const int window = std::max(leastWindow, speech + windowMargin);
  const int rounded = (window + windowUnit - 1) / windowUnit * windowUnit;
  return rounded < wholeWindow ? rounded : 0;
}

int whisperTokenLimit(std::size_t samples) {
  const double seconds = static_cast<double>(samples) / sampleRate;
  return std::min(mostTokens, tokenAllowance + static_cast<int>(seconds * tokensPerSecond));
}

WhisperOmission::WhisperOmission(std::span<const std::int16_t> samples) {
  std::vector<double> levels;
  for (std::size_t begin = 0; begin + frameSamples <= samples.size(); begin += frameSamples) {
    double sum = 0;
    for (const auto sample : samples.subspan(begin, frameSamples)) sum += std::pow(sample, 2);
    levels.push_back(std::sqrt(sum / frameSamples));
  }
  if (levels.empty()) return;
  const double least = quietestSpeech * std::ranges::max(levels);
  for (const double level : levels) spoken_.push_back(level > least);
}

double WhisperOmission::secondsFrom(std::size_t step) const {
  if (step >= spoken_.size()) return 0;
  const auto steps = std::count(spoken_.begin() + static_cast<std::ptrdiff_t>(step), spoken_.end(), true);
  return static_cast<double>(steps) / stepsPerSecond;
}

bool WhisperOmission::isPossible(int tokens) const {
  return tokens < static_cast<int>(secondsFrom(0) * usualTokensPerSecond);
}

bool WhisperOmission::isAfter(std::size_t sample) const {
  return secondsFrom(sample / frameSamples) >= leastSentenceSeconds;
}

bool WhisperOmission::isInside(int tokens) const {
  const double seconds = secondsFrom(0);
  if (tokens < static_cast<int>(seconds * leastTokensPerSecond)) return true;
  if (tokens >= static_cast<int>(seconds * twiceTokensPerSecond)) return false;
  // Said twice, the second time follows a pause: the longest one.
  std::size_t pauseBegin = 0;
  std::size_t pauseLength = 0;
  std::size_t quiet = 0;
  for (std::size_t step = 0; step < spoken_.size(); ++step) {
    quiet = spoken_[step] ? 0 : quiet + 1;
    if (quiet <= pauseLength || secondsFrom(step) < seconds / 4 || secondsFrom(step) > 3 * seconds / 4)
      continue;
    pauseLength = quiet;
    pauseBegin = step;
  }
  const double second = secondsFrom(pauseBegin);
  return pauseLength >= leastRepetitionPause && std::abs(2 * second - seconds) < sameLength * seconds;
}

std::size_t repetitionIn(std::string_view text) {
  const auto stutter = stutterIn(text);
  const auto words = wordsOf(text.substr(0, stutter));
  for (std::size_t first = 0; first < words.size(); ++first) {
    for (std::size_t length = 1; first + 2 * length <= words.size(); ++length) {
      if (standsThere(words, first, length, length < phraseWords ? wordRepeats : 2))
        return words[first + length].begin;
    }
  }
  return stutter;
}

bool isLooping(std::string_view text) {
  if (stutterIn(text) != std::string_view::npos) return true;
  auto words = wordsOf(text);
  if (!words.empty()) words.pop_back();  // it may go on
  for (std::size_t period = 1; loopRounds * period < words.size(); ++period) {
    const auto looping = std::max(loopRounds * period, fewestLoopWords);
    if (looping >= words.size()) continue;
    const auto first = words.size() - looping - 1;
    bool isSame = true;
    for (auto i = first; isSame && i + period < words.size(); ++i)
      isSame = words[i].text == words[i + period].text;
    if (isSame) return true;
  }
  return false;
}

std::string withoutSoundDescriptions(std::string_view text) {
  constexpr std::string_view blanks = " \t\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  const auto trimmed = text.substr(first, text.find_last_not_of(blanks) - first + 1);

  auto rest = trimmed;
  while (!rest.empty()) {
    constexpr std::string_view note = "\u266a";
    if (rest.starts_with(note)) {
      rest.remove_prefix(note.size());
    } else if (blanks.contains(rest.front()) || rest.front() == '.') {
      rest.remove_prefix(1);
    } else {
      const auto kind = std::string_view("[(*").find(rest.front());
      if (kind == std::string_view::npos) return std::string(trimmed);
      const auto end = rest.find(std::string_view("])*")[kind], 1);
      rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
  }
  return {};
}

}  // namespace murmel::worker
