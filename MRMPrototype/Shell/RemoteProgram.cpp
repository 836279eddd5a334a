#include "Product/MRMAppIdentity.h"
#include "Shell/Programs.h"
#include "Shell/RemoteCommands.h"

#include <QCoreApplication>
#include <cstdio>

#include <fmt/core.h>

namespace murmel {

int runRemoteCommand(int& argumentCount, char** arguments, const InformationDictionary& info,
                     IntelCommand command) {
  const QCoreApplication application(argumentCount, arguments);
  const auto sent = sendRemoteCommand(MRMAppIdentity::applicationIdentifier(info), command);
  if (sent) return 0;
  fmt::print(stderr, "murmel: {}\n", sent.error());
  return 1;
}

int runModelDownloadProbe(int& argumentCount, char** arguments, const ApplicationFolders& /*folders*/,
                          const InformationDictionary& info) {
  const QCoreApplication application(argumentCount, arguments);
  constexpr int unavailable = 69;  // EX_UNAVAILABLE of sysexits.h
  if (!MRMAppIdentity::downloaderServiceName(info)) {
    fmt::print(stderr, "murmel: This build names no model downloader.\n");
  } else {
    fmt::print(stderr, "murmel: The model downloader is not part of this build.\n");
  }
  return unavailable;
}

}  // namespace murmel
