#pragma once

#include <QWidget>

namespace murmel {

/// A window of the application: closes on Escape and Ctrl+W, opens at a size that fits its screen, and is
/// brought to the front when it is asked for again.
class Window : public QWidget {
 public:
  /// `wanted`: the size on a screen that has the room.
  Window(const QString& title, QSize wanted);

  void present();

 protected:
  /// The height that this takes at the window's width is wanted too.
  void fitTo(const QWidget& content);
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QSize wanted_;
};

}  // namespace murmel
