#include "Shell/TerminalOutput.h"

#include "Shell/StandardStreams.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <unistd.h>

namespace murmel {

TerminalOutput::~TerminalOutput() {
  clearProgress();
}

void TerminalOutput::write(std::string_view text) {
  if (failed_ || text.empty()) return;
  clearProgress();
  // Flushed each time: phrases are for somebody who watches, and a full disk shows while there is time to
  // say.
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
  failed_ = true;
  if (errno == EPIPE) return;  // who reads the first lines only has not missed anything
  complain("the text could not be written: " + std::generic_category().message(errno));
}

void TerminalOutput::complain(const std::string& sentence) {
  clearProgress();
  murmel::complain(sentence);
}

void TerminalOutput::progress(const std::string& line) {
  if (::isatty(STDERR_FILENO) == 0) return;
  print(stderr, "\r\033[K{}", line);
  std::fflush(stderr);
  showsProgress_ = true;
}

void TerminalOutput::clearProgress() {
  if (!showsProgress_) return;
  print(stderr, "\r\033[K");
  std::fflush(stderr);
  showsProgress_ = false;
}

}  // namespace murmel
