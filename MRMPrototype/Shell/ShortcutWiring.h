#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/LocalKeyMonitor.h"
#include "Platform/ShortcutSource.h"
#include "Shell/ProcessServices.h"
#include "Shortcut/HotkeyService.h"

#include <functional>
#include <vector>

namespace murmel {

/// Listens for the shortcut of the settings as long as it lives, and makes up for what a suspend hid.
class ShortcutWiring {
 public:
  struct Actions {
    std::function<void()> press;
    std::function<void()> release;
    std::function<void()> toggle;
    struct Further {
      std::function<ShortcutConfiguration()> shortcut;
      std::function<void()> run;
    };
    std::vector<Further> further{};
  };

  /// The references outlive this.
  ShortcutWiring(const ProcessServices& process, ShortcutSource& source, LocalKeyMonitor& localKeys,
                 HotkeyNotifications notifications, Signal<>& didWake, Actions actions,
                 std::function<ShortcutConfiguration()> shortcut)
      : hotkey_(process.executor, process.clock, source, localKeys, notifications),
        wake_(didWake.subscribe([&source] { source.resync(); })) {
    hotkey_.onPress = std::move(actions.press);
    hotkey_.onRelease = std::move(actions.release);
    hotkey_.onToggle = std::move(actions.toggle);
    for (auto& each : actions.further) hotkey_.also(std::move(each.shortcut), std::move(each.run));
    hotkey_.start(std::move(shortcut));
  }

  [[nodiscard]] const HotkeyService& hotkey() const { return hotkey_; }

 private:
  HotkeyService hotkey_;
  Registration wake_;
};

}  // namespace murmel
