#include "Product/MRMAppIdentity.h"
#include "Product/MRMBuildIdentity.h"
#include "Shell/ApplicationFolders.h"
#include "Shell/LaunchRole.h"
#include "Shell/Programs.h"
#include "Shell/RemoteCommands.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace {

using namespace murmel;

int complain(const std::string& sentence) {
  fmt::print(stderr, "murmel: {}\n", sentence);
  return 1;
}

/// What is spoken is in this process's memory: no core dump of it, and no other process of the user looks
/// into it.
void keepMemoryPrivate() {
  rlimit limit{};
  ::getrlimit(RLIMIT_CORE, &limit);
  limit.rlim_cur = 0;  // the hard limit stays: workers set one of their own
  ::setrlimit(RLIMIT_CORE, &limit);
  ::prctl(PR_SET_DUMPABLE, 0);
}

struct Run {
  int& argumentCount;
  char** argumentValues;
  const ApplicationFolders& folders;
  const InformationDictionary& info;

  int operator()(const MessageRole& role) const {
    fmt::print(role.exitStatus == 0 ? stdout : stderr, "{}", role.text);
    return role.exitStatus;
  }
  int operator()(const TranscribeRole& role) const {
    return runTranscribe(argumentCount, argumentValues, folders, info, role);
  }
  int operator()(const RemoteCommandRole& role) const {
    return runRemoteCommand(argumentCount, argumentValues, info, role.command);
  }
  int operator()(const DoctorRole&) const { return runDoctor(argumentCount, argumentValues, folders, info); }
  int operator()(const ModelDownloadSmokeRole&) const {
    return runModelDownloadProbe(argumentCount, argumentValues, folders, info);
  }
  int operator()(const DesktopRole& role) const {
    return runDesktop(argumentCount, argumentValues, folders, info, role.selfTest);
  }
};

}  // namespace

int main(int argumentCount, char** argumentValues) {
  keepMemoryPrivate();
  // A worker or reader that goes away shows as an error of the write, not as the end of this process.
  std::signal(SIGPIPE, SIG_IGN);
  const auto folders = ApplicationFolders::locate();
  if (!folders) return complain(folders.error());
  const auto info = InformationDictionary::read(folders->resources / "Info.json");
  if (!info) return complain("This installation is damaged. " + info.error());

  const auto identity = MRMBuildIdentity::from(*info);
  const auto version = fmt::format("{} {} ({}), {}", identity.displayName, identity.version,
                                   identity.buildNumber, identity.editionName);
  const auto role =
      launchRole(std::vector<std::string>(argumentValues + 1, argumentValues + argumentCount), version);
  return std::visit(Run{argumentCount, argumentValues, *folders, *info}, role);
}
