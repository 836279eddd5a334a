#include "Models/ModelDownloadProbe.h"
#include "Models/ModelsCommand.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"

#include <QCoreApplication>
#include <cstdio>
#include <memory>
#include <optional>

#include <fmt/core.h>
#include <unistd.h>

namespace murmel {

int runModels(Arguments arguments, const Installation& installation, const ModelsRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  QtExecutor executor;
  LinuxProcessLauncher launcher;
  std::optional<ModelDownloadClient> client;
  if (auto configuration = downloaderConfiguration(installation)) {
    client.emplace(executor, launcher, *std::move(configuration));
  }
  const auto print = [](std::string_view text) {
    fmt::print("{}", text);
    std::fflush(stdout);
  };
  ModelsCommand command(executor, modelStore(installation.folders), client ? &*client : nullptr,
                        {.print = print, .isTerminal = ::isatty(STDOUT_FILENO) != 0}, modelCatalog(),
                        packagedSpeechModels(installation.folders.resources));
  executor.post([&] { command.start(role.arguments, [](int status) { QCoreApplication::exit(status); }); });
  return QCoreApplication::exec();
}

int runModelDownloadProbe(Arguments arguments, const Installation& installation) {
  const QCoreApplication application(arguments.count, arguments.values);
  auto configuration = downloaderConfiguration(installation);
  if (!configuration) {
    fmt::print(stderr, "murmel: This build names no model downloader.\n");
    return ModelDownloadProbe::failed;
  }
  QtExecutor executor;
  LinuxProcessLauncher launcher;
  ModelDownloadProbe probe(executor, launcher, *std::move(configuration), installation.folders.temporary);
  executor.post([&] {
    probe.run([](ModelDownloadProbe::Status status, const std::string& line) {
      fmt::print(stderr, "murmel: {}\n", line);
      QCoreApplication::exit(status);
    });
  });
  return QCoreApplication::exec();
}

}  // namespace murmel
