#pragma once

#include "Dictation/OverlayController.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Signal.h"

#include <functional>
#include <string>

namespace murmel {

/// What other programs may know of the application. Never a word that was spoken.
struct StatusReport {
  std::string state = "ready";  ///< a name for programs
  std::string message;          ///< the status line
  std::string engine;           ///< what recognises speech
  double level = 0;             ///< of the microphone, 0…1
  double elapsed = 0;           ///< seconds of the recording that is under way

  friend bool operator==(const StatusReport&, const StatusReport&) = default;
};

/// Stands between a dictation and its indicator, and tells panels and commands what the indicator shows. Main
/// thread.
class StatusPublisher final : public OverlayController {
 public:
  /// How often a change of the level alone is told.
  static constexpr Duration levelInterval = std::chrono::milliseconds(200);

  /// The references outlive this. `engine` names the recogniser of the moment.
  StatusPublisher(OverlayController& shown, const Clock& clock, std::function<std::string()> engine);

  void update(const DictationState& state) override;
  void setLevel(double level) override;
  void showCaptureCondition(CaptureCondition condition) override { shown_.showCaptureCondition(condition); }
  void showHint(const std::string& hint) override { shown_.showHint(hint); }

  [[nodiscard]] StatusReport report() const;
  [[nodiscard]] Signal<>& didChange() { return didChange_; }

 private:
  OverlayController& shown_;
  const Clock& clock_;
  std::function<std::string()> engine_;
  DictationState state_;
  double level_ = 0;
  Instant recordingSince_{};
  Instant levelToldAt_{};
  Signal<> didChange_;
};

}  // namespace murmel
