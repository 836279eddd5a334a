#pragma once

#include "Audio/AudioCaptureService.h"
#include "Dictation/ApplicationLifecycle.h"
#include "Dictation/DictationCoordinator.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Signal.h"
#include "Interface/FirstRun/FirstRunWindow.h"
#include "Interface/Pill/RecordingPill.h"
#include "Interface/QtAlertPresenter.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Platform/Linux/PulseAudio/PulseAudioMicrophones.h"
#include "Platform/Qt/LogindSleepMonitor.h"
#include "Platform/Qt/QtCompositor.h"
#include "Platform/Qt/QtLocalKeyMonitor.h"
#include "Platform/Qt/TaskBarPresence.h"
#include "Shell/AppDelegate.h"
#include "Shell/AutomaticPasteRelaunch.h"
#include "Shell/Checks/Checks.h"
#include "Shell/DeliveryServices.h"
#include "Shell/DesktopServices.h"
#include "Shell/Installation.h"
#include "Shell/IntelCommandTarget.h"
#include "Shell/MainWindows.h"
#include "Shell/ModelServices.h"
#include "Shell/PermissionService.h"
#include "Shell/ProcessRelauncher.h"
#include "Shell/ProcessServices.h"
#include "Shell/SettingsReactions.h"
#include "Shell/ShortcutWiring.h"
#include "Shell/SpeechServices.h"
#include "Shell/StartReplies.h"
#include "Shell/StatusPublisher.h"
#include "Shell/StorageServices.h"
#include "Shell/TrayWiring.h"
#include "Shell/UpdateWiring.h"
#include "Shortcut/ShortcutGate.h"

#include <QObject>
#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace murmel {

/// The desktop application: made once, in the order of its members, from a desktop that is there. Main
/// thread.
class MRMPrototypeApp final : private ApplicationLaunchActions {
 public:
  /// Needs a QApplication. The references and what the services refer to outlive this.
  MRMPrototypeApp(const ProcessServices& process, const Installation& installation,
                  const SessionFacts& session, const DesktopServices& desktop, LaunchSelfTest selfTest);
  ~MRMPrototypeApp() override { delete setup_.data(); }
  MRMPrototypeApp(const MRMPrototypeApp&) = delete;
  MRMPrototypeApp& operator=(const MRMPrototypeApp&) = delete;

  void applicationDidFinishLaunching() {
    lifecycle_.launched();
    delegate_.applicationDidFinishLaunching();
  }

  /// The application was started once more.
  void reopen() override;
  /// A command of the menu or of another program.
  void perform(IntelCommand command) {
    perform(command, [](const CommandOutcome&) {});
  }
  /// The same; `reply` is told once what became of it.
  void perform(IntelCommand command, CommandReply reply);
  [[nodiscard]] StatusPublisher& status() { return status_; }
  /// What is shown, in this desktop's words: with the keys that paste where the last dictation went.
  [[nodiscard]] StatusReport statusReport() const;

