#include "Interface/SetupWindow.h"

#include "Interface/PlatformWords.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace murmel {

namespace {

constexpr int windowWidth = 520;

}  // namespace

SetupWindow::SetupWindow(std::function<std::vector<SetupCheck>()> look, std::function<void()> onDone)
    : look_(std::move(look)), checks_(new QVBoxLayout) {
  setWindowTitle(QStringLiteral("Murmel Setup"));
  setMinimumWidth(windowWidth);
  auto* layout = new QVBoxLayout(this);
  auto* heading =
      new QLabel(QStringLiteral("<b>Dictate into any application.</b> Your voice and your words stay on "
                                "this computer."));
  heading->setWordWrap(true);
  layout->addWidget(heading);
  layout->addLayout(checks_);
  layout->addStretch();
  auto* buttons = new QHBoxLayout;
  auto* again = new QPushButton(QStringLiteral("Check Again"));
  auto* done = new QPushButton(QStringLiteral("Done"));
  done->setDefault(true);
  buttons->addWidget(again);
  buttons->addStretch();
  buttons->addWidget(done);
  layout->addLayout(buttons);
  QObject::connect(again, &QPushButton::clicked, this, [this] { refresh(); });
  QObject::connect(done, &QPushButton::clicked, this, [this, onDone = std::move(onDone)] {
    onDone();
    close();
  });
}

void SetupWindow::present() {
  refresh();
  show();
  raise();
  activateWindow();
}

void SetupWindow::refresh() {
  while (auto* item = checks_->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  for (const auto& check : look_()) {
    const auto mark = check.works ? QStringLiteral("✓") : QStringLiteral("✗");
    auto* line = new QLabel(mark + QStringLiteral("  <b>") + inPlatformWords(check.subject).toHtmlEscaped() +
                            QStringLiteral("</b><br>") + inPlatformWords(check.detail).toHtmlEscaped());
    line->setTextFormat(Qt::RichText);
    line->setWordWrap(true);
    checks_->addWidget(line);
  }
}

}  // namespace murmel
