#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"

#include <QListWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace murmel {

namespace {

constexpr auto every = allCases<DictationLanguage>();

/// The languages that were chosen, in the user's order, with a mark each; then the others.
class LanguageList final : public QListWidget {
 public:
  explicit LanguageList(SettingsRepository& settings, std::function<QString(DictationLanguage)> note)
      : settings_(settings), note_(std::move(note)) {
    setAlternatingRowColors(false);
    setMinimumHeight(220);
    connect(this, &QListWidget::itemChanged, this, [this](const QListWidgetItem* item) {
      const auto language = languageOf(*item);
      if ((item->checkState() == Qt::Checked) != settings_.isLanguageSelected(language))
        settings_.toggleLanguage(language);
    });
  }

  void refresh() {
    const QSignalBlocker quiet(this);
    const auto current = currentItem() != nullptr ? std::optional(languageOf(*currentItem())) : std::nullopt;
    clear();
    const auto& selected = settings_.selectedLanguages();
    for (const auto language : selected) add(language, true);
    for (const auto language : every) {
      if (!settings_.isLanguageSelected(language)) add(language, false);
    }
    for (int row = 0; row < count(); ++row) {
      if (current == languageOf(*item(row))) setCurrentRow(row);
    }
  }

  void move(int by) {
    auto selected = settings_.selectedLanguages();
    const auto from = currentRow();
    const auto to = from + by;
    const auto size = static_cast<int>(selected.size());
    if (from < 0 || from >= size || to < 0 || to >= size) return;
    std::swap(selected[static_cast<std::size_t>(from)], selected[static_cast<std::size_t>(to)]);
    settings_.setSelectedLanguages(std::move(selected));
  }

 private:
  static DictationLanguage languageOf(const QListWidgetItem& item) {
    return every.at(item.data(Qt::UserRole).toUInt());
  }
  void add(DictationLanguage language, bool isSelected) {
    const auto note = note_ ? note_(language) : QString();
    const auto title = settingsTitles::of(language);
    auto* item =
        new QListWidgetItem(note.isEmpty() ? title : QStringLiteral("%1 — %2").arg(title, note), this);
    item->setData(Qt::UserRole, static_cast<uint>(std::ranges::find(every, language) - every.begin()));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(isSelected ? Qt::Checked : Qt::Unchecked);
  }

  SettingsRepository& settings_;
  std::function<QString(DictationLanguage)> note_;
};

}  // namespace

LanguagesPage::LanguagesPage(const SettingsServices& services)
    : SettingsPage(tr("Languages"), tr("What you speak. Changes take effect with the next dictation."),
                   services) {
  auto& card = *addCard();
  auto* mode = addChoice<DictationLanguageMode>(
      card, {tr("Recognize"), {}},
      {.property = SettingsProperty::languageMode,
       .get = [this] { return settings().languageMode(); },
       .set = [this](DictationLanguageMode chosen) { settings().setLanguageMode(chosen); },
       .standard = DictationLanguageMode::automaticAll},
      {{DictationLanguageMode::automaticAll, tr("All languages, automatically")},
       {DictationLanguageMode::selected, tr("The languages I select")},
       {DictationLanguageMode::single, tr("One language only")}});
  Titles<DictationLanguage> titles;
  for (const auto language : every) titles.emplace_back(language, settingsTitles::of(language));
  auto* single = addChoice<DictationLanguage>(
      card, {tr("Language"), tr("Speech is taken for this language, whatever it sounds like.")},
      {.property = SettingsProperty::singleLanguage,
       .get = [this] { return settings().singleLanguage(); },
       .set = [this](DictationLanguage language) { settings().setSingleLanguage(language); },
       .standard = DictationLanguage::english},
      std::move(titles));
  auto* selection = addSelection();

  const auto show = [this, mode, single, selection] {
    const auto chosen = settings().languageMode();
    mode->setDescription(
        chosen == DictationLanguageMode::automaticAll ? tr("The language is recognized from what you say.")
        : chosen == DictationLanguageMode::selected
            ? tr("The language is recognized from what you say; your list decides which correction is "
                 "recommended.")
            : tr("Short phrases are recognized more reliably when only one language comes into question."));
    single->setVisible(chosen == DictationLanguageMode::single);
    selection->setVisible(chosen == DictationLanguageMode::selected);
  };
  follow(SettingsProperty::languageMode, show);
}

Card* LanguagesPage::addSelection() {
  auto* card = addCard();
  const auto& note = services().languageNote;
  auto* list = new LanguageList(settings(), [note](DictationLanguage language) {
    return note ? inPlatformWords(note(language)) : QString();
  });
  auto* place = new QWidget;
  auto* lines = new QVBoxLayout(place);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(grid::small);
  lines->addWidget(list);
  lines->addWidget(buttonRow({button(tr("Move Up"), [list] { list->move(-1); }),
                              button(tr("Move Down"), [list] { list->move(1); })}));
  list->setAccessibleName(tr("My languages"));
  card->addRow(tr("My languages"), tr("Mark what you speak, and put the most frequent language first."),
               place, FormRow::Place::below);
  follow(SettingsProperty::selectedLanguages, [list] { list->refresh(); });
  onReset([this] {
    settings().setSelectedLanguages({DictationLanguage::english, DictationLanguage::russian});
  });
  return card;
}

}  // namespace murmel
