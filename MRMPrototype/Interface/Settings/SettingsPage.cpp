#include "Interface/Settings/SettingsPage.h"

#include <QSignalBlocker>

namespace murmel {

SettingsPage::SettingsPage(const QString& title, const QString& introduction,
                           const SettingsServices& services)
    : FormPage(title, introduction),
      services_(services),
      changes_(services_.settings.didChange().subscribe([this](SettingsProperty property) {
        const auto [first, last] = followers_.equal_range(property);
        for (auto follower = first; follower != last; ++follower) follower->second();
      })) {}

void SettingsPage::reset() {
  for (const auto& restore : defaults_) restore();
}

void SettingsPage::follow(SettingsProperty property, std::function<void()> show) {
  show();
  followers_.emplace(property, std::move(show));
}

FormRow* SettingsPage::addSwitch(Card& card, const Words& words, Value<bool> value) {
  auto* control = new Switch;
  auto* row = card.addRow(words.title, words.description, control);
  QObject::connect(control, &Switch::clicked, control, [set = value.set](bool on) { set(on); });
  // The setter may have refused.
  follow(value.property, [control, get = value.get] { control->setChecked(get()); });
  onReset([value] { value.set(value.standard); });
  return row;
}

}  // namespace murmel
