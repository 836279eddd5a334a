#include "Interface/Settings/MicrophoneChoice.h"

#include <QCoreApplication>
#include <QPointer>
#include <algorithm>
#include <utility>

namespace murmel {

MicrophoneChoice::MicrophoneChoice(Microphones* microphones, std::function<void()> chosen)
    : microphones_(microphones) {
  connect(this, &QComboBox::activated, this, [this, chosen = std::move(chosen)](int index) {
    const auto position = static_cast<std::size_t>(index);
    if (position >= sources_.size()) return;
    microphones_->choose(sources_[position].name, [alive = QPointer(this), chosen](bool /*done*/) {
      if (!alive) return;
      alive->refresh();
      if (alive->isVisible()) chosen();
    });
  });
}

void MicrophoneChoice::refresh() {
  if (microphones_ == nullptr) return;
  microphones_->list([alive = QPointer(this)](const auto& sources) {
    if (alive) alive->fill(sources);
  });
}

void MicrophoneChoice::fill(const std::vector<MicrophoneSource>& sources) {
  sources_ = sources;
  clear();
  for (const auto& source : sources_) addItem(QString::fromStdString(source.title));
  const auto used = std::ranges::find(sources_, true, &MicrophoneSource::isDefault);
  setCurrentIndex(used == sources_.end() ? -1 : static_cast<int>(used - sources_.begin()));
  if (sources_.empty()) addItem(QCoreApplication::translate("AudioPage", "There is no microphone."));
  setEnabled(!sources_.empty());
}

}  // namespace murmel