 private:
  [[nodiscard]] DictationServices dictationServices();
  [[nodiscard]] CheckedServices checkedServices(const SessionFacts& session);
  [[nodiscard]] FirstRunServices setupServices();
  [[nodiscard]] MainWindows::Parts windowParts(SessionKind session);
  [[nodiscard]] bool canHear(const ShortcutConfiguration& shortcut);
  [[nodiscard]] bool tellsOfRelease(const ShortcutConfiguration& shortcut);
  [[nodiscard]] MenuServices menuServices();
  [[nodiscard]] ShortcutWiring::Actions shortcutActions();
  [[nodiscard]] std::string shortcutWarnings(const ShortcutConfiguration& shortcut);
  void recordShortcut(QWidget* window, std::function<void(const ShortcutConfiguration&)> save);
  [[nodiscard]] MenuStatus menuStatus();
  void startDictation(CommandReply reply);
  Task<void> copyLast(CommandReply reply);
  void pasteLast(CommandReply reply);
  /// Pastes words that were dictated before, once another application is in front.
  Task<void> pasteAgain(
      SpokenText words, CommandReply reply = [](const CommandOutcome&) {});
  /// Puts it on the clipboard, and tells the user when that fails.
  Task<void> copy(SpokenText text, std::function<void(bool copied)> told = {});
  /// Building a window may take longer than whoever asked for it waits.
  Task<void> afterTheAnswer(std::function<void()> run);
  /// Tries everything, then hands over what became of it: no words, no names of files of the user.
  Task<void> diagnose(std::function<void(const std::string&)> ready);
  void connectStorage();
  void connectInterface();
  void connectPermissions();
  void connectCommands();
  void connectDictationCommands();
  void connectWindowCommands();
  void connectModelCommands();
  /// What the settings have to say about their file and about models that were replaced.
  void tellAboutSettings();
  void tell(const std::string& sentence) { tray_.tell(sentence); }
  /// Those of the last target, for the user's own hands.
  [[nodiscard]] QString pasteKeys() const {
    return QString::fromStdString(std::string(delivery_.insertion.pasteKeys()));
  }
  void act(ApplicationLifecycle::Action action);
  void connectEnd();
  Task<DrainOutcome> finishWords();
  /// Whether the process must stay for a while: the message, or the words, would go with it.
  Task<bool> tellAtTheEnd(DrainOutcome outcome, ClipboardHandOver left, bool isStored);
  Task<void> stayForAWhile();
  /// Calls it when the last words have had their time, and again.
  [[nodiscard]] RepeatingTimer hurryInTime(std::function<void()> hurry);
  Task<void> drain();
  Task<void> settle();
  /// Ends, and starts what is installed now.
  void restart();
  /// The same as to quit; further signs of it do not hurry.
  void sessionEnds();
  /// The session is saved, and ends afterwards unless another program or the user prevents that. Returns when
  /// the last words are safe.
  void sessionMayEnd();

  void applyDockIconPreference() override;
  void refreshServices() override;
  [[nodiscard]] bool requiresSetupWindow() const override;
  void openSetupWindow() override { openSetupWindow(FirstRunWindow::Step::welcome); }
  void openSetupWindow(FirstRunWindow::Step step);
  [[nodiscard]] bool isMainWindowVisible() const override;
  void terminate(int exitStatus) override;

  ProcessServices process_;
  const Installation& installation_;
  DesktopServices desktop_;

  TaskBarPresence taskBar_;
  ModelServices models_;
  StorageServices storage_;
  SpeechServices speech_;
  DeliveryServices delivery_;
  AudioCaptureService audio_;
  UpdateActivityRegister updates_;
  RefinerWarmth refinerWarmth_;
  EngineForLanguage engineForLanguage_;

  IntelCommandTarget commands_;
  QtCompositor compositor_;
  bool isShortcutHeld_ = false;
  RecordingPill pill_;
  StatusPublisher status_;
  DictationCoordinator coordinator_;
  StartReplies startReplies_;

  Signal<> applicationDidBecomeActive_;
  PermissionService permissions_;
  QtAlertPresenter alerts_;
  ProcessRelauncher relauncher_;
  AutomaticPasteRelaunch pasteRelaunch_;
  QtLocalKeyMonitor localKeys_;
  LogindSleepMonitor sleep_;
  ShortcutGate gate_;
  ShortcutWiring shortcut_;
  SerialQueue checkQueue_;
  PulseAudioInput checkedInput_;  ///< beside that of a dictation, which may begin meanwhile
  CheckRunner checks_;
  UpdateWiring updateWiring_;
  PulseAudioMicrophones microphones_;
  MainWindows windows_;
  bool canBringBackClipboard_ = false;
  TrayWiring tray_;
  QPointer<FirstRunWindow> setup_;
  QObject connections_;  ///< those of Qt end with it
  AppDelegate delegate_;
  std::vector<Registration> observers_;
  ApplicationLifecycle lifecycle_;
  Signal<> wasHurried_;
  bool isSettling_ = false;
  std::unique_ptr<QObject> endRequests_;
  Scope tasks_;
};

}  // namespace murmel
