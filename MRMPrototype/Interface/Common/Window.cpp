#include "Interface/Common/Window.h"

#include "Interface/Common/Icons.h"

#include <QKeyEvent>
#include <QLayout>
#include <QScreen>

namespace murmel {

namespace {

/// What a panel and the frame of the window may take of the screen.
constexpr QSize screenMargin(16, 56);

}  // namespace

Window::Window(const QString& title, QSize wanted) : wanted_(wanted) {
  setWindowTitle(title);
  setWindowIcon(applicationIcon());
}

void Window::present() {
  if (!isVisible()) {
    auto wanted = wanted_;
    // A larger font makes the texts higher.
    if (layout() != nullptr) wanted = wanted.expandedTo({0, layout()->totalHeightForWidth(wanted.width())});
    resize(wanted.boundedTo(screen()->availableSize() - screenMargin));
  }
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

void Window::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
    close();
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace murmel
