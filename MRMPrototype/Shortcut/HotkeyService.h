#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Foundation/Registration.h"
#include "Platform/LocalKeyMonitor.h"
#include "Platform/ShortcutSource.h"
#include "Shortcut/HotkeyStateMachine.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <functional>
#include <memory>
#include <vector>

namespace murmel {

/// For a desktop that watches the shortcut itself. Not for the disabled one.
ShortcutRequest shortcutRequest(const ShortcutConfiguration& shortcut);

/// What makes the service look at its tap again.
struct HotkeyNotifications {
  Signal<>& shortcutDidChange;                   ///< "MRM.ShortcutDidChange"
  Signal<>& inputMonitoringPermissionDidChange;  ///< the permission may have been granted
  Signal<>& applicationDidBecomeActive;          ///< the user may come back from granting it
};

/// Owns the observation of the keyboard for the dictation shortcut, and keeps it alive across changes of the
/// permission and of the shortcut and across what the system does to it. Says nothing when it cannot observe:
/// the shortcut then works in the application's own windows only. Every press is followed by its release,
/// also when the shortcut was changed or the tap lost meanwhile. Main thread; everything that it is given
/// must outlive it.
class HotkeyService {
 public:
  HotkeyService(Executor& executor, const Clock& clock, ShortcutSource& source, LocalKeyMonitor& localKeys,
                HotkeyNotifications notifications);
  ~HotkeyService();
  HotkeyService(const HotkeyService&) = delete;
  HotkeyService& operator=(const HotkeyService&) = delete;

  /// What the shortcut asks for; set before `start`. Called from the event loop, never from inside a call of
  /// this class. They may change the shortcut, but not destroy the service.
  std::function<void()> onPress;
  std::function<void()> onRelease;
  std::function<void()> onToggle;

  /// A further shortcut, which does one thing whenever it is pressed; before `start`. Only where every key is
  /// heard: a desktop that watches one shortcut itself does not watch this one.
  void also(std::function<ShortcutConfiguration()> shortcut, std::function<void()> run) {
    further_.push_back({std::move(shortcut), std::move(run), {}});
  }

  /// How often the user has pressed a key or a button of the pointer, without modifiers alone and without the
  /// shortcuts; only good for comparing. Nothing where not every key is heard.
  [[nodiscard]] std::optional<std::uint64_t> userInput() const {
    return eventTap_ && source_.hearsEveryKey() ? std::optional(userInput_) : std::nullopt;
  }

  /// Begins to observe. `shortcutProvider` gives the shortcut of the moment and is asked for every event.
  void start(std::function<ShortcutConfiguration()> shortcutProvider);

 private:
  struct Further {
    std::function<ShortcutConfiguration()> shortcut;
    std::function<void()> run;
    HotkeyStateMachine machine;
  };

  /// What is to be listened for: the shortcut, else one of the further ones; else disabled.
  [[nodiscard]] ShortcutConfiguration wanted() const;
  void receive(const ShortcutEvent& event);
  void handle(const MRMHotkeyEvent& event);
  void handle(ShortcutActivity activity);
  /// Whether it asked for something.
  bool carryOut(HotkeyStateMachine::Transition transition);
  void tellPress();
  void tellRelease();
  /// Tells the release of a press whose own will not be heard.
  void giveBack();
  void installGlobalEventTapIfAuthorized();
  bool createGlobalEventTap();
  void removeGlobalEventTap();
  void enableGlobalEventTap();
  void scheduleEventTapRetry();
  void retryEventTap();
  void reconfigureForCurrentShortcut();
  void postIfAlive(std::move_only_function<void()> job);

  Executor& executor_;
  const Clock& clock_;
  ShortcutSource& source_;
  LocalKeyMonitor& localKeys_;
  HotkeyNotifications notifications_;

  HotkeyStateMachine stateMachine_;
  std::uint64_t userInput_ = 0;
  bool isHeld_ = false;  ///< a press was told, and not yet its release
  std::function<ShortcutConfiguration()> shortcutProvider_;
  std::vector<Further> further_;
  int retryAttempts_ = 0;
  /// Gone with the service: what was posted and is still waiting then does nothing.
  std::shared_ptr<int> alive_ = std::make_shared<int>();
  std::unique_ptr<InstalledShortcut> eventTap_;
  ShortcutRequest installed_;  ///< what `eventTap_` was installed for
  Registration localMonitor_;
  std::vector<Registration> observers_;
  Registration eventTapRetry_;
};

}  // namespace murmel
