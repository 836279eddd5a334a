#include "Platform/Qt/QtLocalKeyMonitor.h"

#include "Platform/KeyModifiers.h"
#include "Platform/Linux/Keys/EvdevKeyTable.h"
#include "Platform/Linux/Keys/KeyRole.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace murmel {

namespace {

/// Above this are Qt's numbers for keys that write nothing.
constexpr int firstKeyWithoutCharacter = 0x01000000;

/// What Qt knows of the modifiers that are down, whichever keys hold them.
std::uint64_t flagsFrom(Qt::KeyboardModifiers modifiers) {
  std::uint64_t flags = 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) flags |= keyModifier::shift;
  if (modifiers.testFlag(Qt::ControlModifier)) flags |= keyModifier::control;
  if (modifiers.testFlag(Qt::AltModifier)) flags |= keyModifier::option;
  if (modifiers.testFlag(Qt::MetaModifier)) flags |= keyModifier::command;
  return flags;
}

/// The flag that Qt turns over in an event of this key, so that it is as after the event.
std::uint64_t flagTurnedOver(int key) {
  switch (key) {
    case Qt::Key_Shift:
      return keyModifier::shift;
    case Qt::Key_Control:
      return keyModifier::control;
    case Qt::Key_Alt:
      return keyModifier::option;
    case Qt::Key_Meta:
      return keyModifier::command;
    default:
      return 0;
  }
}

KeyRole roleOf(const QKeyEvent& event) {
  const auto evdevCode = event.nativeScanCode() - xKeyCodeOffset;
  auto symbol = event.nativeVirtualKey();
  // The symbol comes as the modifiers make it. Alt with Shift reads Meta in most layouts, and is still Alt.
  if (symbol == XKB_KEY_Meta_L && evdevCode == KEY_LEFTALT) symbol = XKB_KEY_Alt_L;
  if (symbol == XKB_KEY_Meta_R && evdevCode == KEY_RIGHTALT) symbol = XKB_KEY_Alt_R;
  return keyRole(symbol, evdevCode);
}

std::string charactersOf(const QKeyEvent& event) {
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35)
    return "F" + std::to_string(event.key() - Qt::Key_F1 + 1);
  if (event.key() <= 0 || event.key() >= firstKeyWithoutCharacter) return {};
  const auto character = static_cast<char32_t>(event.key());
  return QString::fromUcs4(&character, 1).toStdString();
}

}  // namespace

class QtLocalKeyMonitor::Filter final : public QObject {
 public:
  explicit Filter(Signal<const KeyEvent&>& keys) : keys_(keys) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  bool eventFilter(QObject* /*receiver*/, QEvent* event) override {
    switch (event->type()) {
      case QEvent::ShortcutOverride:  // the only word of a key that a shortcut of a window then takes
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
        if (event->spontaneous()) take(static_cast<const QKeyEvent&>(*event));
        break;
      case QEvent::ApplicationDeactivate:
        releaseEverything();
        break;
      default:
        break;
    }
    return false;
  }

 private:
  void take(const QKeyEvent& event) {
    constexpr quint32 fromNoKey = 0;
    if (event.nativeScanCode() == fromNoKey) return;
    const bool goesDown = event.type() != QEvent::KeyRelease;
    // The same event passes here for its window, for the widget that has the focus, and for each of its
    // parents that is asked.
    const std::tuple occurrence(event.timestamp(), event.nativeScanCode(), goesDown);
    if (std::exchange(lastOccurrence_, occurrence) == occurrence) return;
    if (goesDown) {
      press(event);
    } else if (!event.isAutoRepeat()) {
      release(event);
    }
  }

  void press(const QKeyEvent& event) {
    const auto [entry, isNew] = held_.try_emplace(event.nativeScanCode(), roleOf(event));
    const auto role = entry->second;
    if (role.kind == KeyRole::Kind::ordinary) {
      tell({KeyEventType::keyDown, flags(event, role), role.keyCode, !isNew || event.isAutoRepeat(),
            charactersOf(event)});
    } else if (isNew) {
      tell({KeyEventType::flagsChanged, flags(event, role), role.keyCode, false, ""});
    }
  }

  void release(const QKeyEvent& event) {
    // Pressed before the focus came here: nobody was told.
    const auto held = held_.extract(event.nativeScanCode());
    if (held.empty()) return;
    const auto role = held.mapped();
    if (role.kind == KeyRole::Kind::capsLock) return;  // told once, when it goes down
    const bool isOrdinary = role.kind == KeyRole::Kind::ordinary;
    tell({isOrdinary ? KeyEventType::keyUp : KeyEventType::flagsChanged, flags(event, role), role.keyCode,
          false, isOrdinary ? charactersOf(event) : ""});
  }

  void releaseEverything() {
    while (!held_.empty()) {
      const auto role = held_.extract(held_.begin()).mapped();
      if (role.kind == KeyRole::Kind::capsLock) continue;
      const auto type =
          role.kind == KeyRole::Kind::ordinary ? KeyEventType::keyUp : KeyEventType::flagsChanged;
      tell({type, heldFlags(), role.keyCode, false, ""});
    }
  }

  /// As they are after the event. Qt turns over what it takes the key for, which need not be its role, and
  /// forgets that the other key of the modifier may be down.
  [[nodiscard]] std::uint64_t flags(const QKeyEvent& event, const KeyRole& role) const {
    const auto before = flagsFrom(event.modifiers()) ^ flagTurnedOver(event.key());
    return (before & ~role.flag) | heldFlags();
  }
  [[nodiscard]] std::uint64_t heldFlags() const {
    std::uint64_t flags = 0;
    for (const auto& [scanCode, role] : held_) flags |= role.flag;
    return flags;
  }

  void tell(const KeyEvent& event) { keys_.emit(event); }

  const Signal<const KeyEvent&>& keys_;
  /// By scan code, each with the role that it had when it went down.
  std::map<quint32, KeyRole> held_;
  std::optional<std::tuple<quint64, quint32, bool>> lastOccurrence_;
};

QtLocalKeyMonitor::QtLocalKeyMonitor() : filter_(std::make_unique<Filter>(keys_)) {}

QtLocalKeyMonitor::~QtLocalKeyMonitor() = default;

Registration QtLocalKeyMonitor::add(Handler handler) {
  return keys_.subscribe(std::move(handler));
}

}  // namespace murmel
