#include "CleanUp/CompiledVocabulary.h"

#include "CleanUp/VocabularyTokens.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace murmel {

namespace {

struct Entry {
  std::vector<TokenId> term;
  std::vector<std::size_t>
      fallback;  ///< for each prefix the length of its longest border (Knuth-Morris-Pratt)
  TokenSequence replacement;
  std::string replacementText;  ///< what the replacement's pieces are views into
};

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isLineBreak(char32_t scalar) {
  return (scalar >= U'\n' && scalar <= U'\r') || scalar == 0x85 || scalar == 0x2028 || scalar == 0x2029;
}

template <class Visit>
void forEachLine(std::string_view text, Visit visit) {
  std::size_t begin = 0;
  for (std::size_t position = 0; position < text.size();) {
    const auto start = position;
    if (!isLineBreak(text::nextScalar(text, position))) continue;
    visit(text.substr(begin, start - begin));
    begin = position;
  }
  visit(text.substr(begin));
}

std::vector<std::size_t> borders(std::span<const TokenId> term) {
  std::vector<std::size_t> result(term.size(), 0);
  for (std::size_t index = 1, length = 0; index < term.size(); ++index) {
    while (length > 0 && term[index] != term[length]) length = result[length - 1];
    if (term[index] == term[length]) ++length;
    result[index] = length;
  }
  return result;
}

/// Where the entry's term stands in the text with no word scalar beside it: first come, without overlap.
/// Takes time proportional to the text, whatever the term.
std::vector<std::size_t> occurrences(const Entry& entry, const TokenSequence& text) {
  std::vector<std::size_t> result;
  const auto& ids = text.ids;
  const auto& term = entry.term;
  const auto isWordAt = [&text](std::size_t index) {
    return index < text.isWord.size() && text.isWord[index] != 0;
  };
  std::size_t matched = 0;
  for (std::size_t index = 0; index < ids.size();) {
    if (matched == 0) {
      const auto first = std::find(ids.begin() + static_cast<std::ptrdiff_t>(index), ids.end(), term[0]);
      if (first == ids.end()) break;
      index = static_cast<std::size_t>(first - ids.begin());
    } else if (ids[index] != term[matched]) {
      matched = entry.fallback[matched - 1];
      continue;
    }
    ++index;
    if (++matched < term.size()) continue;
    const auto begin = index - matched;
    const bool standsAlone = !isWordAt(index) && (begin == 0 || !isWordAt(begin - 1));
    if (standsAlone) result.push_back(begin);
    matched = standsAlone ? 0 : entry.fallback[matched - 1];
  }
  return result;
}

std::size_t sizeOf(std::span<const std::string_view> pieces) {
  std::size_t size = 0;
  for (const auto piece : pieces) size += piece.size();
  return size;
}

void replace(TokenSequence& text, const Entry& entry, std::span<const std::size_t> places) {
  const auto& inserted = entry.replacement;
  if (inserted.size() == entry.term.size()) {
    for (const auto place : places) text.overwrite(place, inserted);
    return;
  }
  TokenSequence result;
  result.reserve(text.size() + places.size() * inserted.size());
  std::size_t copied = 0;
  for (const auto place : places) {
    result.append(text, copied, place);
    result.append(inserted, 0, inserted.size());
    copied = place + entry.term.size();
  }
  result.append(text, copied, text.size());
  text = std::move(result);
}

/// Whether two places follow each other so closely that the words of their replacements grow together.
bool growTogether(const Entry& entry, std::span<const std::size_t> places) {
  const auto& inserted = entry.replacement.isWord;
  if (inserted.empty() || inserted.front() == 0 || inserted.back() == 0) return false;
  return std::ranges::adjacent_find(places, [&](std::size_t place, std::size_t next) {
           return place + entry.term.size() == next;
         }) != places.end();
}

}  // namespace

struct CompiledVocabulary::State {
  TokenIds ids;
  std::vector<Entry> entries;
  /// For each token the entries that cannot match without it. Each entry is listed once, under its rarest
  /// one.
  std::vector<std::vector<std::uint32_t>> entriesOf;

