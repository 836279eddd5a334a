#include "Shortcut/HotkeyService.h"

#include <utility>

namespace murmel {

namespace {

constexpr Duration eventTapRetryInterval = std::chrono::milliseconds(500);
/// Ten seconds in all: what is not there by then comes back with the next notification, if at all.
constexpr int eventTapRetryLimit = 20;

static_assert(static_cast<int>(ShortcutRequest::Kind::capsLock) ==
              static_cast<int>(ShortcutConfiguration::Kind::capsLock));

void callIfSet(const std::function<void()>& callback) {
  if (callback) callback();
}

}  // namespace

ShortcutRequest shortcutRequest(const ShortcutConfiguration& shortcut) {
  return {static_cast<ShortcutRequest::Kind>(shortcut.kind), shortcut.keyCode, shortcut.modifierRawValue};
}

HotkeyService::HotkeyService(Executor& executor, const Clock& clock, ShortcutSource& source,
                             LocalKeyMonitor& localKeys, HotkeyNotifications notifications)
    : executor_(executor),
      clock_(clock),
      source_(source),
      localKeys_(localKeys),
      notifications_(notifications) {}

HotkeyService::~HotkeyService() = default;

void HotkeyService::start(std::function<ShortcutConfiguration()> shortcutProvider) {
  shortcutProvider_ = std::move(shortcutProvider);
  localMonitor_ = localKeys_.add([this](const KeyEvent& event) {
    // A tap sees these keys too, over a connection of its own. Were both heard, a main thread that is busy
    // for the length of a tap would take it for two.
    if (!eventTap_) receive(event);
  });
  installGlobalEventTapIfAuthorized();
  const auto observe = [this](Signal<>& signal, void (HotkeyService::*reaction)()) {
    observers_.push_back(
        signal.subscribe([this, reaction] { postIfAlive([this, reaction] { (this->*reaction)(); }); }));
  };
  observe(notifications_.shortcutDidChange, &HotkeyService::reconfigureForCurrentShortcut);
  observe(notifications_.inputMonitoringPermissionDidChange,
          &HotkeyService::installGlobalEventTapIfAuthorized);
  observe(notifications_.applicationDidBecomeActive, &HotkeyService::installGlobalEventTapIfAuthorized);
  observe(source_.permissionDidChange(), &HotkeyService::installGlobalEventTapIfAuthorized);
}

void HotkeyService::postIfAlive(std::move_only_function<void()> job) {
  executor_.post([alive = std::weak_ptr(alive_), job = std::move(job)]() mutable {
    if (!alive.expired()) job();
  });
}

// Everything hops through the event loop: a callback of the coordinator must not run inside the tap, which it
// may cause to be removed.
void HotkeyService::receive(const ShortcutEvent& heard) {
  if (const auto* activity = std::get_if<ShortcutActivity>(&heard)) {
    postIfAlive([this, activity = *activity] { handle(activity); });
    return;
  }
  const auto& event = std::get<KeyEvent>(heard);
  if (event.type == KeyEventType::tapDisabledByTimeout ||
      event.type == KeyEventType::tapDisabledByUserInput) {
    postIfAlive([this] {
      // While the tap was off the release may have gone by.
      giveBack();
      enableGlobalEventTap();
    });
    return;
  }
  if (event.type == KeyEventType::buttonDown) {
    postIfAlive([this] { ++userInput_; });
    return;
  }
  const auto uptime = durationToSeconds(clock_.now().time_since_epoch());
  if (const auto hotkeyEvent = MRMHotkeyEvent::from(event, uptime)) {
    postIfAlive([this, hotkeyEvent = *hotkeyEvent] { handle(hotkeyEvent); });
  }
}

void HotkeyService::handle(const MRMHotkeyEvent& event) {
  const auto shortcut = shortcutProvider_();
  carryOut(stateMachine_.adopt(shortcut));
  using Kind = ShortcutConfiguration::Kind;
  using Transition = HotkeyStateMachine::Transition;
  bool isOurs = event.isRepeat && shortcut.kind == Kind::key && shortcut.keyCode == event.keyCode;
  isOurs = carryOut(stateMachine_.consume(event, shortcut)) || isOurs;
  for (auto& further : further_) {
    const auto transition = further.machine.consume(event, further.shortcut());
    isOurs = isOurs || transition != Transition::none;
    if (transition == Transition::press || transition == Transition::toggle) further.run();
  }
  if (!isOurs && event.type == KeyEventType::keyDown) ++userInput_;
}

ShortcutConfiguration HotkeyService::wanted() const {
  auto shortcut = shortcutProvider_();
  if (!source_.hearsEveryKey()) return shortcut;
  for (const auto& further : further_) {
    if (shortcut.kind != ShortcutConfiguration::Kind::disabled) break;
    shortcut = further.shortcut();
  }
  return shortcut;
}

void HotkeyService::tellPress() {
  isHeld_ = true;
  callIfSet(onPress);
}

void HotkeyService::tellRelease() {
  isHeld_ = false;
  callIfSet(onRelease);
}

void HotkeyService::giveBack() {
  stateMachine_.letGo();
  if (isHeld_) tellRelease();
}

bool HotkeyService::carryOut(HotkeyStateMachine::Transition transition) {
  switch (transition) {
    case HotkeyStateMachine::Transition::press:
      tellPress();
      break;
    case HotkeyStateMachine::Transition::release:
      tellRelease();
      break;
    case HotkeyStateMachine::Transition::toggle:
      callIfSet(onToggle);
      break;
    case HotkeyStateMachine::Transition::none:
      return false;
  }
  return true;
}

void HotkeyService::handle(ShortcutActivity activity) {
  switch (activity) {
    case ShortcutActivity::pressed:
      tellPress();
      break;
    case ShortcutActivity::released:
      tellRelease();
      break;
    case ShortcutActivity::toggled:
      callIfSet(onToggle);
      break;
    case ShortcutActivity::lost:
      giveBack();
      enableGlobalEventTap();
      break;
  }
}

void HotkeyService::installGlobalEventTapIfAuthorized() {
  const auto shortcut = wanted();
  if (shortcut.kind == ShortcutConfiguration::Kind::disabled) {
    removeGlobalEventTap();
    return;
  }
  // A compositor watches the shortcut that it was told of, and no other.
  if (eventTap_ && !source_.hearsEveryKey() && installed_ != shortcutRequest(shortcut))
    removeGlobalEventTap();
  if (!source_.permission(shortcutRequest(shortcut)).granted) return;
  if (eventTap_) {
    enableGlobalEventTap();
  } else if (!createGlobalEventTap()) {
    scheduleEventTapRetry();
  }
}

bool HotkeyService::createGlobalEventTap() {
  installed_ = shortcutRequest(wanted());
  eventTap_ = source_.install(installed_, [this](const ShortcutEvent& event) { receive(event); });
  if (!eventTap_) return false;
  ++userInput_;  // nobody knows what was pressed before
  eventTapRetry_.reset();
  return true;
}

void HotkeyService::removeGlobalEventTap() {
  eventTapRetry_.reset();
  eventTap_.reset();
  giveBack();
}

void HotkeyService::enableGlobalEventTap() {
  if (!eventTap_ || eventTap_->enable()) return;
  removeGlobalEventTap();
  scheduleEventTapRetry();
}

void HotkeyService::scheduleEventTapRetry() {
  if (eventTapRetry_) return;
  retryAttempts_ = 0;
  eventTapRetry_ = executor_.after(eventTapRetryInterval, [this] { retryEventTap(); });
}

void HotkeyService::retryEventTap() {
  ++retryAttempts_;
  if (createGlobalEventTap()) return;
  eventTapRetry_.reset();
  if (retryAttempts_ >= eventTapRetryLimit) return;
  eventTapRetry_ = executor_.after(eventTapRetryInterval, [this] { retryEventTap(); });
}

void HotkeyService::reconfigureForCurrentShortcut() {
  carryOut(stateMachine_.adopt(shortcutProvider_()));
  // Removes the tap when the new shortcut is the disabled one.
  installGlobalEventTapIfAuthorized();
}

}  // namespace murmel
