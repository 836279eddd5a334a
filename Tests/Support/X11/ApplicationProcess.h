#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace murmel::test {

/// A program of a test's desktop, with its standard input and output as pipes. Ends with this object.
class ApplicationProcess {
 public:
  explicit ApplicationProcess(std::vector<std::string> command) {
    std::array<int, 2> toChild{};
    std::array<int, 2> fromChild{};
    if (::pipe2(toChild.data(), O_CLOEXEC) != 0 || ::pipe2(fromChild.data(), O_CLOEXEC) != 0)
      throw std::runtime_error("no pipe");
    std::vector<char*> arguments;
    for (auto& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const auto parent = ::getpid();
    process_ = ::fork();
    if (process_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      if (::getppid() != parent) ::_exit(1);
      ::dup2(toChild[0], STDIN_FILENO);
      ::dup2(fromChild[1], STDOUT_FILENO);
      ::execvp(arguments.front(), arguments.data());
      ::_exit(127);
    }
    ::close(toChild[0]);
    ::close(fromChild[1]);
    input_ = UniqueDescriptor(toChild[1]);
    output_ = UniqueDescriptor(fromChild[0]);
    ::fcntl(output_.get(), F_SETFL, O_NONBLOCK);
  }
  ~ApplicationProcess() { kill(); }
  ApplicationProcess(const ApplicationProcess&) = delete;
  ApplicationProcess& operator=(const ApplicationProcess&) = delete;

  [[nodiscard]] pid_t identifier() const { return process_; }

  void tell(const std::string& line) {
    const auto text = line + "\n";
    if (::write(input_.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
      throw std::runtime_error("the application does not listen");
  }

  /// Every line that it has written so far.
  const std::vector<std::string>& lines() {
    std::array<char, 4'096> buffer{};
    while (true) {
      const auto count = ::read(output_.get(), buffer.data(), buffer.size());
      if (count <= 0) break;
      text_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    for (auto end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
      lines_.push_back(text_.substr(0, end));
      text_.erase(0, end + 1);
    }
    return lines_;
  }
  /// The rests of the lines that begin with `word` and a space, or are that word.
  std::vector<std::string> told(const std::string& word) {
    std::vector<std::string> rests;
    for (const auto& line : lines()) {
      if (line == word) rests.emplace_back();
      if (line.starts_with(word + " ")) rests.push_back(line.substr(word.size() + 1));
    }
    return rests;
  }

  /// Ends it as a crash does, and waits until it is gone.
  void kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }
  /// Stops it where it is, or lets it go on.
  void freeze(bool frozen) const { ::kill(process_, frozen ? SIGSTOP : SIGCONT); }

 private:
  pid_t process_ = -1;
  UniqueDescriptor input_;
  UniqueDescriptor output_;
  std::string text_;
  std::vector<std::string> lines_;
};

}  // namespace murmel::test
