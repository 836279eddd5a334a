#pragma once

#include <string>
#include <string_view>

namespace murmel {

/// The standard output and error of a program on the command line. What cannot be written is not lost without
/// a word: `failed` says so, and a sentence is on the standard error.
class TerminalOutput {
 public:
  ~TerminalOutput();

  void write(std::string_view text);
  /// One sentence for the user.
  void complain(const std::string& sentence);
  /// A line that the next one replaces; on a terminal only.
  void progress(const std::string& line);

  [[nodiscard]] bool failed() const { return failed_; }

 private:
  void clearProgress();

  bool failed_ = false;
  bool showsProgress_ = false;
};

}  // namespace murmel
