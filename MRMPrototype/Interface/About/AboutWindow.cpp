#include "Interface/About/AboutWindow.h"

#include "Interface/Common/Form.h"
#include "Interface/PlatformWords.h"

#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace murmel {

namespace {

constexpr QSize wantedAboutSize(500, 520);
constexpr int iconSize = 88;

}  // namespace

AboutWindow::AboutWindow(AboutServices services)
    : Window(tr("About Murmel"), wantedAboutSize), services_(std::move(services)) {
  setAttribute(Qt::WA_DeleteOnClose);
  const auto& build = services_.build;
  auto* icon = new QLabel;
  icon->setPixmap(applicationIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
  auto* name = label(QString::fromStdString(build.displayName), LabelRole::title);
  auto* purpose = label(tr("Private dictation. Your voice and your words stay on this computer."));
  auto* version =
      label(tr("Version %1 (build %2)")
                .arg(QString::fromStdString(build.version), QString::fromStdString(build.buildNumber)),
            LabelRole::second);
  auto* edition =
      label(inPlatformWords(build.editionName) + QStringLiteral(" · ") + inPlatformWords(services_.edition),
            LabelRole::second);
  version->setTextInteractionFlags(Qt::TextSelectableByMouse);

  auto* content = new QWidget;
  auto* lines = new QVBoxLayout(content);
  lines->setContentsMargins(grid::large, grid::large, grid::large, grid::large);
  lines->setSpacing(grid::small);
  lines->addWidget(icon, 0, Qt::AlignHCenter);
  for (auto* line : {name, purpose, version, edition}) {
    line->setAlignment(Qt::AlignHCenter);
    lines->addWidget(line);
  }
  lines->addSpacing(grid::medium);
  auto* card = new Card;
  auto* copy = button(tr("Copy"), {});
  auto* row = card->addRow(tr("Diagnostics"),
                           tr("Version, desktop and checks for a report. No words of yours."), copy);
  QObject::connect(copy, &QPushButton::clicked, this, [this, row, copy] {
    copy->setEnabled(false);
    const QPointer<AboutWindow> shown(this);
    const auto told = [shown, row, copy](bool copied) {
      if (!shown) return;
      copy->setEnabled(true);
      if (copied) row->setDescription(tr("Copied. Paste it into your report."));
    };
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): the window is there while its button is pressed
    services_.diagnostics([shown, told](const std::string& facts) {
      if (shown) shown->services_.copy(facts, told);
    });
  });
  card->addRow(tr("Credits"), tr("The people whose work Murmel stands on, and their licenses."),
               button(tr("Show…"), services_.openCredits));
  if (!services_.tipJar.empty()) {
    card->addRow(tr("Tip jar"),
                 tr("Opens %1 in your browser. A tip is a thank-you: it unlocks nothing, and everything "
                    "works without it.")
                     .arg(QString::fromStdString(services_.tipJar)),
                 button(tr("Leave a Tip…"), [this] { services_.openAddress(services_.tipJar); }));
  }
  lines->addWidget(card);
  lines->addSpacing(grid::small);
  lines->addStretch(1);
  auto* done = button(tr("Close"), [this] { close(); });
  done->setDefault(true);
  lines->addWidget(buttonRow({done}));

  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setWidget(content);
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroll);
  fitTo(*content);
}

}  // namespace murmel
