#pragma once

#include "Interface/AlertPresenter.h"

#include <expected>
#include <functional>
#include <string>

namespace murmel {

/// Replaces this process by a fresh one of the same application.
class ApplicationRelauncher {
 public:
  virtual ~ApplicationRelauncher() = default;
  /// Starts a new instance; `done` is told once whether it runs. The error is one sentence for the user.
  virtual void openNewInstance(std::function<void(std::expected<void, std::string>)> done) = 0;
  virtual void terminate() = 0;
};

/// A newly granted permission to post keyboard events takes effect only in a new process: offers to reopen
/// the application, and never more than one offer at a time.
class AutomaticPasteRelaunch {
 public:
  AutomaticPasteRelaunch(AlertPresenter& alerts, ApplicationRelauncher& relauncher, std::string displayName);

  void offerAutomaticPasteRelaunch();

 private:
  void relaunch();

  AlertPresenter& alerts_;
  ApplicationRelauncher& relauncher_;
  std::string displayName_;
  bool alertVisible_ = false;
};

}  // namespace murmel
