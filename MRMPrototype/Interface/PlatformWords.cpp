#include "Interface/PlatformWords.h"

#include "Interface/Common/ScreenTexts.h"
#include "Platform/KeyModifiers.h"

#include <QCoreApplication>
#include <QStringList>
#include <array>
#include <optional>
#include <utility>

namespace murmel {

namespace {

struct ModifierName {
  std::uint64_t flag;
  std::string_view symbol;  ///< in the core's titles
  const char* name;
};

/// In the order of the titles.
constexpr std::array<ModifierName, 5> modifierNames{{
    {keyModifier::control, "⌃", QT_TRANSLATE_NOOP("Keys", "Ctrl")},
    {keyModifier::option, "⌥", QT_TRANSLATE_NOOP("Keys", "Alt")},
    {keyModifier::shift, "⇧", QT_TRANSLATE_NOOP("Keys", "Shift")},
    {keyModifier::command, "⌘", QT_TRANSLATE_NOOP("Keys", "Super")},
    {keyModifier::function, "Fn", QT_TRANSLATE_NOOP("Keys", "Fn")},
}};

struct KeyName {
  std::string_view core;
  const char* name;
};

/// Keys that are called otherwise on this platform's keyboards, or have a name that is translated.
constexpr std::array<KeyName, 10> keyNames{{
    {"Return", QT_TRANSLATE_NOOP("Keys", "Enter")},
    {"Tab", QT_TRANSLATE_NOOP("Keys", "Tab")},
    {"Space", QT_TRANSLATE_NOOP("Keys", "Space")},
    {"Delete", QT_TRANSLATE_NOOP("Keys", "Backspace")},
    {"Esc", QT_TRANSLATE_NOOP("Keys", "Esc")},
    {"Forward Delete", QT_TRANSLATE_NOOP("Keys", "Delete")},
    {"Home", QT_TRANSLATE_NOOP("Keys", "Home")},
    {"End", QT_TRANSLATE_NOOP("Keys", "End")},
    {"Page Up", QT_TRANSLATE_NOOP("Keys", "Page Up")},
    {"Page Down", QT_TRANSLATE_NOOP("Keys", "Page Down")},
}};

QString qtText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString translated(const char* context, const char* text) {
  return QCoreApplication::translate(context, text);
}

QString keyName(std::string_view label) {
  for (const auto& [core, name] : keyNames) {
    if (core == label) return translated("Keys", name);
  }
  return qtText(label);
}

QString pasteChord() {
  return translated("Keys", "Ctrl") + QStringLiteral("+V");
}

/// "⌃⇧D" as "Ctrl+Shift+D".
QString symbolsInWords(std::string_view title) {
  QStringList keys;
  for (bool found = true; std::exchange(found, false);) {
    for (const auto& modifier : modifierNames) {
      if (!title.starts_with(modifier.symbol)) continue;
      keys += translated("Keys", modifier.name);
      title.remove_prefix(modifier.symbol.size());
      found = true;
    }
  }
  if (!title.empty()) keys += keys.isEmpty() ? inPlatformWords(title) : keyName(title);
  return keys.join(u'+');
}

/// What stands for "%1" when the text is of this row; nothing when it is not.
std::optional<std::string_view> argumentOf(const ScreenText& row, std::string_view text) {
  const auto place = row.core.find("%1");
  if (place == std::string_view::npos)
    return text == row.core ? std::optional(std::string_view()) : std::nullopt;
  const auto before = row.core.substr(0, place);
  const auto behind = row.core.substr(place + 2);
  if (text.size() <= before.size() + behind.size()) return std::nullopt;
  if (!text.starts_with(before) || !text.ends_with(behind)) return std::nullopt;
  return text.substr(before.size(), text.size() - before.size() - behind.size());
}

std::optional<QString> ofTable(std::string_view text, const QString& pasteKeys) {
  for (const auto& row : screenTexts()) {
    const auto argument = argumentOf(row, text);
    if (!argument) continue;
    auto words = translated("Messages", row.screen);
    words.replace(QStringLiteral("%paste"), pasteKeys.isEmpty() ? pasteChord() : pasteKeys);
    if (row.argument == ScreenText::Argument::detail) words = words.arg(qtText(*argument));
    if (row.argument == ScreenText::Argument::text) words = words.arg(inPlatformWords(*argument));
    if (row.argument == ScreenText::Argument::shortcut) words = words.arg(symbolsInWords(*argument));
    return words;
  }
  return std::nullopt;
}

/// Warnings come joined by a space: each of them by itself.
std::optional<QString> ofSeveral(std::string_view text, const QString& pasteKeys) {
  for (auto end = text.find(". "); end != std::string_view::npos; end = text.find(". ", end + 1)) {
    const auto first = ofTable(text.substr(0, end + 1), pasteKeys);
    if (first) return *first + u' ' + inPlatformWords(text.substr(end + 2), pasteKeys);
  }
  return std::nullopt;
}

}  // namespace

QString inPlatformWords(std::string_view text, const QString& pasteKeys) {
  if (auto whole = ofTable(text, pasteKeys)) return *std::move(whole);
  if (auto parts = ofSeveral(text, pasteKeys)) return *std::move(parts);
  return qtText(text);
}

QString shortcutTitle(const ShortcutConfiguration& shortcut) {
  using Kind = ShortcutConfiguration::Kind;
  const bool isOfKeys = shortcut.kind == Kind::key || shortcut.kind == Kind::modifiersOnly;
  QStringList keys;
  for (const auto& modifier : modifierNames) {
    if (isOfKeys && (shortcut.modifierRawValue & modifier.flag) != 0)
      keys += translated("Keys", modifier.name);
  }
  if (shortcut.kind == Kind::key) keys += keyName(shortcut.keyLabel);
  keys.removeAll(QString());
  return keys.isEmpty() ? inPlatformWords(shortcut.title()) : keys.join(u'+');
}

}  // namespace murmel
