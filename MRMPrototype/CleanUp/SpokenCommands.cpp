#include "CleanUp/SpokenCommands.h"

#include "Foundation/Text/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace murmel {

namespace {

enum class Kind : std::uint8_t {
  mark,         ///< stands at the word before it
  sentenceEnd,  ///< likewise; the next word begins a sentence
  opening,      ///< stands at the word behind it
  lineBreak,
  paragraph,
  literal,  ///< makes words of the command behind it
};

struct Command {
  std::string_view language;
  std::string_view spoken;  ///< lower case, words parted by single spaces
  Kind kind;
  std::string_view written;
};

constexpr std::string_view line = "\n";
constexpr std::string_view emptyLine = "\n\n";

constexpr auto commands = std::to_array<Command>({
    {"en", "new line", Kind::lineBreak, line},
    {"en", "newline", Kind::lineBreak, line},
    {"en", "new paragraph", Kind::paragraph, emptyLine},
    {"en", "comma", Kind::mark, ","},
    {"en", "period", Kind::sentenceEnd, "."},
    {"en", "full stop", Kind::sentenceEnd, "."},
    {"en", "question mark", Kind::sentenceEnd, "?"},
    {"en", "exclamation mark", Kind::sentenceEnd, "!"},
    {"en", "exclamation point", Kind::sentenceEnd, "!"},
    {"en", "colon", Kind::mark, ":"},
    {"en", "semicolon", Kind::mark, ";"},
    {"en", "semi colon", Kind::mark, ";"},
    {"en", "open quote", Kind::opening, "“"},
    {"en", "close quote", Kind::mark, "”"},
    {"en", "literal", Kind::literal, {}},

    {"de", "neue zeile", Kind::lineBreak, line},
    {"de", "neuer absatz", Kind::paragraph, emptyLine},
    {"de", "komma", Kind::mark, ","},
    {"de", "punkt", Kind::sentenceEnd, "."},
    {"de", "fragezeichen", Kind::sentenceEnd, "?"},
    {"de", "ausrufezeichen", Kind::sentenceEnd, "!"},
    {"de", "doppelpunkt", Kind::mark, ":"},
    {"de", "semikolon", Kind::mark, ";"},
    {"de", "strichpunkt", Kind::mark, ";"},
    {"de", "anführungszeichen auf", Kind::opening, "„"},
    {"de", "anführungszeichen zu", Kind::mark, "“"},
    {"de", "wörtlich", Kind::literal, {}},

    // With the no-break spaces that French has inside its quotes and before its high marks.
    {"fr", "à la ligne", Kind::lineBreak, line},
    {"fr", "nouvelle ligne", Kind::lineBreak, line},
    {"fr", "nouveau paragraphe", Kind::paragraph, emptyLine},
    {"fr", "virgule", Kind::mark, ","},
    {"fr", "point", Kind::sentenceEnd, "."},
    {"fr", "point d'interrogation", Kind::sentenceEnd, "\u00A0?"},
    {"fr", "point d'exclamation", Kind::sentenceEnd, "\u00A0!"},
    {"fr", "deux points", Kind::mark, "\u00A0:"},
    {"fr", "point virgule", Kind::mark, "\u00A0;"},
    {"fr", "ouvrez les guillemets", Kind::opening, "«\u00A0"},
    {"fr", "ouvrir les guillemets", Kind::opening, "«\u00A0"},
    {"fr", "fermez les guillemets", Kind::mark, "\u00A0»"},
    {"fr", "fermer les guillemets", Kind::mark, "\u00A0»"},
    {"fr", "littéral", Kind::literal, {}},

    {"es", "nueva línea", Kind::lineBreak, line},
    {"es", "nuevo párrafo", Kind::paragraph, emptyLine},
    {"es", "coma", Kind::mark, ","},
    {"es", "punto", Kind::sentenceEnd, "."},
    {"es", "abrir interrogación", Kind::opening, "¿"},
    {"es", "cerrar interrogación", Kind::sentenceEnd, "?"},
    {"es", "abrir exclamación", Kind::opening, "¡"},
    {"es", "cerrar exclamación", Kind::sentenceEnd, "!"},
    {"es", "dos puntos", Kind::mark, ":"},
    {"es", "punto y coma", Kind::mark, ";"},
    {"es", "abrir comillas", Kind::opening, "«"},
    {"es", "cerrar comillas", Kind::mark, "»"},
    {"es", "literal", Kind::literal, {}},

    {"ru", "новая строка", Kind::lineBreak, line},
    {"ru", "с новой строки", Kind::lineBreak, line},
    {"ru", "новый абзац", Kind::paragraph, emptyLine},
    {"ru", "запятая", Kind::mark, ","},
    {"ru", "точка", Kind::sentenceEnd, "."},
    {"ru", "вопросительный знак", Kind::sentenceEnd, "?"},
    {"ru", "восклицательный знак", Kind::sentenceEnd, "!"},
    {"ru", "двоеточие", Kind::mark, ":"},
    {"ru", "точка с запятой", Kind::mark, ";"},
    {"ru", "открыть кавычки", Kind::opening, "«"},
    {"ru", "закрыть кавычки", Kind::mark, "»"},
    {"ru", "буквально", Kind::literal, {}},
});

/// About fewer words than these a recogniser only guesses.
constexpr std::size_t piecesToTellBy = 4;

/// A piece between white space, and what it is compared by: its words without case and punctuation. Hyphens
/// part words, because recognisers write them or not.
struct Piece {
  std::string_view whole;
  std::string_view core;
  std::vector<std::string> keys;
};

Piece pieceOf(std::string_view whole) {
  const auto characters = text::characters(whole);
  auto begin = characters.begin();
  auto end = characters.end();
  while (begin != end && text::isPunctuation(*begin)) ++begin;
  while (end != begin && text::isPunctuation(*(end - 1))) --end;
  Piece piece{whole, {}, {}};
  if (begin == end) return piece;
  piece.core = {begin->begin(), (end - 1)->end()};
  auto folded = text::normalized(text::lowercased(piece.core));
  if (const auto at = folded.find("’"); at != std::string::npos)
    folded.replace(at, std::string_view("’").size(), "'");
  std::ranges::replace(folded, '-', ' ');
  for (const auto word : text::words(folded)) piece.keys.emplace_back(word);
  return piece;
}

/// How many pieces from `first` on say `spoken`; 0 when they do not.
std::size_t piecesSaying(std::span<const Piece> pieces, std::size_t first, std::string_view spoken) {
  const auto wanted = text::words(spoken);
  std::size_t said = 0;
  std::size_t piece = first;
  while (said < wanted.size() && piece < pieces.size() && !pieces[piece].keys.empty()) {
    for (const auto& key : pieces[piece].keys) {
      if (said == wanted.size() || key != wanted[said]) return 0;
      ++said;
    }
    ++piece;
  }
  return said == wanted.size() ? piece - first : 0;
}

struct Match {
  const Command* command = nullptr;
  std::size_t pieces = 0;
};

/// The longest command that begins at `first`.
Match commandAt(std::span<const Piece> pieces, std::size_t first,
                const std::optional<std::string>& language) {
  Match best;
  if (first >= pieces.size() || pieces[first].keys.empty()) return best;
  for (const auto& command : commands) {
    if (language && command.language != *language) continue;
    if (!command.spoken.starts_with(pieces[first].keys.front())) continue;
    const auto count = piecesSaying(pieces, first, command.spoken);
    if (count > 0 && (best.command == nullptr || command.spoken.size() > best.command->spoken.size()))
      best = {&command, count};
  }
  return best;
}

/// Puts the pieces and what the commands write together.
class Writer {
 public:
  void word(std::string_view piece) {
    if (parts_) text_ += ' ';
    if (beginsSentence_) {
      raised(piece);
    } else {
      text_ += piece;
    }
    parts_ = true;
    beginsSentence_ = false;
  }

