#pragma once

#include "Interface/Common/Window.h"
#include "Interface/Settings/SettingsPage.h"

#include <QCoreApplication>

class QLineEdit;
class QListWidget;
class QStackedWidget;
class QVBoxLayout;

namespace murmel {

class ModelsPage;

/// All settings, a page a subject, with a search over all pages.
class SettingsWindow final : public Window {
  Q_DECLARE_TR_FUNCTIONS(SettingsWindow)
 public:
  enum class Page { general, shortcut, audio, languages, text, models, privacy, advanced };

  explicit SettingsWindow(const SettingsServices& services);

  void present(Page page);
  using Window::present;
  /// Opens the models with a word about why.
  void presentRequiredModel(const QString& why);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void add(FormPage* page, Symbol symbol);
  void build();
  void search(const QString& words);
  void showPage(int index);
  void resetPage();

  QListWidget* list_;
  QLineEdit* search_;
  QStackedWidget* pages_;
  QVBoxLayout* body_ = nullptr;
  QWidget* foot_;  ///< with the button that resets the page
  QLabel* nothing_;
  ModelsPage* models_;
};

}  // namespace murmel
