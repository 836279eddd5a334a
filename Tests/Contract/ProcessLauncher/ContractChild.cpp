// The child of the launcher's tests. The first argument says what it does:
//
//   echo        prints its other arguments, then every line it reads
//   polite      prints "here", and "bye" when it is asked to end
//   stubborn    prints "here", does not read, and ignores the request to end
//   exit N      ends at once
//   report      prints what it was started with, one fact a line

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

/// By questions about itself alone: a child does not get at /proc.
void report(char** environment) {
  constexpr int searched = 4'096;
  for (int descriptor = 0; descriptor < searched; ++descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) continue;
    const bool isNull = S_ISCHR(status.st_mode) && status.st_rdev == makedev(1, 3);
    std::cout << "fd " << descriptor
              << (S_ISFIFO(status.st_mode) ? " pipe"
                  : isNull                 ? " /dev/null"
                                           : " other")
              << '\n';
  }
  sigset_t blocked;
  ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
  for (int signal = 1; signal < NSIG; ++signal) {
    struct sigaction action {};
    const bool isIgnored = ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    if (isIgnored || ::sigismember(&blocked, signal) == 1) std::cout << "signal " << signal << '\n';
  }
  for (; *environment != nullptr; ++environment) std::cout << "env " << *environment << '\n';
  int deathSignal = 0;
  ::prctl(PR_GET_PDEATHSIG, &deathSignal);
  rlimit core{};
  ::getrlimit(RLIMIT_CORE, &core);
  std::cout << "no new privileges " << ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) << '\n'
            << "pdeathsig " << deathSignal << '\n'
            << "core " << core.rlim_max << '\n'
            << "session leader " << (::getsid(0) == ::getpid()) << '\n'
            << "umask " << std::oct << ::umask(0) << std::dec << '\n'
            << "folder " << std::filesystem::current_path().string() << '\n'
            << "end" << std::endl;
}

void sayGoodbye(int) {
  [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, "bye\n", 4);
  ::_exit(EXIT_SUCCESS);
}

[[noreturn]] void waitForSignals() {
  std::cout << "here" << std::endl;
  while (true) ::pause();
}

}  // namespace

int main(int argumentCount, char** arguments, char** environment) {
  const std::string mode = argumentCount > 1 ? arguments[1] : "";
  if (mode == "exit") return std::atoi(arguments[2]);
  if (mode == "report") report(environment);
  if (mode == "polite") {
    std::signal(SIGTERM, sayGoodbye);
    waitForSignals();
  }
  if (mode == "stubborn") {
    std::signal(SIGTERM, SIG_IGN);
    waitForSignals();
  }
  if (mode == "echo") {
    for (int index = 2; index < argumentCount; ++index) std::cout << arguments[index] << std::endl;
    for (std::string line; std::getline(std::cin, line);) std::cout << line << std::endl;
  }
}
