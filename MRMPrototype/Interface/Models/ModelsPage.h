#pragma once

#include "Interface/Common/Form.h"
#include "Interface/Common/Style.h"
#include "Interface/Models/ModelShelf.h"

#include <QCoreApplication>
#include <map>
#include <string>

namespace murmel {

/// The models on this computer and those that can be had: downloads with their progress, verification,
/// removal, and what they occupy.
class ModelsPage final : public FormPage {
  Q_DECLARE_TR_FUNCTIONS(ModelsPage)
 public:
  explicit ModelsPage(ModelShelf& shelf);

  /// Says why the page has opened by itself.
  void showRequired(const QString& why) { notice_->setText(why); }

  /// What has arrived of how much; while it arrives, how fast and how long it will take.
  static QString progressWords(const ModelShelfRow& row);
  static QString sizeWords(std::uint64_t bytes);
  static constexpr int progressHeight = 2 * grid::unit;

 private:
  class Row;

  void refresh();
  Row* add(Card& card, const ModelShelfRow& row);

  ModelShelf& shelf_;
  NoticeBar* notice_;
  QLabel* total_;
  Card* speech_;
  Card* correction_;
  std::map<std::string, Row*> rows_;
  Registration changes_;
};

}  // namespace murmel
