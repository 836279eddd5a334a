#pragma once

#include "Dictation/RefinementSource.h"
#include "History/DictationHistory.h"
#include "Settings/SettingsRepository.h"

#include <functional>

namespace murmel {

/// Keeps in the history what the user wants to keep: looks when it is made, and when the choice changes.
class HistoryUpkeep {
 public:
  /// The references outlive this.
  HistoryUpkeep(SettingsRepository& settings, DictationHistory& history, const Clock& clock)
      : observer_(settings.didChange().subscribe([&settings, &history, &clock](SettingsProperty property) {
          if (property == SettingsProperty::historyRetention)
            history.prune(settings.historyRetention(), clock.wallNow());
        })) {
    history.prune(settings.historyRetention(), clock.wallNow());
  }

 private:
  Registration observer_;
};

/// The chosen refiner stays loaded while formatting is on, and none while it is off.
class RefinerWarmth {
 public:
  RefinerWarmth(SettingsRepository& settings, RefinementSource& refinement, std::function<void()> shutdown)
      : observer_(settings.didChange().subscribe(
            [&settings, &refinement, shutdown = std::move(shutdown)](SettingsProperty property) {
              if (property != SettingsProperty::smartFormatting &&
                  property != SettingsProperty::smartLocalModel) {
                return;
              }
              if (settings.smartFormatting()) {
                refinement.warmUp();
              } else {
                shutdown();
              }
            })) {}

 private:
  Registration observer_;
};

}  // namespace murmel
