#include "Foundation/Print.h"
#include "Platform/Linux/Session/SessionProbe.h"
#include "Shell/Installation.h"
#include "Shell/LaunchRole.h"
#include "Shell/Programs.h"
#include "Shell/StandardStreams.h"

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace murmel;

/// What is spoken is in this process's memory: no core dump of it, and no other process of the user looks
/// into it.
void keepMemoryPrivate() {
  rlimit limit{};
  ::getrlimit(RLIMIT_CORE, &limit);
  limit.rlim_cur = 0;  // the hard limit stays: workers set one of their own
  ::setrlimit(RLIMIT_CORE, &limit);
  ::prctl(PR_SET_DUMPABLE, 0);
}

/// A standard stream that was closed would get the number of the next file or socket, and what is printed
/// would go there. These refuse what is read or written, as a closed one does.
void fillStandardDescriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) >= 0) continue;
    (void)::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);  // the lowest number is free
  }
}

/// Without its owner's rights a file of ours could not be opened again; with those of others it is not ours.
void correctFileModes() {
  const auto inherited = ::umask(S_IWGRP | S_IWOTH);
  ::umask((inherited & ~static_cast<mode_t>(S_IRWXU)) | S_IWGRP | S_IWOTH);
}

/// What did not get out was not shown.
int withOutputWritten(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  if (status != 0) return status;
  // Who reads the first lines only has not missed anything.
  pollfd reader{.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
  if (::poll(&reader, 1, 0) > 0 && (reader.revents & POLLERR) != 0) return 1;
  print(stderr, "murmel: The output could not be written.\n");
  return 1;
}

struct Run {
  Arguments arguments;
  const Installation& installation;

  int operator()(const MessageRole& /*shown already*/) const { return 0; }
  int operator()(const TranscribeRole& role) const { return runTranscribe(arguments, installation, role); }
  int operator()(const ListenRole& role) const { return runListen(arguments, installation, role); }
  int operator()(const RemoteCommandRole& role) const {
    return runRemoteCommand(arguments, installation, role.command);
  }
  int operator()(const StatusRole& role) const { return runStatus(arguments, installation, role); }
  int operator()(const DoctorRole& role) const { return runDoctor(arguments, installation, role); }
  int operator()(const ModelsRole& role) const { return runModels(arguments, installation, role); }
  int operator()(const UpdateRole& role) const { return runUpdate(arguments, installation, role); }
  int operator()(const KeptDataRole& role) const { return runKeptData(arguments, installation, role); }
  int operator()(const ModelDownloadSmokeRole&) const {
    return runModelDownloadProbe(arguments, installation);
  }
  int operator()(const DesktopRole& role) const { return runDesktop(arguments, installation, role); }
};

}  // namespace

int main(int argumentCount, char** argumentValues) {
  fillStandardDescriptors();
  keepMemoryPrivate();
  correctFileModes();
  // A worker or reader that goes away shows as an error of the write, not as the end of this process.
  std::signal(SIGPIPE, SIG_IGN);
  // A file that may not grow is an error to tell, as a full disk is, not the end of a dictation.
  std::signal(SIGXFSZ, SIG_IGN);
  const auto build = MRMBuildIdentity::from(informationOfThisBuild().value_or(InformationDictionary()));
  const auto role = launchRole(std::vector<std::string>(argumentValues + 1, argumentValues + argumentCount),
                               versionLine(build));
  // Help, the version and what was mistyped need neither a home folder nor an installation.
  if (const auto* message = std::get_if<MessageRole>(&role)) {
    print(message->exitStatus == 0 ? stdout : stderr, "{}", message->text);
    return withOutputWritten(message->exitStatus);
  }
  avoidHangingBuses();
  const auto installation = Installation::read(Environment::ofThisProcess());
  if (!installation) return complain(installation.error());
  return withOutputWritten(std::visit(Run{{argumentCount, argumentValues}, *installation}, role));
}
