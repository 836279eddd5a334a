#pragma once

#include "Dictation/RefinementSource.h"
#include "Settings/SettingsRepository.h"

#include <functional>

namespace murmel {

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
