#pragma once

#include "Foundation/SpokenText.h"
#include "Interface/Common/Form.h"
#include "Interface/Common/Window.h"
#include "Interface/History/HistoryModel.h"
#include "Settings/SettingsRepository.h"

#include <QCoreApplication>
#include <QTimer>
#include <functional>
#include <optional>

class QLineEdit;
class QListView;
class QPlainTextEdit;
class QStackedWidget;

namespace murmel {

class HistoryRepository;

/// What the history window asks of the rest of the application.
struct HistoryServices {
  HistoryRepository& history;
  SettingsRepository& settings;
  std::function<WallTime()> now;
  /// Puts private text on the clipboard.
  std::function<void(const SpokenText&)> copy;
  /// Into the application that was in front before the window; may be empty where nothing can be pasted.
  std::function<void(const SpokenText&)> pasteAgain{};
  /// Asks the desktop to unlock the key ring, then reads again.
  std::function<void()> unlockStorage{};
};

/// The finished dictations: found, read, copied, pasted again, deleted. Deletes itself when it is closed, so
/// that none of the words stay behind.
class HistoryWindow final : public Window {
  Q_DECLARE_TR_FUNCTIONS(HistoryWindow)
 public:
  explicit HistoryWindow(HistoryServices services);
  ~HistoryWindow() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void build();
  QWidget* buildHead();
  QWidget* buildReader();
  void refresh();
  void showCurrent();
  void removeCurrent();
  void removeAll();
  [[nodiscard]] const HistoryEntry* current() const;

  HistoryServices services_;
  HistoryModel model_;
  NoticeBar* off_;
  NoticeBar* storage_;
  QLineEdit* search_;
  QTimer typing_;
  ChoiceBox* retention_;
  QListView* list_;
  QStackedWidget* body_;
  QLabel* empty_;
  QLabel* about_;
  QPlainTextEdit* text_;
  QLabel* count_;
  QPushButton* copy_;
  QPushButton* paste_;
  QPushButton* remove_;
  QPushButton* removeAll_;
  std::optional<Uuid> selected_;
  Registration history_;
  Registration settings_;
};

}  // namespace murmel
