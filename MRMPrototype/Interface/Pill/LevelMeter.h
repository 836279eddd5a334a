#pragma once

#include <QWidget>
#include <array>

namespace murmel {

/// The last second or so of the microphone's level as bars. It shows what was really heard, nothing else.
class LevelMeter final : public QWidget {
 public:
  explicit LevelMeter(QWidget* parent);

  /// 0…1.
  void push(double level);
  void clear();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  static constexpr std::size_t barCount = 12;
  std::array<double, barCount> levels_{};
};

}  // namespace murmel
