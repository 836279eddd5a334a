#include "Interface/History/HistoryWindow.h"

#include "History/HistoryRepository.h"
#include "Interface/Common/Dialogs.h"
#include "Interface/Common/StorageWords.h"
#include "Interface/History/HistoryDelegate.h"
#include "Interface/PlatformWords.h"
#include "Interface/Settings/Pages.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace murmel {

namespace {

constexpr QSize wantedHistorySize(920, 640);
constexpr int listWidth = 360;
constexpr auto retentions = allCases<HistoryRetention>();

}  // namespace

HistoryWindow::HistoryWindow(HistoryServices services)
    : Window(tr("Murmel History"), wantedHistorySize),
      services_(std::move(services)),
      off_(new NoticeBar(Severity::information)),
      storage_(new NoticeBar(Severity::warning)),
      search_(searchField(tr("Search dictations"))),
      retention_(new ChoiceBox),
      list_(new QListView),
      body_(new QStackedWidget),
      empty_(label({}, LabelRole::second)),
      about_(label({}, LabelRole::second)),
      text_(new QPlainTextEdit),
      count_(label({}, LabelRole::second)),
      copy_(button(tr("Copy"),
                   [this] {
                     if (const auto* entry = current()) services_.copy(entry->text);
                   })),
      paste_(button(tr("Paste Again"),
                    [this] {
                      if (const auto* entry = current()) services_.pasteAgain(entry->text);
                    })),
      remove_(button(tr("Delete…"), [this] { removeCurrent(); })),
      removeAll_(button(tr("Delete All…"), [this] { removeAll(); })) {
  setAttribute(Qt::WA_DeleteOnClose);
  build();
  history_ = services_.history.didChange().subscribe([this] { refresh(); });
  settings_ = services_.settings.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::historyEnabled || property == SettingsProperty::historyRetention)
      refresh();
  });
  refresh();
  list_->setFocus();
}

HistoryWindow::~HistoryWindow() = default;

void HistoryWindow::build() {
  off_->setAction(tr("Turn On"), [this] { services_.settings.setHistoryEnabled(true); });
  if (services_.unlockStorage) storage_->setAction(tr("Unlock"), services_.unlockStorage);
  list_->setModel(&model_);
  list_->setItemDelegate(new HistoryDelegate(list_));
  list_->setFrameShape(QFrame::NoFrame);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setResizeMode(QListView::Adjust);
  list_->setAccessibleName(tr("Dictations"));
  fadeAtTheEdges(*list_);
  fadeAtTheEdges(*text_);
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { showCurrent(); });

  auto* split = new QSplitter;
  split->setChildrenCollapsible(false);
  split->setHandleWidth(1);
  split->addWidget(list_);
  split->addWidget(buildReader());
  split->setStretchFactor(1, 1);
  split->setSizes({listWidth, wantedHistorySize.width() - listWidth});
  empty_->setAlignment(Qt::AlignCenter);
  body_->addWidget(split);
  body_->addWidget(empty_);

  auto* foot = new QWidget;
  auto* footLine = new QHBoxLayout(foot);
  footLine->setContentsMargins(grid::medium, grid::small, grid::medium, grid::small);
  footLine->setSpacing(grid::medium);
  footLine->addWidget(count_, 1);
  auto* title = label(tr("Auto-delete history"), LabelRole::second);
  title->setWordWrap(false);
  title->setBuddy(retention_);
  footLine->addWidget(title);
  footLine->addWidget(retention_);
  footLine->addWidget(removeAll_);

  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(0);
  lines->addWidget(buildHead());
  lines->addWidget(body_, 1);
  lines->addWidget(foot);
}

QWidget* HistoryWindow::buildHead() {
  // When no key is waiting any more: a history of years takes a quarter of a second to look through.
  typing_.setSingleShot(true);
  connect(&typing_, &QTimer::timeout, this, [this] { refresh(); });
  connect(search_, &QLineEdit::textChanged, &typing_, [this] { typing_.start(0); });
  for (const auto retention : retentions) retention_->addItem(settingsTitles::of(retention));
  retention_->setAccessibleName(tr("Auto-delete history"));
  connect(retention_, &QComboBox::activated, this, [this](int index) {
    services_.settings.setHistoryRetention(retentions.at(static_cast<std::size_t>(index)));
  });

  auto* head = new QWidget;
  auto* lines = new QVBoxLayout(head);
  lines->setContentsMargins(grid::medium, grid::medium, grid::medium, grid::medium);
  lines->setSpacing(grid::small);
  lines->addWidget(search_);
  lines->addWidget(off_);
  lines->addWidget(storage_);
  return head;
}

