#include "Models/ModelDownloadProbe.h"
#include "Models/ModelsCommand.h"
#include "Models/SpeechModels.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/Confinement.h"
#include "Shell/InterruptSignal.h"
#include "Shell/LocalRuntimes.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"
#include "Shell/StandardStreams.h"

#include <QCoreApplication>
#include <memory>
#include <optional>

#include <unistd.h>

namespace murmel {

int runModels(Arguments arguments, const Installation& installation, const ModelsRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  QtExecutor executor;
  InterruptSignal interrupts(executor);
  LinuxProcessLauncher launcher(confinementPolicy(installation));
  std::optional<ModelDownloadClient> client;
  if (auto configuration = downloaderConfiguration(installation)) {
    client.emplace(executor, launcher, *std::move(configuration));
  }
  ModelsCommand command(executor, modelInventory(installation), client ? &*client : nullptr,
                        {.print = show,
                         .complain = complain,
                         .isTerminal = ::isatty(STDOUT_FILENO) != 0,
                         .now = [] { return SystemClock().now(); }},
                        modelMachine(installation), modelCatalog(),
                        packagedSpeechModels(installation.folders.resources));
  // Ctrl+C ends a download in order; a second one ends the process.
  interrupts.setHandler([&command] { command.interrupt(); });
  executor.post([&] { command.start(role.arguments, [](int status) { QCoreApplication::exit(status); }); });
  return QCoreApplication::exec();
}

int runModelDownloadProbe(Arguments arguments, const Installation& installation) {
  const QCoreApplication application(arguments.count, arguments.values);
  auto configuration = downloaderConfiguration(installation);
  if (!configuration) {
    complain("This build names no model downloader.");
    return ModelDownloadProbe::failed;
  }
  QtExecutor executor;
  LinuxProcessLauncher launcher(confinementPolicy(installation));
  ModelDownloadProbe probe(executor, launcher, *std::move(configuration), installation.folders.temporary);
  executor.post([&] {
    probe.run([](ModelDownloadProbe::Status status, const std::string& line) {
      complain(line);
      QCoreApplication::exit(status);
    });
  });
  return QCoreApplication::exec();
}

}  // namespace murmel
