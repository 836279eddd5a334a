#pragma once

#include <QLabel>

namespace murmel {

/// Plain words in a few lines at most. What has no room is cut with an ellipsis, and is there on hover and
/// for screen readers.
class ShortLabel final : public QLabel {
 public:
  enum class Keeps { beginning, end };

  ShortLabel(int lines, Keeps keeps, QWidget* parent = nullptr);

  void setWords(const QString& words);
  void setLines(int lines);
  /// The width of a line.
  void setRoom(int width);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void arrange();

  int lines_;
  Keeps keeps_;
  int room_ = 0;
  QStringList arranged_;
};

}  // namespace murmel
