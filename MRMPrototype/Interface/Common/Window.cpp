#include "Interface/Common/Window.h"

#include "Interface/Common/Icons.h"

#include <QKeyEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>

namespace murmel {

namespace {

/// What a panel and the frame of the window may take of the screen.
constexpr QSize windowMargin(16, 56);

}  // namespace

Window::Window(const QString& title, QSize wanted) : wanted_(wanted) {
  setWindowTitle(title);
  setWindowIcon(applicationIcon());
}

void Window::fitTo(const QWidget& content) {
  // Beside a scroll bar, which would stay where it was once needed.
  const int width = wanted_.width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  wanted_ = wanted_.expandedTo({0, content.layout()->totalHeightForWidth(width)});
}

void Window::present() {
  if (!isVisible()) resize(wanted_.boundedTo(screen()->availableSize() - windowMargin));
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
