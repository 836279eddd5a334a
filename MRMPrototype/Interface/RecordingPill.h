#pragma once

#include "Dictation/OverlayController.h"

#include <QWidget>
#include <functional>
#include <string>

class QLabel;

namespace murmel {

class LevelMeter;

/// The floating indicator: the state in words, and the level of the microphone while it records. It never
/// takes the focus, also not when it is shown or clicked; a click starts or stops. Hidden at rest.
class RecordingPill final : public QWidget, public OverlayController {
 public:
  /// The edge of the screen that it sits at.
  enum class Edge { top, right, bottom, left };

  explicit RecordingPill(std::function<void()> onClick);

  void setEdge(Edge edge);

  void update(const DictationState& state) override;
  void setLevel(double level) override;
  void showCaptureCondition(CaptureCondition condition) override;
  void showHint(const std::string& hint) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void showText();
  void appear();
  void place();
  void shape();

  std::function<void()> onClick_;
  Edge edge_ = Edge::right;
  DictationState state_;
  CaptureCondition condition_ = CaptureCondition::fine;
  std::string hint_;
  QLabel* text_;
  LevelMeter* meter_;
};

}  // namespace murmel
