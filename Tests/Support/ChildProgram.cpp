#include "Support/ChildProgram.h"

#include "Support/Pipe.h"

#include <stdexcept>
#include <utility>

#include <sys/prctl.h>
#include <sys/wait.h>

namespace murmel::test {

ChildProgram::ChildProgram(std::vector<std::string> command, std::filesystem::path log)
    : log_(std::move(log)) {
  Pipe input, output;
  if (!log_.empty()) {
    output.writeEnd = UniqueDescriptor(::open(log_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    if (!output.writeEnd) throw std::runtime_error("no log file");
  }
  std::vector<char*> arguments;
  for (auto& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  const auto parent = ::getpid();
  process_ = ::fork();
  if (process_ < 0) throw std::runtime_error("no process");
  if (process_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(1);
    ::dup2(input.readEnd.get(), STDIN_FILENO);
    ::dup2(output.writeEnd.get(), STDOUT_FILENO);
    if (!log_.empty()) ::dup2(output.writeEnd.get(), STDERR_FILENO);
    ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
  }
  input_ = std::move(input.writeEnd);
  output_ = std::move(output.readEnd);
}

std::string ChildProgram::line() const {
  std::string line;
  for (char byte = 0; ::read(output(), &byte, 1) == 1 && byte != '\n';) line += byte;
  return line;
}

void ChildProgram::end(int signal) {
  if (status_) return;
  if (signal != 0) ::kill(process_, signal);
  look(true);
}

std::optional<int> ChildProgram::look(bool waits) {
  int status = 0;
  if (!status_ && ::waitpid(process_, &status, waits ? 0 : WNOHANG) == process_)
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

}  // namespace murmel::test
