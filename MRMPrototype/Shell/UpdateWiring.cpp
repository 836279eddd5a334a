#include "Shell/UpdateWiring.h"

#include "MRMUpdateUI/UpdatePanel.h"
#include "Shell/UpdateServices.h"

#include <utility>

namespace murmel {

UpdateWiring::UpdateWiring(Parts parts)
    : parts_(std::move(parts)),
      lastDictation_(parts_.process.clock.now()),
      updater_(updaterConfiguration(parts_.installation), ports()) {
  observers_.push_back(updater_.onChange(parts_.refreshMenu));
  observers_.push_back(parts_.settings.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::automaticUpdateChecks) updater_.followSchedule();
  }));
}

DirectUpdater::Ports UpdateWiring::ports() {
  return {
      .executor = parts_.process.executor,
      .clock = parts_.process.clock,
      .launcher = parts_.process.launcher,
      .files = files_,
      .startsUp = &startsUp,
      .beginInstallation = [this] { return parts_.gate.beginInstallation(); },
      .endInstallation = [this] { parts_.gate.endInstallation(); },
      .restart = parts_.restart,
      .circumstances =
          [this] {
            return UpdateScheduleFacts{.isAgreed = parts_.settings.automaticUpdateChecks(),
                                       .lastCheck = std::nullopt,
                                       .now = 0,
                                       .isOnline = conditions_.isOnline(),
                                       .isMetered = conditions_.isMetered(),
                                       .isDictating = parts_.isDictating()};
          },
      .isIdle = [this] { return mayBegin(); },
  };
}

bool UpdateWiring::mayBegin() const {
  const auto idle =
      std::chrono::duration_cast<std::chrono::seconds>(parts_.process.clock.now() - lastDictation_);
  return mayInstallUpdate({.isDictating = parts_.isDictating(),
                           .idleSeconds = idle.count(),
                           .waitsForIdle = true,
                           .isOnBattery = conditions_.isOnBattery()});
}

void UpdateWiring::dictationChanged() {
  lastDictation_ = parts_.process.clock.now();
}

QString UpdateWiring::menuLine() const {
  const auto& status = updater_.status();
  return status.release && status.phase != UpdateStatus::Phase::failed ? updateWords(status) : QString();
}

}  // namespace murmel
