#include "Interface/Notices/NoticeWindow.h"

#include "Interface/Common/Form.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

namespace murmel {

namespace {

constexpr QSize wantedNoticeSize(440, 140);
constexpr int mostMessages = 6;

}  // namespace

NoticeWindow::NoticeWindow()
    : Window(tr("Messages of Murmel"), wantedNoticeSize), messages_(new QVBoxLayout) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  // A Wayland compositor may give every new window the keyboard, and what is being dictated would be lost to
  // this one: only those that it does not manage go without.
  if (QGuiApplication::platformName() == "xcb" && qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
    setWindowFlags(windowFlags() | Qt::Tool | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
  setAttribute(Qt::WA_DeleteOnClose);
  messages_->setSpacing(grid::medium);
  auto* done = button(tr("Close"), [this] { close(); });
  done->setDefault(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(grid::large, grid::large, grid::large, grid::large);
  layout->setSpacing(grid::large);
  layout->addLayout(messages_);
  layout->addStretch(1);
  layout->addWidget(buttonRow({done}));
}

void NoticeWindow::add(const QString& text) {
  if (messages_->count() >= mostMessages) {
    const std::unique_ptr<QLayoutItem> oldest(messages_->takeAt(0));
    delete oldest->widget();
  }
  auto* bar = new NoticeBar(Severity::information);
  bar->setText(text);
  messages_->addWidget(bar);
  resize(wantedNoticeSize.width(),
         std::max(wantedNoticeSize.height(), layout()->totalHeightForWidth(wantedNoticeSize.width())));
  if (windowFlags().testFlag(Qt::BypassWindowManagerHint)) {
    const auto corner = screen()->availableGeometry().bottomRight();
    move(corner - QPoint(width() + grid::large, height() + grid::large));
  }
  show();
}

}  // namespace murmel
