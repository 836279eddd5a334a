#pragma once

#include "Interface/Common/Form.h"
#include "Platform/KeyboardProbe.h"
#include "Platform/LocalKeyMonitor.h"
#include "Platform/SessionGuard.h"
#include "Platform/ShortcutSource.h"
#include "Shortcut/ShortcutRecorder.h"

#include <QCoreApplication>
#include <QDialog>
#include <array>
#include <functional>
#include <memory>
#include <optional>

namespace murmel {

/// What the sheet listens with. Everything outlives it.
struct RecorderServices {
  LocalKeyMonitor& localKeys;
  ShortcutSource* source = nullptr;  ///< hears keys that a window manager keeps to itself
  KeyboardProbe* probe = nullptr;
  SessionGuard* session = nullptr;  ///< knows when keys are for a screen locker
  /// No shortcut starts a dictation until the handle is destroyed.
  std::function<Registration()> suspendShortcuts;
  /// What speaks against it here, in sentences of the core; empty when nothing does.
  std::function<std::string(const ShortcutConfiguration&)> notice;
  /// Whether this desktop can hear a shortcut at all; empty: any.
  std::function<bool(const ShortcutConfiguration&)> canHear{};
};

/// Lets the user press the keys that are to be used, three times in a row. Every key belongs to the
/// recording, so nothing in it takes the focus; Esc leaves. Deletes itself.
class RecorderSheet final : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(RecorderSheet)
 public:
  RecorderSheet(QWidget* parent, RecorderServices services,
                std::function<void(const ShortcutConfiguration&)> save);

 protected:
  bool event(QEvent* event) override;

 private:
  void listen();
  /// Leaves when nobody sits here any more: what is typed then is a password.
  bool isLeft();
  void take(const KeyEvent& event);
  void feed(const KeyEvent& event);
  void show(const ShortcutRecorder& recorder);
  /// Which of the keys that the help names are not heard here.
  [[nodiscard]] QString limits() const;

  RecorderServices services_;
  std::function<void(const ShortcutConfiguration&)> save_;
  ShortcutRecorder recorder_;
  /// Super or Shift went down alone: a mistake when it comes up again, else the beginning of a chord.
  std::optional<KeyEvent> beginning_;
  std::uint64_t modifiers_ = 0;  ///< of the last event
  Registration locking_;
  Registration suspension_;
  Registration localKeys_;
  std::unique_ptr<InstalledShortcut> tap_;
  QLabel* keys_;
  std::array<QLabel*, ShortcutRecorder::requiredConfirmations> marks_{};
  QLabel* help_;
  NoticeBar* conflict_;
};

}  // namespace murmel
