// An application on Wayland: a window that takes the keyboard. usage: wayland-target IDENTIFIER: says "focus"
// whenever it gets the keyboard, "shift" when that goes down, and "pasted" at every chord that pastes.

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <iostream>

namespace {

class Target final : public QWidget {
 public:
  Target() { setFocusPolicy(Qt::StrongFocus); }

 protected:
  void focusInEvent(QFocusEvent* /*event*/) override { std::cout << "focus" << std::endl; }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Shift) std::cout << "shift" << std::endl;
    const auto held = event->modifiers() & ~Qt::KeypadModifier;
    const bool pastes = event->key() == Qt::Key_V
                            ? (held & ~Qt::ShiftModifier) == Qt::ControlModifier
                            : event->key() == Qt::Key_Insert && held == Qt::ShiftModifier;
    if (pastes) std::cout << "pasted" << std::endl;
  }
};

}  // namespace

int main(int count, char** arguments) {
  const QApplication application(count, arguments);
  if (count != 2) return 2;
  QGuiApplication::setDesktopFileName(arguments[1]);
  Target target;
  target.show();
  return QApplication::exec();
}
