#include "History/HistoryRepository.h"
#include "Interface/Common/Dialogs.h"
#include "Interface/Common/StorageWords.h"
#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"

namespace murmel {

PrivacyPage::PrivacyPage(const SettingsServices& services)
    : SettingsPage(
          tr("History and Privacy"),
          tr("Your voice stays in memory and is never written to disk. Your words are kept only where you "
             "ask for it, encrypted, on this computer."),
          services),
      storage_(new NoticeBar(Severity::warning)),
      deleteAll_(button(tr("Delete All…"), [this] {
        confirmRemoval(window(), tr("Delete the whole history?"),
                       tr("Every entry, and the key that could read copies of it, is deleted. They cannot be "
                          "recovered."),
                       tr("Delete All"), [this] { this->services().history.deleteAll(); });
      })) {
  storage_->setAction(
      tr("Unlock"), this->services().unlockStorage ? this->services().unlockStorage : [] {});
  addWidget(storage_);

  auto& card = *addCard(tr("History"));
  addSwitch(card, {tr("Keep a history"), tr("History is optional and off by default.")},
            {.property = SettingsProperty::historyEnabled,
             .get = [this] { return settings().historyEnabled(); },
             .set = [this](bool on) { settings().setHistoryEnabled(on); },
             .standard = false});
  Titles<HistoryRetention> titles;
  for (const auto retention : allCases<HistoryRetention>())
    titles.emplace_back(retention, settingsTitles::of(retention));
  addChoice<HistoryRetention>(
      card,
      {tr("Auto-delete history"), tr("Entries that are older are deleted at once and cannot be recovered.")},
      {.property = SettingsProperty::historyRetention,
       .get = [this] { return settings().historyRetention(); },
       .set = [this](HistoryRetention retention) { settings().setHistoryRetention(retention); },
       .standard = HistoryRetention::forever},
      std::move(titles));
  std::vector<QWidget*> buttons{deleteAll_};
  if (this->services().openHistory)
    buttons.push_back(button(tr("Open History…"), this->services().openHistory));
  stored_ = card.addRow(tr("Stored entries"), {}, buttonRow(buttons));

  auto& facts = *addCard(tr("What Murmel never does"));
  facts.addRow(tr("No audio on disk"), tr("Recordings live in memory and are gone with the dictation."),
               nullptr);
  facts.addRow(
      tr("No network for your words"),
      tr("Recognition and correction run in processes that have no network. Murmel opens a connection only "
         "to download a model that you ask for, and to look for new versions where you have allowed it."),
      nullptr);
  facts.addRow(tr("No words in logs"), tr("Logs hold times and counts, never what you said."), nullptr);

  history_ = this->services().history.didChange().subscribe([this] { show(); });
  follow(SettingsProperty::historyEnabled, [this] { show(); });
}

void PrivacyPage::show() {
  const auto& history = services().history;
  const auto count = static_cast<int>(history.entries().size());
  auto words = count == 0 ? tr("None.") : tr("%n entry(ies).", nullptr, count);
  if (count > 0 && !settings().historyEnabled())
    words += u' ' + tr("They stay until you delete them, although the history is off.");
  stored_->setDescription(words);
  deleteAll_->setEnabled(count > 0 || history.storageStatus() != SecureStorageStatus::available);
  storage_->setText(storageWords(history.trouble()));
}

}  // namespace murmel
