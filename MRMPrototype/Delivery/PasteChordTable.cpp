#include "Delivery/PasteChordTable.h"

#include "Foundation/Text/Ascii.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <optional>
#include <ranges>

namespace murmel {

namespace {

constexpr PasteMethod terminal{PasteChord::controlShiftV, false};
constexpr PasteMethod lookingTerminal{PasteChord::controlShiftV, false, true};
constexpr PasteMethod classicTerminal{PasteChord::shiftInsert, true};
constexpr PasteMethod putty{.chord = PasteChord::shiftInsert, .usesPrimary = true, .byHand = "Ctrl+Shift+V"};
constexpr PasteMethod rxvt{.chord = PasteChord::shiftInsert, .usesPrimary = true, .byHand = "Ctrl+Alt+V"};
constexpr PasteMethod code{.chord = PasteChord::shiftInsert, .usesPrimary = true, .byHand = "Ctrl+V"};

struct KnownClass {
  std::string_view windowClass;
  PasteMethod method;
};

/// Ctrl+V types a control character into a terminal. Those of the first group follow the convention of
/// desktop terminals; those of the second paste the primary selection with Shift+Insert, and most know no key
/// for the clipboard; editors of the third give Ctrl+V another meaning, or have a terminal inside that
/// takes the selection where the editor takes the clipboard.
constexpr KnownClass knownClasses[] = {
    {"Alacritty", terminal},
    {"Com.mitchellh.ghostty", terminal},
    {"Cool-retro-term", terminal},
    {"Deepin-terminal", terminal},
    {"Gnome-terminal", lookingTerminal},
    {"Gnome-terminal-server", lookingTerminal},
    {"Guake", terminal},
    {"Hyper", terminal},
    {"Kgx", terminal},
    {"Konsole", terminal},
    {"Lxterminal", terminal},
    {"Mate-terminal", terminal},
    {"Org.gnome.Console", terminal},
    {"Org.gnome.Ptyxis", terminal},
    {"Org.gnome.Terminal", lookingTerminal},
    {"Org.kde.konsole", terminal},
    {"Org.kde.yakuake", terminal},
    {"Org.wezfurlong.wezterm", terminal},
    {"Qterminal", terminal},
    {"Roxterm", terminal},
    {"Sakura", terminal},
    {"St-256color", terminal},
    {"Tabby", terminal},
    {"Terminator", terminal},
    {"Terminology", terminal},
    {"Tilda", terminal},
    {"Tilix", terminal},
    {"Xfce4-terminal", terminal},
    {"Yakuake", terminal},
    {"Zutty", {.chord = PasteChord::controlShiftV, .takesEveryKey = true}},
    {"foot", terminal},
    {"footclient", terminal},
    {"kitty", terminal},
    {"Mlterm", classicTerminal},
    {"Pterm", putty},
    {"Putty", putty},
    {"Rxvt", classicTerminal},
    {"URxvt", rxvt},
    {"UXTerm", classicTerminal},
    {"XTerm", classicTerminal},
    {"Emacs", {PasteChord::shiftInsert, false}},
    {"Gvim", classicTerminal},
    {"Code", code},
    {"Code - OSS", code},
    {"Cursor", code},
    {"VSCodium", code},
};

std::optional<PasteChord> parseChord(std::string_view name) {
  for (const auto chord : allCases<PasteChord>()) {
    if (text::equalsIgnoringAsciiCase(rawValue(chord), name)) return chord;
  }
  return std::nullopt;
}

std::optional<PasteMethod> parseMethod(std::string_view text) {
  const auto words = text::words(text);
  if (words.empty() || words.size() > 2) return std::nullopt;
  const auto chord = parseChord(words.front());
  if (!chord) return std::nullopt;
  if (words.size() == 2 && !text::equalsIgnoringAsciiCase(words.back(), "primary")) return std::nullopt;
  return PasteMethod{*chord, words.size() == 2};
}

}  // namespace

PasteChordTable::PasteChordTable() {
  for (const auto& known : knownClasses) rows_.push_back({std::string(known.windowClass), known.method});
}

std::vector<PasteChordTable::InvalidLine> PasteChordTable::addUserLines(std::string_view lines) {
  std::vector<InvalidLine> invalid;
  std::size_t number = 0;
  for (const auto part : std::views::split(lines, '\n')) {
    ++number;
    const auto line = text::trimmed(std::string_view(part.begin(), part.end()));
    if (line.empty() || line.starts_with('#')) continue;
    const auto equals = line.rfind('=');
    const auto name =
        equals == std::string_view::npos ? std::string_view{} : text::trimmed(line.substr(0, equals));
    const auto method = name.empty() ? std::nullopt : parseMethod(line.substr(equals + 1));
    if (method) {
      rows_.push_back({std::string(name), *method});
    } else {
      invalid.push_back({number, std::string(line)});
    }
  }
  return invalid;
}

PasteMethod PasteChordTable::method(std::string_view windowClass, std::string_view instanceName) const {
  const auto row = std::ranges::find_if(rows_.rbegin(), rows_.rend(), [&](const Row& candidate) {
    return text::equalsIgnoringAsciiCase(candidate.windowClass, windowClass) ||
           text::equalsIgnoringAsciiCase(candidate.windowClass, instanceName);
  });
  return row == rows_.rend() ? PasteMethod{} : row->method;
}

}  // namespace murmel
