#pragma once

#include "Interface/Common/Form.h"
#include "Interface/Settings/VocabularyLines.h"
#include "Settings/SettingsRepository.h"

#include <QCoreApplication>
#include <QTimer>
#include <functional>
#include <memory>

class QLineEdit;
class QPlainTextEdit;
class QTableWidget;

namespace murmel {

class CompiledVocabulary;

/// The vocabulary as a table of replacements beside the one text that it is, with a line to try it on. A
/// change is stored once the typing has paused, and before the window closes.
class VocabularyEditor final : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(VocabularyEditor)
 public:
  /// `retry` reads again a vocabulary that could not be read; may be empty.
  VocabularyEditor(SettingsRepository& settings, const std::function<void()>& retry);
  ~VocabularyEditor() override;

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void build(const std::function<void()>& retry);
  void showStored();
  void showTable();
  void showText();
  void showState();
  void showTrial();
  void changeTo(const QString& text);
  void store();
  void tableCellChanged(int row, int column);
  void removeCurrent();
  void move(int by);
  void import();
  [[nodiscard]] std::size_t lineOf(int row) const;

  SettingsRepository& settings_;
  VocabularyLines lines_{QString()};
  bool isChanged_ = false;
  std::unique_ptr<const CompiledVocabulary> compiled_;
  QTimer pause_;
  NoticeBar* storage_;
  QTableWidget* table_;
  QPlainTextEdit* text_;
  QLabel* state_;
  QLineEdit* trial_;
  QLabel* outcome_;
  Registration changes_;
};

}  // namespace murmel
