#pragma once

#include "Foundation/Async/Executor.h"
#include "Platform/KeyboardPoster.h"

#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace murmel {

/// A keyboard that notes what is pressed, and a user who may hold modifiers.
class FakeKeyboardPoster final : public KeyboardPoster {
 public:
  static constexpr Duration longestWait = std::chrono::milliseconds(400);

  FakeKeyboardPoster(Executor& executor, Workspace& workspace) : executor_(executor), workspace_(workspace) {}

  [[nodiscard]] bool mayPost() override { return mayPost_; }
  [[nodiscard]] bool canPost(PasteChord chord) override { return chords_.contains(chord); }
  void maskHeldModifiers() override;
  [[nodiscard]] bool isHindered() override { return isHindered_; }
  Task<void> awaitReleasedModifiers() override;
  PostResult post(PasteChord chord, const RunningApplication& target) override;

  void forbid() { mayPost_ = false; }
  void hinder() { isHindered_ = true; }
  void setChords(std::set<PasteChord> chords) { chords_ = std::move(chords); }
  /// The user holds a modifier and lets go after `time`.
  void holdModifierFor(Duration time) { held_ = time; }
  /// Runs right before the keys are sent, for what happens at the last moment.
  void beforePost(std::function<void()> happens) { beforePost_ = std::move(happens); }
  /// Runs when the chord was pressed.
  void onPosted(std::function<void(PasteChord)> handler) { onPosted_ = std::move(handler); }

  /// How often a held modifier was masked.
  [[nodiscard]] int masked() const { return masked_; }
  [[nodiscard]] const std::vector<PasteChord>& posted() const { return posted_; }

 private:
  Executor& executor_;
  Workspace& workspace_;
  bool mayPost_ = true;
  bool isHindered_ = false;
  std::set<PasteChord> chords_{PasteChord::controlV, PasteChord::controlShiftV, PasteChord::shiftInsert};
  Duration held_{};
  int masked_ = 0;
  std::function<void()> beforePost_;
  std::function<void(PasteChord)> onPosted_;
  std::vector<PasteChord> posted_;
};

}  // namespace murmel
