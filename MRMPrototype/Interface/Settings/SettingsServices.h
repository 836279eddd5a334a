#pragma once

#include "Foundation/Async/Signal.h"
#include "Foundation/Registration.h"
#include "Recognition/DictationLanguage.h"
#include "Refinement/SmartLocalModel.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <QString>
#include <expected>
#include <functional>
#include <optional>
#include <string>

class QWidget;

namespace murmel {

class HistoryRepository;
class Microphones;
class ModelShelf;
class SettingsRepository;

/// Whether the application is started with the session.
class Autostart {
 public:
  virtual ~Autostart() = default;
  [[nodiscard]] virtual bool isOn() const = 0;
  /// The error is one sentence for the user.
  virtual std::expected<void, std::string> set(bool on) = 0;
};

/// The microphone that a dictation would record from, for the user to try.
class MicrophoneTrial {
 public:
  virtual ~MicrophoneTrial() = default;
  /// Calls `level`, from 0 to 1, about twenty times a second until the handle is destroyed. Nothing is kept.
  /// Calls `failed` instead, later and with one sentence for the user, when nothing is heard any more; the
  /// handle is then of no more use. A second trial ends the first.
  virtual Registration listen(std::function<void(double level)> level,
                              std::function<void(const std::string& sentence)> failed) = 0;
};

/// Lets the user press the keys that are to be used, over `window`; `save` is called with them, or never.
using RecordShortcut =
    std::function<void(QWidget* window, std::function<void(const ShortcutConfiguration&)> save)>;

/// What the settings window asks of the rest of the application. Everything outlives the window. An optional
/// part that is absent is something that this installation does not have; the page says so.
struct SettingsServices {
  SettingsRepository& settings;
  HistoryRepository& history;
  ModelShelf& models;

  Autostart* autostart = nullptr;
  MicrophoneTrial* microphone = nullptr;
  Microphones* microphones = nullptr;

  /// What speaks against the shortcut on this desktop; empty when nothing does.
  std::function<std::string(const ShortcutConfiguration&)> shortcutNotice{};
  RecordShortcut recordShortcut{};
  /// Whether this desktop can hear a shortcut at all; empty: any.
  std::function<bool(const ShortcutConfiguration&)> canHearShortcut{};
  /// Whether the desktop says when the shortcut is let go of; empty: it does.
  std::function<bool(const ShortcutConfiguration&)> tellsOfRelease{};
  /// Whether further shortcuts than the one of the dictation are heard here.
  bool hearsFurtherShortcuts = true;
  /// Whether the desktop lets windows keep out of its task bar.
  bool canKeepOutOfTaskBar = true;
  /// How far the language model is; nothing while nobody has asked for it.
  std::function<std::optional<std::string>(SmartLocalModel)> preparationStatus{};
  /// Why the model, or the Russian corrector, is not ready; empty when there is nothing to say.
  std::function<std::string(SmartLocalModel)> preparationFailure{};
  Signal<>* preparationChanged = nullptr;

  /// What the speech engine in use knows of a language, in a few words.
  std::function<std::string(DictationLanguage)> languageNote{};

  /// Asks the desktop to unlock the key ring, then reads again what could not be read.
  std::function<void()> unlockStorage{};
  std::function<void()> openHistory{};
  std::function<void()> openSetup{};
  std::function<void()> openSoundSettings{};

  /// Why this installation does not look for new versions itself; empty when it does.
  std::string updatesUnavailable{};
  /// What is known of new versions, and what can be done about them.
  std::function<QWidget*()> makeUpdatePanel{};

  /// All settings but secrets, as JSON, and back; the error is one sentence for the user.
  std::function<std::string()> exportSettings{};
  std::function<std::expected<void, std::string>(const std::string& json)> importSettings{};
};

}  // namespace murmel
