#pragma once

#include "Foundation/Async/Signal.h"
#include "MRMDirectUpdater/DirectUpdater.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Settings/SettingsRepository.h"
#include "Shell/Installation.h"
#include "Shell/ProcessServices.h"
#include "Shell/SystemConditions.h"

#include <QString>
#include <functional>
#include <optional>
#include <vector>

namespace murmel {

/// The updates of a running application: when to look is the setting's and the schedule's, when to install
/// the dictations'. Main thread.
class UpdateWiring {
 public:
  struct Parts {
    const ProcessServices& process;
    const Installation& installation;
    SettingsRepository& settings;
    UpdateActivityRegister& gate;
    std::function<bool()> isDictating;
    /// Ends this instance and starts the installed one.
    std::function<void()> restart;
    std::function<void()> refreshMenu;
  };

  /// What the parts refer to outlives this.
  explicit UpdateWiring(Parts parts);

  [[nodiscard]] DirectUpdater& updater() { return updater_; }
  /// What the menu says about an update; empty when there is nothing to say.
  [[nodiscard]] QString menuLine() const;
  /// From now on checks are made, where they are agreed to.
  void start() { updater_.followSchedule(); }
  void computerWokeUp() { updater_.followSchedule(); }
  /// A dictation has begun or ended.
  void dictationChanged();

 private:
  [[nodiscard]] DirectUpdater::Ports ports();
  [[nodiscard]] bool mayBegin() const;

  Parts parts_;
  PosixFileSystem files_;
  SystemConditions conditions_;
  Instant lastDictation_;
  DirectUpdater updater_;
  std::vector<Registration> observers_;
};

}  // namespace murmel
