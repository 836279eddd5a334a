#pragma once

#include "Platform/KeyboardPoster.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// How one kind of application pastes.
struct PasteMethod {
  PasteChord chord = PasteChord::controlV;
  /// The chord pastes the primary selection there, so the text has to stand on it as well.
  bool usesPrimary = false;
  /// It asks what is on every new clipboard, and pastes nothing before it has been told.
  bool looksFirst = false;
  /// Keys without a meaning arrive as text there, too. A lone modifier opens no menu in such an application.
  bool takesEveryKey = false;
  /// What pastes the clipboard there, where the chord pastes the primary selection.
  std::string_view byHand = {};

  /// What the user presses to paste what was copied. Some terminals have no key for it: there it is the entry
  /// of the menu that pastes once more.
  [[nodiscard]] std::string_view keysByHand() const {
    if (!byHand.empty()) return byHand;
    return usesPrimary ? "Paste Last Dictation Again" : rawValue(chord);
  }

  friend bool operator==(const PasteMethod&, const PasteMethod&) = default;
};

/// Which key combination pastes in which application, by the class of its window. Ctrl+V where nothing else
/// is said. A value.
class PasteChordTable {
 public:
  /// A line of a table that could not be understood, counted from 1.
  struct InvalidLine {
    std::size_t number = 0;
    std::string text;
  };

  /// The applications that are known to differ: terminals and a few editors.
  PasteChordTable();

  /// Adds the user's own lines, which win over the built-in ones; later lines win over earlier ones. One line
  /// for each class: `XTerm = Shift+Insert primary`. Empty lines and lines beginning with "#" are skipped.
  /// Lines that are not understood change nothing and are returned.
  std::vector<InvalidLine> addUserLines(std::string_view lines);

  /// Class and instance name of the window, compared without regard to ASCII case.
  [[nodiscard]] PasteMethod method(std::string_view windowClass, std::string_view instanceName) const;

 private:
  struct Row {
    std::string windowClass;
    PasteMethod method;
  };
  std::vector<Row> rows_;
};

}  // namespace murmel
