#pragma once

#include "Foundation/Async/Signal.h"

#include <memory>
#include <optional>

namespace murmel {

/// Knows whether the desktop shows tray icons, and notices when that begins: panels start when they like, and
/// Qt looks only once. Main thread, needs a QGuiApplication.
class TrayWatch {
 public:
  enum class Tray {
    none,
    statusNotifier,  ///< over the session bus; its messages are desktop notifications
    embedded,        ///< of X, where an icon is a window and shows its messages itself
  };

  TrayWatch();
  ~TrayWatch();
  TrayWatch(const TrayWatch&) = delete;
  TrayWatch& operator=(const TrayWatch&) = delete;

  [[nodiscard]] Tray tray() const;
  /// Whether icons stand on a dark panel; nothing where nobody says so.
  [[nodiscard]] std::optional<bool> isPanelDark() const;
  [[nodiscard]] Signal<>& changed() { return changed_; }

 private:
  class Watcher;
  Signal<> changed_;
  std::unique_ptr<Watcher> watcher_;
};

}  // namespace murmel
