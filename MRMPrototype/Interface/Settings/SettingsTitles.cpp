#include "Interface/Settings/Pages.h"

#include <QCoreApplication>
#include <utility>

namespace murmel::settingsTitles {

namespace {

struct Titles {
  Q_DECLARE_TR_FUNCTIONS(Titles)
};

/// Named here for the translators' tools; the texts themselves come from the list of languages.
[[maybe_unused]] constexpr const char* languageNames[] = {
    QT_TRANSLATE_NOOP("Titles", "English"),    QT_TRANSLATE_NOOP("Titles", "Spanish"),
    QT_TRANSLATE_NOOP("Titles", "French"),     QT_TRANSLATE_NOOP("Titles", "German"),
    QT_TRANSLATE_NOOP("Titles", "Italian"),    QT_TRANSLATE_NOOP("Titles", "Portuguese"),
    QT_TRANSLATE_NOOP("Titles", "Romanian"),   QT_TRANSLATE_NOOP("Titles", "Dutch"),
    QT_TRANSLATE_NOOP("Titles", "Danish"),     QT_TRANSLATE_NOOP("Titles", "Swedish"),
    QT_TRANSLATE_NOOP("Titles", "Finnish"),    QT_TRANSLATE_NOOP("Titles", "Hungarian"),
    QT_TRANSLATE_NOOP("Titles", "Estonian"),   QT_TRANSLATE_NOOP("Titles", "Latvian"),
    QT_TRANSLATE_NOOP("Titles", "Lithuanian"), QT_TRANSLATE_NOOP("Titles", "Maltese"),
    QT_TRANSLATE_NOOP("Titles", "Polish"),     QT_TRANSLATE_NOOP("Titles", "Czech"),
    QT_TRANSLATE_NOOP("Titles", "Slovak"),     QT_TRANSLATE_NOOP("Titles", "Slovenian"),
    QT_TRANSLATE_NOOP("Titles", "Croatian"),   QT_TRANSLATE_NOOP("Titles", "Bosnian"),
    QT_TRANSLATE_NOOP("Titles", "Russian"),    QT_TRANSLATE_NOOP("Titles", "Ukrainian"),
    QT_TRANSLATE_NOOP("Titles", "Belarusian"), QT_TRANSLATE_NOOP("Titles", "Bulgarian"),
    QT_TRANSLATE_NOOP("Titles", "Serbian"),    QT_TRANSLATE_NOOP("Titles", "Greek"),
    QT_TRANSLATE_NOOP("Titles", "Automatic"),
};

}  // namespace

QString of(DictationLanguage language) {
  return QCoreApplication::translate("Titles", std::string(title(language)).c_str());
}

QString of(HistoryRetention retention) {
  switch (retention) {
    case HistoryRetention::forever:
      return Titles::tr("Never delete automatically");
    case HistoryRetention::fiveMinutes:
      return Titles::tr("After 5 minutes");
    case HistoryRetention::oneDay:
      return Titles::tr("After 1 day");
    case HistoryRetention::oneWeek:
      return Titles::tr("After 1 week");
    case HistoryRetention::oneMonth:
      return Titles::tr("After 1 month");
    case HistoryRetention::threeMonths:
      return Titles::tr("After 3 months");
  }
  std::unreachable();
}

QString of(OverlayPosition position) {
  switch (position) {
    case OverlayPosition::top:
      return Titles::tr("Top edge");
    case OverlayPosition::right:
      return Titles::tr("Right edge");
    case OverlayPosition::bottom:
      return Titles::tr("Bottom edge");
    case OverlayPosition::left:
      return Titles::tr("Left edge");
  }
  std::unreachable();
}

}  // namespace murmel::settingsTitles
