#include "Models/ModelManager.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Product/MRMAppIdentity.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsMigrations.h"
#include "Shell/MRMPrototypeApp.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"
#include "Shell/RemoteCommands.h"
#include "Shell/SetupChecks.h"

#include <QApplication>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fmt/core.h>
#include <sys/signalfd.h>

namespace murmel {

namespace {

/// Ends the application properly on the signals that ask for it.
class TerminationSignals {
 public:
  /// Blocks the signals; threads that are started later inherit that.
  TerminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = UniqueDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  }

  void onSignal(std::function<void()> handler) {
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_.get(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this, handler = std::move(handler)] {
      signalfd_siginfo information{};
      if (::read(descriptor_.get(), &information, sizeof information) > 0) handler();
    });
  }

 private:
  UniqueDescriptor descriptor_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

bool hasDisplay() {
  // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody writes the environment
  return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

int complain(const std::string& sentence) {
  fmt::print(stderr, "murmel: {}\n", sentence);
  return 1;
}

}  // namespace

int runDesktop(int& argumentCount, char** arguments, const ApplicationFolders& folders,
               const InformationDictionary& info, LaunchSelfTest selfTest) {
  if (!hasDisplay()) {
    return complain("There is no display. “murmel transcribe FILE” works without one.");
  }
  TerminationSignals signals;
  QApplication application(argumentCount, arguments);
  application.setQuitOnLastWindowClosed(false);
  application.setApplicationName(QString::fromStdString(MRMAppIdentity::displayName(info)));
  application.setDesktopFileName(QString::fromStdString(MRMAppIdentity::applicationIdentifier(info)));

  const auto identifier = MRMAppIdentity::applicationIdentifier(info);
  std::unique_ptr<MRMPrototypeApp> app;
  RemoteCommandService remote(identifier);
  // A self-test looks at this build, not at an instance that happens to run.
  if (selfTest == LaunchSelfTest::none) {
    const auto claim = remote.claim({
        .activate =
            [&app] {
              if (app) app->reopen();
            },
        .command =
            [&app](IntelCommand command) {
              if (app) app->perform(command);
            },
    });
    if (claim == RemoteCommandService::Claim::alreadyTaken) {
      const auto shown = activateRunningInstance(identifier);
      return shown ? 0 : complain(shown.error());
    }
  }
  auto created = MRMPrototypeApp::create(folders, info, selfTest);
  if (!created) return complain(created.error());
  app = *std::move(created);
  signals.onSignal([&app] { app->perform(IntelCommand::quit); });
  app->applicationDidFinishLaunching();
  const int status = QApplication::exec();
  return status;
}

int runDoctor(int& argumentCount, char** arguments, const ApplicationFolders& folders,
              const InformationDictionary& /*info*/) {
  const QCoreApplication application(argumentCount, arguments);
  QtExecutor executor;
  const auto models = ModelManager::forStore(executor, modelStore(folders), folders.resources);
  models->validate();
  bool worksWithoutDesktop = true;
  PosixFileSystem files;
  JsonDefaultsStore defaults(files, defaultsFile(folders.configuration));
  const auto shortcut = settingsMigration::shortcut(defaults, MRMDistributionChannel::direct);
  for (const auto& check : setupChecks(folders, *models, shortcut)) {
    fmt::print("{} {}: {}\n", check.works ? "yes" : "no ", check.subject, check.detail);
    if (check.subject == "Speech recognition") worksWithoutDesktop = check.works;
  }
  return worksWithoutDesktop ? 0 : 1;
}

}  // namespace murmel
