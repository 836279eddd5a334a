#include "Interface/About/CreditsWindow.h"

#include "Interface/Common/Form.h"

#include <QFile>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

namespace murmel {

namespace {

constexpr QSize wantedCreditsSize(860, 600);
constexpr int creditsListWidth = 260;
constexpr int creditHeight = 7 * grid::unit;
constexpr qint64 maximumText = 1 << 20;  // bytes

}  // namespace

CreditsWindow::CreditsWindow(std::vector<Credit> credits)
    : Window(tr("Credits"), wantedCreditsSize),
      credits_(std::move(credits)),
      list_(new QListWidget),
      name_(label({}, LabelRole::title)),
      about_(label({}, LabelRole::second)),
      text_(new QPlainTextEdit) {
  setAttribute(Qt::WA_DeleteOnClose);
  list_->setFixedWidth(creditsListWidth);
  list_->setFrameShape(QFrame::NoFrame);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setAccessibleName(tr("What Murmel is made of"));
  list_->viewport()->setAutoFillBackground(false);
  auto* side = new QWidget;
  side->setAutoFillBackground(true);
  side->setBackgroundRole(QPalette::AlternateBase);
  auto* sideLines = new QVBoxLayout(side);
  sideLines->setContentsMargins(grid::medium, grid::medium, 0, grid::medium);
  sideLines->addWidget(list_);
  text_->setReadOnly(true);
  text_->setTabChangesFocus(true);
  text_->setAccessibleName(tr("License"));
  about_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse);

  auto* reader = new QVBoxLayout;
  reader->setContentsMargins(grid::large, grid::large, grid::large, grid::large);
  reader->setSpacing(grid::small);
  reader->addWidget(name_);
  reader->addWidget(about_);
  reader->addSpacing(grid::small);
  reader->addWidget(text_, 1);
  reader->addWidget(buttonRow({button(tr("Close"), [this] { close(); })}));
  fadeAtTheEdges(*list_);
  fadeAtTheEdges(*text_);
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(0);
  line->addWidget(side);
  line->addLayout(reader, 1);

  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) { show(row); });
  fill();
}

QString CreditsWindow::kindTitle(Credit::Kind kind) {
  switch (kind) {
    case Credit::Kind::library:
      return tr("Libraries");
    case Credit::Kind::engine:
      return tr("Engines");
    case Credit::Kind::model:
      return tr("Models");
  }
  std::unreachable();
}

void CreditsWindow::fill() {
  std::ranges::stable_sort(credits_, [](const Credit& a, const Credit& b) {
    return std::pair(a.kind, a.name.toCaseFolded()) < std::pair(b.kind, b.name.toCaseFolded());
  });
  std::optional<Credit::Kind> kind;
  for (std::size_t index = 0; index < credits_.size(); ++index) {
    const auto& credit = credits_[index];
    if (kind != credit.kind) {
      auto* heading = new QListWidgetItem(kindTitle(credit.kind), list_);
      auto font = heading->font();
      font.setWeight(QFont::DemiBold);
      heading->setFont(font);
      heading->setFlags(Qt::ItemIsEnabled);
      heading->setSizeHint(
          QSize(0, list_->count() > 1 ? grid::controlHeight + grid::medium : grid::controlHeight));
      heading->setTextAlignment(Qt::AlignBottom | Qt::AlignLeading);
      heading->setData(Qt::UserRole, -1);
    }
    kind = credit.kind;
    // Names are written from left to right, also the signs at their end.
    auto* item = new QListWidgetItem(credit.name + QChar(0x200E), list_);
    item->setSizeHint(QSize(0, creditHeight));
    item->setData(Qt::UserRole, static_cast<int>(index));
  }
  if (list_->count() > 1) list_->setCurrentRow(1);
  if (credits_.empty()) name_->setText(tr("The list of credits is missing from this installation."));
}

void CreditsWindow::show(int row) {
  const auto* const item = list_->item(row);
  const int index = item != nullptr ? item->data(Qt::UserRole).toInt() : -1;
  if (index < 0) return;
  const auto& credit = credits_.at(static_cast<std::size_t>(index));
  name_->setText(credit.name);
  QStringList about{credit.license};
  if (!credit.holder.isEmpty()) about += credit.holder;
  if (!credit.address.isEmpty()) about += credit.address;
  about_->setText(about.join(QStringLiteral(" · ")));
  QFile file(QString::fromStdString(credit.text.string()));
  const bool isThere = !credit.text.empty() && file.open(QIODevice::ReadOnly);
  if (!isThere)
    return text_->setPlainText(tr("The full text of the license is not on this computer; it is at %1.")
                                   .arg(QStringLiteral("https://spdx.org/licenses/")));
  const auto text = QString::fromUtf8(file.read(maximumText));
  text_->setPlainText(credit.isTextGeneral ? QStringLiteral("© %1\n\n%2").arg(credit.holder, text)
                                           : readableLicense(text) + QStringLiteral("\n\n") +
                                                 tr("Taken from %1.").arg(file.fileName()));
}

}  // namespace murmel
