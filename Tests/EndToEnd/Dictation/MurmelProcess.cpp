#include "MurmelProcess.h"

#include "Support/FileBytes.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace murmel::test {

MurmelProcess::MurmelProcess(const std::vector<std::string>& arguments, std::filesystem::path log)
    : log_(std::move(log)) {
  std::vector<std::string> command{MURMEL_EXECUTABLE};
  command.insert(command.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (auto& argument : command) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  const int output = ::open(log_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (output < 0) throw std::runtime_error("no log file");
  process_ = ::fork();
  if (process_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::execv(pointers.front(), pointers.data());
    ::_exit(127);
  }
  ::close(output);
}

MurmelProcess::~MurmelProcess() {
  if (status_) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

std::string MurmelProcess::log() const {
  return contentsOf(log_);
}

std::optional<int> MurmelProcess::exitStatus() {
  int status = 0;
  if (!status_ && ::waitpid(process_, &status, WNOHANG) == process_)
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

}  // namespace murmel::test
