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

int runModels(int& argumentCount, char** arguments, const ApplicationFolders& folders,
              const InformationDictionary& info, const ModelsRole& role) {
  const QCoreApplication application(argumentCount, arguments);
  QtExecutor executor;
  LinuxProcessLauncher launcher;
  std::optional<ModelDownloadClient> client;
  if (auto configuration = downloaderConfiguration(folders, info)) {
    client.emplace(executor, launcher, *std::move(configuration));
  }
  const auto print = [](std::string_view text) {
    fmt::print("{}", text);
    std::fflush(stdout);
  };
  ModelsCommand command(executor, modelStore(folders), client ? &*client : nullptr,
                        {.print = print, .isTerminal = ::isatty(STDOUT_FILENO) != 0});
  executor.post([&] { command.start(role.arguments, [](int status) { QCoreApplication::exit(status); }); });
  return QCoreApplication::exec();
}

int runModelDownloadProbe(int& argumentCount, char** arguments, const ApplicationFolders& folders,
                          const InformationDictionary& info) {
  const QCoreApplication application(argumentCount, arguments);
  auto configuration = downloaderConfiguration(folders, info);
  if (!configuration) {
    fmt::print(stderr, "murmel: This build names no model downloader.\n");
    return ModelDownloadProbe::failed;
  }
  QtExecutor executor;
  LinuxProcessLauncher launcher;
  ModelDownloadProbe probe(executor, launcher, *std::move(configuration), folders.temporary);
  executor.post([&] {
    probe.run([](ModelDownloadProbe::Status status, const std::string& line) {
      fmt::print(stderr, "murmel: {}\n", line);
      QCoreApplication::exit(status);
    });
  });
  return QCoreApplication::exec();
}

}  // namespace murmel
