#include "Workers/SageWorker/AnswerDraft.h"

#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>

namespace murmel::worker {

namespace {

struct Letters {
  std::u32string letters;
  std::vector<std::size_t> ends;
};

Letters lettersOf(std::string_view text) {
  Letters found;
  for (std::size_t position = 0; position < text.size();) {
    const auto start = position;
    const auto scalar = text::nextScalar(text, position);
    if (!text::isWordScalar(scalar)) continue;
    // One scalar each: only the places matter, and Russian has no longer lower-case forms.
    const auto lower = text::lowercased(text.substr(start, position - start));
    std::size_t first = 0;
    found.letters += text::nextScalar(lower, first);
    found.ends.push_back(position);
  }
  return found;
}

bool beginsSentence(std::string_view written) {
  constexpr auto ends = std::to_array<std::string_view>({".", "!", "?", "…"});
  return written.empty() || std::ranges::any_of(ends, [&](auto mark) { return written.ends_with(mark); });
}

std::string raised(std::string_view text) {
  std::string result;
  bool isFirst = true;
  for (const auto character : text::characters(text)) {
    const bool raises = isFirst && text::isLetter(character);
    if (raises) isFirst = false;
    result += raises ? text::uppercased(character) : std::string(character);
  }
  return result;
}

}  // namespace

AnswerDraft::AnswerDraft(const ByteLevelBPE& tokens, std::string_view question, std::int64_t end)
    : tokens_(tokens), question_(question), end_(end) {
  auto [letters, ends] = lettersOf(question_);
  letters_ = std::move(letters);
  ends_ = std::move(ends);
}

std::string AnswerDraft::rest(std::string_view written) const {
  const auto done = lettersOf(written).letters;
  auto place = std::min(done.size(), letters_.size());
  // The last letters tell where words have been dropped or added.
  for (const std::size_t enough : {6, 3}) {
    const auto tail = std::u32string_view(done).substr(done.size() - std::min(done.size(), enough));
    if (std::u32string_view(letters_).substr(0, place).ends_with(tail)) break;
    constexpr std::size_t longestWord = 20;
    const auto found = letters_.find(tail, place - std::min(place, longestWord));
    if (found == std::u32string::npos) continue;
    place = found + tail.size();
    break;
  }
  auto rest = std::string_view(question_).substr(place == 0 ? 0 : ends_[place - 1]);
  const auto trimmed = text::trimmedEnd(written);
  if (!trimmed.empty() && text::isPunctuation(text::characters(trimmed).back())) {
    // Marks of the question that the answer has kept, or put another one in the place of.
    for (const auto character : text::characters(rest)) {
      if (!text::isPunctuation(character)) break;
      rest.remove_prefix(character.size());
    }
  }
  return beginsSentence(trimmed) ? raised(rest) : std::string(rest);
}

std::vector<std::int64_t> AnswerDraft::after(std::span<const std::int64_t> written) const {
  const auto text = tokens_.decode(written);
  auto guessed = rest(text);
  const auto trimmed = text::trimmedEnd(guessed.empty() ? std::string_view(text) : guessed);
  if (!trimmed.empty() && !text::isPunctuation(text::characters(trimmed).back())) guessed += '.';
  std::vector<std::int64_t> draft;
  // Words are cut into tokens as a whole: with what is written, so that the middle of a word fits.
  const auto whole = tokens_.encode(text + guessed);
  if (whole && whole->size() >= written.size() &&
      std::ranges::equal(written, std::span(*whole).first(written.size()))) {
    draft.assign(whole->begin() + static_cast<std::ptrdiff_t>(written.size()), whole->end());
  } else if (auto tokens = tokens_.encode(guessed)) {
    draft = *std::move(tokens);
  }
  draft.push_back(end_);
  return draft;
}

}  // namespace murmel::worker
