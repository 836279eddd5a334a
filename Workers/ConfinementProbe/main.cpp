// Started by `murmel doctor` as each of the application's children is: says what it can reach that it should
// not, one word a line, and "end". The arguments are the user's home folder and the number of the process
// that asks.

#include "Foundation/UniqueDescriptor.h"
#include "Foundation/WriteAll.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using murmel::UniqueDescriptor;

bool opens(const char* path, int flags) {
  return static_cast<bool>(UniqueDescriptor(::open(path, flags | O_CLOEXEC, S_IRUSR | S_IWUSR)));
}

bool hasSocket(int family) {
  return static_cast<bool>(UniqueDescriptor(::socket(family, SOCK_STREAM, 0)));
}

bool forks() {
  const auto child = static_cast<pid_t>(::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
  if (child == 0) ::_exit(0);
  if (child > 0) ::waitpid(child, nullptr, 0);
  return child > 0;
}

bool executes() {
  char* const none[] = {nullptr};
  // With arguments that no program can be started with: what may be executed fails otherwise than what may
  // not.
  ::execve("/bin/true", none, reinterpret_cast<char* const*>(1));
  return errno == EFAULT;
}

}  // namespace

int main(int count, char** arguments) {
  constexpr int expected = 3;
  if (count != expected) return EXIT_FAILURE;
  const char* const home = arguments[1];
  struct stat status {};
  std::string reached;
  const auto tell = [&reached](bool succeeded, const char* what) {
    if (succeeded) reached.append(what).append("\n");
  };
  tell(opens(home, O_RDONLY | O_DIRECTORY), "files");
  tell(opens("/tmp", O_TMPFILE | O_WRONLY), "files");
  tell(::stat(home, &status) == 0, "names");
  const auto starter = static_cast<pid_t>(std::strtol(arguments[2], nullptr, 10));
  tell(::kill(starter, 0) == 0, "processes");
  tell(executes(), "programs");
  tell(forks(), "copies");
  tell(hasSocket(AF_INET) || hasSocket(AF_INET6), "internet");
  tell(hasSocket(AF_UNIX), "sockets");
  murmel::writeAll(STDOUT_FILENO, reached + "end\n");
  return EXIT_SUCCESS;
}
