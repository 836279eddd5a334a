#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/Process/MappedMemory.h"
#include "Platform/Linux/Session/SessionProbe.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/Appearance.h"
#include "Shell/Confinement.h"
#include "Shell/InterruptSignal.h"
#include "Shell/MRMPrototypeApp.h"
#include "Shell/Programs.h"
#include "Shell/RemoteCommands.h"
#include "Shell/RunningInstance.h"
#include "Shell/StandardStreams.h"

#include <QApplication>
#include <QSocketNotifier>
#include <optional>
#include <string>

#include <sys/resource.h>
#include <sys/signalfd.h>

namespace murmel {

namespace {

/// Ends the application properly on the signals that ask for it.
class TerminationSignals {
 public:
  /// Blocks the signals; threads that are started later inherit that.
  TerminationSignals() {
    const auto signals = endingSignals();
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

/// A self-test has settings of its own, and leaves those of the user alone.
class SelfTestFolders {
 public:
  explicit SelfTestFolders(const Installation& installation)
      : root_(installation.folders.temporary / ("murmel-self-test-" + std::to_string(::getpid()))),
        installation_(installation) {
    std::filesystem::create_directory(root_, failure_);
    installation_.folders.configuration = root_ / "config";
    installation_.folders.data = root_ / "data";
  }
  ~SelfTestFolders() {
    std::error_code ignored;  // a rest in the runtime folder goes with the session
    std::filesystem::remove_all(root_, ignored);
  }
  SelfTestFolders(const SelfTestFolders&) = delete;
  SelfTestFolders& operator=(const SelfTestFolders&) = delete;

  [[nodiscard]] const Installation& installation() const { return installation_; }
  /// Why there is no place for them; empty otherwise.
  [[nodiscard]] std::string failure() const {
    return failure_ ? root_.string() + " cannot be made: " + failure_.message() : std::string();
  }

 private:
  std::filesystem::path root_;
  std::error_code failure_;
  Installation installation_;
};

/// At rest 36 descriptors are open. Where the next connection finds none, its library waits without a word.
constexpr rlim_t leastOpenFiles = 128;

bool mayOpenEnoughFiles() {
  rlimit limit{};
  ::getrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur >= leastOpenFiles) return true;
  limit.rlim_cur = leastOpenFiles;
  return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

/// Which display server Qt speaks to, unless the user has said that.
void chooseWindowSystem(const DesktopPlan& plan, const Environment& environment) {
  if (environment.value("QT_QPA_PLATFORM").has_value()) return;
  // Indicator and tray need a server that lets a window stay without the keyboard. Without the plugin for
  // Wayland there are no windows, and dictation works.
  qputenv("QT_QPA_PLATFORM", plan.indicator == IndicatorRoad::x11 ? "xcb" : "wayland;offscreen");
}

/// How key bindings, panels and second starts reach the application.
class Door {
 public:
  Door(MRMPrototypeApp& app, const std::string& identifier)
      : service_(identifier,
                 {.command = [&app](IntelCommand command,
                                    CommandReply reply) { app.perform(command, std::move(reply)); },
                  .status = [&app] { return app.statusReport(); }}),
        announcing_(app.status().didChange().subscribe([this] { service_.announceStatus(); })) {}

 private:
  RemoteCommandService service_;
  Registration announcing_;
};

}  // namespace

int runDesktop(Arguments arguments, const Installation& users, const DesktopRole& role) {
  const auto selfTest = role.selfTest;
  std::optional<SelfTestFolders> ownFolders;
  if (selfTest != LaunchSelfTest::none) ownFolders.emplace(users);
  if (ownFolders && !ownFolders->failure().empty()) return complain(ownFolders->failure());
  const auto& installation = ownFolders ? ownFolders->installation() : users;
  if (!mayOpenEnoughFiles())
    return complain("Too few files may be open at once; “ulimit -n” must allow " +
                    std::to_string(leastOpenFiles) + ".");
  // Before Qt, which ends the process when it finds no display.
  const auto facts = probeSession(installation.environment);
  const auto plan = planDesktop(facts);
  if (!plan.failure.empty()) return complain(plan.failure + " “murmel transcribe FILE” works without one.");
  chooseWindowSystem(plan, installation.environment);

  TerminationSignals signals;
  const QApplication application(arguments.count, arguments.values);
  QApplication::setQuitOnLastWindowClosed(false);
  const Appearance appearance(installation.folders.resources);
  QApplication::setApplicationName(QString::fromStdString(installation.build.displayName));
  QApplication::setDesktopFileName(QString::fromStdString(installation.identifier));

  // A self-test looks at this build, not at an instance that happens to run, and leaves nothing behind.
  SecondStart instance;
  if (selfTest == LaunchSelfTest::none) {
    instance = becomeTheInstance(installation, role.replaces);
    if (!instance.complaint.empty()) return complain(instance.complaint);
    if (!instance.lock) return instance.exitStatus;
  }
  QtExecutor executor;
  SystemClock clock;
  JournalLogSink log(JournalLogSink::Fallback::standardError);
  LinuxProcessLauncher launcher(confinementPolicy(installation));
  MappedMemory memory;
  const ProcessServices process{executor, clock, log, launcher, memory};
  const auto desktop = connectToDesktop(plan, {.process = process, .installation = installation});
  if (!desktop) return complain(desktop.error());

  MRMPrototypeApp app(process, installation, facts, (*desktop)->services(), selfTest);
  std::optional<Door> door;
  if (selfTest == LaunchSelfTest::none) door.emplace(app, installation.identifier);
  signals.onSignal([&app] { app.perform(IntelCommand::quit); });
  app.applicationDidFinishLaunching();
  if (auto* portal = (*desktop)->services().portalPaste; portal != nullptr && door) portal->restore();
  return QApplication::exec();
}

}  // namespace murmel
