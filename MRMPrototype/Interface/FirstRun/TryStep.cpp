#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"
#include "Settings/SettingsRepository.h"
#include "Shortcut/ShortcutHelp.h"

#include <QPlainTextEdit>

namespace murmel {

TryStep::TryStep(const FirstRunServices& services, std::function<void()> succeeded)
    : FormPage(tr("Try it here"), tr("A whole dictation, just as in any application. Once words "
                                     "have arrived here, you can finish.")),
      services_(services),
      succeeded_(std::move(succeeded)),
      task_(label({}, LabelRole::heading)),
      state_(label({}, LabelRole::second)),
      field_(new QPlainTextEdit) {
  field_->setAccessibleName(tr("Your words appear here"));
  field_->setPlaceholderText(tr("Your words appear here"));
  field_->setTabChangesFocus(true);
  constexpr int fieldHeight = 110;
  field_->setMinimumHeight(fieldHeight);
  addWidget(task_);
  addWidget(field_);
  addWidget(state_);
  addWidget(new CheckList(services.checks, {"paste", "password-fields", "tray", "refiners"}));
  QObject::connect(field_, &QPlainTextEdit::textChanged, field_, [this] {
    // Only what came by a dictation shows that one works.
    if (wasDictated_ && !field_->toPlainText().trimmed().isEmpty()) succeeded_();
  });
  if (services_.stateChanged != nullptr) {
    states_ = services_.stateChanged->subscribe([this](const DictationState& state) {
      wasDictated_ = wasDictated_ || (isVisible() && state.isBusy());
      state_->setText(inPlatformWords(state.title()));
    });
  }
  changes_ = services_.settings.shortcutDidChange().subscribe([this] { show(); });
  show();
}

void TryStep::show() {
  const auto shortcut = services_.settings.shortcut();
  using Kind = ShortcutConfiguration::Kind;
  const bool isHeld = shortcut.kind == Kind::key || shortcut.kind == Kind::modifiersOnly;
  const bool endsByRelease = !services_.tellsOfRelease || services_.tellsOfRelease(shortcut);
  task_->setText(!isHeld ? inPlatformWords(modeHelpText(shortcut.kind))
                 : endsByRelease
                     ? tr("Hold %1, say a sentence, let go.").arg(shortcutTitle(shortcut))
                     : tr("Press %1, say a sentence, press it again.").arg(shortcutTitle(shortcut)));
}

void TryStep::showEvent(QShowEvent* event) {
  FormPage::showEvent(event);
  field_->setFocus();
  if (services_.state) state_->setText(inPlatformWords(services_.state().title()));
  if (services_.acceptWords) acceptance_ = services_.acceptWords(*window());
}

void TryStep::hideEvent(QHideEvent* event) {
  acceptance_.reset();
  FormPage::hideEvent(event);
}

}  // namespace murmel
