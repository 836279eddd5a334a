#pragma once

#include "Dictation/DictationState.h"
#include "Foundation/Async/Signal.h"
#include "Interface/Models/ModelShelf.h"
#include "Interface/Settings/SettingsServices.h"
#include "Platform/Microphones.h"
#include "Platform/ShortcutSource.h"
#include "Product/DesktopChecks.h"

#include <functional>

namespace murmel {

class SettingsRepository;

/// What the setup asks of the rest of the application. Everything outlives the window.
struct FirstRunServices {
  SettingsRepository& settings;
  ModelShelf& models;
  DesktopChecks& checks;
  MicrophoneTrial* microphone = nullptr;
  Microphones* microphones = nullptr;
  /// What speaks against a shortcut here; empty when nothing does.
  std::function<std::string(const ShortcutConfiguration&)> shortcutNotice{};
  /// Whether this desktop can hear a shortcut at all; empty: any.
  std::function<bool(const ShortcutConfiguration&)> canHearShortcut{};
  /// Whether the desktop says when the shortcut is let go of; empty: it does.
  std::function<bool(const ShortcutConfiguration&)> tellsOfRelease{};
  /// Where only a press shows whether the desktop hears the shortcut; else null.
  ShortcutTrials* shortcutTrials = nullptr;
  Signal<>* shortcutAccessChanged = nullptr;
  RecordShortcut recordShortcut{};
  std::function<void()> openSoundSettings{};
  std::function<DictationState()> state{};
  Signal<const DictationState&>* stateChanged = nullptr;
  /// Words may be inserted into this window of ours until the handle is destroyed.
  std::function<Registration(QWidget& window)> acceptWords{};
  /// Everything was tried, and works.
  std::function<void()> finished{};
};

}  // namespace murmel
