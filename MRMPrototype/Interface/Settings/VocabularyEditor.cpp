#include "Interface/Settings/VocabularyEditor.h"

#include "CleanUp/CompiledVocabulary.h"
#include "Interface/Common/Dialogs.h"
#include "Interface/Common/StorageWords.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <chrono>

namespace murmel {

namespace {

constexpr auto storingPause = std::chrono::milliseconds(700);
constexpr int editorHeight = 200;
/// What a text file may bring, in bytes: some ten thousand entries.
constexpr qint64 maximumImport = 1 << 20;

QString fullText(const QPlainTextEdit& editor) {
  // Unlike toPlainText this keeps no-break spaces.
  auto text = editor.document()->toRawText();
  return text.replace(QChar(QChar::ParagraphSeparator), u'\n');
}

}  // namespace

VocabularyEditor::VocabularyEditor(SettingsRepository& settings, const std::function<void()>& retry)
    : settings_(settings),
      storage_(new NoticeBar(Severity::warning)),
      table_(new QTableWidget(0, 2)),
      text_(new QPlainTextEdit),
      state_(label({}, LabelRole::second)),
      trial_(new QLineEdit),
      outcome_(label({})) {
  build(retry);
  pause_.setSingleShot(true);
  pause_.setInterval(storingPause);
  connect(&pause_, &QTimer::timeout, this, [this] { store(); });
  connect(table_, &QTableWidget::cellChanged, this,
          [this](int row, int column) { tableCellChanged(row, column); });
  connect(text_, &QPlainTextEdit::textChanged, this, [this] {
    const auto changed = lines_.edited(fullText(*text_));
    if (changed == lines_.text()) return;
    changeTo(changed);
    showTable();
  });
  connect(trial_, &QLineEdit::textChanged, this, [this] { showTrial(); });
  changes_ = settings_.didChange().subscribe([this](SettingsProperty property) {
    if (property == SettingsProperty::personalVocabulary && !isChanged_) showStored();
    if (property == SettingsProperty::vocabularyStorageStatus) showState();
  });
  showStored();
}

VocabularyEditor::~VocabularyEditor() {
  store();
}

void VocabularyEditor::build(const std::function<void()>& retry) {
  if (retry) storage_->setAction(tr("Unlock"), retry);
  table_->setHorizontalHeaderLabels({tr("Heard"), tr("Written")});
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table_->verticalHeader()->hide();
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setShowGrid(false);
  table_->setTabKeyNavigation(false);
  table_->setAccessibleName(tr("Replacements"));
  text_->setAccessibleName(tr("Replacements as text"));
  text_->setTabChangesFocus(true);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setPlaceholderText(QStringLiteral("postgresql = PostgreSQL"));
  for (QWidget* editor : {static_cast<QWidget*>(table_), static_cast<QWidget*>(text_)})
    editor->setFixedHeight(editorHeight);
  trial_->setPlaceholderText(tr("Type a sentence to try the vocabulary on"));
  trial_->setAccessibleName(tr("Try it"));
  outcome_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  outcome_->setVisible(false);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(grid::small);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  grid->addWidget(storage_, 0, 0, 1, 2);
  grid->addWidget(table_, 1, 0);
  grid->addWidget(text_, 1, 1);
  grid->addWidget(state_, 2, 0, 1, 2);
  grid->addWidget(
      buttonRow({button(tr("Import…"), [this] { import(); }), button(tr("Move Up"), [this] { move(-1); }),
                 button(tr("Move Down"), [this] { move(1); }),
                 button(tr("Remove"), [this] { removeCurrent(); })}),
      3, 0, 1, 2);
  grid->addWidget(trial_, 4, 0, 1, 2);
  grid->addWidget(outcome_, 5, 0, 1, 2);
}

void VocabularyEditor::hideEvent(QHideEvent* event) {
  store();
  QWidget::hideEvent(event);
}

void VocabularyEditor::showStored() {
  lines_ = VocabularyLines(QString::fromStdString(settings_.personalVocabulary()));
  compiled_.reset();
  showText();
  showTable();
  showState();
  showTrial();
}

void VocabularyEditor::changeTo(const QString& text) {
  lines_ = VocabularyLines(text);
  compiled_.reset();
  isChanged_ = true;
  pause_.start();
  showState();
  showTrial();
}

void VocabularyEditor::store() {
  pause_.stop();
  if (!isChanged_) return;
  settings_.setPersonalVocabulary(lines_.text().toStdString());
  isChanged_ = false;
}

void VocabularyEditor::showText() {
  auto shown = lines_.text();
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
  if (shown == fullText(*text_)) return;
  const QSignalBlocker quiet(text_);
  text_->setPlainText(shown);
}

void VocabularyEditor::showTable() {
  const QSignalBlocker quiet(table_);
  const auto current = table_->currentRow();
  const int entries = lines_.entryCount();
  table_->setRowCount(entries + 1);  // and one to begin a new entry in
  int row = 0;
  const auto put = [this](int at, const QString& term, const QString& replacement, int line) {
    for (const auto& [column, words] : {std::pair(0, term), std::pair(1, replacement)}) {
      auto* item = new QTableWidgetItem(words);
      item->setData(Qt::UserRole, line);
      table_->setItem(at, column, item);
    }
  };
  for (std::size_t line = 0; line < lines_.lines().size(); ++line) {
    const auto& entry = lines_.lines()[line];
    if (entry.kind == VocabularyLines::Line::Kind::entry)
      put(row++, entry.term, entry.replacement, static_cast<int>(line));
  }
  put(row, {}, {}, -1);
  if (current >= 0) table_->setCurrentCell(std::min(current, entries), std::max(0, table_->currentColumn()));
}

void VocabularyEditor::showState() {
  QStringList parts{tr("%n replacement(s)", nullptr, lines_.entryCount())};
  for (std::size_t line = 0; line < lines_.lines().size() && parts.size() < 4; ++line) {
    const auto number = static_cast<int>(line) + 1;
    const auto kind = lines_.lines()[line].kind;
    if (kind == VocabularyLines::Line::Kind::withoutSign)
      parts += tr("line %1 has no “=” and does nothing").arg(number);
    if (kind == VocabularyLines::Line::Kind::withoutTerm)
      parts += tr("line %1 has nothing before the “=”").arg(number);
  }
  const bool isKept = settings_.vocabularyStorageStatus() == SecureStorageStatus::available;
  if (isKept) parts += tr("kept encrypted, with a key in your key ring");
  state_->setText(parts.join(QStringLiteral(" · ")));
  storage_->setText(storageWords(settings_.vocabularyTrouble()));
}

void VocabularyEditor::showTrial() {
  const auto words = trial_->text();
  outcome_->setVisible(!words.isEmpty());
  if (words.isEmpty()) return;
  if (!compiled_) compiled_ = std::make_unique<CompiledVocabulary>(lines_.text().toStdString());
  outcome_->setText(QStringLiteral("→ ") + QString::fromStdString(compiled_->apply(words.toStdString())));
}

std::size_t VocabularyEditor::lineOf(int row) const {
  const auto* const item = table_->item(row, 0);
  const int line = item != nullptr ? item->data(Qt::UserRole).toInt() : -1;
  return line < 0 ? lines_.lines().size() : static_cast<std::size_t>(line);
}

void VocabularyEditor::tableCellChanged(int row, int /*column*/) {
  const auto words = [&](int column) {
    const auto* const item = table_->item(row, column);
    return item != nullptr ? item->text().trimmed() : QString();
  };
  const auto line = lineOf(row);
  if (line < lines_.lines().size())
    changeTo(words(0).isEmpty() ? lines_.removed(line) : lines_.replaced(line, words(0), words(1)));
  else if (!words(0).isEmpty() && !words(1).isEmpty())
    changeTo(lines_.appended(words(0), words(1)));
  else
    return;  // half of a new entry
  showText();
  showTable();
}

void VocabularyEditor::removeCurrent() {
  const auto line = lineOf(table_->currentRow());
  if (line >= lines_.lines().size()) return;
  changeTo(lines_.removed(line));
  showText();
  showTable();
}

void VocabularyEditor::move(int by) {
  const int row = table_->currentRow();
  const int entries = lines_.entryCount();
  if (row < 0 || row >= entries || row + by < 0 || row + by >= entries) return;
  changeTo(lines_.swapped(lineOf(row), lineOf(row + by)));
  showText();
  showTable();
  table_->setCurrentCell(row + by, 0);
}

void VocabularyEditor::import() {
  const auto add = [this](QString text) {
    const auto& before = lines_.text();
    const bool needsEnd = !before.isEmpty() && !before.endsWith(u'\n');
    changeTo(before + (needsEnd ? QStringLiteral("\n") : QString()) + text);
    showText();
    showTable();
  };
  openTextFile(this, tr("Import Replacements"), tr("Text files (*.txt);;All files (*)"), maximumImport, add,
               [this](const QString& problem) { state_->setText(problem); });
}

}  // namespace murmel
