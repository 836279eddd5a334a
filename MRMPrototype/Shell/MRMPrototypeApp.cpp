#include "Shell/MRMPrototypeApp.h"

#include "Interface/PlatformWords.h"
#include "Product/MRMAppIdentity.h"
#include "Shell/SetupChecks.h"

#include <QGuiApplication>
#include <utility>

namespace murmel {

namespace {

constexpr std::string_view onboardingCompletedKey = "onboarding.completed";

RecordingPill::Edge edgeFor(OverlayPosition position) {
  switch (position) {
    case OverlayPosition::top:
      return RecordingPill::Edge::top;
    case OverlayPosition::right:
      return RecordingPill::Edge::right;
    case OverlayPosition::bottom:
      return RecordingPill::Edge::bottom;
    case OverlayPosition::left:
      return RecordingPill::Edge::left;
  }
  std::unreachable();
}

}  // namespace

MRMPrototypeApp::MRMPrototypeApp(const ApplicationFolders& folders, const InformationDictionary& info,
                                 LaunchSelfTest selfTest)
    : folders_(folders),
      identifier_(MRMAppIdentity::applicationIdentifier(info)),
      models_(executor_, launcher_, folders, info),
      storage_(
          folders, identifier_, [this](SmartLocalModel model) { return models_.isReady(model); }, &taskBar_),
      speech_(executor_, clock_, log_, launcher_, folders, info, models_, storage_.settings),
      pill_([this] { perform(IntelCommand::toggleDictation); }),
      tray_({
          .toggle = [this] { perform(IntelCommand::toggleDictation); },
          .copyLast = [this] { perform(IntelCommand::copyLastTranscript); },
          .openSetup = [this] { perform(IntelCommand::openSetup); },
          .quit = [this] { perform(IntelCommand::quit); },
      }),
      setup_({
          .look = [this] { return setupChecks(); },
          .shortcut = [this] { return storage_.settings.shortcut(); },
          .chooseShortcut =
              [this](const ShortcutConfiguration& shortcut) { storage_.settings.setShortcut(shortcut); },
          .shortcutNotice = &shortcutNotice,
          .checkAgain = [this] { inputMonitoringPermissionDidChange_.emit(); },
          .done = [this] { storage_.defaults.set(onboardingCompletedKey, true); },
      }),
      delegate_(executor_, *this, selfTest) {}

std::expected<std::unique_ptr<MRMPrototypeApp>, std::string> MRMPrototypeApp::create(
    const ApplicationFolders& folders, const InformationDictionary& info, LaunchSelfTest selfTest) {
  std::unique_ptr<MRMPrototypeApp> app(new MRMPrototypeApp(folders, info, selfTest));
  if (auto connected = app->connect(MRMAppIdentity::displayName(info)); !connected) {
    return std::unexpected(connected.error());
  }
  app->wireDictation();
  app->wireShortcut();
  app->wireCommands();
  app->tray_.show();
  app->tellAboutSettings();
  return app;
}

std::expected<void, std::string> MRMPrototypeApp::connect(const std::string& displayName) {
  auto desktop = DesktopServices::open({
      .executor = executor_,
      .clock = clock_,
      .log = log_,
      .folders = folders_,
      .applicationIdentifier = identifier_,
      .displayName = displayName,
      .restorePreviousClipboard = storage_.settings.restorePreviousClipboard(),
  });
  if (!desktop) return std::unexpected(desktop.error());
  desktop_ = *std::move(desktop);
  return {};
}

void MRMPrototypeApp::wireDictation() {
  coordinator_ = std::make_unique<DictationCoordinator>(DictationServices{
      executor_, clock_, desktop_->audio, *desktop_->insertion, storage_.settings, storage_.history,
      *models_.speech, speech_.recognition, speech_.refinement, speech_.cleanUp, speech_.sessions, updates_,
      *models_.priority, pill_, desktop_->sounds, Logger(log_, identifier_, "dictation-summary"),
      Logger(log_, identifier_, "incremental-stages")});
  coordinator_->onRequiredModelMissing([this] { openSetupWindow(); });
  observers_.push_back(
      coordinator_->onStateChange().subscribe([this](const DictationState& state) { tray_.update(state); }));
  observers_.push_back(coordinator_->onLastTranscriptChange().subscribe(
      [this](bool available) { tray_.setHasLastTranscript(available); }));
  tray_.update(coordinator_->state());

  pill_.setEdge(edgeFor(storage_.settings.overlayPosition()));
  observers_.push_back(storage_.settings.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::overlayPosition)
      pill_.setEdge(edgeFor(storage_.settings.overlayPosition()));
    if (property == SettingsProperty::smartFormatting || property == SettingsProperty::smartLocalModel) {
      keepRefinersWarm();
    }
    if (property == SettingsProperty::historyRetention) {
      storage_.history.prune(storage_.settings.historyRetention(), clock_.wallNow());
    }
  }));
}

