#pragma once

#include "Storage/CommandStreams.h"
#include "Storage/SecureLocalFile.h"

#include <expected>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// "murmel vocabulary": the personal vocabulary on the command line, on its file under the lock of all
/// writers. Blocks.
class VocabularyCommand {
 public:
  static constexpr std::string_view usage =
      "usage: murmel vocabulary list | add [FILE] | remove [FILE] | import FILE | export [FILE] | retry\n"
      "Words come from FILE or from standard input, one \"term = replacement\" a line (for remove, the term "
      "is\n"
      "enough): arguments could be read by other programs. import replaces the vocabulary, add extends it.\n";

  /// Asks the user to unlock the key ring, and waits.
  using Unlock = std::function<std::expected<void, SecretStatus>()>;

  /// The references outlive this.
  VocabularyCommand(FileSystem& files, SecureLocalFile file, CommandStreams streams, Unlock unlock);

  /// Gives the exit status.
  int run(const std::vector<std::string>& arguments);

 private:
  using Lines = std::vector<std::string>;
  using Edit = std::function<Lines(Lines)>;

  std::expected<Lines, std::string> given(const std::string& file);
  int edit(const Edit& edit, std::string_view done);
  int writeOut(const std::string& file);
  int retry();
  int misused();
  int failed(const SecureLocalStorageError& error);

  FileSystem& files_;
  SecureLocalFile file_;
  CommandStreams streams_;
  Unlock unlock_;
};

}  // namespace murmel
