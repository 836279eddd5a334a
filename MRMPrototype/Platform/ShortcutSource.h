#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/KeyEventTap.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace murmel {

/// The shortcut in words that a compositor can be told, for those that watch it themselves.
struct ShortcutRequest {
  enum class Kind { key, modifiersOnly, doubleTapModifier, capsLock };

  Kind kind = Kind::key;
  VirtualKeyCode keyCode = 0;
  std::uint64_t modifiers = 0;  ///< bits of `keyModifier`

  friend bool operator==(const ShortcutRequest&, const ShortcutRequest&) = default;
};

/// What a desktop says that watches the shortcut itself.
enum class ShortcutActivity {
  pressed,
  released,
  toggled,  ///< it tells of no release: each time means start or stop
  lost,     ///< it does not watch any more; nothing comes until `enable` or a new installation
};

/// A key, for the state machine to judge; or the judgement of the desktop.
using ShortcutEvent = std::variant<KeyEvent, ShortcutActivity>;

/// A shortcut that is being watched, by a tap or by the desktop. Destroying it ends that.
using InstalledShortcut = InstalledKeyEventTap;

/// Trying out a desktop that may bind a shortcut and never tell of it: only a press of the user's shows that.
/// Main thread.
class ShortcutTrials {
 public:
  virtual ~ShortcutTrials() = default;
  /// Whether that is still to be found out for this shortcut.
  [[nodiscard]] virtual bool isOpen(const ShortcutRequest& shortcut) const = 0;
  /// The user is being asked to press it, or not any more. When nothing comes in time the next road is taken.
  virtual void ask(bool isAsked) = 0;
  /// The user has pressed it in vain: the next road is taken at once.
  virtual void nothingHappened() = 0;
  /// What has been found out, for `recall` at the next start; empty when nothing was.
  [[nodiscard]] virtual std::string memory() const = 0;
  virtual void recall(const std::string& memory) = 0;
};

/// Where the dictation shortcut is heard while other applications are in front: a tap that hears every key,
/// or a compositor that watches one shortcut and keeps the other keys to itself. Main thread.
class ShortcutSource {
 public:
  using Handler = std::function<void(const ShortcutEvent&)>;

  virtual ~ShortcutSource() = default;

  /// Whether this shortcut can be heard here. Free of side effects: no dialog, no registration.
  [[nodiscard]] virtual ListenEventAccess permission(const ShortcutRequest& shortcut) = 0;

  /// Begins to watch, enabled; `handler` as for `KeyEventTap::create`. Null without permission, when the
  /// desktop refuses (the shortcut may be taken), or while another one of this object exists.
  [[nodiscard]] virtual std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& shortcut,
                                                                   Handler handler) = 0;

  /// Whether it is told when this shortcut is let go of; where not, each press means start or stop.
  [[nodiscard]] virtual bool tellsOfRelease(const ShortcutRequest& /*shortcut*/) { return true; }

  /// Whether an installed one serves every shortcut, so that a change of the shortcut needs no new one.
  [[nodiscard]] virtual bool hearsEveryKey() const = 0;

  /// The desktop has granted or withdrawn something.
  [[nodiscard]] virtual Signal<>& permissionDidChange() = 0;

  /// Makes up for what was missed, for instance during a suspend.
  virtual void resync() = 0;

  /// Null where permission says everything.
  [[nodiscard]] virtual ShortcutTrials* trials() { return nullptr; }
};

/// A tap as the source.
class KeyTapShortcutSource final : public ShortcutSource {
 public:
  /// Both outlive this. `resync` may be empty.
  explicit KeyTapShortcutSource(KeyEventTap& tap, std::function<void()> resync = {})
      : tap_(tap), resync_(std::move(resync)) {}

  [[nodiscard]] ListenEventAccess permission(const ShortcutRequest& /*shortcut*/) override {
    return tap_.permission();
  }
  [[nodiscard]] std::unique_ptr<InstalledShortcut> install(const ShortcutRequest& /*shortcut*/,
                                                           Handler handler) override {
    return tap_.create([handler = std::move(handler)](const KeyEvent& event) { handler(event); });
  }
  [[nodiscard]] bool hearsEveryKey() const override { return true; }
  [[nodiscard]] Signal<>& permissionDidChange() override { return permissionDidChange_; }
  void resync() override {
    if (resync_) resync_();
  }

 private:
  KeyEventTap& tap_;
  std::function<void()> resync_;
  Signal<> permissionDidChange_;
};

}  // namespace murmel
