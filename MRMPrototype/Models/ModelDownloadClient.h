#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Foundation/Text/LineSplitter.h"
#include "Foundation/UniqueDescriptor.h"
#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"
#include "Models/DownloaderLines.h"
#include "Platform/ProcessLauncher.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// How one file's download stands.
struct ModelDownloadStatus {
  enum class State { waiting, checking, downloading, suspended, retrying, installed, failed, cancelled };

  State state = State::waiting;
  std::int64_t received = 0;          ///< bytes
  std::optional<std::int64_t> total;  ///< bytes
  std::string reason;                 ///< of `failed`: the downloader's word
  std::string message;                ///< of `failed` and `retrying`: one sentence for the user

  [[nodiscard]] bool isOver() const { return state >= State::installed; }
  friend bool operator==(const ModelDownloadStatus&, const ModelDownloadStatus&) = default;
};

/// Drives the model downloader: starts its process when something is to be fetched, ends it when nothing is,
/// and starts it again when it dies in between. The process opens the connections and writes the files; this
/// side names them. Main thread; nothing here blocks. The process must ignore SIGPIPE.
class ModelDownloadClient {
 public:
  /// The executable in the folder "Workers" of the resources.
  static constexpr std::string_view workerName = "mrm-model-downloader";

  struct Configuration {
    std::filesystem::path executable;
    std::filesystem::path store;  ///< root of the model store
    /// Of the downloader; empty but for proxies ("https_proxy=...").
    std::vector<std::string> environment;
    /// Behind "--store". Only a development build's downloader knows any.
    std::vector<std::string> arguments;
    /// Whether the executable may be started; asked before every start.
    std::function<bool(const std::filesystem::path&)> mayExecute;
    std::vector<std::filesystem::path> readable{};  ///< what the arguments name
    /// What the downloader cannot lock, held while one runs; an error while another client holds it.
    std::function<std::expected<UniqueDescriptor, int>(const std::filesystem::path& store)> lockStore{};
  };

  using Handler = std::function<void(std::string identifier, ModelDownloadStatus status)>;

  /// `executor` and `launcher` must outlive the client.
  ModelDownloadClient(Executor& executor, ProcessLauncher& launcher, Configuration configuration);
  /// Ends the downloader; what has arrived is kept for the next time.
  ~ModelDownloadClient();
  ModelDownloadClient(const ModelDownloadClient&) = delete;
  ModelDownloadClient& operator=(const ModelDownloadClient&) = delete;

  /// Fetches files of the manifest. The status of each follows.
  void download(const std::vector<std::string>& identifiers, MRMModelDownloadImportance importance);
  /// Stops files; what has arrived is kept for the next time.
  void cancel(const std::vector<std::string>& identifiers) { stop(identifiers, false); }
  /// Stops files and forgets what has arrived.
  void discard(const std::vector<std::string>& identifiers) { stop(identifiers, true); }
  /// Optional downloads pause while it is true.
  void setRuntimeActive(bool active);

  /// The last that is known of a file; nothing when it was not asked for since the start of the application.
  [[nodiscard]] std::optional<ModelDownloadStatus> status(const std::string& identifier) const;
  /// Whether something was asked for that is not over.
  [[nodiscard]] bool isActive() const;
  /// Tells every change of a status. Never called from inside a call to this object.
  [[nodiscard]] Registration onChange(Handler handler) { return changed_.subscribe(std::move(handler)); }

 private:
  struct Wanted {
    MRMModelDownloadImportance importance = MRMModelDownloadImportance::required;
    ModelDownloadStatus status;
  };

  void stop(const std::vector<std::string>& identifiers, bool discard);
  void discardOnDisk(const std::vector<std::string>& identifiers) const;
  void ensureRunning();
  void startProcess();
  void send(const std::string& line);
  void receive();
  void take(const DownloaderEvent& event);
  void processEnded();
  void failAll(const std::string& reason, const std::string& message);
  void set(const std::string& identifier, ModelDownloadStatus status);

  Executor& executor_;
  ProcessLauncher& launcher_;
  Configuration configuration_;
  std::map<std::string, Wanted> wanted_;
  bool runtimeActive_ = false;
  int deaths_ = 0;  ///< of the process, since something last arrived
  UniqueDescriptor storeLock_;
  std::unique_ptr<ChildProcess> process_;
  LineSplitter lines_;
  bool isClosing_ = false;      ///< its input is closed; it ends
  bool isEndExpected_ = false;  ///< because nothing was left to do
  Registration output_;
  Registration restart_;
  Signal<std::string, ModelDownloadStatus> changed_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
};

}  // namespace murmel