  void addLine(std::string_view line) {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos || !text::isValidUtf8(line)) return;
    const auto term = text::normalized(text::trimmed(line.substr(0, equals)));
    if (term.empty()) return;
    Entry entry;
    entry.term = ids.addedTokens(term);
    entry.fallback = borders(entry.term);
    entry.replacementText = text::trimmed(line.substr(equals + 1));
    entries.push_back(std::move(entry));
  }

  void finish() {
    std::vector<std::size_t> uses(ids.size());
    for (const auto& entry : entries) {
      for (const auto id : entry.term) ++uses[id];
    }
    entriesOf.resize(ids.size());
    for (std::size_t index = 0; index < entries.size(); ++index) {
      auto& entry = entries[index];
      entry.replacement = ids.tokens(entry.replacementText);
      const auto rarest = *std::ranges::min_element(entry.term, {}, [&uses](TokenId id) { return uses[id]; });
      entriesOf[rarest].push_back(static_cast<std::uint32_t>(index));
    }
  }
};

namespace {

/// One text on its way through the entries.
class Pass {
 public:
  Pass(const TokenIds& ids, const std::vector<std::vector<std::uint32_t>>& entriesOf, std::size_t entryCount,
       std::string_view text)
      : ids_(ids),
        entriesOf_(entriesOf),
        limit_(CompiledVocabulary::maximumResultSize(text.size())),
        counts_(ids.size()),
        isDue_(entryCount),
        text_(ids.tokens(text)),
        size_(text.size()) {
    count(text_.ids);
  }

  [[nodiscard]] bool isDue(std::size_t entry) const { return isDue_[entry] != 0; }

  void run(const Entry& entry) {
    for (const auto id : entry.term) {
      if (counts_[id] == 0) return;
    }
    const auto places = occurrences(entry, text_);
    if (places.empty()) return;
    std::size_t removed = 0;
    for (const auto place : places)
      removed += sizeOf(std::span(text_.pieces).subspan(place, entry.term.size()));
    const auto size = size_ - removed + places.size() * entry.replacementText.size();
    if (size > limit_) return;

    size_ = size;
    changed_ = true;
    const bool again = growTogether(entry, places);
    for (const auto id : entry.term) counts_[id] -= static_cast<std::uint32_t>(places.size());
    replace(text_, entry, places);
    if (again) {
      joined_ = std::make_unique<std::string>(text());
      text_ = ids_.tokens(*joined_);
      std::ranges::fill(counts_, 0U);
      count(text_.ids);
    } else {
      for (std::size_t place = 0; place < places.size(); ++place) count(entry.replacement.ids);
    }
  }

  [[nodiscard]] bool hasChanged() const { return changed_; }

  [[nodiscard]] std::string text() const {
    std::string result;
    result.reserve(size_);
    for (const auto piece : text_.pieces) result += piece;
    return result;
  }

 private:
  /// Takes note of tokens that have come into the text; the entries that waited for them become due.
  void count(std::span<const TokenId> added) {
    for (const auto id : added) {
      if (id == unknownToken || counts_[id]++ > 0) continue;
      for (const auto entry : entriesOf_[id]) isDue_[entry] = 1;
    }
  }

  const TokenIds& ids_;
  const std::vector<std::vector<std::uint32_t>>& entriesOf_;
  std::size_t limit_;
  std::vector<std::uint32_t> counts_;
  std::vector<std::uint8_t> isDue_;
  TokenSequence text_;
  std::unique_ptr<std::string> joined_;
  std::size_t size_;
  bool changed_ = false;
};

}  // namespace

CompiledVocabulary::CompiledVocabulary(std::string_view vocabulary) {
  auto state = std::make_unique<State>();
  if (vocabulary.starts_with(byteOrderMark)) vocabulary.remove_prefix(byteOrderMark.size());
  forEachLine(vocabulary, [&state](std::string_view line) { state->addLine(line); });
  state->finish();
  state_ = std::move(state);
}

CompiledVocabulary::~CompiledVocabulary() = default;

std::size_t CompiledVocabulary::entryCount() const {
  return state_->entries.size();
}

std::string CompiledVocabulary::apply(std::string_view text) const {
  const auto& entries = state_->entries;
  if (entries.empty() || text.empty()) return std::string(text);
  const auto normalized = text::normalized(text);
  Pass pass(state_->ids, state_->entriesOf, entries.size(), normalized);
  // An entry only becomes due later through the replacement of one before it, or too late to count.
  for (std::size_t index = 0; index < entries.size(); ++index) {
    if (pass.isDue(index)) pass.run(entries[index]);
  }
  return pass.hasChanged() ? pass.text() : std::string(text);
}

}  // namespace murmel