QWidget* HistoryWindow::buildReader() {
  text_->setReadOnly(true);
  text_->setFrameShape(QFrame::NoFrame);
  text_->document()->setDocumentMargin(0);
  text_->setTabChangesFocus(true);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setAccessibleName(tr("The whole dictation"));
  auto* reader = new QWidget;
  reader->setAutoFillBackground(true);
  reader->setBackgroundRole(QPalette::Base);
  auto* lines = new QVBoxLayout(reader);
  lines->setContentsMargins(grid::large, grid::large, grid::large, grid::medium);
  lines->setSpacing(grid::medium);
  lines->addWidget(about_);
  lines->addWidget(text_, 1);
  if (!services_.pasteAgain) paste_->hide();
  lines->addWidget(buttonRow({remove_, paste_, copy_}));
  return reader;
}

void HistoryWindow::refresh() {
  const auto wanted = selected_;  // the reset of the list clears it
  const auto& entries = services_.history.entries();
  model_.show(entries, search_->text(), services_.now());
  auto index = wanted ? model_.indexOf(*wanted) : QModelIndex();
  if (!index.isValid() && model_.rowCount({}) > 1) index = model_.index(1);
  list_->setCurrentIndex(index);
  showCurrent();

  const auto retention = services_.settings.historyRetention();
  retention_->setCurrentIndex(
      static_cast<int>(std::ranges::find(retentions, retention) - retentions.begin()));
  off_->setText(services_.settings.historyEnabled() ? QString()
                                                    : tr("History is optional and off by default."));
  storage_->setText(storageWords(services_.history.trouble()));
  empty_->setText(!entries.empty()              ? tr("No dictation has these words.")
                  : services_.history.trouble() ? tr("What is stored cannot be read now.")
                                                : tr("No dictation is stored."));
  const bool appear = body_->currentIndex() == 1 && model_.shownEntries() > 0;
  body_->setCurrentIndex(model_.shownEntries() > 0 ? 0 : 1);
  if (appear && !search_->hasFocus()) list_->setFocus();  // once unlocked, say
  count_->setText(tr("%n dictation(s)", nullptr, model_.shownEntries()) + QStringLiteral(" · ") +
                  tr("%n word(s)", nullptr, model_.shownWords()));
  removeAll_->setEnabled(!entries.empty() ||
                         services_.history.storageStatus() != SecureStorageStatus::available);
}

const HistoryEntry* HistoryWindow::current() const {
  return model_.entry(list_->currentIndex());
}

void HistoryWindow::showCurrent() {
  const auto* const entry = current();
  selected_ = entry != nullptr ? std::optional(entry->id) : std::nullopt;
  about_->setText(entry != nullptr ? HistoryModel::describe(*entry) : QString());
  text_->setPlainText(entry != nullptr ? QString::fromStdString(entry->text.reveal()) : QString());
  for (auto* action : {copy_, paste_, remove_}) action->setEnabled(entry != nullptr);
}

void HistoryWindow::removeCurrent() {
  const auto* const entry = current();
  if (entry == nullptr) return;
  confirmRemoval(this, tr("Delete this dictation?"), tr("It cannot be recovered."), tr("Delete"),
                 [this, id = entry->id] { services_.history.remove({id}); });
}

void HistoryWindow::removeAll() {
  confirmRemoval(
      this, tr("Delete the whole history?"),
      tr("Every entry, and the key that could read copies of it, is deleted. They cannot be recovered."),
      tr("Delete All"), [this] { services_.history.deleteAll(); });
}

void HistoryWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Find)) {
    search_->setFocus();
    search_->selectAll();
  } else if (event->matches(QKeySequence::Copy)) {
    copy_->click();
  } else if (event->matches(QKeySequence::Delete) && list_->hasFocus()) {
    removeCurrent();
  } else if (event->matches(QKeySequence::Cancel) && !search_->text().isEmpty()) {
    search_->clear();
  } else {
    Window::keyPressEvent(event);
  }
}

}  // namespace murmel
