#pragma once

#include "Foundation/WriteAll.h"
#include "Support/ChildProgram.h"

#include <array>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>

namespace murmel::test {

/// A program of a test's desktop, that is talked to line by line.
class ApplicationProcess : public ChildProgram {
 public:
  explicit ApplicationProcess(std::vector<std::string> command) : ChildProgram(std::move(command)) {
    ::fcntl(output(), F_SETFL, O_NONBLOCK);
  }

  void tell(const std::string& line) {
    if (!writeAll(input(), line + "\n")) throw std::runtime_error("the application does not listen");
  }

  /// Every line that it has written so far.
  const std::vector<std::string>& lines() {
    std::array<char, 4'096> buffer{};
    while (true) {
      const auto count = ::read(output(), buffer.data(), buffer.size());
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
  void kill() { end(SIGKILL); }
  /// Stops it where it is, or lets it go on.
  void freeze(bool frozen) const { ::kill(identifier(), frozen ? SIGSTOP : SIGCONT); }

 private:
  std::string text_;
  std::vector<std::string> lines_;
};

}  // namespace murmel::test
