#include "Foundation/Text/Sizes.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/Confinement.h"
#include "Shell/InstanceLock.h"
#include "Shell/InterruptSignal.h"
#include "Shell/Programs.h"
#include "Shell/StandardStreams.h"
#include "Shell/UpdateServices.h"

#include <QCoreApplication>
#include <cstdio>
#include <optional>

#include <fmt/core.h>
#include <unistd.h>

namespace murmel {

namespace {

using Phase = UpdateStatus::Phase;

/// One run of the command: looks, and goes on to install when that is what was asked for.
class UpdateCommand {
 public:
  UpdateCommand(DirectUpdater& updater, const Installation& installation, bool installs)
      : updater_(updater), installation_(installation), installs_(installs) {
    changes_ = updater_.onChange([this] { changed(); });
  }

  void start() { updater_.check(); }
  void interrupt() {
    if (updater_.status().phase == Phase::installing) return;
    updater_.cancel();
    if (::isatty(STDOUT_FILENO) != 0) print(stdout, "\n");
    complain("Stopped; what has arrived is kept.");
    QCoreApplication::exit(1);
  }

 private:
  void changed() {
    const auto& status = updater_.status();
    switch (status.phase) {
      case Phase::upToDate:
        return end(0, installation_.build.displayName + " is up to date.");
      case Phase::available:
        if (status.release) available(*status.release);
        return;
      case Phase::downloading:
        return showProgress(status.progress);
      case Phase::installing:
        print(stdout, "{}Installing ...\n", ::isatty(STDOUT_FILENO) != 0 ? "\n" : "");
        std::fflush(stdout);
        return;
      case Phase::installed:
        return end(0, fmt::format("Version {} is installed.",
                                  status.release ? status.release->version : std::string()));
      case Phase::failed:
        complain(status.message);
        return QCoreApplication::exit(1);
      default:
        return;
    }
  }

  void available(const UpdateRelease& release) {
    if (asked_) return;
    asked_ = true;
    print(stdout, "Version {} (build {}) is available, {}.\n", release.version, release.build,
          megabytes(release.size));
    if (!release.notes.empty()) print(stdout, "\n{}\n\n", release.notes);
    if (updater_.road() == UpdateRoad::systemPackage) {
      const auto command = packageUpdateCommand(installation_.identifier);
      if (!installs_) return end(0, "Install it with: " + command);
      complain("This is a package of your system, which Murmel does not change. Type: " + command);
      return QCoreApplication::exit(1);
    }
    if (!installs_) return end(0, "Install it with: murmel update install");
    updater_.install(false);
  }

  void showProgress(const UpdateProgress& progress) {
    if (!progress.trouble.empty()) complain(progress.trouble);
    if (::isatty(STDOUT_FILENO) == 0 || !progress.total) return;
    print(stdout, "\r{:3.0f} %",
          100.0 * static_cast<double>(progress.received) / static_cast<double>(*progress.total));
    std::fflush(stdout);
  }

  void end(int status, const std::string& sentence) {
    print(stdout, "{}\n", sentence);
    QCoreApplication::exit(status);
  }

  DirectUpdater& updater_;
  const Installation& installation_;
  bool installs_;
  bool asked_ = false;
  Registration changes_;
};

}  // namespace

int runUpdate(Arguments arguments, const Installation& installation, const UpdateRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  QtExecutor executor;
  InterruptSignal interrupts(executor);
  std::optional<InstanceLock> lock;
  if (role.installs) {
    // A running instance would go on with workers that are not its own.
    auto taken = InstanceLock::take(installation);
    if (!taken || !*taken) {
      complain(taken ? "Murmel is running. Install the update from its settings, or after “murmel quit”."
                     : taken.error());
      return 1;
    }
    lock = *std::move(taken);
  }
  const SystemClock clock;
  LinuxProcessLauncher launcher(confinementPolicy(installation));
  PosixFileSystem files;
  DirectUpdater updater(updaterConfiguration(installation), {.executor = executor,
                                                             .clock = clock,
                                                             .launcher = launcher,
                                                             .files = files,
                                                             .startsUp = &startsUp,
                                                             .beginInstallation = [] { return true; },
                                                             .endInstallation = [] {},
                                                             .restart = {},
                                                             .circumstances = {},
                                                             .isIdle = [] { return true; }});
  UpdateCommand command(updater, installation, role.installs);
  interrupts.setHandler([&command] { command.interrupt(); });
  executor.post([&command] { command.start(); });
  return QCoreApplication::exec();
}

}  // namespace murmel
