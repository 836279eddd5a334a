#include "Interface/PlatformWords.h"

#include "Interface/Common/ScreenTexts.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutHelp.h"

#include <QCoreApplication>
#include <QStringList>
#include <array>
#include <optional>
#include <utility>
#include <vector>

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

/// What stands for "%1", "%2" and so on when the text is of this row; nothing when it is not.
std::optional<std::vector<std::string_view>> argumentsOf(std::string_view core, std::string_view text) {
  std::vector<std::string_view> arguments;
  auto place = core.find('%');
  if (!text.starts_with(core.substr(0, place))) return std::nullopt;
  if (place == std::string_view::npos)
    return text == core ? std::optional(std::move(arguments)) : std::nullopt;
  text.remove_prefix(place);
  while (place != std::string_view::npos) {
    constexpr std::size_t placeholder = 2;
    const auto next = core.find('%', place + placeholder);
    const auto behind =
        core.substr(place + placeholder,
                    next == std::string_view::npos ? std::string_view::npos : next - place - placeholder);
    if (next == std::string_view::npos && !text.ends_with(behind)) return std::nullopt;
    // The last one goes as far as it can, the others end where the row goes on.
    const auto end = next == std::string_view::npos ? text.size() - behind.size() : text.find(behind, 1);
    if (end == 0 || end == std::string_view::npos) return std::nullopt;
    arguments.push_back(text.substr(0, end));
    text.remove_prefix(end + behind.size());
    place = next;
  }
  return arguments;
}

QString shown(ScreenText::Argument kind, std::string_view argument) {
  switch (kind) {
    case ScreenText::Argument::text:
      return inPlatformWords(argument);
    case ScreenText::Argument::shortcut:
      return symbolsInWords(argument);
    case ScreenText::Argument::none:
    case ScreenText::Argument::detail:
      break;
  }
  return qtText(argument);
}

enum class Rows { plain, withArguments };

std::optional<QString> ofTable(std::string_view text, const QString& pasteKeys, Rows which) {
  for (const auto part : screenTexts()) {
    for (const auto& row : part) {
      if ((row.argument == ScreenText::Argument::none) != (which == Rows::plain)) continue;
      const auto arguments = argumentsOf(row.core, text);
      if (!arguments) continue;
      auto words = translated("Messages", row.screen);
      // Where there are no keys for it, an entry of the menu pastes.
      words.replace(QStringLiteral("%paste"),
                    pasteKeys.isEmpty() ? pasteChord() : translated("TrayMenu", pasteKeys.toUtf8()));
      if (arguments->empty()) return words;
      const auto first = shown(row.argument, arguments->front());
      // Both at once: the first may hold what looks like a place for the second.
      return arguments->size() == 1 ? words.arg(first)
                                    : words.arg(first, shown(row.argument, arguments->back()));
    }
  }
  return std::nullopt;
}

/// Sentences come joined by a space: each of them by itself.
std::optional<QString> ofSeveral(std::string_view text, const QString& pasteKeys) {
  for (auto end = text.find(". "); end != std::string_view::npos; end = text.find(". ", end + 1)) {
    const auto sentence = text.substr(0, end + 1);
    auto first = ofTable(sentence, pasteKeys, Rows::plain);
    if (!first) first = ofTable(sentence, pasteKeys, Rows::withArguments);
    if (first) return *first + u' ' + inPlatformWords(text.substr(end + 2), pasteKeys);
  }
  return std::nullopt;
}

}  // namespace

QString inPlatformWords(std::string_view text, const QString& pasteKeys) {
  if (auto whole = ofTable(text, pasteKeys, Rows::plain)) return *std::move(whole);
  // First, for a row that ends in a detail would take the sentences behind it for its own.
  if (auto parts = ofSeveral(text, pasteKeys)) return *std::move(parts);
  if (auto whole = ofTable(text, pasteKeys, Rows::withArguments)) return *std::move(whole);
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

QString shortcutUse(const ShortcutConfiguration& shortcut,
                    const std::function<bool(const ShortcutConfiguration&)>& tellsOfRelease) {
  using Kind = ShortcutConfiguration::Kind;
  const bool isHeld = shortcut.kind == Kind::key || shortcut.kind == Kind::modifiersOnly;
  auto use = inPlatformWords(modeHelpText(shortcut.kind));
  if (isHeld && tellsOfRelease && !tellsOfRelease(shortcut))
    use += u'\n' + translated("Keys", QT_TRANSLATE_NOOP("Keys",
                                                        "This desktop does not tell when keys are let go "
                                                        "of: press once to start, and again to stop."));
  return use;
}

}  // namespace murmel
