// interface-gallery [--dark] [--rtl] [--language CODE] [--save FOLDER [PREFIX]]
// Shows every window with example data. With --save it writes a picture of each and ends; otherwise it stays,
// for a program that reads what the windows tell assistive technology.
#include "GalleryData.h"
#include "Interface/About/AboutWindow.h"
#include "Interface/About/CreditsWindow.h"
#include "Interface/Common/Style.h"
#include "Interface/History/HistoryWindow.h"
#include "Interface/Settings/SettingsWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <cstdio>

using namespace murmel;

namespace {

/// Lets everything that a window has asked for happen before it is looked at.
void settle(QWidget& window) {
  for (int round = 0; round < 5; ++round) QApplication::processEvents();
  window.repaint();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QCommandLineParser options;
  options.addOptions({{"dark", "dark colours"},
                      {"rtl", "right to left"},
                      {"language", "code", "code"},
                      {"save", "folder", "folder"},
                      {"prefix", "of the pictures", "prefix"}});
  options.process(application);
  QApplication::setStyle(new Style);
  const DesktopLook look{options.isSet("dark") ? ColourScheme::dark : ColourScheme::light};
  QApplication::setPalette(paletteFor(look));
  if (options.isSet("rtl")) QApplication::setLayoutDirection(Qt::RightToLeft);

  test::GalleryData data;
  SettingsWindow settings(data.services());
  settings.present();
  auto* history = new HistoryWindow(data.historyServices());
  history->present();
  auto* about = new AboutWindow(data.aboutServices());
  about->present();
  auto* credits = new CreditsWindow(readCredits(MURMEL_RESOURCES_DIR));
  credits->present();
  if (!options.isSet("save")) return QApplication::exec();

  const auto save = [&](QWidget& window, const char* name) {
    settle(window);
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
  save(*history, "history");
  save(*about, "about");
  save(*credits, "credits");
  for (auto* window :
       {static_cast<QWidget*>(history), static_cast<QWidget*>(about), static_cast<QWidget*>(credits)})
    window->close();
  return 0;
}
