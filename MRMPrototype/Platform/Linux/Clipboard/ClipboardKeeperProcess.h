#pragma once

#include "Platform/Linux/Clipboard/ClipboardKeeper.h"
#include "Platform/ProcessLauncher.h"

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace murmel {

/// Keeps by a small process of its own, which runs while the clipboard is ours, and two seconds more.
/// Contents go to it through a pipe. When this process ends in whatever way, the pipe closes, and the keeper
/// serves what it was told last, until somebody else writes to the clipboard or the session ends.
///
/// Starting it, and telling it what is large, is done on a thread of its own: nobody waits for that.
class ClipboardKeeperProcess final : public ClipboardKeeper {
 public:
  static constexpr const char* workerName = "mrm-clipboard-keeper";

  struct Configuration {
    std::filesystem::path executable;
    std::function<bool(const std::filesystem::path&)> mayExecute;
    std::vector<std::string> environment;  ///< what leads to the X server, and nothing else
  };

  ClipboardKeeperProcess(ProcessLauncher& launcher, Configuration configuration);
  /// Waits until the keeper knows what it was to be told.
  ~ClipboardKeeperProcess() override;
  ClipboardKeeperProcess(const ClipboardKeeperProcess&) = delete;
  ClipboardKeeperProcess& operator=(const ClipboardKeeperProcess&) = delete;

  void keep(SharedSnapshot contents, std::uint32_t ownedSince) override;
  void forget() override;
  bool handOver(Duration limit) override;

 private:
  struct Kept {
    SharedSnapshot contents;  ///< null: nothing is ours
    std::uint32_t ownedSince = 0;
  };
  enum class HandOver { none, wanted, done, failed };

  void run();
  template <class Work>
  void work(std::unique_lock<std::mutex>& lock, const Work& perform);
  [[nodiscard]] bool tellAtOnce(const Kept& kept);
  void tell(const Kept& kept);
  void endKeeper();
  [[nodiscard]] bool start();
  [[nodiscard]] bool send(const ClipboardOrder& order);
  [[nodiscard]] bool take();
  [[nodiscard]] bool answers(char expected, int milliseconds);

  ProcessLauncher& launcher_;
  Configuration configuration_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<Kept> news_;  ///< only the newest counts
  HandOver handOver_ = HandOver::none;
  bool ending_ = false;
  bool works_ = false;  ///< the thread does, without the lock; what stands below is then its own
  std::unique_ptr<ChildProcess> process_;
  bool keepsNothing_ = true;
  std::thread thread_;
};

}  // namespace murmel
