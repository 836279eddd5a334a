#include "Interface/SetupWindow.h"

#include "Interface/PlatformWords.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutHelp.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace murmel {

namespace {

constexpr int preferredWidth = 520;
/// What the window manager's frame and a panel may take of the screen.
constexpr int screenMargin = 60;

const auto choices = allCases<ShortcutChoice>();

QString escaped(const QString& text) {
  return text.toHtmlEscaped();
}

QLabel* paragraph() {
  auto* label = new QLabel;
  label->setWordWrap(true);
  return label;
}

}  // namespace

SetupWindow::SetupWindow(SetupActions actions)
    : actions_(std::move(actions)),
      scroll_(new QScrollArea),
      checks_(new QVBoxLayout),
      shortcuts_(new QComboBox),
      help_(paragraph()),
      notice_(paragraph()) {
  setWindowTitle(QStringLiteral("Murmel Setup"));
  auto* content = new QWidget;
  auto* contentLayout = new QVBoxLayout(content);
  auto* heading = paragraph();
  heading->setText(
      QStringLiteral("<b>Dictate into any application.</b> Your voice and your words stay on this "
                     "computer."));
  contentLayout->addWidget(heading);

  auto* shortcutRow = new QHBoxLayout;
  auto* shortcutLabel = new QLabel(QStringLiteral("&Shortcut:"));
  shortcutLabel->setBuddy(shortcuts_);
  shortcuts_->setAccessibleName(QStringLiteral("Shortcut"));
  shortcutRow->addWidget(shortcutLabel);
  shortcutRow->addWidget(shortcuts_, 1);
  contentLayout->addLayout(shortcutRow);
  contentLayout->addWidget(help_);
  contentLayout->addWidget(notice_);
  contentLayout->addLayout(checks_);
  contentLayout->addStretch();
  scroll_->setWidget(content);
  scroll_->setWidgetResizable(true);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

  auto* buttons = new QHBoxLayout;
  auto* again = new QPushButton(QStringLiteral("Check Again"));
  auto* done = new QPushButton(QStringLiteral("Done"));
  done->setDefault(true);
  buttons->addWidget(again);
  buttons->addStretch();
  buttons->addWidget(done);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(scroll_);
  layout->addLayout(buttons);

  // What the user chooses, not what `showShortcut` selects.
  QObject::connect(shortcuts_, &QComboBox::activated, this, [this](int index) { choose(index); });
  QObject::connect(again, &QPushButton::clicked, this, [this] {
    actions_.checkAgain();
    refresh();
    fitToContent();
  });
  QObject::connect(done, &QPushButton::clicked, this, [this] {
    actions_.done();
    close();
  });
}

void SetupWindow::present() {
  refresh();
  if (!isVisible()) fitToContent();
  show();
  raise();
  activateWindow();
}

void SetupWindow::showShortcut() {
  const auto shortcut = actions_.shortcut();
  const QSignalBlocker quiet(shortcuts_);
  shortcuts_->clear();
  for (const auto choice : choices) shortcuts_->addItem(shortcutTitle(configuration(choice)));
  const auto* const found = std::ranges::find(choices, shortcut, &configuration);
  // One that was recorded stands below the ready-made ones.
  if (found == choices.end()) shortcuts_->addItem(shortcutTitle(shortcut));
  shortcuts_->setCurrentIndex(static_cast<int>(found - choices.begin()));

  help_->setText(inPlatformWords(modeHelpText(shortcut.kind)));
  const auto notice = inPlatformWords(actions_.shortcutNotice(shortcut));
  notice_->setText(QStringLiteral("<b>⚠</b> ") + escaped(notice));
  notice_->setVisible(!notice.isEmpty());
}

void SetupWindow::choose(int index) {
  const auto position = static_cast<std::size_t>(index);
  if (position >= choices.size()) return;  // the recorded one, which it already is
  actions_.chooseShortcut(configuration(choices.at(position)));
  refresh();
  fitToContent();
}

void SetupWindow::refresh() {
  showShortcut();
  while (auto* item = checks_->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  const auto notice = actions_.shortcutNotice(actions_.shortcut());
  for (const auto& check : actions_.look()) {
    const bool isSaidAbove = !check.works && check.detail == notice;
    const auto mark = check.works ? QStringLiteral("✓") : QStringLiteral("✗");
    auto* line = paragraph();
    line->setText(mark + QStringLiteral("  <b>") + escaped(inPlatformWords(check.subject)) +
                  QStringLiteral("</b><br>") +
                  (isSaidAbove ? QStringLiteral("See above.") : escaped(inPlatformWords(check.detail))));
    line->setTextFormat(Qt::RichText);
    checks_->addWidget(line);
    line->show();  // at once in a window that is open already, so that it counts for the height
  }
}

/// As high as its texts need at its width, as far as the screen has room; what is more can be scrolled to.
void SetupWindow::fitToContent() {
  const auto available = screen()->availableSize() - QSize(screenMargin, screenMargin);
  const auto margins = layout()->contentsMargins();
  const auto wanted = std::max(width(), preferredWidth);
  const int windowWidth = std::min(isVisible() ? wanted : preferredWidth, available.width());
  const int contentWidth = windowWidth - margins.left() - margins.right();
  const int contentHeight = scroll_->widget()->layout()->totalHeightForWidth(contentWidth);
  const int buttonsHeight = layout()->itemAt(1)->sizeHint().height();
  const int wantedHeight =
      margins.top() + contentHeight + layout()->spacing() + buttonsHeight + margins.bottom();
  resize(windowWidth, std::min(wantedHeight, available.height()));
}

}  // namespace murmel
