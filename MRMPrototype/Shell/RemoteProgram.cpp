#include "Shell/Programs.h"
#include "Shell/RemoteCommands.h"

#include <QCoreApplication>
#include <cstdio>

#include <fmt/core.h>

namespace murmel {

int runRemoteCommand(Arguments arguments, const Installation& installation, IntelCommand command) {
  const QCoreApplication application(arguments.count, arguments.values);
  const auto sent = sendRemoteCommand(installation.identifier, command);
  if (sent) return 0;
  fmt::print(stderr, "murmel: {}\n", sent.error());
  return 1;
}

}  // namespace murmel
