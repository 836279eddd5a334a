#pragma once

#include "Dictation/DictationCoordinator.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Signal.h"
#include "Interface/QtAlertPresenter.h"
#include "Interface/RecordingPill.h"
#include "Interface/SetupWindow.h"
#include "Interface/TrayMenu.h"
#include "MRMUpdatePolicy/UpdateAdmissionGate.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/LogindSleepMonitor.h"
#include "Platform/Qt/QtExecutor.h"
#include "Platform/Qt/QtLocalKeyMonitor.h"
#include "Platform/Qt/TaskBarPresence.h"
#include "Product/InformationDictionary.h"
#include "Shell/AppDelegate.h"
#include "Shell/ApplicationFolders.h"
#include "Shell/DesktopServices.h"
#include "Shell/IntelCommandTarget.h"
#include "Shell/ModelServices.h"
#include "Shell/SpeechServices.h"
#include "Shell/StorageServices.h"
#include "Shortcut/HotkeyService.h"

#include <expected>
#include <memory>
#include <string>
#include <vector>

namespace murmel {

/// The desktop application: makes its services once, wires them, and keeps them until it ends. Main thread.
class MRMPrototypeApp final : private ApplicationLaunchActions {
 public:
  /// Needs a QApplication. The error is one sentence for the user.
  static std::expected<std::unique_ptr<MRMPrototypeApp>, std::string> create(
      const ApplicationFolders& folders, const InformationDictionary& info, LaunchSelfTest selfTest);

  void applicationDidFinishLaunching() { delegate_.applicationDidFinishLaunching(); }

  /// The application was started once more.
  void reopen() override;
  /// A command of the menu or of another program.
  void perform(IntelCommand command) { commands_.post(command); }

 private:
  MRMPrototypeApp(const ApplicationFolders& folders, const InformationDictionary& info,
                  LaunchSelfTest selfTest);
  std::expected<void, std::string> connect(const std::string& displayName);
  void wireDictation();
  void wireShortcut();
  void wireCommands();
  /// The chosen model is loaded while formatting is on, and none while it is off.
  void keepRefinersWarm();
  /// What the settings have to say about their file and about models that were replaced.
  void tellAboutSettings();
  void tellAboutDownload(const std::string& sentence);
  [[nodiscard]] std::vector<SetupCheck> setupChecks();
  Task<void> quit();

  void applyDockIconPreference() override;
  void refreshServices() override;
  [[nodiscard]] bool requiresSetupWindow() const override;
  void openSetupWindow() override;
  [[nodiscard]] bool isMainWindowVisible() const override;
  void terminate(int exitStatus) override;

  ApplicationFolders folders_;
  std::string identifier_;
  QtExecutor executor_;
  SystemClock clock_;
  JournalLogSink log_{JournalLogSink::Fallback::standardError};
  TaskBarPresence taskBar_;
  LinuxProcessLauncher launcher_;
  ModelServices models_;
  StorageServices storage_;
  SpeechServices speech_;
  std::unique_ptr<DesktopServices> desktop_;
  UpdateActivityRegister updates_;

  IntelCommandTarget commands_;
  RecordingPill pill_;
  TrayMenu tray_;
  SetupWindow setup_;
  std::unique_ptr<DictationCoordinator> coordinator_;

  Signal<> inputMonitoringPermissionDidChange_;
  Signal<> applicationDidBecomeActive_;
  QtLocalKeyMonitor localKeys_;
  LogindSleepMonitor sleep_;
  std::unique_ptr<HotkeyService> hotkey_;
  AppDelegate delegate_;
  std::vector<Registration> observers_;
  bool quitting_ = false;
  Scope tasks_;
};

}  // namespace murmel
