#pragma once

#include "Dictation/OverlayController.h"
#include "Foundation/SpokenText.h"
#include "Platform/Compositor.h"
#include "Platform/IndicatorSurface.h"
#include "Settings/OverlayPosition.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

class QAbstractButton;
class QBoxLayout;
class QLabel;

namespace murmel {

class LevelMeter;
class ShortLabel;

struct PillActions {
  std::function<void()> toggle;
  std::function<void()> cancel;
  /// The user has drawn it to another edge.
  std::function<void(OverlayPosition)> moved;
  /// Where somebody writes at the moment; empty, or null from it: the first screen.
  std::function<QScreen*()> screen;
  /// Where the desktop shows a picture of the pill, and lets nobody click on it; null: it is a window.
  IndicatorSurface* surface = nullptr;
  /// Without one its corners are cut off; null: there always is one.
  Compositor* compositor = nullptr;
  /// The keys that paste where the words were to go; empty: the usual ones.
  std::function<std::string_view()> pasteKeys{};
  /// The shortcut is held down, and letting it go ends the recording; empty: it never is.
  std::function<bool()> isHeld{};
};

/// The floating indicator: the state in words, and while it records the level of the microphone, the time,
/// and what was recognised so far. It never takes the focus, also not when it is shown or clicked. At rest it
/// is hidden, or a small button that starts a dictation.
class RecordingPill final : public QWidget, public OverlayController {
  Q_DECLARE_TR_FUNCTIONS(RecordingPill)
 public:
  explicit RecordingPill(PillActions actions);
  ~RecordingPill() override;

  /// Upright at the left and right edges.
  void setEdge(OverlayPosition edge);
  /// Whether it stays on the screen at rest.
  void setShownAtRest(bool shown);
  /// More of the running dictation was recognised.
  void addRecognised(const SpokenText& words);

  void update(const DictationState& state) override;
  void setLevel(double level) override;
  void showCaptureCondition(CaptureCondition condition) override;
  void showHint(const std::string& hint) override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  [[nodiscard]] QString shown() const;
  [[nodiscard]] QString pasteKeys() const;
  [[nodiscard]] QString advice() const;
  void arrange();
  void render();
  void showSign();
  void showElapsed();
  void appear();
  void presentPicture();
  void dismiss();
  void place();
  void followScreens();
  void shape();
  [[nodiscard]] bool isResting() const;
  [[nodiscard]] bool isTrouble() const;
  [[nodiscard]] double cornerRadius() const;
  [[nodiscard]] QRect area() const;

  PillActions actions_;
  OverlayPosition edge_ = OverlayPosition::right;
  DictationState state_;
  CaptureCondition condition_ = CaptureCondition::fine;
  std::string hint_;
  std::string recognised_;
  bool isShownAtRest_ = false;
  bool isDismissed_ = false;
  bool awaitsPicture_ = false;
  std::optional<QPoint> grip_;  ///< where in the window it is held
  bool isDragged_ = false;
  QElapsedTimer recordingSince_;
  QTimer second_;
  ShortLabel* words_;
  ShortLabel* soFar_;
  QLabel* sign_;
  QLabel* elapsed_;
  LevelMeter* meter_;
  QAbstractButton* stop_;
  QAbstractButton* cancel_;
  QAbstractButton* dismiss_;
  QBoxLayout* layout_;
  Registration compositing_;
};

}  // namespace murmel
