#include "Foundation/Print.h"
#include "Foundation/UniqueDescriptor.h"
#include "Models/ModelDownloadProbe.h"
#include "Models/ModelsCommand.h"
#include "Models/SpeechModels.h"
#include "Platform/Qt/QtExecutor.h"
#include "Shell/Confinement.h"
#include "Shell/LocalRuntimes.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"

#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>

#include <sys/signalfd.h>
#include <unistd.h>

namespace murmel {

namespace {

sigset_t interruptSignals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGINT);
  ::sigaddset(&signals, SIGTERM);
  return signals;
}

/// From now on interruptions are read from here. Before any thread is started, so that none gets them.
int interruptDescriptor() {
  const auto signals = interruptSignals();
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

void allowInterrupts() {
  const auto signals = interruptSignals();
  ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

}  // namespace

int runModels(Arguments arguments, const Installation& installation, const ModelsRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  QtExecutor executor;
  LinuxProcessLauncher launcher(confinementPolicy(installation));
  std::optional<ModelDownloadClient> client;
  if (auto configuration = downloaderConfiguration(installation)) {
    client.emplace(executor, launcher, *std::move(configuration));
  }
  const auto print = [](std::string_view text) {
    murmel::print(stdout, "{}", text);
    std::fflush(stdout);
  };
  ModelsCommand command(executor, modelInventory(installation), client ? &*client : nullptr,
                        {.print = print,
                         .complain =
                             [](std::string_view text) {
                               murmel::print(stderr, "murmel: {}{}", text, text.ends_with('\n') ? "" : "\n");
                             },
                         .isTerminal = ::isatty(STDOUT_FILENO) != 0,
                         .now = [] { return SystemClock().now(); }},
                        modelMachine(installation), modelCatalog(),
                        packagedSpeechModels(installation.folders.resources));
  // Ctrl+C ends a download in order; a second one ends the process.
  const UniqueDescriptor interrupts(interruptDescriptor());
  const auto interrupted = executor.watchReadable(interrupts.get(), [&] {
    signalfd_siginfo news{};
    while (::read(interrupts.get(), &news, sizeof news) > 0) command.interrupt();
    allowInterrupts();
  });
  executor.post([&] { command.start(role.arguments, [](int status) { QCoreApplication::exit(status); }); });
  return QCoreApplication::exec();
}

int runModelDownloadProbe(Arguments arguments, const Installation& installation) {
  const QCoreApplication application(arguments.count, arguments.values);
  auto configuration = downloaderConfiguration(installation);
  if (!configuration) {
    print(stderr, "murmel: This build names no model downloader.\n");
    return ModelDownloadProbe::failed;
  }
  QtExecutor executor;
  LinuxProcessLauncher launcher(confinementPolicy(installation));
  ModelDownloadProbe probe(executor, launcher, *std::move(configuration), installation.folders.temporary);
  executor.post([&] {
    probe.run([](ModelDownloadProbe::Status status, const std::string& line) {
      print(stderr, "murmel: {}\n", line);
      QCoreApplication::exit(status);
    });
  });
  return QCoreApplication::exec();
}

}  // namespace murmel