  void command(const Command& command) {
    const bool breaks = command.kind == Kind::lineBreak || command.kind == Kind::paragraph;
    if (command.kind == Kind::opening) {
      if (parts_) text_ += ' ';
    } else {
      dropMarks(/*andSentenceEnds=*/!breaks);
    }
    text_ += command.written;
    parts_ = command.kind == Kind::mark || command.kind == Kind::sentenceEnd;
    // A quote that closes or opens does not begin another sentence; nor does it keep one from beginning.
    if (command.kind == Kind::sentenceEnd || command.kind == Kind::paragraph) beginsSentence_ = true;
    if (command.written == "," || command.written == ":" || command.written == ";") beginsSentence_ = false;
    written_ = text_.size();
  }

  [[nodiscard]] std::string take() { return std::move(text_); }

 private:
  /// Takes away the marks that the recogniser has put behind the last word, never what a command has written.
  void dropMarks(bool andSentenceEnds) {
    constexpr auto pauses = std::to_array<std::string_view>({",", ";", ":"});
    constexpr auto ends = std::to_array<std::string_view>({".", "!", "?", "…"});
    const auto endsWithOneOf = [this](std::span<const std::string_view> marks) {
      const auto found = std::ranges::find_if(marks, [this](auto mark) { return text_.ends_with(mark); });
      const auto size = found == marks.end() ? 0 : found->size();
      return text_.size() >= written_ + size ? size : 0;
    };
    while (true) {
      auto size = endsWithOneOf(pauses);
      if (size == 0 && andSentenceEnds) size = endsWithOneOf(ends);
      if (size == 0) return;
      text_.resize(text_.size() - size);
    }
  }

  void raised(std::string_view piece) {
    bool isFirst = true;
    for (const auto character : text::characters(piece)) {
      const bool raises = isFirst && text::isLetter(character);
      if (raises) isFirst = false;
      text_ += raises && text::isLowercase(character) ? text::uppercased(character) : std::string(character);
    }
  }

  std::string text_;
  std::size_t written_ = 0;  ///< up to here it is what a command has written
  bool parts_ = false;       ///< whether a space comes before the next word
  bool beginsSentence_ = false;
};

}  // namespace

std::string SpokenCommands::apply(std::string_view text, const std::optional<std::string>& language,
                                  const LanguageRecognizer& recognizer) {
  std::vector<Piece> pieces;
  for (const auto word : text::words(text)) pieces.push_back(pieceOf(word));
  auto spoken = language;
  if (!spoken && pieces.size() >= piecesToTellBy) spoken = recognizer.dominantLanguage(text);

  Writer writer;
  bool changes = false;
  for (std::size_t at = 0; at < pieces.size();) {
    auto found = commandAt(pieces, at, spoken);
    if (found.command != nullptr && found.command->kind == Kind::literal) {
      const auto next = at + found.pieces;
      const auto escaped = commandAt(pieces, next, spoken);
      if (escaped.command == nullptr) {
        found = {};
      } else {
        changes = true;
        for (std::size_t piece = next; piece < next + escaped.pieces; ++piece)
          writer.word(pieces[piece].whole);
        at = next + escaped.pieces;
        continue;
      }
    }
    if (found.command == nullptr) {
      writer.word(pieces[at++].whole);
      continue;
    }
    changes = true;
    writer.command(*found.command);
    at += found.pieces;
  }
  return changes ? writer.take() : std::string(text);
}

}  // namespace murmel
