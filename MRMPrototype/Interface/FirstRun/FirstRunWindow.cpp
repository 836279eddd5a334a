#include "Interface/FirstRun/FirstRunWindow.h"

#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

namespace murmel {

namespace {

constexpr QSize wantedSize(640, 620);

}  // namespace

FirstRunWindow::FirstRunWindow(FirstRunServices services)
    : Window(tr("Murmel Setup"), wantedSize),
      services_(std::move(services)),
      pages_(new QStackedWidget),
      progress_(label({}, LabelRole::second)),
      later_(button(tr("Finish Later"), [this] { close(); })),
      back_(button(tr("Back"), [this] { go(pages_->currentIndex() - 1); })),
      next_(button({}, [this] { goOn(); })) {
  setAttribute(Qt::WA_DeleteOnClose);
  pages_->addWidget(new WelcomeStep(services_));
  pages_->addWidget(new ModelStep(services_));
  pages_->addWidget(new MicrophoneStep(services_));
  shortcut_ = new ShortcutStep(services_, [this] { showNext(); });
  pages_->addWidget(shortcut_);
  pages_->addWidget(new TryStep(services_, [this] { succeed(); }));
  next_->setDefault(true);
  // The step stands in the middle as long as both sides leave it there.
  auto* left = new QHBoxLayout;
  left->addWidget(later_);
  left->addStretch(1);
  auto* right = new QHBoxLayout;
  right->setSpacing(grid::small);
  right->addStretch(1);
  right->addWidget(back_);
  right->addWidget(next_);
  progress_->setWordWrap(false);
  auto* row = new QWidget;
  auto* buttons = new QHBoxLayout(row);
  buttons->setContentsMargins(0, 0, 0, 0);
  buttons->setSpacing(grid::small);
  buttons->addLayout(left, 1);
  buttons->addWidget(progress_);
  buttons->addLayout(right, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(pages_, 1);
  layout->addWidget(pageFoot(row));
  go(0);
}

void FirstRunWindow::present(Step step) {
  services_.checks.run();
  if (!isVisible() || step != Step::welcome) go(static_cast<int>(step));
  Window::present();
}

void FirstRunWindow::keyPressEvent(QKeyEvent* event) {
  const bool goesOn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!goesOn) return Window::keyPressEvent(event);
  next_->click();
}

void FirstRunWindow::go(int step) {
  next_->setFocus();
  pages_->setCurrentIndex(step);  // which may have something better to begin with
  progress_->setText(tr("Step %1 of %2").arg(step + 1).arg(pages_->count()));
  back_->setEnabled(step > 0);
  showNext();
}

void FirstRunWindow::goOn() {
  if (pages_->currentWidget() == shortcut_) {
    if (const auto offer = shortcut_->offer()) shortcut_->take(*offer);
  }
  if (pages_->currentIndex() + 1 < pages_->count()) return go(pages_->currentIndex() + 1);
  services_.finished();
  close();
}

void FirstRunWindow::showNext() {
  if (shortcut_ == nullptr) return;  // which is being made
  const bool isLast = pages_->currentIndex() + 1 == pages_->count();
  const auto offer = pages_->currentWidget() == shortcut_ ? shortcut_->offer() : std::nullopt;
  next_->setText(literal(offer    ? tr("Use %1").arg(shortcutTitle(*offer))
                         : isLast ? tr("Finish")
                                  : tr("Next")));
  next_->setEnabled(!isLast || hasSucceeded_);
}

void FirstRunWindow::succeed() {
  hasSucceeded_ = true;
  if (pages_->currentIndex() + 1 == pages_->count()) next_->setEnabled(true);
}

}  // namespace murmel
