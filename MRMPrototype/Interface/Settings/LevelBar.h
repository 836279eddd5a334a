#pragma once

#include <QWidget>

namespace murmel {

/// How loud the microphone hears right now, and how loud it was at most in the last second or so.
class LevelBar final : public QWidget {
 public:
  LevelBar();

  /// 0…1.
  void show(double level);
  void clear();
  /// Of the last five to ten seconds: somebody who was too loud may be so no longer.
  [[nodiscard]] double loudest() const { return loudest_ > loudestBefore_ ? loudest_ : loudestBefore_; }
  [[nodiscard]] QSize sizeHint() const override { return {220, 14}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double level_ = 0;
  double peak_ = 0;
  double loudest_ = 0;
  double loudestBefore_ = 0;
  int levels_ = 0;
};

/// What to say of the loudest level of the last seconds.
QString microphoneVerdict(double loudest);

}  // namespace murmel
