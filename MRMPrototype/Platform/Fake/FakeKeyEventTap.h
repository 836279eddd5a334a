#pragma once

#include "Platform/KeyEventTap.h"
#include "Platform/LocalKeyMonitor.h"

#include <memory>
#include <string>

namespace murmel {

/// A keyboard observation that a test drives. Throws std::logic_error where a real one could not do what the
/// test asks for.
class FakeKeyEventTap final : public KeyEventTap {
 public:
  FakeKeyEventTap();

  [[nodiscard]] ListenEventAccess permission() override;
  [[nodiscard]] std::unique_ptr<InstalledKeyEventTap> create(Handler handler) override;

  void setPermission(bool granted);
  /// The system refuses this many creations from now on.
  void refuseCreations(int count);
  /// The system disables the tap, with one of the two types that say so. `forGood`: it cannot be enabled.
  void disable(KeyEventType type, bool forGood = false);
  /// Tells the tap in place an event; a disabled tap misses it.
  void deliver(const KeyEvent& event);

  [[nodiscard]] bool isInstalled() const;
  [[nodiscard]] bool isEnabled() const;
  /// Creations that were asked for, and those that gave a tap.
  [[nodiscard]] int creationAttempts() const;
  [[nodiscard]] int creations() const;

 private:
  struct State;
  class Installed;
  std::shared_ptr<State> state_;
};

/// The keys of our own windows, as a test sends them.
class FakeLocalKeyMonitor final : public LocalKeyMonitor {
 public:
  FakeLocalKeyMonitor();

  [[nodiscard]] Registration add(Handler handler) override;

  void deliver(const KeyEvent& event) const;
  [[nodiscard]] bool hasMonitors() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace murmel
