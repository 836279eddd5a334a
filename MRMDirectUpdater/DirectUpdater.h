#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Signal.h"
#include "MRMDirectUpdater/UpdateMemory.h"
#include "MRMDirectUpdater/UpdaterRun.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "MRMUpdatePolicy/UpdateFeed.h"
#include "MRMUpdatePolicy/UpdateRoad.h"
#include "MRMUpdatePolicy/UpdateSchedule.h"
#include "Platform/FileSystem.h"
#include "Platform/ProcessLauncher.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// How an update stands.
struct UpdateStatus {
  enum class Phase {
    idle,  ///< nothing is known, or nobody has asked
    checking,
    upToDate,
    available,    ///< `release` can be had
    downloading,  ///< `progress`
    waiting,      ///< it has arrived and waits for the end of a dictation, or for idle
    installing,
    installed,  ///< the new version is in place; the restart is under way or the user's
    failed,     ///< `message`; `release` is still there where the failure came after the check
  };

  Phase phase = Phase::idle;
  std::optional<UpdateRelease> release;
  UpdateProgress progress;
  std::string message;                    ///< one sentence for the user
  std::optional<std::int64_t> lastCheck;  ///< seconds since 1970

  [[nodiscard]] bool isUnderWay() const {
    return phase == Phase::checking || phase == Phase::downloading || phase == Phase::waiting ||
           phase == Phase::installing;
  }
  friend bool operator==(const UpdateStatus&, const UpdateStatus&) = default;
};

/// Looks for updates and installs them, each step only when it was agreed to: a check by `check`, or by the
/// schedule where automatic checks are switched on; the download and the installation by `install`. Nothing
/// is connected to, and no process started, before that. Main thread; nothing here blocks.
class DirectUpdater {
 public:
  /// The executable in the folder "Workers" of the resources.
  static constexpr std::string_view workerName = "mrm-updater";

  struct Configuration {
    UpdateRoad road = UpdateRoad::none;
    UpdateSubject subject;
    std::string fingerprint;           ///< of the release key
    std::filesystem::path executable;  ///< the updater
    std::filesystem::path root;        ///< folder of a direct installation
    std::filesystem::path memory;      ///< file that keeps what is remembered
    std::vector<std::string> environment;
    std::vector<std::string> arguments;  ///< behind the task; only a development build's updater knows any
    std::function<bool(const std::filesystem::path&)> mayExecute;
    std::vector<std::filesystem::path> readable{};  ///< what the arguments name
  };

  struct Ports {
    Executor& executor;
    const Clock& clock;
    ProcessLauncher& launcher;
    FileSystem& files;
    /// Answers whether the application in a tree starts, by its launch-time self-test.
    std::function<Task<bool>(std::filesystem::path program)> startsUp;
    /// False while somebody dictates; from true on nobody can, until `endInstallation`.
    std::function<bool()> beginInstallation;
    std::function<void()> endInstallation;
    /// Ends this instance and starts the new one. Empty where that is the user's.
    std::function<void()> restart;
    /// What the circumstances say; filled in but for the memory and the time.
    std::function<UpdateScheduleFacts()> circumstances;
    /// Whether an installation that waits for idle may begin.
    std::function<bool()> isIdle;
  };

  DirectUpdater(Configuration configuration, Ports ports);
  ~DirectUpdater();
  DirectUpdater(const DirectUpdater&) = delete;
  DirectUpdater& operator=(const DirectUpdater&) = delete;

  /// Why this installation does not look for updates itself, in one sentence; empty when it does.
  [[nodiscard]] std::string whyNot() const;
  [[nodiscard]] UpdateRoad road() const { return configuration_.road; }
  [[nodiscard]] const UpdateStatus& status() const { return status_; }
  [[nodiscard]] Registration onChange(std::function<void()> handler) {
    return changed_.subscribe(std::move(handler));
  }

  /// Somebody asks now.
  void check();
  /// Makes automatic checks from now on, as the schedule has it. Also after every change of the setting and
  /// when the computer has woken up.
  void followSchedule();
  /// Fetches and installs `status().release`, at the end of a dictation at the earliest. A direct
  /// installation only.
  void install(bool whenIdle);
  /// Gives up what is under way, but for an installation that has begun. What has arrived is kept.
  void cancel();

 private:
  [[nodiscard]] std::int64_t secondsNow() const;
  Task<void> look();
  Task<void> bring(UpdateRelease release, bool whenIdle);
  Task<std::expected<void, std::string>> exchangeVersions(UpdateRelease release);
  Task<UpdaterRun::Result> run(std::string task, std::string order);
  [[nodiscard]] std::string orderFor(const UpdateRelease& release) const;
  void show(UpdateStatus::Phase phase, std::string message = {});
  void remember();
  void lookAtSchedule();

  Configuration configuration_;
  Ports ports_;
  UpdateMemory memory_;
  std::string feed_;  ///< the last that was believed, as it was signed
  UpdateStatus status_;
  Signal<> changed_;
  std::unique_ptr<UpdaterRun> run_;
  Registration schedule_;
  Scope tasks_;
  Scope installation_;  ///< not given up by `cancel`
};

}  // namespace murmel
