#include "Shell/MRMPrototypeApp.h"

#include "Interface/PlatformWords.h"
#include "Interface/Recorder/RecorderSheet.h"
#include "Shortcut/ShortcutConflicts.h"

#include <QGuiApplication>
#include <QWindow>
#include <utility>

namespace murmel {

namespace {

constexpr std::string_view onboardingCompletedKey = "onboarding.completed";

}  // namespace

MRMPrototypeApp::MRMPrototypeApp(const ProcessServices& process, const Installation& installation,
                                 const SessionFacts& session, const DesktopServices& desktop,
                                 LaunchSelfTest selfTest)
    : process_(process),
      installation_(installation),
      desktop_(desktop),
      models_(process, installation),
      storage_(
          process.executor, installation, [this](SmartLocalModel model) { return models_.readiness(model); },
          &taskBar_),
      speech_(process, installation, models_, storage_.settings),
      delivery_(process, installation, desktop, storage_.settings),
      audio_(process.executor, desktop.microphone, desktop.microphoneAuthorization,
             installation.folders.temporary),
      refinerWarmth_(storage_.settings, models_.smart, speech_.refiners,
                     [this] { speech_.refiners.shutdown(); }),
      engineForLanguage_(storage_.settings, *models_.speech),
      pill_({
          .toggle = [this] { perform(IntelCommand::toggleDictation); },
          .cancel = [this] { perform(IntelCommand::cancelDictation); },
          .moved = [this](OverlayPosition edge) { storage_.settings.setOverlayPosition(edge); },
          .screen =
              [this] {
                const auto front = desktop_.workspace.frontmostApplication();
                return front ? screenOfWindow(front->window) : nullptr;
              },
          .surface = desktop.indicator,
          .compositor = &compositor_,
          .pasteKeys = [this] { return delivery_.insertion.pasteKeys(); },
          .isHeld = [this] { return isShortcutHeld_; },
      }),
      status_(pill_, process.clock, [this] { return std::string(models_.speech->activeEngine().title); }),
      coordinator_(dictationServices()),
      startReplies_(process.executor, coordinator_.onStateChange()),
      permissions_(desktop, [this] { return storage_.settings.shortcut(); }),
      relauncher_(installation.folders.executable, [this] { perform(IntelCommand::quit); }),
      pasteRelaunch_(alerts_, relauncher_, installation.build.displayName),
      gate_([this] { return storage_.settings.shortcut(); }, storage_.settings.shortcutDidChange()),
      shortcut_(process, desktop.shortcuts, localKeys_,
                {gate_.didChange(), permissions_.inputMonitoringDidChange(), applicationDidBecomeActive_},
                sleep_.didWake(), shortcutActions(), [this] { return gate_.current(); }),
      checkQueue_(process.executor, "murmel-checks"),
      checkedInput_(process.executor, {installation.build.displayName, std::nullopt}),
      checks_(process.executor, desktopChecks(checkedServices(session))),
      updateWiring_({.process = process_,
                     .installation = installation_,
                     .settings = storage_.settings,
                     .gate = updates_,
                     .isDictating = [this] { return coordinator_.state().isBusy(); },
                     .restart = [this] { restart(); },
                     .refreshMenu = [this] { tray_.refresh(); }}),
      microphones_(process.executor, {installation.build.displayName, std::nullopt}),
      windows_(windowParts(planDesktop(session).session)),
      tray_(process.executor, storage_.defaults, installation.build.displayName, menuServices()),
      delegate_(process.executor, *this, selfTest) {
  connectStorage();
  connectInterface();
  connectPermissions();
  connectCommands();
  connectEnd();
  tellAboutSettings();
}

DictationServices MRMPrototypeApp::dictationServices() {
  return {
      .executor = process_.executor,
      .clock = process_.clock,
      .audio = audio_,
      .insertion = delivery_.insertion,
      .settings = storage_.settings,
      .history = storage_.history,
      .models = *models_.speech,
      .recognition = speech_.recognition,
      .refinement = speech_.refiners,
      .cleanUp = speech_.cleanUp,
      .sessions = speech_.sessions,
      .updates = updates_,
      .downloads = *models_.priority,
      .overlay = status_,
      .sounds = desktop_.sounds,
      .session = desktop_.session,
      .cancelKey = desktop_.cancelKey,
      .memory = process_.memory,
      .diagnostic = Logger(process_.log, installation_.identifier, "dictation-summary"),
      .stages = Logger(process_.log, installation_.identifier, "incremental-stages"),
  };
}

StatusReport MRMPrototypeApp::statusReport() const {
  auto report = status_.report();
  const auto keys = pasteKeys();
  report.message = inPlatformWords(report.message, keys).toStdString();
  return report;
}

CheckedServices MRMPrototypeApp::checkedServices(const SessionFacts& session) {
  return {
      .executor = process_.executor,
      .queue = checkQueue_,
      .installation = installation_,
      .facts = session,
      .desktop = &desktop_,
      .microphone = checkedInput_,
      .microphoneAuthorization = desktop_.microphoneAuthorization,
      .isRecording = [this] { return coordinator_.state().isBusy(); },
      .models = *models_.speech,
      .recognition = speech_.recognition,
      .smartModels = models_.smart,
      .secrets = storage_.secrets,
      .launcher = process_.launcher,
      .shortcut = [this] { return storage_.settings.shortcut(); },
      .smartFormatting = [this] { return storage_.settings.smartFormatting(); },
      .perform = [this](IntelCommand command) { perform(command); },
  };
}

FirstRunServices MRMPrototypeApp::setupServices() {
  return {
      .settings = storage_.settings,
      .models = windows_.shelf(),
      .checks = checks_,
      .microphone = &windows_.microphone(),
      .microphones = &microphones_,
      .shortcutNotice = [this](const ShortcutConfiguration& shortcut) { return shortcutWarnings(shortcut); },
      .canHearShortcut = [this](const ShortcutConfiguration& shortcut) { return canHear(shortcut); },
      .tellsOfRelease = [this](const ShortcutConfiguration& shortcut) { return tellsOfRelease(shortcut); },
      .shortcutTrials = desktop_.shortcuts.trials(),
      .shortcutAccessChanged = &desktop_.shortcuts.permissionDidChange(),
      .recordShortcut = [this](QWidget* window, auto save) { recordShortcut(window, std::move(save)); },
      .openSoundSettings = [this] { perform(IntelCommand::openMicrophoneSettings); },
      .state = [this] { return coordinator_.state(); },
      .stateChanged = &coordinator_.onStateChange(),
      .acceptWords =
          [this](const QWidget& window) {
            delivery_.insertion.setOwnField(static_cast<std::uint32_t>(window.winId()));
            return Registration([this] { delivery_.insertion.setOwnField(0); });
          },
      .finished = [this] { storage_.defaults.set(onboardingCompletedKey, true); },
  };
}

bool MRMPrototypeApp::canHear(const ShortcutConfiguration& shortcut) {
  // A tap hears every key or none, and says why elsewhere.
  auto& source = desktop_.shortcuts;
  return source.hearsEveryKey() || source.permission(shortcutRequest(shortcut)).granted;
}

bool MRMPrototypeApp::tellsOfRelease(const ShortcutConfiguration& shortcut) {
  return desktop_.shortcuts.tellsOfRelease(shortcutRequest(shortcut));
}

MainWindows::Parts MRMPrototypeApp::windowParts(SessionKind session) {
  return {
      .process = process_,
      .installation = installation_,
      .desktop = desktop_,
      .models = models_,
      .storage = storage_,
      .speech = speech_,
      .updater = updateWiring_.updater(),
      .microphones = microphones_,
      .copy = [this](const SpokenText& words, auto told) { tasks_.start(copy(words, std::move(told))); },
      .pasteAgain = [this](const SpokenText& words) { tasks_.start(pasteAgain(words)); },
      .openSetup = [this] { openSetupWindow(); },
      .unlockStorage = [this] { storage_.health.unlock(); },
      .shortcutNotice = [this](const ShortcutConfiguration& shortcut) { return shortcutWarnings(shortcut); },
      .recordShortcut = [this](QWidget* window, auto save) { recordShortcut(window, std::move(save)); },
      .canHearShortcut = [this](const ShortcutConfiguration& shortcut) { return canHear(shortcut); },
      .tellsOfRelease = [this](const ShortcutConfiguration& shortcut) { return tellsOfRelease(shortcut); },
      .session = session,
      .diagnostics =
          [this](std::function<void(const std::string&)> ready) { tasks_.start(diagnose(std::move(ready))); },
  };
}

ShortcutWiring::Actions MRMPrototypeApp::shortcutActions() {
  const auto unlessClosed = [this](const ShortcutConfiguration& (SettingsRepository::*chosen)() const) {
    return
        [this, chosen] { return gate_.isClosed() ? ShortcutConfiguration{} : (storage_.settings.*chosen)(); };
  };
  return {
      .press =
          [this] {
            isShortcutHeld_ = true;
            coordinator_.shortcutPressed();
          },
      .release =
          [this] {
            isShortcutHeld_ = false;
            coordinator_.shortcutReleased();
          },
      .toggle = [this] { perform(IntelCommand::toggleDictation); },
      .further = {{unlessClosed(&SettingsRepository::cancelShortcut),
                   [this] { perform(IntelCommand::cancelDictation); }},
                  {unlessClosed(&SettingsRepository::pasteAgainShortcut),
                   [this] { perform(IntelCommand::pasteLastTranscript); }}},
  };
}

std::string MRMPrototypeApp::shortcutWarnings(const ShortcutConfiguration& shortcut) {
  using Kind = ShortcutConfiguration::Kind;
  KeyboardFacts facts;
  if (auto* const probe = desktop_.keyboardProbe; probe != nullptr) {
    facts.isTaken = shortcut.kind == Kind::key && probe->isTaken(shortcut.keyCode, shortcut.modifierRawValue);
    facts.capsLockIsRemapped = shortcut.kind == Kind::capsLock && probe->capsLockIsRemapped();
  }
  auto warnings = shortcutNotice(desktop_.shortcuts, shortcut);
  for (const auto conflict : shortcutConflicts(shortcut, facts)) {
    if (!warnings.empty()) warnings += ' ';
    warnings += conflict;
  }
  return warnings;
}

void MRMPrototypeApp::recordShortcut(QWidget* window,
                                     std::function<void(const ShortcutConfiguration&)> save) {
  RecorderServices services{
      .localKeys = localKeys_,
      .source = &desktop_.shortcuts,
      .probe = desktop_.keyboardProbe,
      .session = &desktop_.session,
      .suspendShortcuts = [this] { return gate_.suspend(); },
      .notice = [this](const ShortcutConfiguration& shortcut) { return shortcutWarnings(shortcut); },
      .canHear = [this](const ShortcutConfiguration& shortcut) { return canHear(shortcut); },
  };
  (new RecorderSheet(window, std::move(services), std::move(save)))->open();
}

void MRMPrototypeApp::connectStorage() {
  storage_.follow(process_.executor, process_.clock);
  models_.follow(process_.executor);
  observers_.push_back(sleep_.didWake().subscribe([this] { storage_.expire(); }));
  observers_.push_back(
      models_.smart.onInventoryChange([this] { storage_.settings.modelInventoryChanged(); }));
}

void MRMPrototypeApp::connectInterface() {
  delivery_.insertion.spacing().follow([this] { return shortcut_.hotkey().userInput(); });
  coordinator_.onRequiredModelMissing([this] {
    windows_.openRequiredModel(
        inPlatformWords("Download the required Parakeet speech model to use dictation"));
  });
  const auto refresh = [this](auto&&...) { tray_.refresh(); };
  observers_.push_back(coordinator_.onStateChange().subscribe(
      [this](const DictationState&) { updateWiring_.dictationChanged(); }));
  observers_.push_back(sleep_.didWake().subscribe([this] { updateWiring_.computerWokeUp(); }));
  updateWiring_.start();
  observers_.push_back(coordinator_.onStateChange().subscribe(refresh));
  observers_.push_back(coordinator_.onLastTranscriptChange().subscribe(refresh));
  observers_.push_back(delivery_.insertion.onWayBackChange([this](bool available) {
    canBringBackClipboard_ = available;
    tray_.refresh();
  }));
  observers_.push_back(coordinator_.onRetryChange().subscribe(refresh));
  observers_.push_back(storage_.settings.didChange().subscribe(refresh));
  observers_.push_back(windows_.shelf().changed().subscribe(refresh));
  observers_.push_back(coordinator_.onNotice().subscribe(
      [this](const std::string& notice) { tray_.tell(notice, pasteKeys()); }));

  const auto showPill = [this] {
    pill_.setEdge(storage_.settings.overlayPosition());
    const bool hasShortcut = storage_.settings.shortcut().kind != ShortcutConfiguration::Kind::disabled;
    pill_.setShownAtRest(!gate_.isPaused() && (storage_.settings.showRestingIndicator() || !hasShortcut));
  };
  showPill();
  observers_.push_back(gate_.didChange().subscribe(showPill));
  observers_.push_back(coordinator_.onRecognised().subscribe(
      [this](const RecognisedPiece& piece) { pill_.addRecognised(piece.text); }));
  observers_.push_back(storage_.settings.didChange().subscribe([this, showPill](SettingsProperty property) {
    if (property == SettingsProperty::overlayPosition || property == SettingsProperty::showRestingIndicator)
      showPill();
  }));
}

void MRMPrototypeApp::connectPermissions() {
  if (auto* portal = desktop_.portalPaste) {
    observers_.push_back(portal->didChange().subscribe([this] {
      permissions_.refresh();
      if (!checks_.isRunning()) checks_.run();
    }));
  }
  if (auto* trials = desktop_.shortcuts.trials()) {
    trials->recall(storage_.defaults.get<std::string>(shortcutTrialKey).value_or(""));
    observers_.push_back(desktop_.shortcuts.permissionDidChange().subscribe([this, trials] {
      const auto memory = trials->memory();
      if (!memory.empty()) storage_.defaults.set(shortcutTrialKey, memory);
      if (!checks_.isRunning()) checks_.run();
    }));
  }
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &connections_,
                   [this](Qt::ApplicationState state) {
                     if (state != Qt::ApplicationActive) return;
                     permissions_.refresh();
                     applicationDidBecomeActive_.emit();
                   });
  observers_.push_back(
      permissions_.didChange().subscribe([this](const Permissions& before, const Permissions& now) {
        const bool pasteWasGranted = now.automaticPaste && !before.automaticPaste;
        if (pasteWasGranted && desktop_.pasteNeedsFreshProcess) pasteRelaunch_.offerAutomaticPasteRelaunch();
      }));
}

