#pragma once

#include "Shell/AutomaticPasteRelaunch.h"
#include "Shell/LaunchRole.h"

#include <QProcess>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>

namespace murmel {

/// Starts this executable once more; the new process waits until this one has ended.
class ProcessRelauncher final : public ApplicationRelauncher {
 public:
  ProcessRelauncher(std::filesystem::path executable, std::function<void()> quit)
      : executable_(std::move(executable)), quit_(std::move(quit)) {}

  void openNewInstance(std::function<void(std::expected<void, std::string>)> done) override {
    const auto program = QString::fromStdString(executable_.string());
    if (QProcess::startDetached(program, {QString::fromUtf8(replaceFlag)})) {
      done({});
    } else {
      done(std::unexpected(executable_.string() + " could not be started."));
    }
  }
  void terminate() override { quit_(); }

 private:
  std::filesystem::path executable_;
  std::function<void()> quit_;
};

}  // namespace murmel
