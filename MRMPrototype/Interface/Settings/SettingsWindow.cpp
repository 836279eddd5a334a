#include "Interface/Settings/SettingsWindow.h"

#include "Interface/Common/Dialogs.h"
#include "Interface/Models/ModelsPage.h"
#include "Interface/Settings/Pages.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace murmel {

namespace {

constexpr QSize wantedSettingsSize(940, 680);
constexpr int sidebarWidth = 216;

/// The side of the window that lists the pages, a shade apart from them.
class Sidebar final : public QWidget {
 public:
  Sidebar() {
    setFixedWidth(sidebarWidth);  // or what the longest title takes
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
  }
};

}  // namespace

SettingsWindow::SettingsWindow(const SettingsServices& services)
    : Window(tr("Murmel Settings"), wantedSettingsSize),
      list_(new QListWidget),
      search_(searchField(tr("Search settings"))),
      pages_(new QStackedWidget),
      foot_(pageFoot(buttonRow({button(tr("Reset This Page…"), [this] { resetPage(); })}))),
      nothing_(label(tr("No setting has these words."), LabelRole::second)),
      models_(new ModelsPage(services.models)) {
  build();
  add(new GeneralPage(services), Symbol::general);
  add(new ShortcutPage(services), Symbol::keyboard);
  add(new AudioPage(services), Symbol::microphone);
  add(new LanguagesPage(services), Symbol::languages);
  add(new TextPage(services), Symbol::text);
  add(models_, Symbol::models);
  add(new PrivacyPage(services), Symbol::history);
  add(new AdvancedPage(services), Symbol::advanced);
  body_->addWidget(foot_);  // after the pages, also for the keyboard
  list_->setCurrentRow(0);
}

void SettingsWindow::build() {
  auto* sidebar = new Sidebar;
  auto* side = new QVBoxLayout(sidebar);
  side->setContentsMargins(grid::medium, grid::medium, grid::medium, grid::medium);
  side->setSpacing(grid::medium);
  side->addWidget(search_);
  list_->setAccessibleName(tr("Pages"));
  list_->setFrameShape(QFrame::NoFrame);
  list_->viewport()->setAutoFillBackground(false);
  list_->setIconSize(QSize(20, 20));
  list_->setSpacing(1);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  side->addWidget(list_, 1);
  side->addWidget(nothing_);
  nothing_->hide();

  body_ = new QVBoxLayout;
  auto* const body = body_;
  body->setSpacing(0);
  body->addWidget(pages_, 1);

  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->setSpacing(0);
  columns->addWidget(sidebar);
  columns->addLayout(body, 1);

  connect(list_, &QListWidget::currentRowChanged, this, [this](int index) { showPage(index); });
  connect(search_, &QLineEdit::textChanged, this, [this](const QString& words) { search(words); });
}

void SettingsWindow::add(FormPage* page, Symbol symbol) {
  auto* item = new QListWidgetItem(symbolIcon(symbol), page->title(), list_);
  const int words =
      list_->iconSize().width() + 5 * grid::small + list_->fontMetrics().horizontalAdvance(page->title());
  item->setSizeHint(QSize(words, grid::controlHeight + 4));
  auto* const sidebar = list_->parentWidget();
  sidebar->setFixedWidth(std::max(sidebar->width(), words + 2 * grid::medium));
  pages_->addWidget(page);
}

void SettingsWindow::present(Page page) {
  search_->clear();
  list_->setCurrentRow(static_cast<int>(page));
  present();
  list_->setFocus();
}

void SettingsWindow::presentRequiredModel(const QString& why) {
  models_->showRequired(why);
  present(Page::models);
}

void SettingsWindow::showPage(int index) {
  if (index < 0) return;
  pages_->setCurrentIndex(index);
  const auto* const page = dynamic_cast<SettingsPage*>(pages_->widget(index));
  foot_->setVisible(page != nullptr && page->canReset());
}

void SettingsWindow::search(const QString& words) {
  int best = -1;
  for (int index = 0; index < pages_->count(); ++index) {
    auto* const page = static_cast<FormPage*>(pages_->widget(index));
    const bool isNamed = !words.isEmpty() && page->title().contains(words, Qt::CaseInsensitive);
    const bool isFound = page->filter(isNamed ? QString() : words) > 0 || isNamed || words.isEmpty();
    list_->item(index)->setHidden(!isFound);
    if (isFound && (best < 0 || index == list_->currentRow())) best = index;
  }
  nothing_->setVisible(best < 0);
  if (best >= 0 && list_->item(list_->currentRow())->isHidden()) list_->setCurrentRow(best);
}

void SettingsWindow::resetPage() {
  auto* const page = dynamic_cast<SettingsPage*>(pages_->currentWidget());
  if (page == nullptr) return;
  confirmRemoval(this, tr("Reset the page “%1”?").arg(page->title()),
                 tr("Its settings become what they are without your changes. Vocabulary and history stay."),
                 tr("Reset"), [page] { page->reset(); });
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Find)) {
    search_->setFocus();
    search_->selectAll();
    return;
  }
  if (event->matches(QKeySequence::Cancel) && !search_->text().isEmpty()) {
    search_->clear();
    return;
  }
  Window::keyPressEvent(event);
}

}  // namespace murmel
