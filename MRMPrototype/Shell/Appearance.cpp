#include "Shell/Appearance.h"

#include "Interface/Common/Icons.h"
#include "Interface/Common/Style.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace murmel {

Appearance::Appearance(const std::filesystem::path& resources)
    : isDesktopDark_(QApplication::palette().color(QPalette::Window).lightness() < 128),
      changes_(portal_.changed().subscribe([this] { apply(); })) {
  const QLocale locale;
  // English needs its own for the plurals alone; a language that is missing stays English.
  const auto folder = QString::fromStdString((resources / "translations").string());
  if (own_.load(locale, QStringLiteral("murmel"), QStringLiteral("_"), folder) ||
      own_.load(QStringLiteral("murmel_en"), folder))
    QApplication::installTranslator(&own_);
  if (toolkit_.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(&toolkit_);
  QApplication::setWindowIcon(applicationIcon());
  style_ = new Style;
  QApplication::setStyle(style_);
  apply();
}

void Appearance::apply() {
  const auto preference = portal_.preference();
  const bool isDark = preference.dark.value_or(isDesktopDark_);
  style_->setReducedMotion(preference.reducedMotion);
  QApplication::setPalette(
      paletteFor({isDark ? ColourScheme::dark : ColourScheme::light, preference.highContrast}));
}

}  // namespace murmel
