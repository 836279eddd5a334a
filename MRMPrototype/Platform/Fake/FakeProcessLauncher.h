#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Platform/ProcessLauncher.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// The inside of a fake child: what a program would see of its standard input and output. Its calls block.
class FakeChildSide {
 public:
  FakeChildSide(UniqueDescriptor input, UniqueDescriptor output, std::vector<std::string> arguments);

  /// The next line without its line feed, whole or what was left at the end; nothing after it.
  std::optional<std::string> readLine();
  /// False when nobody reads any more.
  bool write(std::string_view text);
  [[nodiscard]] const std::vector<std::string>& arguments() const { return arguments_; }

 private:
  UniqueDescriptor input_;
  UniqueDescriptor output_;
  std::vector<std::string> arguments_;
  std::string buffer_;
};

/// Children that are threads of the test, with real pipes, so that whoever talks to them cannot tell. Strict:
/// only programs that were installed can be launched, and a path must be absolute. Thread-safe.
class FakeProcessLauncher final : public ProcessLauncher {
 public:
  /// Runs as the child; its end is the child's end. It is not killed but cut off: its input ends, and nobody
  /// reads its output, so a program must end then.
  using Program = std::function<void(FakeChildSide& side)>;

  void install(const std::filesystem::path& executable, Program program);
  /// From now on children of this executable run another file than the one that was opened.
  void exchangeAfterLaunch(const std::filesystem::path& executable);
  std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override;

  /// Every request so far, in order.
  [[nodiscard]] std::vector<ProcessRequest> requests() const;
  /// Children that have not been destroyed.
  [[nodiscard]] int childCount() const { return *childCount_; }

 private:
  struct Installed {
    Program program;
    ExecutableIdentity identity;
    bool isExchanged = false;
  };

  mutable std::mutex mutex_;
  std::map<std::filesystem::path, Installed> installed_;
  std::vector<ProcessRequest> requests_;
  std::shared_ptr<std::atomic<int>> childCount_ = std::make_shared<std::atomic<int>>(0);
  pid_t nextIdentifier_ = 1'000;
};

}  // namespace murmel
