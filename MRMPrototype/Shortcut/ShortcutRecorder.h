#pragma once

#include "Platform/KeyEvent.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The rules of recording a shortcut: press and release the same one three times in a row. A value, fed with
/// the keys of the sheet's local monitor; it shows and saves nothing itself.
class ShortcutRecorder {
 public:
  static constexpr std::string_view sheetTitle = "Record a shortcut";

  enum class Outcome {
    recording,
    cancelled,  ///< dismiss the sheet
    confirmed,  ///< save `candidate()` and dismiss the sheet
  };

  /// After an outcome other than `recording` nothing changes any more.
  Outcome consume(const KeyEvent& event);

  /// The shortcut that is being confirmed.
  [[nodiscard]] const std::optional<ShortcutConfiguration>& candidate() const { return candidate_; }
  /// How often the candidate was pressed and released in a row, up to `requiredConfirmations`.
  [[nodiscard]] int confirmations() const { return confirmations_; }
  [[nodiscard]] std::string titleLine() const;
  [[nodiscard]] std::string helpLine() const;

  static constexpr int requiredConfirmations = 3;

 private:
  void keyDown(const KeyEvent& event);
  void keyUp(const KeyEvent& event);
  void flagsChanged(const KeyEvent& event);
  void extendChord(const KeyEvent& event);
  void refuse(ShortcutConfiguration detected, std::string warning);
  void confirm();

  std::optional<ShortcutConfiguration> candidate_;
  std::optional<ShortcutConfiguration> confirmedCandidate_;
  /// The last thing that was pressed, usable or not.
  std::optional<ShortcutConfiguration> detectedConfiguration_;
  int confirmations_ = 0;
  bool keyIsHeld_ = false;
  /// The modifiers of a combination that has ended are still being let go.
  bool ignoreModifiersUntilClear_ = false;
  /// Every modifier that took part since none was down.
  std::uint64_t modifierChordFlags_ = 0;
  std::string warning_;
  Outcome outcome_ = Outcome::recording;
};

/// What a recorded shortcut calls the event's key.
std::string recorderKeyLabel(const KeyEvent& event);

}  // namespace murmel
