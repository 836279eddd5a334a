// What the menu shows of the application, and asks of it.

#include "Interface/PlatformWords.h"
#include "Shell/MRMPrototypeApp.h"

#include <ranges>

namespace murmel {

MenuServices MRMPrototypeApp::menuServices() {
  const auto command = [this](IntelCommand asked) { return [this, asked] { perform(asked); }; };
  const auto page = [this](SettingsWindow::Page asked) {
    return [this, asked] { windows_.openSettings(asked); };
  };
  return {
      .status = [this] { return menuStatus(); },
      .recent =
          [this] {
            constexpr std::size_t most = 5;
            std::vector<SpokenText> words;
            for (const auto& entry : storage_.history.entries() | std::views::take(most))
              words.push_back(entry.text);
            return words;
          },
      .copy = [this](const SpokenText& words) { tasks_.start(copy(words)); },
      .microphones = &microphones_,
      .toggle = command(IntelCommand::toggleDictation),
      .cancel = command(IntelCommand::cancelDictation),
      .retry = command(IntelCommand::retryDictation),
      .copyLast = command(IntelCommand::copyLastTranscript),
      .pasteLast = command(IntelCommand::pasteLastTranscript),
      .bringBackClipboard = [this] { delivery_.insertion.bringBackClipboard(); },
      .pause =
          [this](bool paused) {
            gate_.setPaused(paused);
            tray_.refresh();
          },
      .openUpdates = [this] { windows_.openSettings(SettingsWindow::Page::advanced); },
      .openSettings = command(IntelCommand::openSettings),
      .openShortcut = page(SettingsWindow::Page::shortcut),
      .openLanguages = page(SettingsWindow::Page::languages),
      .openModels = page(SettingsWindow::Page::models),
      .openHistory = command(IntelCommand::openHistory),
      .openSetup = command(IntelCommand::openSetup),
      .openCredits = command(IntelCommand::openCredits),
      .openAbout = command(IntelCommand::openAbout),
      .quit = command(IntelCommand::quit),
  };
}

MenuStatus MRMPrototypeApp::menuStatus() {
  const auto& settings = storage_.settings;
  const auto shortcut = settings.shortcut();
  const bool hasShortcut = shortcut.kind != ShortcutConfiguration::Kind::disabled;
  return {
      .state = coordinator_.state(),
      .shortcut = hasShortcut ? shortcutTitle(shortcut) : QString(),
      .language = inPlatformWords(settings.languageProfileSummary()),
      .model = modelLine(windows_.shelf().rows()),
      .update = updateWiring_.menuLine(),
      .pasteKeys = pasteKeys(),
      .isPaused = gate_.isPaused(),
      .hasLastTranscript = coordinator_.hasLastTranscript(),
      .canRetry = coordinator_.canRetry(),
      .canBringBackClipboard = canBringBackClipboard_,
      .keepsHistory = settings.historyEnabled(),
  };
}

}  // namespace murmel
