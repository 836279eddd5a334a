#pragma once

#include "Interface/Common/Form.h"
#include "Interface/Settings/SettingsServices.h"
#include "Settings/SettingsRepository.h"

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace murmel {

/// A page of the settings window: its controls show what is stored, at once and after every change wherever
/// it comes from, and store what the user chooses.
class SettingsPage : public FormPage {
 public:
  SettingsPage(const QString& title, const QString& introduction, const SettingsServices& services);

  /// Every setting of this page as it is without the user.
  void reset();
  [[nodiscard]] bool canReset() const { return !defaults_.empty(); }

 protected:
  struct Words {
    QString title;
    QString description;
  };
  template <class T>
  struct Value {
    SettingsProperty property;
    std::function<T()> get;
    std::function<void(T)> set;
    T standard;
  };
  template <class E>
  using Titles = std::vector<std::pair<E, QString>>;

  [[nodiscard]] SettingsRepository& settings() const { return services_.settings; }
  [[nodiscard]] const SettingsServices& services() const { return services_; }

  FormRow* addSwitch(Card& card, const Words& words, Value<bool> value);

  template <class E>
  FormRow* addChoice(Card& card, const Words& words, Value<E> value, Titles<E> titles) {
    auto* box = new ChoiceBox;
    for (const auto& [choice, title] : titles) box->addItem(title);
    auto* row = card.addRow(words.title, words.description, box);
    QObject::connect(box, &QComboBox::activated, box, [set = value.set, titles](int index) {
      set(titles.at(static_cast<std::size_t>(index)).first);
    });
    follow(value.property, [box, get = value.get, titles] {
      for (std::size_t index = 0; index < titles.size(); ++index) {
        if (titles[index].first == get()) box->setCurrentIndex(static_cast<int>(index));
      }
    });
    onReset([value] { value.set(value.standard); });
    return row;
  }

  /// Runs `show` now and whenever the property has changed.
  void follow(SettingsProperty property, std::function<void()> show);
  void onReset(std::function<void()> restore) { defaults_.push_back(std::move(restore)); }

 private:
  SettingsServices services_;
  std::multimap<SettingsProperty, std::function<void()>> followers_;
  std::vector<std::function<void()>> defaults_;
  Registration changes_;
};

}  // namespace murmel
