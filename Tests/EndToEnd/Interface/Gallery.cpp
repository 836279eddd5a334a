// interface-gallery [--dark] [--rtl] [--language CODE] [--save FOLDER [PREFIX]]
// Shows every window with example data. With --save it writes a picture of each and ends; otherwise it stays,
// for a program that reads what the windows tell assistive technology.
#include "GalleryData.h"
#include "Interface/About/AboutWindow.h"
#include "Interface/About/CreditsWindow.h"
#include "Interface/Common/Style.h"
#include "Interface/FirstRun/FirstRunWindow.h"
#include "Interface/History/HistoryWindow.h"
#include "Interface/Pill/RecordingPill.h"
#include "Interface/PlatformWords.h"
#include "Interface/Recorder/RecorderSheet.h"
#include "Interface/Settings/SettingsWindow.h"
#include "Platform/Qt/QtCompositor.h"
#include "Platform/Qt/QtLocalKeyMonitor.h"
#include "Shortcut/ShortcutConflicts.h"

#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QLabel>
#include <QLibraryInfo>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QTranslator>
#include <cstdio>

using namespace murmel;

namespace {

/// Lets everything that a window has asked for happen before it is looked at.
void settle(QWidget& window) {
  for (int round = 0; round < 5; ++round) QApplication::processEvents();
  window.repaint();
}

/// What does not have the room that it asks for.
QStringList clippedIn(const QWidget& window, const QString& name) {
  QStringList clipped;
  for (const auto* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    const auto* const label = qobject_cast<const QLabel*>(widget);
    const auto* const button = qobject_cast<const QPushButton*>(widget);
    const auto* const choice = qobject_cast<const QComboBox*>(widget);
    const auto* const area = qobject_cast<const QScrollArea*>(widget);
    const auto* const list = qobject_cast<const QListWidget*>(widget);
    const bool isLow = label != nullptr && label->wordWrap() && !label->text().isEmpty() &&
                       label->height() < label->heightForWidth(label->width());
    const bool isNarrow =
        (button != nullptr && !button->text().isEmpty() && button->width() < button->sizeHint().width()) ||
        (list != nullptr && list->sizeHintForColumn(0) > list->viewport()->width()) ||
        (choice != nullptr && choice->width() < choice->sizeHint().width()) ||
        (label != nullptr && !label->wordWrap() && label->width() < label->sizeHint().width());
    const bool isWide = area != nullptr && area->widget()->width() > area->viewport()->width();
    if (isLow || isNarrow || isWide)
      clipped += name + ": " +
                 (label != nullptr    ? label->text()
                  : button != nullptr ? button->text()
                                      : widget->metaObject()->className());
  }
  return clipped;
}

/// The indicator in the forms that it takes.
void showPill(const std::function<void(QWidget&, const char*)>& save) {
  using Case = DictationState::Case;
  QtCompositor compositor;
  RecordingPill pill({.toggle = [] {},
                      .cancel = [] {},
                      .moved = [](OverlayPosition) {},
                      .screen = {},
                      .compositor = &compositor,
                      .isHeld = [] { return true; }});
  const auto speak = [&](OverlayPosition edge, const char* name) {
    pill.setEdge(edge);
    pill.update(Case::listening);
    for (const auto level : {0.1, 0.3, 0.7, 0.5, 0.8, 0.6, 0.9, 0.4, 0.2, 0.6, 0.7, 0.3})
      pill.setLevel(level);
    save(pill, name);
  };
  speak(OverlayPosition::right, "pill-upright");
  speak(OverlayPosition::bottom, "pill");
  pill.addRecognised(SpokenText(
      "The minutes of the meeting go to everybody who was invited, not only to those who came, and they go "
      "there today."));
  save(pill, "pill-words");
  pill.update(DictationState::error("Could not start microphone recording"));
  save(pill, "pill-error");
  pill.setEdge(OverlayPosition::left);
  save(pill, "pill-error-upright");
  pill.update(Case::ready);
  pill.setShownAtRest(true);
  save(pill, "pill-rest");
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QCommandLineParser options;
  options.addOptions({{"dark", "dark colours"},
                      {"rtl", "right to left"},
                      {"troubles", "with everything that may go wrong"},
                      {"language", "code", "code"},
                      {"save", "folder", "folder"},
                      {"measure", "tell what is clipped"},
                      {"prefix", "of the pictures", "prefix"}});
  options.process(application);
  QApplication::setStyle(new Style);
  const DesktopLook look{options.isSet("dark") ? ColourScheme::dark : ColourScheme::light};
  QApplication::setPalette(paletteFor(look));
  if (options.isSet("rtl")) QApplication::setLayoutDirection(Qt::RightToLeft);

  const QLocale locale(options.isSet("language") ? options.value("language") : QStringLiteral("en_US"));
  QLocale::setDefault(locale);
  QTranslator words, toolkit;
  if (words.load(locale, "murmel", "_", MURMEL_RESOURCES_DIR "/translations"))
    QApplication::installTranslator(&words);
  if (toolkit.load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(&toolkit);

  test::GalleryData data(options.isSet("troubles"));
  SettingsWindow settings(data.services());
  settings.present();
  if (options.isSet("troubles"))
    settings.presentRequiredModel(
        inPlatformWords("Download the required Parakeet speech model to use dictation"));
  auto* setup = new FirstRunWindow(data.firstRunServices());
  setup->present();
  auto* history = new HistoryWindow(data.historyServices());
  history->present();
  auto* about = new AboutWindow(data.aboutServices());
  about->present();
  auto* credits = new CreditsWindow(readCredits(MURMEL_RESOURCES_DIR));
  credits->present();
  QtLocalKeyMonitor keys;
  const auto openRecorder = [&] {
    auto* recorder = new RecorderSheet(
        &settings, {.localKeys = keys, .suspendShortcuts = {}, .notice = {}, .canHear = data.canHear()},
        [](const ShortcutConfiguration&) {});
    recorder->open();
    return recorder;
  };
  if (!options.isSet("save") && !options.isSet("measure")) {
    openRecorder();
    return QApplication::exec();
  }

  QStringList clipped;
  const auto save = [&](QWidget& window, const char* name) {
    settle(window);
    clipped += clippedIn(window, name);
    if (!options.isSet("save")) return;
    const auto path = QStringLiteral("%1/%2%3.png").arg(options.value("save"), options.value("prefix"), name);
    if (!window.grab().save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
  };
  using Page = SettingsWindow::Page;
  for (const auto& [page, name] :
       {std::pair(Page::general, "settings-general"), std::pair(Page::shortcut, "settings-shortcut"),
        std::pair(Page::audio, "settings-audio"), std::pair(Page::languages, "settings-languages"),
        std::pair(Page::text, "settings-text"), std::pair(Page::models, "settings-models"),
        std::pair(Page::privacy, "settings-privacy"), std::pair(Page::advanced, "settings-advanced")}) {
    settings.present(page);
    save(settings, name);
  }
  using Step = FirstRunWindow::Step;
  for (const auto& [step, name] : {std::pair(Step::welcome, "setup-welcome"),
                                   {Step::model, "setup-model"},
                                   {Step::microphone, "setup-microphone"},
                                   {Step::shortcut, "setup-shortcut"},
                                   {Step::tryIt, "setup-try"}}) {
    setup->present(step);
    save(*setup, name);
    if (step == Step::shortcut)
      data.settings.setShortcut(proposedShortcuts(data.canHear()).front());  // as Enter does
  }
  auto* recorder = openRecorder();
  save(*recorder, "recorder");
  recorder->close();
  showPill(save);
  save(*history, "history");
  save(*about, "about");
  save(*credits, "credits");
  for (auto* window : {static_cast<QWidget*>(setup), static_cast<QWidget*>(history),
                       static_cast<QWidget*>(about), static_cast<QWidget*>(credits)})
    window->close();
  for (const auto& line : clipped) std::fprintf(stderr, "clipped: %s\n", qPrintable(line));
  return clipped.isEmpty() ? 0 : 1;
}
