#pragma once

#include "Foundation/Text/LineSplitter.h"
#include "Integration/ModelDownloader/ModelHost.h"
#include "Platform/ProcessLauncher.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel::test {

/// One line of the downloader.
struct DownloaderEvent {
  std::string event, identifier;
  std::string reason;  ///< or the state of a progress line
  std::string message;
  std::int64_t received = -1;
};

/// A downloader process, driven over its pipes.
class RunningDownloader {
 public:
  struct Setting {
    std::filesystem::path store;
    std::string address, certificate;
    std::vector<HostedFile> files;
    std::string timeScale = "0.002";  ///< the first retry after 2 ms, silence for 1.2 s
  };
  explicit RunningDownloader(const Setting& setting);

  void send(const std::string& line);
  void download(const std::vector<std::string>& identifiers, const std::string& importance = "required");
  void cancel(const std::string& identifier, bool discards);

  /// The next line; nothing when the process has closed its output, or says nothing for ten seconds.
  std::optional<DownloaderEvent> next();
  /// Reads up to and with a line of that event (and identifier, if one is given).
  std::optional<DownloaderEvent> waitFor(const std::string& event, const std::string& identifier = {});
  /// Everything up to and with "idle", without progress.
  std::vector<DownloaderEvent> untilIdle();

  /// Whether it has closed its output.
  [[nodiscard]] bool hasEnded() const { return hasEnded_; }
  void kill();
  /// Ends it by closing its input.
  void close();
  [[nodiscard]] ChildProcess& process() { return *process_; }

 private:
  std::unique_ptr<ChildProcess> process_;
  LineSplitter lines_{1 << 20};
  bool hasEnded_ = false;
};

}  // namespace murmel::test
