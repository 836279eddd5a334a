#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Models/DownloadRate.h"
#include "Models/ModelCatalog.h"
#include "Models/ModelDownloadClient.h"
#include "Models/ModelInventory.h"
#include "Models/SpeechModels.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// `murmel models list | download [NAME] | verify [NAME] | remove NAME`. One command an object. Main thread.
class ModelsCommand {
 public:
  struct Output {
    /// Takes text as it is to be shown, line feeds included.
    std::function<void(std::string_view)> print;
    /// Takes one sentence about what went wrong.
    std::function<void(std::string_view)> complain;
    /// Whether a line may be written over again with a carriage return.
    bool isTerminal = false;
    /// For the rate of a download.
    std::function<Instant()> now = [] { return Instant(); };
  };

  /// `client` may be nullptr, then nothing can be downloaded. All must outlive this. `packaged`: speech
  /// models that come with the application or the distribution, which are only listed and verified.
  ModelsCommand(Executor& executor, std::shared_ptr<ModelInventory> inventory, ModelDownloadClient* client,
                Output output, ModelMachine machine,
                const std::vector<CatalogModel>& catalog = modelCatalog(),
                std::vector<SpeechModel> packaged = {});
  ~ModelsCommand();

  /// `arguments` after "models". `done` gets the exit status once: 0; 1 when it failed; 2 for a wrong
  /// command.
  void start(const std::vector<std::string>& arguments, std::function<void(int)> done);
  /// Ends a download early; what has arrived is kept.
  void interrupt();

 private:
  void list();
  void download(const CatalogModel& model);
  /// The models of that name, or all that are there.
  void verify(const std::optional<std::string>& name);
  void remove(const CatalogModel& model);
  void downloadChanged(const CatalogModel& model, const std::string& identifier,
                       const ModelDownloadStatus& changed);
  void rememberAndFinish(const CatalogModel& model);
  void showProgress(const CatalogModel& model, const ModelDownloadStatus& changed);
  [[nodiscard]] const SpeechModel* packaged(std::string_view name) const;
  void showUsage();
  void finish(int status);
  void fail(int status, std::string_view sentence);
  void print(const std::string& text) { output_.print(text); }

  Executor& executor_;
  std::shared_ptr<ModelInventory> installed_;
  ModelDownloadClient* client_;
  Output output_;
  ModelMachine machine_;
  DownloadRate rate_;
  const std::vector<CatalogModel>& catalog_;
  const std::vector<SpeechModel> packaged_;
  std::function<void(int)> done_;
  Registration changes_;
  std::map<std::string, ModelDownloadStatus> statuses_;  ///< as told, so that nothing is skipped
  std::string lastShown_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  std::atomic<bool> stopping_ = false;
  SerialQueue queue_;
};

}  // namespace murmel
