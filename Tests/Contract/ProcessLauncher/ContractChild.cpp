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
#include <fstream>
#include <iostream>
#include <string>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void report(char** environment) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("SigBlk:") || line.starts_with("SigIgn:") || line.starts_with("NoNewPrivs:"))
      std::cout << line << '\n';
  }
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;  // the iterator's own descriptor
    const auto target = std::filesystem::read_symlink(entry, gone).string();
    if (target.ends_with("/fd") || target.ends_with("/status")) continue;
    std::cout << "fd " << entry.path().filename().string() << ' ' << target.substr(0, target.find(':'))
              << '\n';
  }
  for (; *environment != nullptr; ++environment) std::cout << "env " << *environment << '\n';
  int deathSignal = 0;
  ::prctl(PR_GET_PDEATHSIG, &deathSignal);
  rlimit core{};
  ::getrlimit(RLIMIT_CORE, &core);
  std::cout << "pdeathsig " << deathSignal << '\n'
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
