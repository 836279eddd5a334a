#include "Interface/Models/ModelShelf.h"
#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"
#include "Interface/Settings/VocabularyEditor.h"
#include "Refinement/SmartModelRecommendation.h"

namespace murmel {

TextPage::TextPage(const SettingsServices& services)
    : SettingsPage(tr("Text"), tr("What becomes of the recognized words before they are inserted."),
                   services) {
  addCleanUp();
  addFormatting();
  addVocabulary();
}

void TextPage::addCleanUp() {
  auto& card = *addCard(tr("Clean-up"));
  addSwitch(
      card,
      {tr("Remove filler words"),
       tr("Optional cleanup for common Russian and English fillers. Unlike Conservative punctuation, this "
          "intentionally removes spoken words.")},
      {.property = SettingsProperty::removeFillerWords,
       .get = [this] { return settings().removeFillerWords(); },
       .set = [this](bool on) { settings().setRemoveFillerWords(on); },
       .standard = false})
      ->setKeywords(tr("um uh you know"));
  addSwitch(card,
            {tr("Spoken commands"),
             tr("“Comma”, “period”, “new line”, “open quote” and the like write what they name; say “literal "
                "comma” for the word. In English, German, French, Spanish and Russian.")},
            {.property = SettingsProperty::spokenCommands,
             .get = [this] { return settings().spokenCommands(); },
             .set = [this](bool on) { settings().setSpokenCommands(on); },
             .standard = false})
      ->setKeywords(tr("punctuation voice dictation commands"));
  auto* space = addSwitch(
      card,
      {tr("Space between dictations"),
       tr("When you dictate twice in a row into the same field and press nothing in between, a space is "
          "pasted before the second text.")},
      {.property = SettingsProperty::spaceBetweenDictations,
       .get = [this] { return settings().spaceBetweenDictations(); },
       .set = [this](bool on) { settings().setSpaceBetweenDictations(on); },
       .standard = false});
  if (!services().hearsFurtherShortcuts)
    space->setUnavailable(tr("This desktop does not let Murmel hear whether a key is pressed in between."));
}

void TextPage::addFormatting() {
  migration_ = new NoticeBar(Severity::information);
  migration_->setDismissal([this] { settings().dismissModelMigrationNotice(); });
  addWidget(migration_);
  follow(SettingsProperty::modelMigrationNotice, [this] {
    migration_->setText(inPlatformWords(settings().modelMigrationNotice().value_or(std::string())));
  });

  auto& card = *addCard(tr("Punctuation and capitals"));
  formatting_ =
      addSwitch(card,
                {tr("Format with a local model"),
                 tr("Conservative: a language model on this computer sets punctuation and capitals, and "
                    "can neither change nor remove a word. From the next dictation.")},
                {.property = SettingsProperty::smartFormatting,
                 .get = [this] { return settings().smartFormatting(); },
                 .set = [this](bool on) { settings().setSmartFormatting(on); },
                 .standard = false});
  addChoice<SmartRefinementRoutingMode>(
      card,
      {tr("Automatic correction routing"), tr("Russian goes to a corrector of its own where it is installed, "
                                              "everything else to the model below.")},
      {.property = SettingsProperty::smartRefinementRouting,
       .get = [this] { return settings().smartRefinementRouting(); },
       .set = [this](SmartRefinementRoutingMode mode) { settings().setSmartRefinementRouting(mode); },
       .standard = SmartRefinementRoutingMode::automaticByLanguage},
      {{SmartRefinementRoutingMode::automaticByLanguage, tr("By language")},
       {SmartRefinementRoutingMode::selectedMultilingualModel, tr("Selected model only")}});
  Titles<SmartLocalModel> titles;
  for (const auto model : allCases<SmartLocalModel>())
    titles.emplace_back(model, inPlatformWords(describe(model).displayName));
  model_ = addChoice<SmartLocalModel>(
      card, {tr("Language model"), {}},
      {.property = SettingsProperty::smartLocalModel,
       .get = [this] { return settings().smartLocalModel(); },
       .set = [this](SmartLocalModel model) { settings().setSmartLocalModel(model); },
       .standard = SmartLocalModel::gemma4E2B},
      std::move(titles));
  recommendation_ = card.addRow(tr("Recommendation"), {}, nullptr);

  for (const auto property :
       {SettingsProperty::smartFormatting, SettingsProperty::smartLocalModel, SettingsProperty::languageMode,
        SettingsProperty::singleLanguage, SettingsProperty::selectedLanguages}) {
    follow(property, [this] { showFormatting(); });
  }
  if (services().preparationChanged != nullptr)
    preparations_ = services().preparationChanged->subscribe([this] { showFormatting(); });
  inventory_ = services().models.changed().subscribe([this] { showFormatting(); });
}

void TextPage::showFormatting() {
  const auto model = settings().smartLocalModel();
  const auto status = services().preparationStatus ? services().preparationStatus(model) : std::nullopt;
  const bool isInstalled = services().models.isInstalled(model);
  auto description = !isInstalled ? tr("Not installed. Get it under Speech Models.")
                     : status && settings().smartFormatting() ? inPlatformWords(*status)
                                                              : tr("Installed.");
  const auto failure = services().preparationFailure ? services().preparationFailure(model) : std::string();
  if (isInstalled && settings().smartFormatting() && !failure.empty())
    description += QStringLiteral(" (%1)").arg(inPlatformWords(failure));
  model_->setDescription(description);
  // What is on stays changeable: somebody may want to switch it off.
  formatting_->setUnavailable(isInstalled || settings().smartFormatting()
                                  ? QString()
                                  : tr("Needs a language model; get one under Speech Models."));
  const auto advice = SmartModelRecommendation::forProfile(
      settings().languageMode(), settings().singleLanguage(), settings().selectedLanguages());
  recommendation_->setDescription(inPlatformWords(advice.title) + QStringLiteral("\n") +
                                  inPlatformWords(advice.detail));
}

void TextPage::addVocabulary() {
  auto& card = *addCard(tr("Personal vocabulary"));
  auto* editor = new VocabularyEditor(settings(), services().unlockStorage);
  card.addRow(tr("Replacements"), tr("One replacement per line, for example: postgresql = PostgreSQL"),
              editor, FormRow::Place::below)
      ->setKeywords(tr("vocabulary words names spelling"));
}

}  // namespace murmel
