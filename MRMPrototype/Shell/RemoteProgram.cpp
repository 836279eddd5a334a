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

}  // namespace murmel
