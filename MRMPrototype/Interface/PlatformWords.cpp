#include "Interface/PlatformWords.h"

#include "Platform/KeyModifiers.h"

#include <QRegularExpression>
#include <QStringList>
#include <array>

namespace murmel {

namespace {

struct ModifierName {
  std::uint64_t flag;
  QString symbol;
  QString coreName;
  QString name;
};

/// In the order of the titles.
const std::array<ModifierName, 5>& modifierNames() {
  static const std::array<ModifierName, 5> names{{
      {keyModifier::control, QStringLiteral("⌃"), QStringLiteral("Control"), QStringLiteral("Ctrl")},
      {keyModifier::option, QStringLiteral("⌥"), QStringLiteral("Option"), QStringLiteral("Alt")},
      {keyModifier::shift, QStringLiteral("⇧"), QStringLiteral("Shift"), QStringLiteral("Shift")},
      {keyModifier::command, QStringLiteral("⌘"), QStringLiteral("Command"), QStringLiteral("Super")},
      {keyModifier::function, QStringLiteral("Fn"), QStringLiteral("Fn"), QStringLiteral("Fn")},
  }};
  return names;
}

QString fromCore(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Some keys are called otherwise on this platform's keyboards.
QString keyName(const ShortcutConfiguration& shortcut) {
  switch (shortcut.keyCode) {
    case virtualKey::returnKey:
      return QStringLiteral("Enter");
    case virtualKey::deleteKey:
      return QStringLiteral("Backspace");
    case virtualKey::forwardDelete:
      return QStringLiteral("Delete");
    default:
      return fromCore(shortcut.keyLabel);
  }
}

}  // namespace

QString inPlatformWords(std::string_view text) {
  auto words = fromCore(text);
  words.replace(QStringLiteral("⌘V"), QStringLiteral("Ctrl+V"));
  words.replace(QStringLiteral("macOS needs"), QStringLiteral("The desktop needs"));
  words.replace(QStringLiteral("restart your Mac"), QStringLiteral("restart your computer"));
  return words;
}

QString shortcutWords(std::string_view text) {
  auto words = fromCore(text);
  for (const auto& modifier : modifierNames()) {
    if (modifier.symbol != modifier.coreName) words.replace(modifier.symbol, modifier.name + u'+');
    words.replace(QRegularExpression(QStringLiteral("\\b%1\\b").arg(modifier.coreName)), modifier.name);
  }
  // A chord of symbols alone ends without a key.
  words.replace(QRegularExpression(QStringLiteral("\\+(?=\\s|$)")), QString());
  words.replace(QStringLiteral("normal Mac typing"), QStringLiteral("normal typing"));
  words.replace(QStringLiteral("menu bar"), QStringLiteral("tray icon"));
  return words;
}

QString shortcutTitle(const ShortcutConfiguration& shortcut) {
  using Kind = ShortcutConfiguration::Kind;
  if (shortcut.kind != Kind::key && shortcut.kind != Kind::modifiersOnly)
    return shortcutWords(shortcut.title());
  QStringList keys;
  for (const auto& modifier : modifierNames()) {
    if ((shortcut.modifierRawValue & modifier.flag) != 0) keys += modifier.name;
  }
  if (shortcut.kind == Kind::key) keys += keyName(shortcut);
  keys.removeAll(QString());
  return keys.isEmpty() ? shortcutWords(shortcut.title()) : keys.join(u'+');
}

}  // namespace murmel
