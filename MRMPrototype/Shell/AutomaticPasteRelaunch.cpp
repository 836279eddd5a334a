#include "Shell/AutomaticPasteRelaunch.h"

#include <utility>

namespace murmel {

AutomaticPasteRelaunch::AutomaticPasteRelaunch(AlertPresenter& alerts, ApplicationRelauncher& relauncher,
                                               std::string displayName)
    : alerts_(alerts), relauncher_(relauncher), displayName_(std::move(displayName)) {}

void AutomaticPasteRelaunch::offerAutomaticPasteRelaunch() {
  if (std::exchange(alertVisible_, true)) return;
  Alert alert{
      .title = "Finish enabling Automatic Paste",
      .text = "macOS needs a fresh " + displayName_ +
              " process to apply this permission. The app will reopen automatically, and an active Parakeet "
              "download will resume. You do not need to restart your Mac.",
      .acceptButton = "Quit & Reopen",
      .declineButton = "Not Now",
  };
  alerts_.show(std::move(alert), [this](bool accepted) {
    alertVisible_ = false;
    if (accepted) relaunch();
  });
}

void AutomaticPasteRelaunch::relaunch() {
  relauncher_.openNewInstance([this](std::expected<void, std::string> opened) {
    if (opened) {
      relauncher_.terminate();
      return;
    }
    alerts_.show({.title = displayName_ + " could not reopen",
                  .text = opened.error(),
                  .acceptButton = "OK",
                  .declineButton = {}},
                 [](bool) {});
  });
}

}  // namespace murmel