void MRMPrototypeApp::wireShortcut() {
  observers_.push_back(storage_.settings.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::shortcut) setup_.showShortcut();
  }));
  observers_.push_back(sleep_.didWake().subscribe([this] { desktop_->keys.resync(); }));
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &setup_,
                   [this](Qt::ApplicationState state) {
                     if (state == Qt::ApplicationActive) applicationDidBecomeActive_.emit();
                   });

  hotkey_ = std::make_unique<HotkeyService>(
      executor_, clock_, desktop_->keys, localKeys_,
      HotkeyNotifications{storage_.settings.shortcutDidChange(), inputMonitoringPermissionDidChange_,
                          applicationDidBecomeActive_});
  hotkey_->onPress = [this] { coordinator_->shortcutPressed(); };
  hotkey_->onRelease = [this] { coordinator_->shortcutReleased(); };
  hotkey_->onToggle = [this] { coordinator_->toggle(); };
  hotkey_->start([this] { return storage_.settings.shortcut(); });
}

void MRMPrototypeApp::wireCommands() {
  const auto on = [this](IntelCommand command, std::function<void()> run) {
    observers_.push_back(commands_.observe(command, std::move(run)));
  };
  on(IntelCommand::toggleDictation, [this] { coordinator_->toggle(); });
  on(IntelCommand::startDictation, [this] {
    if (!coordinator_->state().isBusy()) coordinator_->toggle();
  });
  on(IntelCommand::stopDictation, [this] {
    if (coordinator_->state().isRecording()) coordinator_->stopAndTranscribe();
  });
  on(IntelCommand::copyLastTranscript, [this] { coordinator_->copyLastTranscript(); });
  // Until there are settings to show, the setup window is the one that there is.
  for (const auto command :
       {IntelCommand::openSetup, IntelCommand::openSettings, IntelCommand::revealApplication,
        IntelCommand::requestMicrophone, IntelCommand::openMicrophoneSettings,
        IntelCommand::requestInputMonitoring, IntelCommand::requestAutomaticPaste}) {
    on(command, [this] { openSetupWindow(); });
  }
  on(IntelCommand::downloadSpeechModel, [this] {
    if (!models_.downloadSpeechModel())
      tellAboutDownload("There is no other speech model for this computer.");
  });
  on(IntelCommand::cancelSpeechModelDownload, [this] { models_.cancelSpeechModelDownload(); });
  if (models_.downloads) {
    observers_.push_back(
        models_.downloads->onChange([this](const std::string&, const ModelDownloadStatus& status) {
          if (status.state == ModelDownloadStatus::State::failed) tellAboutDownload(status.message);
          if (status.state == ModelDownloadStatus::State::installed)
            tellAboutDownload("The model is installed.");
        }));
  }
  on(IntelCommand::quit, [this] { tasks_.start(quit()); });
}

void MRMPrototypeApp::reopen() {
  openSetupWindow();
}

void MRMPrototypeApp::keepRefinersWarm() {
  if (storage_.settings.smartFormatting()) {
    speech_.refinement.warmUp();
  } else {
    speech_.refiners.shutdown();
  }
}

void MRMPrototypeApp::tellAboutSettings() {
  const auto tell = [this](const std::string& message) {
    tray_.notify(QStringLiteral("Murmel"), inPlatformWords(message));
  };
  for (const auto& message : storage_.defaults.messages()) tell(message);
  observers_.push_back(storage_.defaults.messageAdded().subscribe(tell));
  if (const auto& notice = storage_.settings.modelMigrationNotice()) tell(*notice);
}

void MRMPrototypeApp::applyDockIconPreference() {
  taskBar_.set(storage_.settings.showInDock() ? ActivationPolicy::regular : ActivationPolicy::accessory);
}

void MRMPrototypeApp::tellAboutDownload(const std::string& sentence) {
  tray_.notify(QStringLiteral("Murmel"), inPlatformWords(sentence));
}

void MRMPrototypeApp::refreshServices() {
  models_.speech->validate();
  models_.smart.validate();
  storage_.history.prune(storage_.settings.historyRetention(), clock_.wallNow());
}

bool MRMPrototypeApp::requiresSetupWindow() const {
  return !storage_.defaults.boolean(onboardingCompletedKey, false);
}

void MRMPrototypeApp::openSetupWindow() {
  setup_.present();
}

bool MRMPrototypeApp::isMainWindowVisible() const {
  return setup_.isVisible() && !setup_.isMinimized();
}

std::vector<SetupCheck> MRMPrototypeApp::setupChecks() {
  return murmel::setupChecks(folders_, *models_.speech, storage_.settings.shortcut());
}

void MRMPrototypeApp::terminate(int exitStatus) {
  QCoreApplication::exit(exitStatus);
}

Task<void> MRMPrototypeApp::quit() {
  if (std::exchange(quitting_, true)) co_return;
  hotkey_.reset();
  auto handingOver = desktop_->handOverClipboard();
  co_await handingOver;
  terminate(0);
}

}  // namespace murmel