void MRMPrototypeApp::reopen() {
  act(lifecycle_.startedAgain());
}

void MRMPrototypeApp::restart() {
  relauncher_.openNewInstance([this](std::expected<void, std::string> opened) {
    if (opened) return relauncher_.terminate();
    // The update is in place; this instance goes on with workers that are not its own, so it goes too.
    tell("The update is installed. Start Murmel again: " + opened.error());
    relauncher_.terminate();
  });
}

void MRMPrototypeApp::tellAboutSettings() {
  const auto tellUser = [this](const std::string& message) { tell(message); };
  for (const auto& message : storage_.defaults.messages()) tell(message);
  observers_.push_back(storage_.defaults.messageAdded().subscribe(tellUser));
  if (const auto& notice = storage_.settings.modelMigrationNotice()) tell(*notice);
}

void MRMPrototypeApp::applyDockIconPreference() {
  taskBar_.set(storage_.settings.showInDock() ? ActivationPolicy::regular : ActivationPolicy::accessory);
}

void MRMPrototypeApp::refreshServices() {
  permissions_.refresh();
  models_.speech->validate();
  models_.smart.validate();
}

bool MRMPrototypeApp::requiresSetupWindow() const {
  return !storage_.defaults.boolean(onboardingCompletedKey, false) || !permissions_.current().mayRecord();
}

void MRMPrototypeApp::openSetupWindow(FirstRunWindow::Step step) {
  if (!setup_) setup_ = new FirstRunWindow(setupServices());
  setup_->present(step);
}

bool MRMPrototypeApp::isMainWindowVisible() const {
  const auto* window = setup_ ? setup_->windowHandle() : nullptr;
  const bool isSetupVisible = window != nullptr && window->isExposed() && !setup_->isMinimized();
  return isSetupVisible || windows_.isAnyVisible();
}

void MRMPrototypeApp::terminate(int exitStatus) {
  QCoreApplication::exit(exitStatus);
}

}  // namespace murmel
